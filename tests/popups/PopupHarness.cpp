#include "PopupHarness.h"

#include "ScreenCorner.h"
#include "ScreenCornerOverride_p.h"
#include "TestKit.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>

namespace PopupHarness {

void useTestScreen(TaskbarEdge edge)
{
    ScreenCorner::Screen screen;
    screen.taskbarEdge = edge;
    screen.geometry = QRect(0, 0, 800, 600);
    switch (edge) {
    case TaskbarEdge::Left: screen.availableGeometry = QRect(40, 0, 760, 600); break;
    case TaskbarEdge::Top: screen.availableGeometry = QRect(0, 40, 800, 560); break;
    case TaskbarEdge::Right: screen.availableGeometry = QRect(0, 0, 760, 600); break;
    default: screen.availableGeometry = QRect(0, 0, 800, 560); break;
    }
    ScreenCornerOverride::set(screen);
}

QPropertyAnimation* animation(QWidget* window, const char* name)
{
    return window->findChild<QPropertyAnimation*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

QList<QPropertyAnimation*> animations(QWidget* window, const char* name)
{
    return window->findChildren<QPropertyAnimation*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

QTimer* closeTimer(QWidget* window)
{
    return window->findChild<QTimer*>(QStringLiteral("m_closeTimer"), Qt::FindDirectChildrenOnly);
}

QList<QTimer*> closeTimers(QWidget* window)
{
    return window->findChildren<QTimer*>(QStringLiteral("m_closeTimer"), Qt::FindDirectChildrenOnly);
}

QToolButton* closeButton(QWidget* window)
{
    return window->findChild<QToolButton*>(QStringLiteral("closeBtn"));
}

QLabel* titleLabel(QWidget* window)
{
    return window->findChild<QLabel*>(QStringLiteral("titleLabel"));
}

QLabel* label(QWidget* window, const char* name)
{
    return window->findChild<QLabel*>(QLatin1String(name));
}

QPushButton* button(QWidget* window, const char* name)
{
    return window->findChild<QPushButton*>(QLatin1String(name));
}

QTextBrowser* browser(QWidget* window, const char* name)
{
    return window->findChild<QTextBrowser*>(QLatin1String(name));
}

QWidget* contentWidget(QWidget* window)
{
    return window->findChild<QWidget*>(QStringLiteral("contentWidget"));
}

void finish(QPropertyAnimation* animation)
{
    if (animation)
        animation->setCurrentTime(animation->duration());
}

void runDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString stateOf(QWidget* window)
{
    if (!window)
        return QStringLiteral("Closed");
    if (animation(window, "m_opacityAnimation"))
        return QStringLiteral("FadingOut");
    if (closeTimer(window))
        return QStringLiteral("Holding");
    if (animation(window, "m_showAnimation"))
        return QStringLiteral("FadingIn");
    return window->isVisible() ? QStringLiteral("Shown") : QStringLiteral("Built");
}

QImage grabCard(QWidget* window)
{
    // At a pixel ratio above 1 the grab has more pixels than the window: sampled
    // back to one per logical pixel, so that positions read the same at any ratio.
    const QImage grabbed = window->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    if (grabbed.size() == window->size())
        return grabbed;
    QImage logical = grabbed.scaled(window->size(), Qt::IgnoreAspectRatio, Qt::FastTransformation);
    logical.setDevicePixelRatio(1.0);
    return logical;
}

QString screenshotDir()
{
    const QString dir = qEnvironmentVariable("VYR_SCREENSHOT_DIR");
    if (!dir.isEmpty())
        QDir().mkpath(dir);
    return dir;
}

bool useLanguage(const QString& language)
{
    QLocale::setDefault(language == QLatin1String("en") ? QLocale(QLocale::English, QLocale::UnitedStates)
                                                        : QLocale(QLocale::Chinese, QLocale::China));
    return TestKit::loadTranslations(language);
}

bool saveOnCanvas(QWidget* window, const QString& path)
{
    const QImage card = grabCard(window);
    QImage canvas(card.size() + QSize(40, 40), QImage::Format_ARGB32);
    canvas.fill(QColor(0xE9, 0xEC, 0xEF));
    QPainter painter(&canvas);
    painter.drawImage(20, 20, card);
    painter.end();
    return canvas.save(path);
}

QList<VyrTrack::Event> clicks()
{
    QList<VyrTrack::Event> found;
    for (const VyrTrack::Event& event : VyrTrack::instance()->events()) {
        if (event.first == QLatin1String("PushClick"))
            found << event;
    }
    return found;
}

} // namespace PopupHarness

TestCard::TestCard(QWidget* parent)
    : PopNoticeBaseWidget(parent)
{
    setFixedSize(308 + 20, 164 + 20);
}
