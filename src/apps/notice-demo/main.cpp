// The notice library's demo host. Runs an embedded default scenario, or the
// JSON scenario given with --scenario, and exits when the scenario quits.

#include "DemoHost.h"
#include "ScenarioPlayer.h"
#include "ScreenCorner.h"
#include "VyrTrack.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTranslator>

namespace {

bool loadTranslations(QTranslator* translator, const QString& locale)
{
    const QString file = QStringLiteral("VyrNotice_") + locale;
    const QString besideBinary = QCoreApplication::applicationDirPath() + QStringLiteral("/translations");
    return translator->load(file, QStringLiteral(VYR_TRANSLATIONS_DIR)) || translator->load(file, besideBinary);
}

// A simulated screen for the windows' placement: "1280x800" and a taskbar
// edge name; the taskbar takes 40 pixels of that edge.
bool simulateScreen(const QString& size, const QString& edge)
{
    const QStringList edges = {QStringLiteral("left"), QStringLiteral("top"), QStringLiteral("right"),
                               QStringLiteral("bottom")};
    const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("^(\\d+)x(\\d+)$")).match(size);
    const int edgeCode = edges.indexOf(edge);
    if (!match.hasMatch() || edgeCode < 0)
        return false;
    ScreenCorner::Screen screen;
    screen.taskbarEdge = static_cast<TaskbarEdge>(edgeCode);
    screen.geometry = QRect(0, 0, match.captured(1).toInt(), match.captured(2).toInt());
    const int bar = 40;
    const QMargins taken[] = {{bar, 0, 0, 0}, {0, bar, 0, 0}, {0, 0, bar, 0}, {0, 0, 0, bar}};
    screen.availableGeometry = screen.geometry.marginsRemoved(taken[edgeCode]);
    ScreenCorner::setOverride(screen);
    return true;
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
    QApplication app(argc, argv);
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        s_previousHandler = qInstallMessageHandler(quietOffscreenNoise);
    QApplication::setApplicationName(QStringLiteral("notice-demo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Plays a scenario of notices through the notice library."));
    parser.addHelpOption();
    QCommandLineOption scenarioOption(QStringLiteral("scenario"), QStringLiteral("JSON scenario file."),
                                      QStringLiteral("file"), QStringLiteral(":/demo/scenarios/default.json"));
    QCommandLineOption localeOption(QStringLiteral("locale"), QStringLiteral("Translation: en or zh_CN."),
                                    QStringLiteral("locale"), QStringLiteral("en"));
    QCommandLineOption screenshotsOption(QStringLiteral("screenshots"),
                                         QStringLiteral("Folder for the PNGs of the \"screenshot\" steps."),
                                         QStringLiteral("dir"));
    QCommandLineOption speedOption(QStringLiteral("speed"),
                                   QStringLiteral("Divides the scenario's waits (not the windows' own times)."),
                                   QStringLiteral("factor"), QStringLiteral("1"));
    QCommandLineOption trackLogOption(QStringLiteral("track-log"),
                                      QStringLiteral("Writes every tracking event to this file as JSON lines."),
                                      QStringLiteral("file"));
    QCommandLineOption screenOption(QStringLiteral("screen"),
                                    QStringLiteral("Simulated screen size for placing the windows, e.g. 1280x800."),
                                    QStringLiteral("WxH"));
    QCommandLineOption taskbarOption(QStringLiteral("taskbar"),
                                     QStringLiteral("Taskbar edge of the simulated screen: left, top, right, bottom."),
                                     QStringLiteral("edge"), QStringLiteral("bottom"));
    parser.addOptions({scenarioOption, localeOption, screenshotsOption, speedOption, trackLogOption, screenOption,
                       taskbarOption});
    parser.process(app);

    QTranslator translator;
    if (!loadTranslations(&translator, parser.value(localeOption)))
        qWarning() << "no translations for" << parser.value(localeOption);
    QApplication::installTranslator(&translator);

    if (parser.isSet(screenOption) || parser.isSet(taskbarOption)) {
        const QString size = parser.isSet(screenOption) ? parser.value(screenOption) : QStringLiteral("1280x800");
        if (!simulateScreen(size, parser.value(taskbarOption))) {
            qCritical().noquote() << "notice-demo: bad --screen or --taskbar";
            return 2;
        }
    }
    if (parser.isSet(trackLogOption)) {
        QFile::remove(parser.value(trackLogOption));
        VyrTrack::instance()->setLogFile(parser.value(trackLogOption));
    }

    ScenarioPlayer player;
    player.setSpeed(parser.value(speedOption).toDouble());
    QString error;
    if (!player.load(parser.value(scenarioOption), &error)) {
        qCritical().noquote() << "notice-demo:" << error;
        return 2;
    }

    DemoHost host(parser.value(screenshotsOption));
    host.seed(player.scenario());
    host.registerActions(&player);
    QObject::connect(&player, &ScenarioPlayer::stepStarted, &host, [&host](int index, const QJsonObject& step) {
        host.announceStep(index, step);
    });
    // A "quitWhenHidden" step ends the run itself, once the windows have gone.
    QObject::connect(&player, &ScenarioPlayer::finished, &app, [&host]() {
        if (!host.isWaitingToQuit())
            QCoreApplication::exit(0);
    });
    player.start();
    return app.exec();
}
