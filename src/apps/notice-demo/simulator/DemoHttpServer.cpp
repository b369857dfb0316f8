#include "DemoHttpServer.h"

#include "CoreEngine.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace {

const QList<QPair<QColor, QString>> kCovers = {
    {QColor(0x2F, 0x80, 0xED), QStringLiteral("1")},
    {QColor(0xEB, 0x57, 0x57), QStringLiteral("2")},
    {QColor(0x27, 0xAE, 0x60), QStringLiteral("3")},
    {QColor(0xF2, 0x99, 0x4A), QStringLiteral("4")},
};

} // namespace

DemoHttpServer::DemoHttpServer()
{
    for (int i = 0; i < kCovers.size(); ++i) {
        const QByteArray path = QByteArrayLiteral("/covers/") + QByteArray::number(i + 1) + QByteArrayLiteral(".png");
        m_covers.insert(path, drawCover(kCovers.at(i).first, kCovers.at(i).second));
    }
}

DemoHttpServer::~DemoHttpServer()
{
    // Held answers are released and every thread joined before the kit forgets the address.
    m_server.stop();
}

bool DemoHttpServer::start()
{
    if (!m_server.start())
        return false;
    setCoverAnswer(CoverAnswer::Normal, 0);
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(m_server.baseUrl().toString());
    return true;
}

QUrl DemoHttpServer::baseUrl() const
{
    return m_server.baseUrl();
}

void DemoHttpServer::stop()
{
    m_server.stop();
}

bool DemoHttpServer::isRunning() const
{
    return m_server.isRunning();
}

void DemoHttpServer::setRouteReply(const QByteArray& path, const VyrDev::HttpReply& reply)
{
    m_server.setReply(path, reply);
}

void DemoHttpServer::setCoverAnswer(CoverAnswer answer, int delayMs)
{
    for (auto it = m_covers.constBegin(); it != m_covers.constEnd(); ++it) {
        VyrDev::HttpReply reply = VyrDev::HttpReply::png(it.value());
        switch (answer) {
        case CoverAnswer::Normal:
            break;
        case CoverAnswer::Slow:
            reply.delayMs = delayMs;
            break;
        case CoverAnswer::NotFound:
            reply = VyrDev::HttpReply::error(404, "no such cover");
            break;
        case CoverAnswer::NotImage:
            reply = VyrDev::HttpReply::json("<html><body>maintenance</body></html>");
            reply.contentType = "text/html";
            break;
        case CoverAnswer::Silent:
            reply.hang = true;
            break;
        }
        m_server.setReply(it.key(), reply);
    }
}

bool DemoHttpServer::coverAnswerOf(const QString& word, CoverAnswer* answer)
{
    static const QMap<QString, CoverAnswer> words = {
        {QStringLiteral("normal"), CoverAnswer::Normal},     {QStringLiteral("slow"), CoverAnswer::Slow},
        {QStringLiteral("404"), CoverAnswer::NotFound},      {QStringLiteral("notImage"), CoverAnswer::NotImage},
        {QStringLiteral("silent"), CoverAnswer::Silent},
    };
    if (!words.contains(word))
        return false;
    *answer = words.value(word);
    return true;
}

QByteArray DemoHttpServer::drawCover(const QColor& colour, const QString& label)
{
    QImage image(QSize(144, 80), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient ground(0, 0, 144, 80);
    ground.setColorAt(0, colour.lighter(130));
    ground.setColorAt(1, colour.darker(120));
    painter.fillRect(image.rect(), ground);
    // A play mark: the cover of a short video lecture.
    painter.setBrush(Qt::white);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QPointF(52, 40), 22, 22);
    QPainterPath play;
    play.moveTo(45, 28);
    play.lineTo(63, 40);
    play.lineTo(45, 52);
    play.closeSubpath();
    painter.setBrush(colour);
    painter.drawPath(play);
    QFont font = painter.font();
    font.setPixelSize(34);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(84, 0, 56, 80), Qt::AlignCenter, label);
    painter.end();

    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}
