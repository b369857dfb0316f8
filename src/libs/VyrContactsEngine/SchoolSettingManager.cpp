#include "SchoolSettingManager.h"

#include <QTimer>

namespace Org {

SchoolSettingManager* SchoolSettingManager::m_pInstance = nullptr;

SchoolSettingManager* SchoolSettingManager::getInstance()
{
    if (!m_pInstance)
        m_pInstance = new SchoolSettingManager();
    return m_pInstance;
}

SchoolSettingManager::SchoolSettingManager(QObject* parent)
    : QObject(parent)
{
}

QString SchoolSettingManager::getUidDomainName(quint64 uid, int flag)
{
    const Key key(uid, flag);
    const QString known = m_domains.value(key);
    if (!known.isEmpty())
        return known;
    m_queries << key;
    auto queued = m_queued.find(key);
    if (queued != m_queued.end() && !queued->isEmpty())
        send(uid, flag, queued->dequeue());
    return QString();
}

void SchoolSettingManager::putDomain(quint64 uid, int flag, const QString& domain)
{
    m_domains.insert(Key(uid, flag), domain);
}

void SchoolSettingManager::queueAnswer(quint64 uid, int flag, const QString& domain, int delayMs)
{
    Answer reply;
    reply.url = domain;
    reply.delayMs = delayMs;
    m_queued[Key(uid, flag)].enqueue(reply);
}

void SchoolSettingManager::queueError(quint64 uid, int flag, int networkError, int errorNo,
                                      const QString& errorString, int delayMs, const QString& domain)
{
    m_queued[Key(uid, flag)].enqueue(Answer{domain, networkError, errorNo, errorString, delayMs});
}

void SchoolSettingManager::answer(quint64 uid, const QString& url, int flag, int networkError, int errorNo,
                                  const QString& errorString, int delayMs)
{
    send(uid, flag, Answer{url, networkError, errorNo, errorString, delayMs});
}

void SchoolSettingManager::send(quint64 uid, int flag, const Answer& reply)
{
    // A timer owned by the manager: clear() deletes it, and the answer with it.
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    // A delayed answer never comes sooner than asked; a coarse timer may fire 5 % early.
    timer->setTimerType(Qt::PreciseTimer);
    timer->setObjectName(QStringLiteral("pendingAnswer"));
    connect(timer, &QTimer::timeout, this, [this, timer, uid, flag, reply]() {
        timer->deleteLater();
        timer->setObjectName(QString());
        if (!reply.url.isEmpty())
            m_domains.insert(Key(uid, flag), reply.url);
        emit signalGetUidDomainNameFinished(qlonglong(uid), reply.url, flag, reply.networkError, reply.errorNo,
                                            reply.errorString);
    });
    timer->start(qMax(0, reply.delayMs));
}

int SchoolSettingManager::pendingAnswers() const
{
    return findChildren<QTimer*>(QStringLiteral("pendingAnswer"), Qt::FindDirectChildrenOnly).size();
}

void SchoolSettingManager::clear()
{
    qDeleteAll(findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly));
    m_domains.clear();
    m_queued.clear();
    m_queries.clear();
}

} // namespace Org
