#include "VyrPauseableTimer.h"

#include <algorithm>

VyrPauseableTimer::VyrPauseableTimer(QObject* parent)
    : QObject(parent)
{
    // One count at a time; a repeating timer starts the next one itself.
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &VyrPauseableTimer::onCountFinished);
}

void VyrPauseableTimer::setSingleShot(bool singleShot)
{
    m_singleShot = singleShot;
}

void VyrPauseableTimer::setInterval(int ms)
{
    m_interval = std::max(0, ms);
}

void VyrPauseableTimer::start()
{
    m_paused = false;
    runFor(m_interval);
}

void VyrPauseableTimer::stop()
{
    m_timer.stop();
    m_elapsed.invalidate();
    m_paused = false;
    m_remaining = m_interval;
}

void VyrPauseableTimer::pause()
{
    if (m_paused || !m_timer.isActive())
        return;
    m_remaining = std::max<qint64>(0, m_remaining - m_elapsed.elapsed());
    m_timer.stop();
    m_paused = true;
    emit paused();
}

void VyrPauseableTimer::resume()
{
    if (!m_paused)
        return;
    m_paused = false;
    runFor(m_remaining);
    emit resumed();
}

void VyrPauseableTimer::resetElapsedTime()
{
    if (m_paused)
        m_remaining = m_interval;
    else if (m_timer.isActive())
        runFor(m_interval);
}

int VyrPauseableTimer::remainingTime() const
{
    if (m_paused)
        return m_remaining;
    if (!m_timer.isActive())
        return -1;
    return int(std::max<qint64>(0, m_remaining - m_elapsed.elapsed()));
}

bool VyrPauseableTimer::expire()
{
    if (!m_timer.isActive())
        return false;
    m_timer.stop();
    onCountFinished();
    return true;
}

void VyrPauseableTimer::runFor(int ms)
{
    m_remaining = ms;
    m_elapsed.start();
    m_timer.start(ms);
}

void VyrPauseableTimer::onCountFinished()
{
    m_elapsed.invalidate();
    if (!m_singleShot)
        runFor(m_interval);
    emit timeout();
}
