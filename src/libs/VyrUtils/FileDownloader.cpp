#include "FileDownloader.h"

#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

FileDownloader::FileDownloader(QObject* parent, QSet<QString> acceptedSuffixes)
    : QObject(parent)
    , m_manager(new QNetworkAccessManager(this))
    , m_acceptedSuffixes(std::move(acceptedSuffixes))
{
}

FileDownloader::~FileDownloader()
{
    dropReply();
}

void FileDownloader::setTargetUrl(const QUrl& url)
{
    m_targetUrl = url;
}

QUrl FileDownloader::targetUrl() const
{
    return m_targetUrl;
}

void FileDownloader::download(QNetworkRequest::CacheLoadControl cacheControl)
{
    dropReply();
    m_data.clear();
    if (!isAccepted(m_targetUrl)) {
        // Reported on a later turn, as a network failure would be.
        const QString message = QStringLiteral("file type not accepted: %1").arg(m_targetUrl.toString());
        QTimer::singleShot(0, this, [this, message]() {
            emit error(QNetworkReply::ProtocolInvalidOperationError, message);
        });
        return;
    }
    QNetworkRequest request(m_targetUrl);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, cacheControl);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    m_reply = m_manager->get(request);
    QNetworkReply* reply = m_reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply]() { onReplyFinished(reply); });
}

QByteArray FileDownloader::downloadedData() const
{
    return m_data;
}

bool FileDownloader::isRunning() const
{
    return m_reply != nullptr;
}

void FileDownloader::abort()
{
    if (m_reply)
        m_reply->abort();
}

void FileDownloader::onReplyFinished(QNetworkReply* reply)
{
    if (reply != m_reply)
        return;
    m_reply = nullptr;
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError) {
        emit error(reply->error(), reply->errorString());
        return;
    }
    m_data = reply->readAll();
    emit finished();
}

void FileDownloader::dropReply()
{
    if (!m_reply)
        return;
    QNetworkReply* reply = m_reply;
    m_reply = nullptr;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

bool FileDownloader::isAccepted(const QUrl& url) const
{
    if (m_acceptedSuffixes.isEmpty())
        return true;
    return m_acceptedSuffixes.contains(QFileInfo(url.path()).suffix().toLower());
}
