#include "NoticeEngine.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <memory>

namespace VyrEngine {

NoticeEngine* NoticeEngine::m_pInstance = nullptr;

NoticeEngine::NoticeEngine(QObject* parent)
    : QObject(parent)
    , m_engineThread(QThread::currentThread())
{
    qRegisterMetaType<FriendRequestInfo>("VyrEngine::FriendRequestInfo");
    qRegisterMetaType<QVector<FriendRequestInfo>>("QVector<VyrEngine::FriendRequestInfo>");
}

NoticeEngine* NoticeEngine::instance()
{
    // The page query reaches the engine from worker threads: create it once, safely.
    static std::once_flag once;
    std::call_once(once, []() { m_pInstance = new NoticeEngine(); });
    return m_pInstance;
}

bool NoticeEngine::comesAfterAnchor(const FriendRequestInfo& info, quint64 date, int sequenceId)
{
    if (sequenceId < 0)
        return info.date() <= date;
    return info.date() < date || (info.date() == date && info.sequenceId() < sequenceId);
}

QVector<FriendRequestInfo> NoticeEngine::sortedStoreLocked() const
{
    QVector<FriendRequestInfo> sorted = m_store;
    std::stable_sort(sorted.begin(), sorted.end(), [](const FriendRequestInfo& a, const FriendRequestInfo& b) {
        if (a.date() != b.date())
            return a.date() > b.date();
        return a.sequenceId() > b.sequenceId();
    });
    return sorted;
}

void NoticeEngine::storeLocked(const FriendRequestInfo& info)
{
    for (FriendRequestInfo& stored : m_store) {
        if (stored.sequenceId() == info.sequenceId()) {
            stored = info;
            return;
        }
    }
    m_store.append(info);
}

bool NoticeEngine::friendRequests(QVector<FriendRequestInfo>& out, int count, quint64 date, int sequenceId)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_queries.append(Query{count, date, sequenceId, QThread::currentThread() == m_engineThread});
    ++m_enteredCalls;
    m_callsChanged.notify_all();
    m_callsChanged.wait(lock, [this]() { return !m_held; });
    if (m_delayMs > 0) {
        const int delay = m_delayMs;
        lock.unlock();
        QThread::msleep(static_cast<unsigned long>(delay));
        lock.lock();
    }
    if (!m_scripted.isEmpty()) {
        const ScriptedAnswer answer = m_scripted.takeFirst();
        out = answer.records;
        return answer.result;
    }
    if (m_fail)
        return false;
    for (const FriendRequestInfo& info : sortedStoreLocked()) {
        if (out.size() >= count)
            break;
        if (comesAfterAnchor(info, date, sequenceId))
            out.append(info);
    }
    return !out.isEmpty();
}

bool NoticeEngine::isUiDataReady()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_uiDataReady;
}

int NoticeEngine::answerFriendRequest(FriendRequestInfo& info)
{
    int result = 0;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_answers.append(info);
        result = m_answerResult;
        if (result == 0)
            storeLocked(info);
    }
    if (result == 0) {
        const FriendRequestInfo echoed = info;
        QMetaObject::invokeMethod(
            this, [this, echoed]() { emit signalContactsAddConfirmNotice(echoed); }, Qt::QueuedConnection);
    }
    return result;
}

int NoticeEngine::markFriendRequestOverdue(FriendRequestInfo& info)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_overdueMarks.append(info);
        storeLocked(info);
    }
    const FriendRequestInfo echoed = info;
    QMetaObject::invokeMethod(
        this, [this, echoed]() { emit signalSetFriendRequestOverdue(echoed); }, Qt::QueuedConnection);
    return 0;
}

int NoticeEngine::deleteFriendRequest(quint64 id, bool isSource)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_deletes.append(qMakePair(id, isSource));
        m_store.erase(std::remove_if(m_store.begin(), m_store.end(),
                                     [id](const FriendRequestInfo& info) {
                                         return info.sourceId() == id || info.targetId() == id;
                                     }),
                      m_store.end());
    }
    QMetaObject::invokeMethod(
        this, [this, id]() { emit signalDeleteOneAddNotice(id); }, Qt::QueuedConnection);
    return 0;
}

void NoticeEngine::touchFriendRequests()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    ++m_touchCount;
    for (FriendRequestInfo& info : m_store)
        info.setUnread(false);
}

void NoticeEngine::putFriendRequest(const FriendRequestInfo& info)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    storeLocked(info);
}

void NoticeEngine::removeFriendRequest(int sequenceId)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_store.erase(std::remove_if(m_store.begin(), m_store.end(),
                                 [sequenceId](const FriendRequestInfo& info) {
                                     return info.sequenceId() == sequenceId;
                                 }),
                  m_store.end());
}

