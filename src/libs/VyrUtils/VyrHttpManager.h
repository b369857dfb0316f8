#pragma once

#include "CommonPostParamPod.h"
#include "ResponsePod.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QUrl>

#include <functional>

class BoundedTransfer;
class QNetworkAccessManager;

/**
 * The client's HTTP requests to its servers, on QNetworkAccessManager.
 *
 * Each request runs asynchronously; its callback runs exactly once, on the
 * GUI thread, when the answer, a failure or the timeout ends it, and never
 * when the request's context object (CommonPostParamPod) has been destroyed
 * in the meantime. The callback gets a ResponsePod: networkError 0 and the
 * body when an answer with a 2xx status arrived, else Qt's error number and
 * text (an HTTP error status keeps its body too).
 *
 * Bounds on every request, since answers come from elsewhere:
 * - the body is read as it arrives and capped at MaxBodyBytes (1 MB): a
 *   Content-Length over it, or the byte after it, aborts the transfer at
 *   once, so no more than the cap is ever held;
 * - it asks for "Accept-Encoding: identity", so nothing is inflated; an
 *   answer that is encoded anyway is aborted at its headers;
 * - a redirect is followed only to the scheme, host and port first asked
 *   (five at most); another is refused with InsecureRedirectError;
 * - the request's timeout (CommonPostParamPod, else the default) caps the
 *   whole transfer, and a stall of setStallTimeout() aborts it sooner;
 * - the transfer is aborted as soon as the context object is destroyed;
 * - any status outside 2xx is a failure: a 3xx that was not followed gives
 *   UnknownContentError (299) with the text "HTTP status <n>".
 * Whatever the bounds cut ends with OperationCanceledError (5) and the reason
 * as errorString, and an info line "transfer aborted: <reason> url: <url>".
 *
 * Requests:
 *   requestClusterNoticeDetails(contentId, ...)
 *       POST <base>/im/cluster/notice/details, body {"content_id": "<id>"}
 *       as JSON. The server answers {"error_info": {"errno": 1, "error": ""}}
 *       when the notice exists; any other errno means it is gone.
 *
 * Host side:
 *   setBaseUrl(url)           the server's address, "http://127.0.0.1:8080" for
 *                             example; requests made later go there
 *   baseUrl()                 the address in use ("https://api.vyr.example" until set)
 *   setDefaultTimeout(ms)     the whole transfer, for requests whose options
 *                             give 0 (30000 until set)
 *   setStallTimeout(ms)       a transfer that receives nothing this long is
 *                             aborted (10000 until set; 0 turns it off)
 *   pendingRequestCount()     requests sent and not yet ended
 *   abortAll()                ends every pending request as cancelled; their
 *                             callbacks run with the error
 *   lastResponse()            the pod of the request that ended last, also
 *                             when its callback was skipped; null before any
 * The path of each request is a public constant, so a host's test server can
 * route it.
 */
class VyrHttpManager : public QObject
{
    Q_OBJECT
public:
    using Callback = std::function<void(QSharedPointer<ResponsePod>)>;

    static const QString ClusterNoticeDetailsPath; // "/im/cluster/notice/details"
    static constexpr qint64 MaxBodyBytes = 1024 * 1024;

    static void requestClusterNoticeDetails(const QString& contentId, Callback callback,
                                            QSharedPointer<CommonPostParamPod> param);

    static void setBaseUrl(const QUrl& url);
    static QUrl baseUrl();
    static void setDefaultTimeout(int ms);
    static void setStallTimeout(int ms);
    static int pendingRequestCount();
    static void abortAll();
    static QSharedPointer<ResponsePod> lastResponse();

private:
    explicit VyrHttpManager(QObject* parent = nullptr);
    static VyrHttpManager* instance();

    void postJson(const QString& path, const QByteArray& body, Callback callback,
                  QSharedPointer<CommonPostParamPod> param);
    void finish(BoundedTransfer* transfer, const Callback& callback, const QSharedPointer<CommonPostParamPod>& param);

    static VyrHttpManager* m_pInstance;
    QNetworkAccessManager* m_network = nullptr;
    QUrl m_baseUrl = QUrl(QStringLiteral("https://api.vyr.example"));
    int m_defaultTimeout = 30000;
    int m_stallTimeout = 10000;
    QSharedPointer<ResponsePod> m_lastResponse;
};
