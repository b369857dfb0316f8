#include "LocalHttpServer.h"

#include <httplib.h>

#include <QHash>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace VyrDev {

HttpReply HttpReply::json(const QByteArray &body, int status)
{
    HttpReply reply;
    reply.status = status;
    reply.body = body;
    return reply;
}

HttpReply HttpReply::png(const QByteArray &body)
{
    HttpReply reply;
    reply.body = body;
    reply.contentType = "image/png";
    return reply;
}

HttpReply HttpReply::error(int status, const QByteArray &body)
{
    HttpReply reply;
    reply.status = status;
    reply.body = body;
    reply.contentType = "text/plain";
    return reply;
}

struct LocalHttpServer::State
{
    httplib::Server server;
    std::thread listener;
    mutable std::mutex mutex;
    std::condition_variable released;
    bool stopping = false;
    int port = 0;
    QHash<QByteArray, Handler> routes;
    HttpReply fallback = HttpReply::error(404, "not found");
    QList<HttpRequestRecord> requests;

    Handler handlerFor(const QByteArray &path) const
    {
        std::lock_guard<std::mutex> lock(mutex);
        const auto it = routes.constFind(path);
        if (it != routes.constEnd())
            return it.value();
        const HttpReply reply = fallback;
        return [reply](const HttpRequestRecord &) { return reply; };
    }

    // Holds the answer for its delay, or until stop() when it hangs.
    void hold(const HttpReply &reply)
    {
        std::unique_lock<std::mutex> lock(mutex);
        if (reply.hang)
            released.wait(lock, [this] { return stopping; });
        else if (reply.delayMs > 0)
            released.wait_for(lock, std::chrono::milliseconds(reply.delayMs), [this] { return stopping; });
    }

    void serve(const httplib::Request &request, httplib::Response &response)
    {
        const HttpRequestRecord record = toRecord(request);
        {
            std::lock_guard<std::mutex> lock(mutex);
            requests.append(record);
        }
        const HttpReply reply = handlerFor(record.path)(record);
        hold(reply);
        response.status = reply.status;
        response.set_content(reply.body.toStdString(), reply.contentType.toStdString());
    }

    static HttpRequestRecord toRecord(const httplib::Request &request)
    {
        HttpRequestRecord record;
        record.method = QByteArray::fromStdString(request.method);
        record.path = QByteArray::fromStdString(request.path);
        record.body = QByteArray::fromStdString(request.body);
        for (const auto &item : request.params)
            record.query.insert(QByteArray::fromStdString(item.first), QByteArray::fromStdString(item.second));
        for (const auto &item : request.headers)
            record.headers.insert(QByteArray::fromStdString(item.first).toLower(), QByteArray::fromStdString(item.second));
        return record;
    }
};

LocalHttpServer::LocalHttpServer()
    : d(new State)
{
    const auto handler = [this](const httplib::Request &request, httplib::Response &response) {
        d->serve(request, response);
    };
    d->server.Get(".*", handler);
    d->server.Post(".*", handler);
    d->server.Put(".*", handler);
    d->server.Delete(".*", handler);
    d->server.set_keep_alive_max_count(1);
}

LocalHttpServer::~LocalHttpServer()
{
    stop();
}

bool LocalHttpServer::start()
{
    if (d->listener.joinable())
        return true;
    d->stopping = false;
    d->port = d->server.bind_to_any_port("127.0.0.1");
    if (d->port <= 0) {
        d->port = 0;
        return false;
    }
    d->listener = std::thread([this] { d->server.listen_after_bind(); });
    // Until the listener runs, the library's stop() does nothing and a stop
    // right after start would wait for that thread forever.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!d->server.is_running() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return true;
}

void LocalHttpServer::stop()
{
    if (!d->listener.joinable())
        return;
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        d->stopping = true;
    }
    d->released.notify_all();
    d->server.stop();
    d->listener.join();
}

bool LocalHttpServer::isRunning() const
{
    return d->listener.joinable() && !d->stopping;
}

quint16 LocalHttpServer::port() const
{
    return quint16(d->port);
}

QUrl LocalHttpServer::baseUrl() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(d->port));
}

QUrl LocalHttpServer::url(const QString &path) const
{
    return QUrl(baseUrl().toString() + (path.startsWith('/') ? path : '/' + path));
}

void LocalHttpServer::setReply(const QByteArray &path, const HttpReply &reply)
{
    setHandler(path, [reply](const HttpRequestRecord &) { return reply; });
}

void LocalHttpServer::setHandler(const QByteArray &path, Handler handler)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->routes.insert(path, std::move(handler));
}

void LocalHttpServer::clearRoute(const QByteArray &path)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->routes.remove(path);
}

void LocalHttpServer::setDefaultReply(const HttpReply &reply)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->fallback = reply;
}

QList<HttpRequestRecord> LocalHttpServer::requests() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->requests;
}

int LocalHttpServer::requestCount() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->requests.size();
}

int LocalHttpServer::requestCount(const QByteArray &path) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    int count = 0;
    for (const HttpRequestRecord &record : d->requests)
        count += record.path == path ? 1 : 0;
    return count;
}

void LocalHttpServer::clearRequests()
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->requests.clear();
}

} // namespace VyrDev
