#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QQueue>
#include <QString>

namespace Org {

/**
 * The school settings of the signed-in user's organisation: the school's own
 * domain name, per query flag.
 *
 * getUidDomainName() gives the domain known now, and empty when it isn't
 * known; then it asks the server, whose answer arrives as
 * signalGetUidDomainNameFinished on a later turn of the event loop, never
 * inside the call. An answer with errorNo 1 is a success. Any answer that
 * carries a non-empty domain makes it known for its uid and flag before the
 * signal goes out, so a receiver that asks again gets it.
 *
 * Host side (the server):
 *   putDomain(uid, flag, domain)      known now, without a query
 *   queueAnswer(uid, flag, domain, delayMs)
 *                                     the next query of uid and flag is
 *                                     answered with success (errorNo 1)
 *   queueError(uid, flag, networkError, errorNo, errorString, delayMs, domain)
 *                                     the next query is answered with this
 *                                     error (and a domain, empty by default)
 *   answer(uid, url, flag, networkError, errorNo, errorString, delayMs)
 *                                     an answer now, unasked: late, for another
 *                                     flag, or anything a server might send
 *   queries()                         the queries asked so far, (uid, flag)
 *   pendingAnswers()                  answers on their way
 *   clear()                           forget everything, drop answers on their way
 * Each queued answer serves one query; a query with none queued stays
 * unanswered, as with a silent server. All on the GUI thread.
 */
class SchoolSettingManager : public QObject
{
    Q_OBJECT
public:
    static SchoolSettingManager* getInstance();

    QString getUidDomainName(quint64 uid, int flag);

    // Host side.
    void putDomain(quint64 uid, int flag, const QString& domain);
    void queueAnswer(quint64 uid, int flag, const QString& domain, int delayMs = 0);
    void queueError(quint64 uid, int flag, int networkError, int errorNo, const QString& errorString,
                    int delayMs = 0, const QString& domain = QString());
    void answer(quint64 uid, const QString& url, int flag, int networkError, int errorNo,
                const QString& errorString, int delayMs = 0);
    QList<QPair<quint64, int>> queries() const { return m_queries; }
    int pendingAnswers() const;
    void clear();

signals:
    void signalGetUidDomainNameFinished(qlonglong uid, QString url, int flag, int networkError, int errorNo,
                                        const QString& errorString);

private:
    struct Answer
    {
        QString url;
        int networkError = 0;
        int errorNo = 1;
        QString errorString;
        int delayMs = 0;
    };
    using Key = QPair<quint64, int>;

    explicit SchoolSettingManager(QObject* parent = nullptr);
    void send(quint64 uid, int flag, const Answer& reply);

    static SchoolSettingManager* m_pInstance;
    QHash<Key, QString> m_domains;
    QHash<Key, QQueue<Answer>> m_queued;
    QList<Key> m_queries;
};

} // namespace Org
