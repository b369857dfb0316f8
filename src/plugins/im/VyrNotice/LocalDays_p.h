#pragma once

// Private to the library: local calendar days of times in seconds since the epoch.

#include "VyrNoticeExport.h"

#include <QDate>
#include <QElapsedTimer>
#include <QMap>
#include <QString>

#include <functional>

// Qt 5 re-reads the time zone on every local-time conversion, and the
// friend-request tree converts every group's date on every walk; a day's
// bounds are worked out once, and a time inside known bounds is answered from
// them. A change of the system's time zone while the client runs drops what
// is known: the zone is compared at most once a second, so a change shows at
// the first look-up a second or more after the last comparison, and
// zoneChanges() tells the tree that its groups were made in another zone.
class VYRNOTICE_TESTS_EXPORT LocalDays
{
public:
    // Milliseconds on a clock that never goes back.
    using Clock = std::function<qint64()>;

    static constexpr qint64 ZoneCheckInterval = 1000;
    static constexpr int MaxDays = 4096;

    // `clock` stands in for the monotonic clock (tests); none means the real one.
    explicit LocalDays(Clock clock = Clock());
    LocalDays(const LocalDays&) = delete;
    LocalDays& operator=(const LocalDays&) = delete;

    // The local calendar day of `seconds` since the epoch; null when Qt has none.
    QDate dayOf(qint64 seconds);
    // How many days' bounds are known.
    int knownDays() const;
    // How many zone changes were seen so far; looks at the zone when a look is due.
    int zoneChanges();
    // The instance of the calling thread.
    static LocalDays& forThisThread();

private:
    struct Day
    {
        qint64 end;
        QDate date;
    };

    void remember(const QDate& date, qint64 seconds);
    void forgetIfZoneChanged();
    static QString zoneSignature();
    qint64 now() const;

    Clock m_clock;
    QElapsedTimer m_elapsed;
    qint64 m_lastZoneCheck = 0;
    QString m_zone;
    int m_zoneChanges = 0;
    QMap<qint64, Day> m_dayByStart;
};
