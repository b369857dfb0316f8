#pragma once

#include "CommonPostParamPod.h"
#include "ResponsePod.h"

#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QUrl>

#include <functional>

class QNetworkAccessManager;
class QNetworkReply;

// The client's HTTP requests to its servers, on QNetworkAccessManager.
//
// Each request runs asynchronously; its callback runs exactly once, on the
// GUI thread, when the answer, a failure or the timeout ends it, and never
// when the request's context object (CommonPostParamPod) has been destroyed
// in the meantime. The callback gets a ResponsePod: networkError 0 and the
// body when an answer with a 2xx status arrived, else Qt's error number and
// text (an HTTP error status keeps its body too).
//
// Requests:
//   requestClusterNoticeDetails(contentId, ...)
//       POST <base>/im/cluster/notice/details, body {"content_id": "<id>"}
//       as JSON. The server answers {"error_info": {"errno": 1, "error": ""}}
//       when the notice exists; any other errno means it is gone.
//
// Host side:
//   setBaseUrl(url)           the server's address, "http://127.0.0.1:8080" for
//                             example; requests made later go there
//   baseUrl()                 the address in use ("https://api.vyr.example" until set)
//   setDefaultTimeout(ms)     for requests whose options give 0 (30000 until set)
//   pendingRequestCount()     requests sent and not yet ended
//   abortAll()                ends every pending request as cancelled; their
//                             callbacks run (on a later turn) with the error
// The path of each request is a public constant, so a host's test server can
// route it.
class VyrHttpManager : public QObject
{
    Q_OBJECT
public:
    using Callback = std::function<void(QSharedPointer<ResponsePod>)>;

    static const QString ClusterNoticeDetailsPath; // "/im/cluster/notice/details"

    static void requestClusterNoticeDetails(const QString& contentId, Callback callback,
                                            QSharedPointer<CommonPostParamPod> param);

    static void setBaseUrl(const QUrl& url);
    static QUrl baseUrl();
    static void setDefaultTimeout(int ms);
    static int pendingRequestCount();
    static void abortAll();

private:
    explicit VyrHttpManager(QObject* parent = nullptr);
    static VyrHttpManager* instance();

    void postJson(const QString& path, const QByteArray& body, Callback callback,
                  QSharedPointer<CommonPostParamPod> param);
    void finish(QNetworkReply* reply, const Callback& callback, const QSharedPointer<CommonPostParamPod>& param);

    static VyrHttpManager* m_pInstance;
    QNetworkAccessManager* m_network = nullptr;
    QUrl m_baseUrl = QUrl(QStringLiteral("https://api.vyr.example"));
    int m_defaultTimeout = 30000;
};
