#include "WindowActions.h"

#include "GatheredNoticeHost.h"
#include "NoticeListViewItem.h"
#include "NoticeListWidget.h"
#include "ScenarioPlayer.h"
#include "ScreenshotTaker.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QTimer>
#include <QToolButton>

namespace {

VyrEngine::NoticeCategory categoryOf(const QJsonObject& step)
{
    return step.value(QStringLiteral("category")).toString() == QLatin1String("Lesson") ? VyrEngine::Lesson
                                                                                      : VyrEngine::Activity;
}

void sendMouse(QWidget* window, QEvent::Type type, const QPoint& local, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    QMouseEvent event(type, local, local, window->mapToGlobal(local), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &event);
}

} // namespace

WindowActions::WindowActions(GatheredNoticeHost* host, ScreenshotTaker* screenshots, QObject* parent)
    : QObject(parent)
    , m_host(host)
    , m_screenshots(screenshots)
{
}

void WindowActions::registerActions(ScenarioPlayer* player)
{
    player->addAction(QStringLiteral("clickRow"), [this](const QJsonObject& step) { clickRow(step); });
    player->addAction(QStringLiteral("enterClassRoom"), [this](const QJsonObject& step) { enterClassRoom(step); });
    player->addAction(QStringLiteral("closeWindow"), [this](const QJsonObject& step) { closeWindow(step); });
    player->addAction(QStringLiteral("hover"), [this](const QJsonObject& step) { hover(step); });
    player->addAction(QStringLiteral("dragWindow"), [this](const QJsonObject& step) { dragWindow(step); });
    player->addAction(QStringLiteral("screenshot"), [this](const QJsonObject& step) { screenshot(step); });
    player->addAction(QStringLiteral("quitWhenHidden"), [this](const QJsonObject& step) { quitWhenHidden(step); });
}

NoticeListWidget* WindowActions::windowOf(const QJsonObject& step) const
{
    return m_host->window(categoryOf(step));
}

QAbstractItemView* WindowActions::viewOf(NoticeListWidget* window) const
{
    return window->findChild<QAbstractItemView*>(QStringLiteral("noticeListView"));
}

// A real click on the list's viewport: the row delegate tells the row from its button.
void WindowActions::clickViewAt(const QJsonObject& step, bool onEnterButton)
{
    QAbstractItemView* view = viewOf(windowOf(step));
    if (!view || !view->model()) {
        emit said(QStringLiteral("click: no list"));
        return;
    }
    const QModelIndex index = view->model()->index(step.value(QStringLiteral("row")).toInt(), 0);
    const QRect rowRect = view->visualRect(index);
    if (!index.isValid() || rowRect.isEmpty()) {
        emit said(QStringLiteral("click: no such row"));
        return;
    }
    const QPoint point = onEnterButton ? NoticeListViewItem::enterButtonRect(rowRect).center()
                                       : QPoint(rowRect.left() + 20, rowRect.center().y());
    sendMouse(view->viewport(), QEvent::MouseButtonPress, point, Qt::LeftButton, Qt::LeftButton);
    sendMouse(view->viewport(), QEvent::MouseButtonRelease, point, Qt::LeftButton, Qt::NoButton);
}

void WindowActions::clickRow(const QJsonObject& step)
{
    clickViewAt(step, false);
}

void WindowActions::enterClassRoom(const QJsonObject& step)
{
    clickViewAt(step, true);
}

void WindowActions::closeWindow(const QJsonObject& step)
{
    if (auto* button = windowOf(step)->findChild<QToolButton*>())
        button->click();
}

void WindowActions::hover(const QJsonObject& step)
{
    NoticeListWidget* window = windowOf(step);
    if (step.value(QStringLiteral("on")).toBool(true))
        QCursor::setPos(window->mapToGlobal(window->rect().center()));
    else
        QCursor::setPos(QPoint(0, 0));
}

void WindowActions::dragWindow(const QJsonObject& step)
{
    NoticeListWidget* window = windowOf(step);
    const QPoint delta(step.value(QStringLiteral("dx")).toInt(), step.value(QStringLiteral("dy")).toInt());
    // Grab the title strip, move in a few steps, let go.
    const QPoint grip(window->width() / 2, 30);
    sendMouse(window, QEvent::MouseButtonPress, grip, Qt::LeftButton, Qt::LeftButton);
    const int steps = 4;
    const QPoint startPos = window->pos();
    for (int i = 1; i <= steps; ++i) {
        // The window moves under the pointer, so the local point is the grip minus what it has moved.
        const QPoint travelled = delta * i / steps;
        const QPoint local = grip + travelled - (window->pos() - startPos);
        sendMouse(window, QEvent::MouseMove, local, Qt::NoButton, Qt::LeftButton);
    }
    sendMouse(window, QEvent::MouseButtonRelease, grip, Qt::LeftButton, Qt::NoButton);
}

void WindowActions::screenshot(const QJsonObject& step)
{
    const QString name = step.value(QStringLiteral("name")).toString(QStringLiteral("shot"));
    const QStringList files = m_screenshots->take(
        name, {{QStringLiteral("Lesson"), m_host->window(VyrEngine::Lesson)},
               {QStringLiteral("Activity"), m_host->window(VyrEngine::Activity)}});
    for (const QString& file : files)
        emit said(QStringLiteral("screenshot: %1").arg(file));
}

void WindowActions::quitWhenHidden(const QJsonObject& step)
{
    if (!m_host->anyVisible()) {
        QCoreApplication::exit(0);
        return;
    }
    m_waitingToQuit = true;
    emit said(QStringLiteral("waiting for the windows to go"));
    connect(m_host, &GatheredNoticeHost::windowHidden, this, [this]() {
        if (!m_host->anyVisible())
            QCoreApplication::exit(0);
    });
    const int timeout = step.value(QStringLiteral("timeout")).toInt(20000);
    QTimer::singleShot(timeout, this, [this]() {
        emit said(QStringLiteral("windows still up after the timeout"));
        QCoreApplication::exit(3);
    });
}
