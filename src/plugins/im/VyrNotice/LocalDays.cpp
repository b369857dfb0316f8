#include "LocalDays_p.h"

#include <QDateTime>
#include <QTime>
#include <QTimeZone>

LocalDays::LocalDays(Clock clock)
    : m_clock(std::move(clock))
{
    m_elapsed.start();
    m_lastZoneCheck = now();
    m_zone = zoneSignature();
}

LocalDays& LocalDays::forThisThread()
{
    thread_local LocalDays days;
    return days;
}

qint64 LocalDays::now() const
{
    return m_clock ? m_clock() : m_elapsed.elapsed();
}

QDate LocalDays::dayOf(qint64 seconds)
{
    forgetIfZoneChanged();
    auto known = m_dayByStart.upperBound(seconds);
    if (known != m_dayByStart.begin()) {
        --known;
        if (seconds < known.value().end)
            return known.value().date;
    }
    const QDate date = QDateTime::fromSecsSinceEpoch(seconds).date();
    remember(date, seconds);
    return date;
}

int LocalDays::knownDays() const
{
    return m_dayByStart.size();
}

int LocalDays::zoneChanges()
{
    forgetIfZoneChanged();
    return m_zoneChanges;
}

void LocalDays::remember(const QDate& date, qint64 seconds)
{
    if (!date.isValid())
        return;
    const qint64 start = QDateTime(date, QTime(0, 0)).toSecsSinceEpoch();
    const qint64 end = QDateTime(date.addDays(1), QTime(0, 0)).toSecsSinceEpoch();
    // Only bounds that really hold the time: a time that Qt wrapped round, or
    // a midnight that a clock change skipped, is simply not remembered.
    if (!(start <= seconds && seconds < end))
        return;
    if (m_dayByStart.size() >= MaxDays)
        m_dayByStart.clear();
    m_dayByStart.insert(start, Day{end, date});
}

// Bounds worked out in one zone are wrong in another; the comparison costs a
// few conversions, so it runs at most once a second.
void LocalDays::forgetIfZoneChanged()
{
    const qint64 current = now();
    if (current - m_lastZoneCheck < ZoneCheckInterval)
        return;
    m_lastZoneCheck = current;
    const QString zone = zoneSignature();
    if (zone == m_zone)
        return;
    m_zone = zone;
    ++m_zoneChanges;
    m_dayByStart.clear();
}

// The zone's name and its local offsets in winter and summer of this year:
// a new zone, or new rules for it, changes one of them.
QString LocalDays::zoneSignature()
{
    const int year = QDateTime::currentDateTimeUtc().date().year();
    const QTime noon(12, 0);
    const qint64 winter = QDateTime(QDate(year, 1, 15), noon, Qt::UTC).toSecsSinceEpoch();
    const qint64 summer = QDateTime(QDate(year, 7, 15), noon, Qt::UTC).toSecsSinceEpoch();
    return QString::fromLatin1(QTimeZone::systemTimeZoneId()) + QLatin1Char(' ')
        + QString::number(QDateTime::fromSecsSinceEpoch(winter).offsetFromUtc()) + QLatin1Char(' ')
        + QString::number(QDateTime::fromSecsSinceEpoch(summer).offsetFromUtc());
}
