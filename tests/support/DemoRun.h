#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

// One run of the demo program in a temporary folder of its own: the
// program is given a tracking log and a screenshot folder ("shots") there,
// and its exit, its output and the log are kept for the test to read.
class DemoRun
{
public:
    DemoRun();

    // The run's folder exists.
    bool isValid() const;
    QString filePath(const QString& name) const;
    // Writes `bytes` to `name` in the run's folder: its path, or empty when it can't be written.
    QString writeFile(const QString& name, const QByteArray& bytes) const;
    QString trackLogPath() const;

    // Starts `program` with `arguments`, then "--track-log" and
    // "--screenshots" into the run's folder; false if it didn't start.
    bool start(const QString& program, const QStringList& arguments);
    // Waits for the end and reads what the program wrote; false if it didn't end in time.
    bool finish(int timeoutMs);

    QProcess::ExitStatus exitStatus() const;
    // The program's exit code; -1 until it has finished.
    int exitCode() const;
    QString output() const { return m_output; }
    QString errors() const { return m_errors; }
    QStringList outputLines() const;
    QStringList errorLines() const;
    // The tracking log's lines, trimmed, blank ones left out; false when it can't be read.
    bool readTrackLines(QList<QByteArray>* lines) const;

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    bool m_finished = false;
    QString m_output;
    QString m_errors;
};
