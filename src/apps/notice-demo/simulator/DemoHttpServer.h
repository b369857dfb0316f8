#pragma once

#include "LocalHttpServer.h"

#include <QByteArray>
#include <QUrl>

// The demo's stand-in for the client's servers: one local HTTP server on
// 127.0.0.1 whose answers the scenario chooses, path by path.
class DemoHttpServer
{
public:
    DemoHttpServer() = default;

    // Binds an ephemeral port; false if none could be had.
    bool start();
    // "http://127.0.0.1:<port>"; empty before start().
    QUrl baseUrl() const;
    // The answer for `path` from now on.
    void setAnswer(const QByteArray& path, const VyrDev::HttpReply& reply);
    // The server goes: held answers are released and the port refuses.
    void stop();
    bool isRunning() const;

private:
    VyrDev::LocalHttpServer m_server;
};
