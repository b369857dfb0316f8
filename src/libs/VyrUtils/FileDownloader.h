#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>

class BoundedTransfer;
class QNetworkAccessManager;

/**
 * Fetches one file over HTTP(S) with its own QNetworkAccessManager and keeps
 * the bytes in memory.
 *
 * setTargetUrl() then download(); the answer arrives on a later turn of the
 * event loop as finished() (downloadedData() then holds the body) or as
 * error(code, text), never both. `code` is the QNetworkReply::NetworkError
 * value (203 for a 404, 1 for a refused connection, 5 after abort()). A new
 * download() drops the one still running, which then reports nothing. The
 * transfer belongs to the downloader: deleting it, or its parent, ends the
 * request and nothing is delivered.
 *
 * Bounds, since files come from elsewhere:
 * - only http and https addresses are fetched; another scheme (file:, data:,
 *   qrc:) fails at download() with ProtocolUnknownError (301), asking nothing;
 * - the body is read as it arrives and capped at MaxBytes (8 MB): a
 *   Content-Length over it, or the byte after it, aborts the transfer at once;
 * - it asks for "Accept-Encoding: identity", so nothing is inflated; an
 *   answer that is encoded anyway is aborted at its headers;
 * - a redirect is followed only to the scheme, host and port first asked
 *   (five at most); another fails with InsecureRedirectError (11);
 * - the whole transfer is capped by setDefaultTimeout(), and a stall of
 *   setStallTimeout() aborts it sooner;
 * - any status outside 2xx is an error: a 3xx that was not followed gives
 *   UnknownContentError (299).
 * Whatever the bounds cut ends in error(5, reason) and an info line
 * "transfer aborted: <reason> url: <url>".
 *
 * Host side: point the address at a server you run (tests and the demo use
 * VyrDev::LocalHttpServer on 127.0.0.1); isRunning(), targetUrl(),
 * bytesReceived() and abort() watch or cut a transfer;
 * setDefaultTimeout(ms) (30000 until set) and setStallTimeout(ms) (10000
 * until set, 0 turns it off) apply to every downloader's next download().
 */
class FileDownloader : public QObject
{
    Q_OBJECT
public:
    static constexpr qint64 MaxBytes = 8 * 1024 * 1024;

    /**
     * @p acceptedSuffixes: lower-case file suffixes ("png") that may be fetched;
     * empty accepts any address. Another suffix fails at download() with an
     * error of code QNetworkReply::ProtocolInvalidOperationError (302).
     */
    FileDownloader(QObject* parent, QSet<QString> acceptedSuffixes);
    ~FileDownloader() override;

    void setTargetUrl(const QUrl& url);
    QUrl targetUrl() const;
    void download(QNetworkRequest::CacheLoadControl cacheControl);
    /** The body of the last finished download; empty before and after an error. */
    QByteArray downloadedData() const;

    // Host side.
    bool isRunning() const;
    void abort();
    /** Body bytes taken off the connection by the running or last download. */
    qint64 bytesReceived() const;
    static void setDefaultTimeout(int ms);
    static void setStallTimeout(int ms);

signals:
    void finished();
    void error(int code, const QString& message);

private:
    void onTransferEnded(BoundedTransfer* transfer);
    void dropTransfer();
    void failLater(int code, const QString& message);
    bool isAccepted(const QUrl& url) const;

    QNetworkAccessManager* m_manager = nullptr;
    BoundedTransfer* m_transfer = nullptr;
    QSet<QString> m_acceptedSuffixes;
    QUrl m_targetUrl;
    QByteArray m_data;
    qint64 m_bytesReceived = 0;
};
