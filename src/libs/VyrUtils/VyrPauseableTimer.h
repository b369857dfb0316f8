#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/**
 * A timer whose count can be frozen and taken up again: a QTimer for the
 * count and a QElapsedTimer for what has already run.
 *
 * pause() and resume() act on a running count only: pausing an idle timer,
 * or resuming one that isn't paused, does nothing. stop() ends the count and
 * also leaves the paused state.
 *
 * Host side:
 *   isActive()         the count is running (neither stopped nor paused)
 *   remainingTime()    ms left of the count, -1 when idle
 *   expire()           lets a running count run out now, as if its time had passed;
 *                      returns false (and does nothing) when no count is running
 *   signal paused(), resumed()   for observers of the count
 */
class VyrPauseableTimer : public QObject
{
    Q_OBJECT
public:
    explicit VyrPauseableTimer(QObject* parent = nullptr);

    void setSingleShot(bool singleShot);
    bool isSingleShot() const { return m_singleShot; }
    void setInterval(int ms);
    int interval() const { return m_interval; }

    /** Begins the full interval, also when the timer is running or paused. */
    void start();
    /** Ends the count; no timeout follows. */
    void stop();
    /** Freezes a running count and keeps what remains of it. */
    void pause();
    /** Goes on from what pause() kept. */
    void resume();
    bool isPaused() const { return m_paused; }
    /**
     * Forgets the time already run: a paused count resumes with the full
     * interval, a running one starts it again now.
     */
    void resetElapsedTime();

    // Host side.
    bool isActive() const { return m_timer.isActive(); }
    int remainingTime() const;
    bool expire();

signals:
    void timeout();
    void paused();
    void resumed();

private:
    void runFor(int ms);
    void onCountFinished();

    QTimer m_timer;
    QElapsedTimer m_elapsed;
    int m_interval = 0;
    int m_remaining = 0;
    bool m_singleShot = false;
    bool m_paused = false;
};
