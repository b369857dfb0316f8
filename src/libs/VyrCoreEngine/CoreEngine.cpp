#include "CoreEngine.h"

namespace VyrEngine {

CoreEngine* CoreEngine::m_pInstance = nullptr;

CoreEngine::CoreEngine(QObject* parent)
    : QObject(parent)
{
}

CoreEngine* CoreEngine::instance()
{
    if (!m_pInstance)
        m_pInstance = new CoreEngine();
    return m_pInstance;
}

qint64 CoreEngine::currentTime() const
{
    return m_fixedTime ? *m_fixedTime : QDateTime::currentSecsSinceEpoch();
}

QDateTime CoreEngine::currentDateTime() const
{
    return QDateTime::fromSecsSinceEpoch(currentTime());
}

quint64 CoreEngine::currentUid() const
{
    return m_uid;
}

QString CoreEngine::fileServerPrefix() const
{
    return m_fileServerPrefix;
}

void CoreEngine::setFileServerPrefix(const QString& prefix)
{
    m_fileServerPrefix = prefix;
}

void CoreEngine::setCurrentTime(qint64 secsSinceEpoch)
{
    m_fixedTime = secsSinceEpoch;
}

void CoreEngine::advanceTime(qint64 secs)
{
    m_fixedTime = currentTime() + secs;
}

void CoreEngine::useSystemClock()
{
    m_fixedTime.reset();
}

void CoreEngine::setCurrentUid(quint64 uid)
{
    m_uid = uid;
}

} // namespace VyrEngine
