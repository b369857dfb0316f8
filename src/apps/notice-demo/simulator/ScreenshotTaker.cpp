#include "ScreenshotTaker.h"

#include "ScreenCorner.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

namespace {

const QColor kDesktop(0xE3, 0xE8, 0xEE);
const QColor kTaskbar(0x2B, 0x30, 0x38);

} // namespace

ScreenshotTaker::ScreenshotTaker(const QString& folder)
    : m_folder(folder.isEmpty() ? folder : QDir(folder).absolutePath())
{
    if (isEnabled())
        QDir().mkpath(m_folder);
}

QStringList ScreenshotTaker::take(const QString& name, const QList<NamedWindow>& windows)
{
    QStringList written;
    if (!isEnabled())
        return written;
    ++m_count;
    QList<NamedWindow> visible;
    for (const NamedWindow& window : windows) {
        if (!window.second->isVisible())
            continue;
        visible.append(window);
        const QString file = fileName(name, window.first);
        if (window.second->grab().save(file))
            written << file;
    }
    const QString screen = saveScreen(name, visible);
    if (!screen.isEmpty())
        written << screen;
    return written;
}

QString ScreenshotTaker::fileName(const QString& name, const QString& what) const
{
    return QDir(m_folder).filePath(QStringLiteral("%1-%2-%3.png").arg(m_count, 2, 10, QLatin1Char('0')).arg(name, what));
}

QString ScreenshotTaker::saveScreen(const QString& name, const QList<NamedWindow>& visible) const
{
    const ScreenCorner::Screen screen = ScreenCorner::current();
    if (screen.geometry.isEmpty())
        return QString();
    QImage image(screen.geometry.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(kDesktop);
    QPainter painter(&image);
    // Everything outside the work area is the taskbar.
    QRegion taskbar(QRect(QPoint(0, 0), screen.geometry.size()));
    taskbar -= screen.availableGeometry.translated(-screen.geometry.topLeft());
    for (const QRect& rect : taskbar)
        painter.fillRect(rect, kTaskbar);
    for (const NamedWindow& window : visible) {
        painter.setOpacity(window.second->windowOpacity());
        painter.drawPixmap(window.second->pos() - screen.geometry.topLeft(), window.second->grab());
    }
    painter.end();
    const QString file = fileName(name, QStringLiteral("screen"));
    return image.save(file) ? file : QString();
}