QVector<FriendRequestInfo> NoticeEngine::storedFriendRequests() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return sortedStoreLocked();
}

void NoticeEngine::setUiDataReady(bool ready)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_uiDataReady = ready;
    }
    if (ready)
        emit signalInitUiData();
}

void NoticeEngine::emitRecordSignal(RecordSignal kind, const FriendRequestInfo& info)
{
    switch (kind) {
    case ContactorAdd: emit signalContactorAddNotice(info); break;
    case ContactorAddReply: emit signalContactorAddReplyNotice(info); break;
    case ContactsAddConfirm: emit signalContactsAddConfirmNotice(info); break;
    case FriendRequestOverdue: emit signalSetFriendRequestOverdue(info); break;
    }
}

// One thread of the engine's own emits what the host asks for, in order. It
// lives as long as the engine, that is until the process ends.
void NoticeEngine::runOnEmitThread(std::function<void()> emission)
{
    std::lock_guard<std::mutex> lock(m_emitMutex);
    if (!m_emitThread.joinable())
        m_emitThread = std::thread([this]() { emitLoop(); });
    m_emitQueue.push_back(std::move(emission));
    m_emitChanged.notify_all();
}

void NoticeEngine::emitLoop()
{
    std::unique_lock<std::mutex> lock(m_emitMutex);
    for (;;) {
        m_emitChanged.wait(lock, [this]() { return !m_emitQueue.empty(); });
        std::function<void()> emission = std::move(m_emitQueue.front());
        m_emitQueue.pop_front();
        m_emitting = true;
        lock.unlock();
        emission();
        lock.lock();
        m_emitting = false;
        m_emitChanged.notify_all();
    }
}

void NoticeEngine::waitForThreadEmissions()
{
    std::unique_lock<std::mutex> lock(m_emitMutex);
    m_emitChanged.wait(lock, [this]() { return m_emitQueue.empty() && !m_emitting; });
}

void NoticeEngine::emitRecordSignalFromThread(RecordSignal kind, const FriendRequestInfo& info)
{
    runOnEmitThread([this, kind, info]() { emitRecordSignal(kind, info); });
}

void NoticeEngine::emitDeleteSignal(quint64 id)
{
    emit signalDeleteOneAddNotice(id);
}

void NoticeEngine::emitDeleteSignalFromThread(quint64 id)
{
    runOnEmitThread([this, id]() { emit signalDeleteOneAddNotice(id); });
}

void NoticeEngine::emitErrorNotice(const QString& text)
{
    emit signalFriendRequestErrorNotice(text);
}

void NoticeEngine::setFriendRequestsDelay(int ms)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_delayMs = ms;
}

void NoticeEngine::setFriendRequestsFail(bool fail)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_fail = fail;
}

void NoticeEngine::setFriendRequestsHeld(bool held)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_held = held;
    m_callsChanged.notify_all();
}

bool NoticeEngine::waitForFriendRequestsCalls(int calls, int timeoutMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_callsChanged.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                                   [this, calls]() { return m_enteredCalls >= calls; });
}

void NoticeEngine::queueFriendRequestsAnswer(const QVector<FriendRequestInfo>& records, bool result)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_scripted.append(ScriptedAnswer{records, result});
}

QList<NoticeEngine::Query> NoticeEngine::friendRequestQueries() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_queries;
}

void NoticeEngine::setAnswerResult(int result)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_answerResult = result;
}

QList<FriendRequestInfo> NoticeEngine::answers() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_answers;
}

QList<FriendRequestInfo> NoticeEngine::overdueMarks() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_overdueMarks;
}

QList<QPair<quint64, bool>> NoticeEngine::deletes() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_deletes;
}

int NoticeEngine::touchCount() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_touchCount;
}

QStringList NoticeEngine::connectedSignals() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_connectedSignals;
}

void NoticeEngine::connectNotify(const QMetaMethod& signal)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_connectedSignals.append(QString::fromLatin1(signal.name()));
}

void NoticeEngine::clear()
{
    waitForThreadEmissions();
    std::lock_guard<std::mutex> lock(m_mutex);
    m_store.clear();
    m_scripted.clear();
    m_queries.clear();
    m_answers.clear();
    m_overdueMarks.clear();
    m_deletes.clear();
    m_connectedSignals.clear();
    m_enteredCalls = 0;
    m_delayMs = 0;
    m_answerResult = 0;
    m_touchCount = 0;
    m_fail = false;
    m_held = false;
    m_uiDataReady = false;
    m_callsChanged.notify_all();
}

} // namespace VyrEngine
