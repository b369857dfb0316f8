#include "DemoHttpServer.h"

bool DemoHttpServer::start()
{
    return m_server.start();
}

QUrl DemoHttpServer::baseUrl() const
{
    return m_server.isRunning() || m_server.port() ? m_server.baseUrl() : QUrl();
}

void DemoHttpServer::setAnswer(const QByteArray& path, const VyrDev::HttpReply& reply)
{
    m_server.setReply(path, reply);
}

void DemoHttpServer::stop()
{
    m_server.stop();
}

bool DemoHttpServer::isRunning() const
{
    return m_server.isRunning();
}
