#include "DemoRun.h"

#include <QFile>

DemoRun::DemoRun()
{
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
}

bool DemoRun::isValid() const
{
    return m_dir.isValid();
}

QString DemoRun::filePath(const QString& name) const
{
    return m_dir.filePath(name);
}

QString DemoRun::writeFile(const QString& name, const QByteArray& bytes) const
{
    const QString path = filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QString();
    return path;
}

QString DemoRun::trackLogPath() const
{
    return filePath(QStringLiteral("track.jsonl"));
}

bool DemoRun::start(const QString& program, const QStringList& arguments)
{
    m_process.start(program, arguments + QStringList{QStringLiteral("--track-log"), trackLogPath(),
                                                      QStringLiteral("--screenshots"),
                                                      filePath(QStringLiteral("shots"))});
    return m_process.waitForStarted();
}

bool DemoRun::finish(int timeoutMs)
{
    m_finished = m_process.waitForFinished(timeoutMs);
    m_output = QString::fromUtf8(m_process.readAllStandardOutput());
    m_errors = QString::fromUtf8(m_process.readAllStandardError());
    return m_finished;
}

QProcess::ExitStatus DemoRun::exitStatus() const
{
    return m_process.exitStatus();
}

int DemoRun::exitCode() const
{
    return m_finished ? m_process.exitCode() : -1;
}

QStringList DemoRun::outputLines() const
{
    return m_output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList DemoRun::errorLines() const
{
    return m_errors.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool DemoRun::readTrackLines(QList<QByteArray>* lines) const
{
    QFile log(trackLogPath());
    if (!log.open(QIODevice::ReadOnly))
        return false;
    while (!log.atEnd()) {
        const QByteArray line = log.readLine().trimmed();
        if (!line.isEmpty())
            lines->append(line);
    }
    return true;
}
