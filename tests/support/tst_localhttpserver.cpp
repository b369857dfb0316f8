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
