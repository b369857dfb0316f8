#pragma once

#include "FriendRequestInfo.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QStringList>
#include <QVector>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

class QThread;

namespace VyrEngine {

/**
 * The client's notice engine, as far as friend requests go: an in-memory store
 * of requests that answers pages newest first, the engine's live signals, and
 * the user's answers going out.
 *
 * Order and anchor: records are ordered newest first by date, then by
 * sequenceId. friendRequests(out, count, date, sequenceId) answers at most
 * `count` records that come after the anchor in that order: a date before
 * `date`, or the same date and a sequenceId below `sequenceId`. A negative
 * sequenceId anchors on the date alone and takes that date in. It answers
 * false when it has nothing to deliver. It is safe to call from any thread
 * and blocks while the host holds it or for the delay the host set.
 *
 * Going out: answerFriendRequest, markFriendRequestOverdue and
 * deleteFriendRequest are recorded, applied to the store and echoed on a later
 * turn of the engine thread's event loop by signalContactsAddConfirmNotice,
 * signalSetFriendRequestOverdue and signalDeleteOneAddNotice, as the server's
 * confirmation would (an answer with a non-zero result is recorded only).
 * touchFriendRequests marks every stored record read and is counted.
 *
 * Host side:
 *   putFriendRequest(info)            store a record (same sequenceId replaces)
 *   removeFriendRequest(sequenceId)   forget a record
 *   storedFriendRequests()            the store, newest first
 *   setUiDataReady(ready)             what isUiDataReady() answers; true also emits signalInitUiData
 *   emitRecordSignal(kind, info)      emit one of the four record signals on the calling thread
 *   emitRecordSignalFromThread(kind, info)
 *                                     the same from the engine's own emitter thread, later;
 *                                     emissions asked for this way keep their order
 *   emitDeleteSignal(id), emitDeleteSignalFromThread(id)
 *                                     signalDeleteOneAddNotice, on this or the emitter thread
 *   waitForThreadEmissions()          returns once the emitter thread has emitted all it was given
 *   emitErrorNotice(text)             signalFriendRequestErrorNotice
 *   setFriendRequestsDelay(ms)        each friendRequests call blocks this long first
 *   setFriendRequestsFail(fail)       friendRequests answers false with nothing
 *   setFriendRequestsHeld(held)       friendRequests calls block until released
 *   waitForFriendRequestsCalls(n, ms) true once n calls have entered (held ones included)
 *   queueFriendRequestsAnswer(records, result)
 *                                     the next call answers exactly this, whatever the store
 *   friendRequestQueries()            every call's count, date, sequenceId and whether it ran
 *                                     on the engine's own (GUI) thread
 *   setAnswerResult(result)           what answerFriendRequest returns (0 by default)
 *   answers(), overdueMarks(), deletes(), touchCount()
 *                                     the recorded calls going out
 *   connectedSignals()                the engine's signals in the order receivers connected to them
 *   clear()                           all of the above back to the start
 */
class NoticeEngine : public QObject
{
    Q_OBJECT
public:
    enum RecordSignal
    {
        ContactorAdd,
        ContactorAddReply,
        ContactsAddConfirm,
        FriendRequestOverdue,
    };

    struct Query
    {
        int count = 0;
        quint64 date = 0;
        int sequenceId = 0;
        bool onEngineThread = false;
    };

    static NoticeEngine* instance();

    virtual bool friendRequests(QVector<FriendRequestInfo>& out, int count, quint64 date, int sequenceId);
    virtual bool isUiDataReady();
    int answerFriendRequest(FriendRequestInfo& info);
    int markFriendRequestOverdue(FriendRequestInfo& info);
    int deleteFriendRequest(quint64 id, bool isSource);
    void touchFriendRequests();

    // Host side: the store and readiness.
    void putFriendRequest(const FriendRequestInfo& info);
    void removeFriendRequest(int sequenceId);
    QVector<FriendRequestInfo> storedFriendRequests() const;
    void setUiDataReady(bool ready);

    // Host side: live signals.
    void emitRecordSignal(RecordSignal kind, const FriendRequestInfo& info);
    void emitRecordSignalFromThread(RecordSignal kind, const FriendRequestInfo& info);
    void emitDeleteSignal(quint64 id);
    void emitDeleteSignalFromThread(quint64 id);
    void waitForThreadEmissions();
    void emitErrorNotice(const QString& text);

    // Host side: how the query behaves.
    void setFriendRequestsDelay(int ms);
    void setFriendRequestsFail(bool fail);
    void setFriendRequestsHeld(bool held);
    bool waitForFriendRequestsCalls(int calls, int timeoutMs);
    void queueFriendRequestsAnswer(const QVector<FriendRequestInfo>& records, bool result = true);
    QList<Query> friendRequestQueries() const;

    // Host side: what went out.
    void setAnswerResult(int result);
    QList<FriendRequestInfo> answers() const;
    QList<FriendRequestInfo> overdueMarks() const;
    QList<QPair<quint64, bool>> deletes() const;
    int touchCount() const;
    QStringList connectedSignals() const;
    void clear();

signals:
    void signalContactsAddConfirmNotice(VyrEngine::FriendRequestInfo info);
    void signalContactorAddReplyNotice(VyrEngine::FriendRequestInfo info);
    void signalContactorAddNotice(VyrEngine::FriendRequestInfo info);
    void signalDeleteOneAddNotice(quint64 id);
    void signalSetFriendRequestOverdue(VyrEngine::FriendRequestInfo info);
    void signalInitUiData();
    void signalFriendRequestErrorNotice(const QString& text);

protected:
    void connectNotify(const QMetaMethod& signal) override;

private:
    explicit NoticeEngine(QObject* parent = nullptr);

    struct ScriptedAnswer
    {
        QVector<FriendRequestInfo> records;
        bool result = true;
    };

    static bool comesAfterAnchor(const FriendRequestInfo& info, quint64 date, int sequenceId);
    QVector<FriendRequestInfo> sortedStoreLocked() const;
    void storeLocked(const FriendRequestInfo& info);
    void runOnEmitThread(std::function<void()> emission);
    void emitLoop();

    static NoticeEngine* m_pInstance;
    QThread* const m_engineThread;

    /**
     * The emitter thread and its queue, synchronised with the standard
     * library so that ThreadSanitizer sees every hand-over.
     */
    std::mutex m_emitMutex;
    std::condition_variable m_emitChanged;
    std::deque<std::function<void()>> m_emitQueue;
    std::thread m_emitThread;
    bool m_emitting = false;

    mutable std::mutex m_mutex;
    std::condition_variable m_callsChanged;
    QVector<FriendRequestInfo> m_store;
    QList<ScriptedAnswer> m_scripted;
    QList<Query> m_queries;
    QList<FriendRequestInfo> m_answers;
    QList<FriendRequestInfo> m_overdueMarks;
    QList<QPair<quint64, bool>> m_deletes;
    QStringList m_connectedSignals;
    int m_enteredCalls = 0;
    int m_delayMs = 0;
    int m_answerResult = 0;
    int m_touchCount = 0;
    bool m_fail = false;
    bool m_held = false;
    bool m_uiDataReady = false;
};

} // namespace VyrEngine
