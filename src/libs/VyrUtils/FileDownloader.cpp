#include "FileDownloader.h"

#include "BoundedTransfer_p.h"

#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

namespace {
// Host-side defaults for every downloader; GUI thread only.
int s_defaultTimeout = 30000;
int s_stallTimeout = 10000;
} // namespace

FileDownloader::FileDownloader(QObject* parent, QSet<QString> acceptedSuffixes)
    : QObject(parent)
    , m_manager(new QNetworkAccessManager(this))
    , m_acceptedSuffixes(std::move(acceptedSuffixes))
{
}

FileDownloader::~FileDownloader()
{
    dropTransfer();
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
    dropTransfer();
    m_data.clear();
    m_bytesReceived = 0;
    const QString scheme = m_targetUrl.scheme();
    // Qt would also read local files, data: addresses and resources.
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
        failLater(QNetworkReply::ProtocolUnknownError,
                  QStringLiteral("not an http address: %1").arg(m_targetUrl.toDisplayString().left(200)));
        return;
    }
    if (!isAccepted(m_targetUrl)) {
        failLater(QNetworkReply::ProtocolInvalidOperationError,
                  QStringLiteral("file type not accepted: %1").arg(m_targetUrl.toString()));
        return;
    }
    QNetworkRequest request(m_targetUrl);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, cacheControl);
    BoundedTransfer::prepare(request, s_stallTimeout);
    m_transfer = new BoundedTransfer(m_manager->get(request), MaxBytes, s_defaultTimeout);
    BoundedTransfer* transfer = m_transfer;
    connect(transfer, &BoundedTransfer::ended, this, [this, transfer]() { onTransferEnded(transfer); });
}

QByteArray FileDownloader::downloadedData() const
{
    return m_data;
}

bool FileDownloader::isRunning() const
{
    return m_transfer != nullptr;
}

void FileDownloader::abort()
{
    if (m_transfer)
        m_transfer->abort(QNetworkReply::OperationCanceledError, QStringLiteral("aborted by the host"));
}

qint64 FileDownloader::bytesReceived() const
{
    return m_transfer ? m_transfer->bytesReceived() : m_bytesReceived;
}

void FileDownloader::setDefaultTimeout(int ms)
{
    s_defaultTimeout = ms;
}

void FileDownloader::setStallTimeout(int ms)
{
    s_stallTimeout = ms;
}

void FileDownloader::onTransferEnded(BoundedTransfer* transfer)
{
    if (transfer != m_transfer)
        return;
    m_transfer = nullptr;
    m_bytesReceived = transfer->bytesReceived();
    transfer->reply()->deleteLater();
    if (transfer->error() != 0) {
        emit error(transfer->error(), transfer->errorString());
        return;
    }
    m_data = transfer->body();
    emit finished();
}

void FileDownloader::dropTransfer()
{
    if (!m_transfer)
        return;
    BoundedTransfer* transfer = m_transfer;
    m_transfer = nullptr;
    transfer->disconnect(this);
    transfer->abort(QNetworkReply::OperationCanceledError, QStringLiteral("dropped by its downloader"));
    transfer->reply()->deleteLater();
}

// Reported on a later turn, as a network failure would be.
void FileDownloader::failLater(int code, const QString& message)
{
    QTimer::singleShot(0, this, [this, code, message]() { emit error(code, message); });
}

bool FileDownloader::isAccepted(const QUrl& url) const
{
    if (m_acceptedSuffixes.isEmpty())
        return true;
    return m_acceptedSuffixes.contains(QFileInfo(url.path()).suffix().toLower());
}
