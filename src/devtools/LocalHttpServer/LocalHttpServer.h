#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QUrl>

#include <functional>
#include <memory>

namespace VyrDev {

// One request as the server received it.
struct HttpRequestRecord
{
    QByteArray method;
    QByteArray path;                      // without the query
    QMap<QByteArray, QByteArray> query;   // decoded query items
    QMap<QByteArray, QByteArray> headers; // header names in lower case
    QByteArray body;
    // Filled in while the answer goes out (requests() gives a snapshot).
    qint64 bytesSent = 0;   // body bytes handed to the connection so far
    bool answered = false;  // the answer has ended, completely or not
    bool dropped = false;   // the client went away before the whole body was sent
};

// What the server answers to one request.
struct HttpReply
{
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json";
    int delayMs = 0;    // answer only after this long (cut short by stop())
    bool hang = false;  // never answer; the connection is held until stop()

    // Hostile answers.
    QByteArray location;        // a Location header (redirects)
    QByteArray contentEncoding; // a Content-Encoding header; the body goes out as given
    // >= 0: a body of this many bytes, made piece by piece from `body`
    // repeated (zeros when empty), so a huge body is never held in memory.
    qint64 streamSize = -1;
    bool chunked = false;       // a streamed body without Content-Length
    // >= 0: the Content-Length claimed, whatever is sent (a lie if it differs).
    qint64 declaredLength = -1;
    // > 0: the body goes out this many bytes at a time, dripIntervalMs apart.
    int dripBytes = 0;
    int dripIntervalMs = 0;

    static HttpReply json(const QByteArray &body, int status = 200);
    static HttpReply png(const QByteArray &body);
    static HttpReply error(int status, const QByteArray &body = QByteArray());
    static HttpReply redirect(const QByteArray &location, int status = 302);
    // `body` gzip-compressed, with "Content-Encoding: gzip".
    static HttpReply gzip(const QByteArray &body, const QByteArray &contentType = "application/json");
    // A gzip body that inflates to `inflatedSize` zero bytes; built without
    // holding the inflated bytes.
    static HttpReply gzipBomb(qint64 inflatedSize, const QByteArray &contentType = "application/json");
    // `size` bytes of `contentType`, streamed lazily (chunked unless `withLength`).
    static HttpReply huge(qint64 size, const QByteArray &contentType, bool withLength = false);
};

// A small HTTP/1.1 server on 127.0.0.1 for the tests and the demo host.
//
// start() binds an ephemeral port and serves on background threads; answers
// are chosen per path with setReply() or setHandler() and may be changed at
// any time. Handlers run on the server's own threads, never on the caller's.
// Every connection is closed after one answer, so a stopped server refuses
// the next request at once instead of leaving a kept-alive socket behind.
// stop() releases held answers, closes the port and joins every thread.
//
// Each record also tells how the answer went out: how many body bytes were
// handed to the connection and whether the client dropped it before the end,
// which is how a test sees a transfer that the client aborted. Bodies go out
// exactly as given: the server never compresses on its own.
class LocalHttpServer
{
public:
    using Handler = std::function<HttpReply(const HttpRequestRecord &)>;

    LocalHttpServer();
    ~LocalHttpServer();
    LocalHttpServer(const LocalHttpServer &) = delete;
    LocalHttpServer &operator=(const LocalHttpServer &) = delete;

    bool start();
    void stop();
    bool isRunning() const;
    quint16 port() const;
    QUrl baseUrl() const;            // "http://127.0.0.1:<port>"
    QUrl url(const QString &path) const;

    // Exact path match ("/cover/1.png"); later calls replace earlier ones.
    void setReply(const QByteArray &path, const HttpReply &reply);
    void setHandler(const QByteArray &path, Handler handler);
    void clearRoute(const QByteArray &path);
    // Answer for paths without a route; a 404 until set.
    void setDefaultReply(const HttpReply &reply);

    QList<HttpRequestRecord> requests() const;
    HttpRequestRecord lastRequest() const; // an empty record when none came
    int requestCount() const;
    int requestCount(const QByteArray &path) const;
    void clearRequests();

private:
    struct State;
    std::unique_ptr<State> d;
};

} // namespace VyrDev
