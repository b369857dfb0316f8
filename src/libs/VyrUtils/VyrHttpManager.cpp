#include "VyrHttpManager.h"

#include "BoundedTransfer_p.h"

#include <QCoreApplication>
#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>

const QString VyrHttpManager::ClusterNoticeDetailsPath = QStringLiteral("/im/cluster/notice/details");

VyrHttpManager* VyrHttpManager::m_pInstance = nullptr;

VyrHttpManager::VyrHttpManager(QObject* parent)
    : QObject(parent)
    , m_network(new QNetworkAccessManager(this))
{
}

VyrHttpManager* VyrHttpManager::instance()
{
    if (!m_pInstance) {
        m_pInstance = new VyrHttpManager();
        // Replies and callbacks belong to the GUI thread, whoever asked first.
        if (QCoreApplication::instance())
            m_pInstance->moveToThread(QCoreApplication::instance()->thread());
    }
    return m_pInstance;
}

void VyrHttpManager::requestClusterNoticeDetails(const QString& contentId, Callback callback,
                                                 QSharedPointer<CommonPostParamPod> param)
{
    QJsonObject body;
    body.insert(QStringLiteral("content_id"), contentId);
    instance()->postJson(ClusterNoticeDetailsPath, QJsonDocument(body).toJson(QJsonDocument::Compact),
                         std::move(callback), std::move(param));
}

void VyrHttpManager::setBaseUrl(const QUrl& url)
{
    instance()->m_baseUrl = url;
}

QUrl VyrHttpManager::baseUrl()
{
    return instance()->m_baseUrl;
}

void VyrHttpManager::setDefaultTimeout(int ms)
{
    instance()->m_defaultTimeout = ms;
}

void VyrHttpManager::setStallTimeout(int ms)
{
    instance()->m_stallTimeout = ms;
}

int VyrHttpManager::pendingRequestCount()
{
    return instance()->m_network->findChildren<QNetworkReply*>(QString(), Qt::FindDirectChildrenOnly).size();
}

void VyrHttpManager::abortAll()
{
    const auto replies = instance()->m_network->findChildren<QNetworkReply*>(QString(), Qt::FindDirectChildrenOnly);
    for (QNetworkReply* reply : replies) {
        if (auto* transfer = reply->findChild<BoundedTransfer*>(QString(), Qt::FindDirectChildrenOnly))
            transfer->abort(QNetworkReply::OperationCanceledError, QStringLiteral("aborted by the host"));
    }
}

QSharedPointer<ResponsePod> VyrHttpManager::lastResponse()
{
    return instance()->m_lastResponse;
}

void VyrHttpManager::postJson(const QString& path, const QByteArray& body, Callback callback,
                              QSharedPointer<CommonPostParamPod> param)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, path, body, callback, param]() { postJson(path, body, callback, param); },
            Qt::QueuedConnection);
        return;
    }
    if (!param)
        param = QSharedPointer<CommonPostParamPod>::create(0, nullptr, false, false);

    // Nobody is left to take the answer.
    if (param->hasContext() && param->context().isNull())
        return;

    QUrl url = m_baseUrl;
    url.setPath(url.path() + path);
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    BoundedTransfer::prepare(request, m_stallTimeout);
    if (param->logRequest())
        qInfo() << "http post" << url.toString() << "body size:" << body.size();

    QNetworkReply* reply = m_network->post(request, body);
    const int timeout = param->timeoutMs() > 0 ? int(param->timeoutMs()) : m_defaultTimeout;
    auto* transfer = new BoundedTransfer(reply, MaxBodyBytes, timeout);
    // The transfer ends with its context, not only the callback.
    transfer->setOwner(param->context());
    // ended() comes once, also after an abort, so the callback runs once.
    connect(transfer, &BoundedTransfer::ended, this,
            [this, transfer, callback, param]() { finish(transfer, callback, param); });
}

void VyrHttpManager::finish(BoundedTransfer* transfer, const Callback& callback,
                            const QSharedPointer<CommonPostParamPod>& param)
{
    QNetworkReply* reply = transfer->reply();
    reply->deleteLater();
    // Keep the reply out of pendingRequestCount() from now on.
    reply->setParent(nullptr);

    auto pod = QSharedPointer<ResponsePod>::create();
    pod->url = reply->request().url();
    pod->networkError = transfer->error();
    pod->errorString = transfer->errorString();
    pod->httpStatus = transfer->httpStatus();
    pod->body = transfer->body();
    pod->bytesReceived = transfer->bytesReceived();
    m_lastResponse = pod;

    if (param->logResponse())
        qInfo() << "http answer" << pod->url.toString() << "status:" << pod->httpStatus
                << "error:" << pod->networkError << "body size:" << pod->body.size();

    // The context is gone: whoever asked can no longer take the answer.
    if (transfer->ownerGone() || (param->hasContext() && param->context().isNull()))
        return;
    if (callback)
        callback(pod);
}
