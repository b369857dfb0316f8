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
};

// What the server answers to one request.
struct HttpReply
{
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json";
    int delayMs = 0;    // answer only after this long (cut short by stop())
    bool hang = false;  // never answer; the connection is held until stop()

    static HttpReply json(const QByteArray &body, int status = 200);
    static HttpReply png(const QByteArray &body);
    static HttpReply error(int status, const QByteArray &body = QByteArray());
};

// A small HTTP/1.1 server on 127.0.0.1 for the tests and the demo host.
//
// start() binds an ephemeral port and serves on background threads; answers
// are chosen per path with setReply() or setHandler() and may be changed at
// any time. Handlers run on the server's own threads, never on the caller's.
// Every connection is closed after one answer, so a stopped server refuses
// the next request at once instead of leaving a kept-alive socket behind.
// stop() releases held answers, closes the port and joins every thread.
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
    int requestCount() const;
    int requestCount(const QByteArray &path) const;
    void clearRequests();

private:
    struct State;
    std::unique_ptr<State> d;
};

} // namespace VyrDev
