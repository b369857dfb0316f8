// The notice library's demo host. Runs an embedded default scenario, or the
// JSON scenario given with --scenario, and exits when the scenario quits.

#include "DemoHost.h"
#include "ScenarioPlayer.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QJsonObject>
#include <QTranslator>

namespace {

bool loadTranslations(QTranslator* translator, const QString& locale)
{
    const QString file = QStringLiteral("VyrNotice_") + locale;
    const QString besideBinary = QCoreApplication::applicationDirPath() + QStringLiteral("/translations");
    return translator->load(file, QStringLiteral(VYR_TRANSLATIONS_DIR)) || translator->load(file, besideBinary);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("notice-demo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Plays a scenario of notices through the notice library."));
    parser.addHelpOption();
    QCommandLineOption scenarioOption(QStringLiteral("scenario"), QStringLiteral("JSON scenario file."),
                                      QStringLiteral("file"), QStringLiteral(":/demo/scenarios/default.json"));
    QCommandLineOption localeOption(QStringLiteral("locale"), QStringLiteral("Translation: en or zh_CN."),
                                    QStringLiteral("locale"), QStringLiteral("en"));
    parser.addOption(scenarioOption);
    parser.addOption(localeOption);
    parser.process(app);

    QTranslator translator;
    if (!loadTranslations(&translator, parser.value(localeOption)))
        qWarning() << "no translations for" << parser.value(localeOption);
    QApplication::installTranslator(&translator);

    ScenarioPlayer player;
    QString error;
    if (!player.load(parser.value(scenarioOption), &error)) {
        qCritical().noquote() << "notice-demo:" << error;
        return 2;
    }

    DemoHost host;
    host.seed(player.scenario());
    host.registerActions(&player);
    QObject::connect(&player, &ScenarioPlayer::stepStarted, &host, [&host](int index, const QJsonObject& step) {
        host.announceStep(index, step);
    });
    QObject::connect(&player, &ScenarioPlayer::finished, &app, []() { QCoreApplication::exit(0); });
    player.start();
    return app.exec();
}
