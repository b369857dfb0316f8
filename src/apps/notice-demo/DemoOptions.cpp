#include "DemoOptions.h"

#include "SimulatedScreen.h"

namespace {

QCommandLineOption option(const char* name, const char* description, const char* valueName = nullptr,
                          const char* defaultValue = nullptr)
{
    QCommandLineOption result(QString::fromLatin1(name), QString::fromLatin1(description));
    if (valueName)
        result.setValueName(QLatin1String(valueName));
    if (defaultValue)
        result.setDefaultValue(QLatin1String(defaultValue));
    return result;
}

} // namespace

DemoOptions::DemoOptions()
    : m_help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows these options."))
    , m_scenario(option("scenario", "JSON scenario file (format: docs/SCENARIO.md). Default: the embedded one.", "file",
                        ":/demo/scenarios/default.json"))
    , m_locale(option("locale", "Language of the windows: en or zh_CN; others fall back to English.", "locale", "en"))
    , m_screenshots(option("screenshots", "Folder for the PNGs of the \"screenshot\" steps.", "dir"))
    , m_speedOption(option("speed", "Divides the scenario's waits (not the windows' own 15 s and 500 ms).", "factor", "1"))
    , m_trackLog(option("track-log", "Writes every tracking event to this file as JSON lines.", "file"))
    , m_screen(option("screen", "Simulated screen size for placing the windows, e.g. 1280x800.", "WxH"))
    , m_taskbar(option("taskbar", "Taskbar edge of the simulated screen: left, top, right, bottom.", "edge", "bottom"))
{
    m_parser.setApplicationDescription(
        QStringLiteral("Plays a scenario of notices through the notice library's gathered windows.\n"
                       "Without a display it draws offscreen on a simulated 1920x1080 screen.\n"
                       "Every scenario is built in: --scenario :/demo/scenarios/NAME.json, NAME one of default,\n"
                       "coursework, popups, single-popups, friendrequests.\n"
                       "scripts/demo.sh also takes --all as its first argument: it plays every built-in\n"
                       "scenario in turn, passing the other options to each, with the screenshots of each\n"
                       "in a subfolder of its own (--screenshots DIR gives DIR/default, DIR/coursework, ...)."));
    m_parser.addOption(m_help);
    m_parser.addOptions({m_scenario, m_locale, m_screenshots, m_speedOption, m_trackLog, m_screen, m_taskbar});
}

DemoOptions::Outcome DemoOptions::parse(const QStringList& arguments)
{
    if (!m_parser.parse(arguments)) {
        m_error = m_parser.errorText();
        return Outcome::Error;
    }
    if (m_parser.isSet(m_help))
        return Outcome::Help;
    if (!m_parser.positionalArguments().isEmpty()) {
        m_error = QStringLiteral("unexpected argument \"%1\"").arg(m_parser.positionalArguments().first());
        return Outcome::Error;
    }
    bool isNumber = false;
    m_speed = m_parser.value(m_speedOption).toDouble(&isNumber);
    if (!isNumber || !(m_speed > 0)) {
        m_error = QStringLiteral("--speed: expected a number above 0, got \"%1\"").arg(m_parser.value(m_speedOption));
        return Outcome::Error;
    }
    if (hasScreen() && !SimulatedScreen::isValid(screen(), taskbar())) {
        m_error = QStringLiteral("--screen/--taskbar: expected a size like 1280x800 and one of left, top, right, "
                                 "bottom, got \"%1\" and \"%2\"")
                      .arg(screen(), taskbar());
        return Outcome::Error;
    }
    return Outcome::Run;
}

QString DemoOptions::helpText() const
{
    return m_parser.helpText();
}

QString DemoOptions::scenario() const
{
    return m_parser.value(m_scenario);
}

QString DemoOptions::locale() const
{
    return m_parser.value(m_locale);
}

QString DemoOptions::screenshots() const
{
    return m_parser.value(m_screenshots);
}

QString DemoOptions::trackLog() const
{
    return m_parser.value(m_trackLog);
}

bool DemoOptions::hasScreen() const
{
    return m_parser.isSet(m_screen) || m_parser.isSet(m_taskbar);
}

// Only --taskbar given: a laptop-sized screen.
QString DemoOptions::screen() const
{
    return m_parser.isSet(m_screen) ? m_parser.value(m_screen) : QStringLiteral("1280x800");
}

QString DemoOptions::taskbar() const
{
    return m_parser.value(m_taskbar);
}
