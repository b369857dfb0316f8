#include "LocalHttpServer.h"

#include <httplib.h>
#include <zlib.h>

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

HttpReply HttpReply::redirect(const QByteArray &location, int status)
{
    HttpReply reply;
    reply.status = status;
    reply.location = location;
    reply.contentType = "text/plain";
    return reply;
}

namespace {

constexpr qint64 kPieceSize = 64 * 1024;

// Deflates `size` bytes given piece by piece by `piece` into one gzip member.
QByteArray gzipStream(qint64 size, const std::function<QByteArray(qint64 offset)> &piece)
{
    z_stream stream = {};
    // 16 + 15: a gzip header and trailer around a full window.
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 16 + 15, 9, Z_DEFAULT_STRATEGY) != Z_OK)
        return QByteArray();
    QByteArray out;
    char buffer[16384];
    qint64 offset = 0;
    int flush = Z_NO_FLUSH;
    do {
        QByteArray input;
        if (offset < size) {
            input = piece(offset);
            offset += input.size();
        }
        flush = offset >= size ? Z_FINISH : Z_NO_FLUSH;
        stream.next_in = reinterpret_cast<Bytef *>(input.data());
        stream.avail_in = uInt(input.size());
        do {
            stream.next_out = reinterpret_cast<Bytef *>(buffer);
            stream.avail_out = sizeof(buffer);
            deflate(&stream, flush);
            out.append(buffer, int(sizeof(buffer) - stream.avail_out));
        } while (stream.avail_out == 0);
    } while (flush != Z_FINISH);
    deflateEnd(&stream);
    return out;
}

} // namespace

HttpReply HttpReply::gzip(const QByteArray &body, const QByteArray &contentType)
{
    HttpReply reply;
    reply.body = gzipStream(body.size(), [&body](qint64 offset) { return body.mid(int(offset), int(kPieceSize)); });
    reply.contentType = contentType;
    reply.contentEncoding = "gzip";
    return reply;
}

HttpReply HttpReply::gzipBomb(qint64 inflatedSize, const QByteArray &contentType)
{
    static const QByteArray zeros(int(kPieceSize) * 16, '\0');
    HttpReply reply;
    reply.body = gzipStream(inflatedSize, [inflatedSize](qint64 offset) {
        return zeros.left(int(qMin<qint64>(zeros.size(), inflatedSize - offset)));
    });
    reply.contentType = contentType;
    reply.contentEncoding = "gzip";
    return reply;
}

HttpReply HttpReply::huge(qint64 size, const QByteArray &contentType, bool withLength)
{
    HttpReply reply;
    reply.contentType = contentType;
    reply.streamSize = size;
    reply.chunked = !withLength;
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
    // Shared with the answer still going out, which updates its record.
    QList<std::shared_ptr<HttpRequestRecord>> requests;

    Handler handlerFor(const QByteArray &path) const
    {
        std::lock_guard<std::mutex> lock(mutex);
        const auto it = routes.constFind(path);
        if (it != routes.constEnd())
            return it.value();
        const HttpReply reply = fallback;
        return [reply](const HttpRequestRecord &) { return reply; };
    }

    // Waits for `ms` or until stop(); false when stopping.
    bool pause(int ms)
    {
        std::unique_lock<std::mutex> lock(mutex);
        if (ms > 0)
            released.wait_for(lock, std::chrono::milliseconds(ms), [this] { return stopping; });
        return !stopping;
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
        auto record = std::make_shared<HttpRequestRecord>(toRecord(request));
        {
            std::lock_guard<std::mutex> lock(mutex);
            requests.append(record);
        }
        const HttpReply reply = handlerFor(record->path)(*record);
        hold(reply);
        response.status = reply.status;
        if (!reply.location.isEmpty())
            response.set_header("Location", reply.location.toStdString());
        if (!reply.contentEncoding.isEmpty())
            response.set_header("Content-Encoding", reply.contentEncoding.toStdString());
        const qint64 size = reply.streamSize >= 0 ? reply.streamSize : reply.body.size();
        const std::string type = reply.contentType.toStdString();
        if (size == 0 && !reply.chunked && reply.declaredLength < 0) {
            response.set_content(std::string(), type);
            finish(record, false);
            return;
        }
        auto failed = std::make_shared<bool>(false);
        const auto releaser = [this, record, failed](bool) { finish(record, *failed); };
        if (reply.chunked) {
            response.set_chunked_content_provider(
                type,
                [this, reply, size, record, failed](size_t offset, httplib::DataSink &sink) {
                    if (!send(reply, size, qint64(offset), sink, *record, *failed))
                        return false;
                    sink.done();
                    return true;
                },
                releaser);
            return;
        }
        const qint64 length = reply.declaredLength >= 0 ? reply.declaredLength : size;
        response.set_content_provider(
            size_t(length), type,
            [this, reply, size, record, failed](size_t offset, size_t, httplib::DataSink &sink) {
                // Also ends a body that is shorter than its claimed length.
                return qint64(offset) < size && send(reply, size, qint64(offset), sink, *record, *failed);
            },
            releaser);
    }

    // Sends the body from `offset` to its end in pieces; false when the
    // client went away or the server stops.
    bool send(const HttpReply &reply, qint64 size, qint64 offset, httplib::DataSink &sink,
              HttpRequestRecord &record, bool &failed)
    {
        const qint64 pieceSize = reply.dripBytes > 0 ? reply.dripBytes : kPieceSize;
        QByteArray piece;
        while (offset < size) {
            if (reply.dripBytes > 0 && offset > 0 && !pause(reply.dripIntervalMs))
                return false;
            if (!pause(0))
                return false;
            const qint64 length = qMin(pieceSize, size - offset);
            pieceAt(reply, offset, length, piece);
            if (!sink.write(piece.constData(), size_t(length))) {
                failed = true;
                return false;
            }
            offset += length;
            std::lock_guard<std::mutex> lock(mutex);
            record.bytesSent += length;
        }
        return true;
    }

    // The body's bytes from `offset`, repeating `body` (zeros when empty) for a stream.
    static void pieceAt(const HttpReply &reply, qint64 offset, qint64 length, QByteArray &piece)
    {
        if (reply.streamSize < 0) {
            piece = reply.body.mid(int(offset), int(length));
            return;
        }
        piece.resize(int(length));
        if (reply.body.isEmpty()) {
            piece.fill('\0');
            return;
        }
        const qint64 pattern = reply.body.size();
        for (qint64 i = 0; i < length; ++i)
            piece[int(i)] = reply.body.at(int((offset + i) % pattern));
    }

    void finish(const std::shared_ptr<HttpRequestRecord> &record, bool dropped)
    {
        std::lock_guard<std::mutex> lock(mutex);
        record->answered = true;
        record->dropped = dropped;
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
    // httplib's stop() does nothing until the listener runs, so a stop()
    // right after start() would leave it serving and hang the join.
    for (int i = 0; i < 2000 && !d->server.is_running(); ++i)
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
    QList<HttpRequestRecord> records;
    for (const auto &record : d->requests)
        records.append(*record);
    return records;
}

HttpRequestRecord LocalHttpServer::lastRequest() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->requests.isEmpty() ? HttpRequestRecord() : *d->requests.constLast();
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
    for (const auto &record : d->requests)
        count += record->path == path ? 1 : 0;
    return count;
}

void LocalHttpServer::clearRequests()
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->requests.clear();
}

} // namespace VyrDev
