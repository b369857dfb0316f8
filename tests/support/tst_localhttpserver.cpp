#include "LocalHttpServer.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QtTest>

using VyrDev::HttpReply;
using VyrDev::LocalHttpServer;

class TstLocalHttpServer : public QObject
{
    Q_OBJECT

private:
    // Sends one request and waits for its end; the reply is owned by the caller.
    QNetworkReply *fetch(QNetworkAccessManager &nam, const QUrl &url, const QByteArray &postBody = QByteArray(),
                         int timeoutMs = 5000)
    {
        QNetworkRequest request(url);
        QNetworkReply *reply = nullptr;
        if (postBody.isNull()) {
            reply = nam.get(request);
        } else {
            request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
            reply = nam.post(request, postBody);
        }
        QSignalSpy finished(reply, &QNetworkReply::finished);
        finished.wait(timeoutMs);
        return reply;
    }

private slots:
    // A route answers with its status, body and content type on an ephemeral port.
    void answersARoute()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        QVERIFY(server.port() > 0);
        server.setReply("/a", HttpReply::json("{\"x\":1}", 201));
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/a")));
        QVERIFY(reply->isFinished());
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 201);
        QCOMPARE(reply->header(QNetworkRequest::ContentTypeHeader).toString(), QStringLiteral("application/json"));
        QCOMPARE(reply->readAll(), QByteArray("{\"x\":1}"));
    }

    // A path without a route gets a 404 until a default answer is set.
    void unknownPathIs404()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/nothing")));
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 404);
        QCOMPARE(reply->error(), QNetworkReply::ContentNotFoundError);
        server.setDefaultReply(HttpReply::json("{}"));
        QScopedPointer<QNetworkReply> second(fetch(nam, server.url("/nothing")));
        QCOMPARE(second->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 200);
    }

    // Requests are recorded with method, path, query, headers and body.
    void recordsRequests()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        server.setReply("/p", HttpReply::json("{}"));
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/p?id=7&n=%E4%B8%AD"), "{\"k\":2}"));
        QCOMPARE(server.requestCount(), 1);
        QCOMPARE(server.requestCount("/p"), 1);
        QCOMPARE(server.requestCount("/q"), 0);
        const auto record = server.requests().constFirst();
        QCOMPARE(record.method, QByteArray("POST"));
        QCOMPARE(record.path, QByteArray("/p"));
        QCOMPARE(record.query.value("id"), QByteArray("7"));
        QCOMPARE(QString::fromUtf8(record.query.value("n")), QString::fromUtf8("\xe4\xb8\xad"));
        QCOMPARE(record.headers.value("content-type"), QByteArray("application/json"));
        QCOMPARE(record.body, QByteArray("{\"k\":2}"));
        server.clearRequests();
        QCOMPARE(server.requestCount(), 0);
    }

    // A handler sees the request and chooses the answer.
    void handlerChoosesAnswer()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        server.setHandler("/echo", [](const VyrDev::HttpRequestRecord &r) { return HttpReply::json(r.query.value("v")); });
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/echo?v=hello")));
        QCOMPARE(reply->readAll(), QByteArray("hello"));
        server.clearRoute("/echo");
        QScopedPointer<QNetworkReply> second(fetch(nam, server.url("/echo?v=hello")));
        QCOMPARE(second->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 404);
    }

    // A delayed answer comes no sooner than its delay.
    void delayedAnswer()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        HttpReply slow = HttpReply::json("{}");
        slow.delayMs = 300;
        server.setReply("/slow", slow);
        QNetworkAccessManager nam;
        QElapsedTimer clock;
        clock.start();
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/slow")));
        QVERIFY(reply->isFinished());
        QVERIFY2(clock.elapsed() >= 290, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(reply->error(), QNetworkReply::NoError);
    }

    // A hanging answer never comes; stop() releases it and the client sees the connection end.
    void hangUntilStop()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        HttpReply hang;
        hang.hang = true;
        server.setReply("/hang", hang);
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(nam.get(QNetworkRequest(server.url("/hang"))));
        QSignalSpy finished(reply.data(), &QNetworkReply::finished);
        QVERIFY(!finished.wait(400));
        QCOMPARE(server.requestCount("/hang"), 1);
        server.stop();
        QVERIFY(!server.isRunning());
        QVERIFY(finished.count() == 1 || finished.wait(5000));
    }

    // A stopped server refuses the next connection.
    void stoppedServerRefuses()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        server.setReply("/a", HttpReply::json("{}"));
        const QUrl url = server.url("/a");
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> first(fetch(nam, url));
        QCOMPARE(first->error(), QNetworkReply::NoError);
        server.stop();
        QScopedPointer<QNetworkReply> second(fetch(nam, url));
        QVERIFY(second->isFinished());
        QCOMPARE(second->error(), QNetworkReply::ConnectionRefusedError);
    }

    // Binary bodies pass unchanged.
    void binaryBody()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        QByteArray bytes;
        for (int i = 0; i < 1024; ++i)
            bytes.append(char(i % 256));
        server.setReply("/bin", HttpReply::png(bytes));
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("bin")));
        QCOMPARE(reply->header(QNetworkRequest::ContentTypeHeader).toString(), QStringLiteral("image/png"));
        QCOMPARE(reply->readAll(), bytes);
    }

    // A redirect answers with its status and Location; Qt's default client does not follow it.
    void redirectCarriesLocation()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        server.setReply("/r", HttpReply::redirect("http://127.0.0.1:1/elsewhere", 307));
        QNetworkAccessManager nam;
        nam.setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/r")));
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 307);
        QCOMPARE(reply->rawHeader("Location"), QByteArray("http://127.0.0.1:1/elsewhere"));
    }

    // A gzip body goes out compressed with its Content-Encoding: raw when the client asks for identity, inflated by Qt otherwise.
    void gzipBody_data()
    {
        QTest::addColumn<bool>("identity");
        QTest::newRow("identity") << true;
        QTest::newRow("auto") << false;
    }

    void gzipBody()
    {
        QFETCH(bool, identity);
        LocalHttpServer server;
        QVERIFY(server.start());
        const QByteArray plain = QByteArray("{\"k\":\"") + QByteArray(5000, 'a') + "\"}";
        const HttpReply gz = HttpReply::gzip(plain);
        QCOMPARE(gz.contentEncoding, QByteArray("gzip"));
        QVERIFY(gz.body.size() < plain.size() / 10);
        server.setReply("/gz", gz);
        QNetworkAccessManager nam;
        QNetworkRequest request(server.url("/gz"));
        if (identity)
            request.setRawHeader("Accept-Encoding", "identity");
        QScopedPointer<QNetworkReply> reply(nam.get(request));
        QSignalSpy finished(reply.data(), &QNetworkReply::finished);
        QVERIFY(finished.wait(5000));
        QCOMPARE(reply->readAll(), identity ? gz.body : plain);
        // The server counts its bytes after the client may already have them all.
        QTRY_VERIFY(server.lastRequest().answered);
        QCOMPARE(server.lastRequest().bytesSent, qint64(gz.body.size()));
    }

    // A gzip bomb inflates to exactly its size in zeros, yet is sent small.
    void gzipBombInflatesToItsSize()
    {
        const HttpReply bomb = HttpReply::gzipBomb(4 * 1024 * 1024);
        QVERIFY(bomb.body.size() < 16 * 1024);
        QByteArray inflated;
        {
            LocalHttpServer server;
            QVERIFY(server.start());
            server.setReply("/bomb", bomb);
            QNetworkAccessManager nam;
            QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/bomb")));
            inflated = reply->readAll();
        }
        QCOMPARE(inflated.size(), 4 * 1024 * 1024);
        QCOMPARE(inflated.count('\0'), inflated.size());
    }

    // A huge body is streamed, never held: a client that stops reading after 1 MB leaves the rest unsent, and the server sees the drop.
    void hugeBodyIsStreamedAndDropSeen_data()
    {
        QTest::addColumn<bool>("withLength");
        QTest::newRow("chunked") << false;
        QTest::newRow("length") << true;
    }

    void hugeBodyIsStreamedAndDropSeen()
    {
        QFETCH(bool, withLength);
        const qint64 size = 600LL * 1024 * 1024;
        LocalHttpServer server;
        QVERIFY(server.start());
        server.setReply("/huge", HttpReply::huge(size, "application/octet-stream", withLength));
        QNetworkAccessManager nam;
        QNetworkRequest request(server.url("/huge"));
        request.setRawHeader("Accept-Encoding", "identity");
        QNetworkReply *reply = nam.get(request);
        // Qt then reads the socket only as fast as the reply is read.
        reply->setReadBufferSize(64 * 1024);
        qint64 received = 0;
        QByteArray head;
        connect(reply, &QNetworkReply::readyRead, reply, [&]() {
            const QByteArray bytes = reply->readAll();
            if (head.isEmpty())
                head = bytes.left(16);
            received += bytes.size();
            if (received >= 1024 * 1024)
                reply->abort();
        });
        QSignalSpy finished(reply, &QNetworkReply::finished);
        QVERIFY(finished.count() == 1 || finished.wait(10000));
        QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
        QCOMPARE(reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(), withLength ? size : 0);
        QCOMPARE(head, QByteArray(16, '\0'));
        QTRY_VERIFY_WITH_TIMEOUT(server.lastRequest().answered, 10000);
        QVERIFY(server.lastRequest().dropped);
        // What the kernel's buffers took beyond the client's megabyte, nowhere near the whole.
        QVERIFY2(server.lastRequest().bytesSent < 64LL * 1024 * 1024,
                 qPrintable(QString::number(server.lastRequest().bytesSent)));
        delete reply;
    }

    // A streamed body repeats its pattern; a completed answer is not a drop.
    void streamRepeatsPattern()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        HttpReply stream = HttpReply::huge(100000, "application/octet-stream");
        stream.body = "abc";
        server.setReply("/s", stream);
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/s")));
        const QByteArray body = reply->readAll();
        QCOMPARE(body.size(), 100000);
        QCOMPARE(body.left(7), QByteArray("abcabca"));
        QCOMPARE(body.mid(99999), QByteArray(1, "abc"[99999 % 3]));
        QTRY_VERIFY(server.lastRequest().answered);
        QVERIFY(!server.lastRequest().dropped);
        QCOMPARE(server.lastRequest().bytesSent, qint64(100000));
    }

    // A Content-Length that lies: a client reads only what was claimed, or sees the connection end early.
    void lyingContentLength_data()
    {
        QTest::addColumn<qint64>("declared");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<int>("error");
        QTest::newRow("shorter") << qint64(4) << QByteArray("0123") << int(QNetworkReply::NoError);
        QTest::newRow("longer") << qint64(1000) << QByteArray("0123456789") << int(QNetworkReply::RemoteHostClosedError);
    }

    void lyingContentLength()
    {
        QFETCH(qint64, declared);
        QFETCH(QByteArray, expected);
        QFETCH(int, error);
        LocalHttpServer server;
        QVERIFY(server.start());
        HttpReply liar = HttpReply::json("0123456789");
        liar.declaredLength = declared;
        server.setReply("/lie", liar);
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(fetch(nam, server.url("/lie")));
        QVERIFY(reply->isFinished());
        QCOMPARE(reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(), declared);
        QCOMPARE(int(reply->error()), error);
        QCOMPARE(reply->readAll(), expected);
    }

    // A dripping answer arrives in several pieces and complete.
    void dripsInPieces()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        HttpReply drip = HttpReply::json("0123456789");
        drip.dripBytes = 5;
        drip.dripIntervalMs = 150;
        server.setReply("/drip", drip);
        QNetworkAccessManager nam;
        QNetworkReply *reply = nam.get(QNetworkRequest(server.url("/drip")));
        int pieces = 0;
        QByteArray body;
        connect(reply, &QNetworkReply::readyRead, reply, [&]() {
            ++pieces;
            body += reply->readAll();
        });
        QSignalSpy finished(reply, &QNetworkReply::finished);
        QVERIFY(finished.wait(5000));
        QCOMPARE(reply->error(), QNetworkReply::NoError);
        QCOMPARE(body, QByteArray("0123456789"));
        QVERIFY2(pieces >= 2, qPrintable(QString::number(pieces)));
        delete reply;
    }

    // stop() ends a dripping answer that would take forever.
    void stopEndsAnEndlessDrip()
    {
        LocalHttpServer server;
        QVERIFY(server.start());
        HttpReply drip = HttpReply::huge(1LL << 40, "application/octet-stream", true);
        drip.dripBytes = 1;
        drip.dripIntervalMs = 1000;
        server.setReply("/drip", drip);
        QNetworkAccessManager nam;
        QScopedPointer<QNetworkReply> reply(nam.get(QNetworkRequest(server.url("/drip"))));
        QTRY_VERIFY_WITH_TIMEOUT(server.lastRequest().bytesSent >= 1, 5000);
        server.stop();
        QVERIFY(!server.isRunning());
        QVERIFY(server.lastRequest().answered);
    }

    // A stop() at once after start() returns promptly, and the port then refuses.
    void stopRightAfterStart()
    {
        for (int round = 0; round < 20; ++round) {
            LocalHttpServer server;
            QVERIFY(server.start());
            QElapsedTimer clock;
            clock.start();
            server.stop();
            QVERIFY2(clock.elapsed() < 2000, "stop() hung");
            QVERIFY(!server.isRunning());
        }
    }
};

QTEST_MAIN(TstLocalHttpServer)
#include "tst_localhttpserver.moc"
