// The notice library's demo: a host (host/, the library's exported API only)
// and a user simulator around it (simulator/: scenario, kit, user's hands,
// screenshots). Plays the embedded default scenario, or the one given with
// --scenario, and exits when the scenario quits.
//
// Everything that can be wrong with the command line or the scenario is
// answered before the application object exists: no display is needed for
// --help or for a mistake, and no window is made before the scenario is known good.

#include "DemoHost.h"
#include "DemoOptions.h"
#include "HostLocale.h"
#include "ScenarioChecker.h"
#include "SimulatedScreen.h"
#include "Simulation.h"
#include "VyrTrack.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

namespace {

QStringList argumentsOf(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

void print(FILE* stream, const QString& text)
{
    QTextStream out(stream);
    out << text;
    out.flush();
}

// No display and no platform asked for: draw offscreen.
bool chooseOffscreenWhenHeadless()
{
    if (qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        || qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return false;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return true;
}

QString headlessNote(const QString& screen, const QString& screenshots)
{
    const QString where = screenshots.isEmpty()
        ? QStringLiteral("Add --screenshots DIR to get PNGs of the windows.")
        : QStringLiteral("Screenshots go to %1").arg(QDir(screenshots).absolutePath());
    return QStringLiteral("no display: drawing offscreen on a simulated %1 screen. %2\n").arg(screen, where);
}

QtMessageHandler s_previousHandler = nullptr;

// The offscreen platform says so for every fade and every resize; nothing to act on.
void quietOffscreenNoise(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (message.startsWith(QLatin1String("This plugin does not support")))
        return;
    s_previousHandler(type, context, message);
}

} // namespace

int main(int argc, char* argv[])
{
    DemoOptions options;
    const DemoOptions::Outcome outcome = options.parse(argumentsOf(argc, argv));
    if (outcome != DemoOptions::Outcome::Run) {
        // A core application names the program in the help; it needs no display.
        QCoreApplication core(argc, argv);
        if (outcome == DemoOptions::Outcome::Help) {
            print(stdout, options.helpText());
            return 0;
        }
        print(stderr, QStringLiteral("notice-demo: %1\nTry --help.\n").arg(options.error()));
        return 2;
    }

    QJsonObject scenario;
    QStringList errors;
    if (!ScenarioChecker::load(options.scenario(), &scenario, &errors)) {
        print(stderr, QStringLiteral("notice-demo: the scenario has %1 problem(s); nothing was run.\n").arg(errors.size())
                          + errors.join(QLatin1Char('\n')) + QLatin1Char('\n'));
        return 2;
    }

    const bool headless = chooseOffscreenWhenHeadless();
    const QString screen = options.hasScreen() ? options.screen() : QStringLiteral("1920x1080");
    if (options.hasScreen() || headless)
        SimulatedScreen::apply(screen, options.taskbar());

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("notice-demo"));
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        s_previousHandler = qInstallMessageHandler(quietOffscreenNoise);
    if (headless)
        print(stdout, headlessNote(screen, options.screenshots()));
    else if (!options.screenshots().isEmpty())
        print(stdout, QStringLiteral("Screenshots go to %1\n").arg(QDir(options.screenshots()).absolutePath()));

    // Before any window: the windows read the locale when they are made.
    HostLocale::apply(options.locale());

    if (!options.trackLog().isEmpty()) {
        QFile::remove(options.trackLog());
        VyrTrack::instance()->setLogFile(options.trackLog());
    }

    DemoHost host;
    Simulation simulation(&host, scenario, options.screenshots(), options.speed());
    if (!simulation.start())
        return 4;
    return app.exec();
}
