#pragma once

#include <QCommandLineParser>
#include <QStringList>

// The demo's command line, read before any application object exists so that
// --help and mistakes are answered without a display.
class DemoOptions
{
public:
    enum class Outcome { Run, Help, Error };

    DemoOptions();

    Outcome parse(const QStringList& arguments);
    // Needs a QCoreApplication (the parser names the program from it).
    QString helpText() const;
    QString error() const { return m_error; }

    QString scenario() const;
    QString locale() const;
    QString screenshots() const;
    QString trackLog() const;
    double speed() const { return m_speed; }
    bool hasScreen() const;
    QString screen() const;
    QString taskbar() const;

private:
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
    QCommandLineOption m_scenario;
    QCommandLineOption m_locale;
    QCommandLineOption m_screenshots;
    QCommandLineOption m_speedOption;
    QCommandLineOption m_trackLog;
    QCommandLineOption m_screen;
    QCommandLineOption m_taskbar;
    double m_speed = 1.0;
    QString m_error;
};
