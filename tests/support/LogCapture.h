#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

// Captures every message of Qt's logger while it lives: level, file, function and text.
class LogCapture
{
public:
    struct Line
    {
        QtMsgType type;
        QString file;
        QString function;
        QString text;
    };

    LogCapture();
    ~LogCapture();

    QList<Line> lines() const;
    // Lines whose text equals `text` exactly.
    QList<Line> matching(const QString& text) const;
    // Lines whose text starts with `prefix`.
    QList<Line> startingWith(const QString& prefix) const;
    void clear();

private:
    static void handler(QtMsgType type, const QMessageLogContext& context, const QString& message);
    QtMessageHandler m_previous = nullptr;
};
