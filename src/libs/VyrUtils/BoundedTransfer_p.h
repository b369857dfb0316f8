#pragma once

#include <QByteArray>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QString>

class QNetworkRequest;
class QTimer;

// One network reply held to the kit's bounds, shared by VyrHttpManager and
// FileDownloader:
// - the body is read as it arrives and never held beyond `maxBytes`; a
//   Content-Length over it, or one byte more, aborts the transfer at once;
// - the request asks for "Accept-Encoding: identity", so Qt never inflates;
//   an answer that is encoded anyway is aborted at its headers;
// - a redirect is followed only to the same scheme, host and port;
// - Qt's transfer timeout aborts a stall, `totalMs` caps the whole transfer;
// - an owner, when given, aborts the transfer when it is destroyed.
// What a transfer cut is reported as OperationCanceledError (a refused
// redirect as InsecureRedirectError) with the reason as text, and logged.
// Any final status outside 2xx is a failure. ended() comes once.
class BoundedTransfer : public QObject
{
    Q_OBJECT
public:
    // What every kit request carries; call before the request is sent.
    static void prepare(QNetworkRequest& request, int stallMs);

    // Takes over `reply` (its parent stays) and becomes its child.
    BoundedTransfer(QNetworkReply* reply, qint64 maxBytes, int totalMs);

    void setOwner(QObject* owner);
    // The owner was destroyed while the transfer ran.
    bool ownerGone() const;
    void abort(QNetworkReply::NetworkError code, const QString& reason);

    QNetworkReply* reply() const;
    // The body: complete after a success, else what arrived (empty after an abort).
    QByteArray body() const;
    qint64 bytesReceived() const;
    // 0, or a QNetworkReply::NetworkError.
    int error() const;
    QString errorString() const;
    int httpStatus() const;

signals:
    void ended();

private:
    void onMetaDataChanged();
    void onReadyRead();
    void onRedirected(const QUrl& url);
    void onFinished();
    void onOwnerDestroyed();
    void readAvailable();
    void cut(QNetworkReply::NetworkError code, const QString& reason);
    void logAborted() const;

    QNetworkReply* m_reply = nullptr;
    QTimer* m_totalTimer = nullptr;
    qint64 m_maxBytes = 0;
    int m_totalMs = 0;
    QByteArray m_body;
    qint64 m_bytesReceived = 0;
    int m_error = 0;
    QString m_errorString;
    bool m_cut = false;
    bool m_ownerGone = false;
    bool m_ended = false;
};
