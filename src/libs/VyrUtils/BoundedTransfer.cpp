#include "BoundedTransfer_p.h"

#include <QDebug>
#include <QNetworkRequest>
#include <QTimer>

namespace {
// Qt's own buffer in front of the body; it reads the socket no faster.
constexpr qint64 kReadBufferSize = 64 * 1024;
constexpr int kMaxRedirects = 5;
// Addresses in log lines come from servers; a line stays short.
constexpr int kLoggedUrlLength = 200;

int defaultPort(const QUrl& url)
{
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

bool sameOrigin(const QUrl& a, const QUrl& b)
{
    return a.scheme() == b.scheme() && a.host() == b.host() && defaultPort(a) == defaultPort(b);
}

QString shown(const QUrl& url)
{
    return url.toDisplayString().left(kLoggedUrlLength);
}
} // namespace

void BoundedTransfer::prepare(QNetworkRequest& request, int stallMs)
{
    // Qt inflates only when it chose the encoding itself; asking for none keeps a bomb raw.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(kMaxRedirects);
    if (stallMs > 0)
        request.setTransferTimeout(stallMs);
}

BoundedTransfer::BoundedTransfer(QNetworkReply* reply, qint64 maxBytes, int totalMs)
    : QObject(reply)
    , m_reply(reply)
    , m_maxBytes(maxBytes)
    , m_totalMs(totalMs)
{
    reply->setReadBufferSize(kReadBufferSize);
    // Once more after Qt has started the request: one with a body starts on a
    // later turn and misses the first setting, so Qt's network thread would
    // read the socket unbounded.
    QMetaObject::invokeMethod(
        this, [this]() { m_reply->setReadBufferSize(kReadBufferSize); }, Qt::QueuedConnection);
    connect(reply, &QNetworkReply::metaDataChanged, this, &BoundedTransfer::onMetaDataChanged);
    connect(reply, &QNetworkReply::readyRead, this, &BoundedTransfer::onReadyRead);
    connect(reply, &QNetworkReply::redirected, this, &BoundedTransfer::onRedirected);
    connect(reply, &QNetworkReply::finished, this, &BoundedTransfer::onFinished);
    if (totalMs > 0) {
        m_totalTimer = new QTimer(this);
        m_totalTimer->setSingleShot(true);
        connect(m_totalTimer, &QTimer::timeout, this, [this]() {
            abort(QNetworkReply::OperationCanceledError, QStringLiteral("took longer than %1 ms").arg(m_totalMs));
        });
        m_totalTimer->start(totalMs);
    }
}

void BoundedTransfer::setOwner(QObject* owner)
{
    if (owner)
        connect(owner, &QObject::destroyed, this, &BoundedTransfer::onOwnerDestroyed);
}

bool BoundedTransfer::ownerGone() const
{
    return m_ownerGone;
}

void BoundedTransfer::abort(QNetworkReply::NetworkError code, const QString& reason)
{
    if (!m_ended && !m_cut)
        cut(code, reason);
}

void BoundedTransfer::cut(QNetworkReply::NetworkError code, const QString& reason)
{
    m_cut = true;
    m_error = code;
    m_errorString = reason;
    m_body.clear();
    logAborted();
    // finished() follows at once, inside abort().
    if (!m_reply->isFinished())
        m_reply->abort();
}

QNetworkReply* BoundedTransfer::reply() const
{
    return m_reply;
}

QByteArray BoundedTransfer::body() const
{
    return m_body;
}

qint64 BoundedTransfer::bytesReceived() const
{
    return m_bytesReceived;
}

int BoundedTransfer::error() const
{
    return m_error;
}

QString BoundedTransfer::errorString() const
{
    return m_errorString;
}

int BoundedTransfer::httpStatus() const
{
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

void BoundedTransfer::onMetaDataChanged()
{
    if (m_ended || m_cut)
        return;

    const QByteArray encoding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
    if (!encoding.isEmpty() && encoding != "identity") {
        abort(QNetworkReply::OperationCanceledError,
              QStringLiteral("content encoding not asked for: %1").arg(QString::fromLatin1(encoding.left(40))));
        return;
    }
    bool known = false;
    const qint64 length = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(&known);
    if (known && length > m_maxBytes)
        abort(QNetworkReply::OperationCanceledError,
              QStringLiteral("answer of %1 bytes over the limit of %2").arg(length).arg(m_maxBytes));
}

void BoundedTransfer::onReadyRead()
{
    if (!m_ended && !m_cut)
        readAvailable();
}

// Takes what Qt holds, one byte beyond the limit at most.
void BoundedTransfer::readAvailable()
{
    while (!m_cut && m_reply->bytesAvailable() > 0) {
        const QByteArray bytes = m_reply->read(m_maxBytes - m_body.size() + 1);
        if (bytes.isEmpty())
            return;
        m_bytesReceived += bytes.size();
        m_body += bytes;
        if (m_body.size() > m_maxBytes)
            cut(QNetworkReply::OperationCanceledError, QStringLiteral("answer over the limit of %1 bytes").arg(m_maxBytes));
    }
}

void BoundedTransfer::onRedirected(const QUrl& url)
{
    if (m_ended || m_cut)
        return;
    // Against the address first asked, so a chain cannot wander off step by step.
    if (sameOrigin(m_reply->request().url(), url)) {
        emit m_reply->redirectAllowed();
        return;
    }
    abort(QNetworkReply::InsecureRedirectError, QStringLiteral("redirect to another origin refused: %1").arg(shown(url)));
}

void BoundedTransfer::onFinished()
{
    if (m_ended)
        return;
    if (!m_cut)
        readAvailable();
    m_ended = true;
    if (m_totalTimer)
        m_totalTimer->stop();
    if (!m_cut) {
        const QNetworkReply::NetworkError error = m_reply->error();
        const int status = httpStatus();
        if (error == QNetworkReply::OperationCanceledError && m_reply->request().transferTimeout() > 0) {
            // Only Qt's transfer timeout cancels a reply behind this object's back.
            m_error = error;
            m_errorString = QStringLiteral("no data for %1 ms").arg(m_reply->request().transferTimeout());
            logAborted();
        } else if (error != QNetworkReply::NoError) {
            m_error = error;
            m_errorString = m_reply->errorString();
        } else if (status < 200 || status > 299) {
            // Qt lets a redirect it did not follow through as a success.
            m_error = QNetworkReply::UnknownContentError;
            m_errorString = QStringLiteral("HTTP status %1").arg(status);
        }
    }
    emit ended();
}

void BoundedTransfer::logAborted() const
{
    qInfo().noquote() << "transfer aborted:" << m_errorString << "url:" << shown(m_reply->request().url());
}

void BoundedTransfer::onOwnerDestroyed()
{
    m_ownerGone = true;
    abort(QNetworkReply::OperationCanceledError, QStringLiteral("its owner is gone"));
}
