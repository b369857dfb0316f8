#pragma once

#include "LocalHttpServer.h"

#include <QByteArray>
#include <QColor>
#include <QMap>
#include <QString>
#include <QUrl>

// The demo's file server: one local HTTP server on 127.0.0.1 (an ephemeral
// port) that the kit's file server prefix points at. It serves generated
// course covers ("/covers/1.png" to "/covers/4.png") and any route a part of
// the demo sets (the cluster notice details); a scenario step can make the
// covers answer slowly, with a 404, with a body that is no picture, or not at
// all, and can stop the whole server.
class DemoHttpServer
{
public:
    enum class CoverAnswer { Normal, Slow, NotFound, NotImage, Silent };

    DemoHttpServer();
    ~DemoHttpServer();

    // Binds the port, serves the covers and sets CoreEngine::fileServerPrefix.
    bool start();
    QUrl baseUrl() const;
    // A route's answer; later calls replace earlier ones.
    void setRouteReply(const QByteArray& path, const VyrDev::HttpReply& reply);
    // How every cover route answers from now on; `delayMs` is for Slow.
    void setCoverAnswer(CoverAnswer answer, int delayMs);
    // "normal", "slow", "404", "notImage", "silent"; false for another word.
    static bool coverAnswerOf(const QString& word, CoverAnswer* answer);
    // A wide cover in `colour` with a play mark and `label`, as PNG bytes.
    static QByteArray drawCover(const QColor& colour, const QString& label);
    int requestCount() const { return m_server.requestCount(); }
    // The server goes: held answers are released and the port refuses.
    void stop();
    bool isRunning() const;

private:
    VyrDev::LocalHttpServer m_server;
    QMap<QByteArray, QByteArray> m_covers;
};
