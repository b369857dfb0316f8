#include "LogCapture.h"

#include <QMutex>

namespace {
QMutex s_mutex;
QList<LogCapture::Line> s_lines;
QtMessageHandler s_previous = nullptr;
}

LogCapture::LogCapture()
{
    QMutexLocker lock(&s_mutex);
    s_lines.clear();
    m_previous = qInstallMessageHandler(&LogCapture::handler);
    s_previous = m_previous;
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
}

void LogCapture::handler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    // Only the library's lines (its own category) and the kit's (Qt's default one); Qt's
    // categorised ones (model tester, platform) are not ours.
    const bool isOurs = !context.category || qstrcmp(context.category, "default") == 0
                        || qstrcmp(context.category, "vyr.notice") == 0;
    if (isOurs) {
        QMutexLocker lock(&s_mutex);
        s_lines.append(Line{type, QString::fromUtf8(context.file ? context.file : ""),
                            QString::fromUtf8(context.function ? context.function : ""), message});
    }
    if (s_previous)
        s_previous(type, context, message);
}

QList<LogCapture::Line> LogCapture::lines() const
{
    QMutexLocker lock(&s_mutex);
    return s_lines;
}

QList<LogCapture::Line> LogCapture::matching(const QString& text) const
{
    QList<Line> out;
    for (const Line& line : lines()) {
        if (line.text == text)
            out.append(line);
    }
    return out;
}

QList<LogCapture::Line> LogCapture::startingWith(const QString& prefix) const
{
    QList<Line> out;
    for (const Line& line : lines()) {
        if (line.text.startsWith(prefix))
            out.append(line);
    }
    return out;
}

void LogCapture::clear()
{
    QMutexLocker lock(&s_mutex);
    s_lines.clear();
}
