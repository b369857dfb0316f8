#pragma once

#include <QByteArray>
#include <QFile>

// This process's memory as /proc/self/status tells it, in kB: "VmRSS" now,
// "VmHWM" at its peak. -1 where the field can't be read.
inline long processStatusKb(const char* field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(prefix))
            return line.mid(prefix.size()).trimmed().split(' ').first().toLong();
    }
    return -1;
}
