#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

// Fetches one file over HTTP(S) with its own QNetworkAccessManager and keeps
// the bytes in memory.
//
// setTargetUrl() then download(); the answer arrives on a later turn of the
// event loop as finished() (downloadedData() then holds the body) or as
// error(code, text), never both. `code` is the QNetworkReply::NetworkError
// value (203 for a 404, 1 for a refused connection, 5 after abort()). A new
// download() drops the one still running, which then reports nothing. The
// transfer belongs to the downloader: deleting it, or its parent, ends the
// request and nothing is delivered.
//
// Host side: there is no switch here; point the address at a server you run
// (tests and the demo use VyrDev::LocalHttpServer on 127.0.0.1), and use
// isRunning(), targetUrl() and abort() to watch or cut a transfer.
class FileDownloader : public QObject
{
    Q_OBJECT
public:
    // `acceptedSuffixes`: lower-case file suffixes ("png") that may be fetched;
    // empty accepts any address. Another suffix fails at download() with an
    // error of code QNetworkReply::ProtocolInvalidOperationError (302).
    FileDownloader(QObject* parent, QSet<QString> acceptedSuffixes);
    ~FileDownloader() override;

    void setTargetUrl(const QUrl& url);
    QUrl targetUrl() const;
    void download(QNetworkRequest::CacheLoadControl cacheControl);
    // The body of the last finished download; empty before and after an error.
    QByteArray downloadedData() const;

    // Host side.
    bool isRunning() const;
    void abort();

signals:
    void finished();
    void error(int code, const QString& message);

private:
    void onReplyFinished(QNetworkReply* reply);
    void dropReply();
    bool isAccepted(const QUrl& url) const;

    QNetworkAccessManager* m_manager = nullptr;
    QNetworkReply* m_reply = nullptr;
    QSet<QString> m_acceptedSuffixes;
    QUrl m_targetUrl;
    QByteArray m_data;
};
