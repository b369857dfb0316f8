#include "UserSimulator.h"

#include "DemoHost.h"
#include "EnterButtonLocator.h"
#include "NoticeListWidget.h"
#include "ScenarioPlayer.h"
#include "WindowSettler.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QToolButton>

namespace {

VyrEngine::NoticeCategory categoryOf(const QJsonObject& step)
{
    return step.value(QStringLiteral("category")).toString() == QLatin1String("Lesson") ? VyrEngine::Lesson
                                                                                      : VyrEngine::Activity;
}

void sendMouse(QWidget* widget, QEvent::Type type, const QPoint& local, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    QMouseEvent event(type, local, local, widget->mapToGlobal(local), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void click(QWidget* widget, const QPoint& local)
{
    sendMouse(widget, QEvent::MouseButtonPress, local, Qt::LeftButton, Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, local, Qt::LeftButton, Qt::NoButton);
}

} // namespace

UserSimulator::UserSimulator(DemoHost* host, QObject* parent)
    : QObject(parent)
    , m_host(host)
{
}

void UserSimulator::registerActions(ScenarioPlayer* player)
{
    player->addAction(QStringLiteral("clickRow"), [this](const QJsonObject& step) { clickRow(step); });
    player->addAction(QStringLiteral("enterClassRoom"), [this](const QJsonObject& step) { enterClassRoom(step); });
    player->addAction(QStringLiteral("closeWindow"), [this](const QJsonObject& step) { closeWindow(step); });
    player->addAction(QStringLiteral("hover"), [this](const QJsonObject& step) { hover(step); });
    player->addAction(QStringLiteral("dragWindow"), [this](const QJsonObject& step) { dragWindow(step); });
}

NoticeListWidget* UserSimulator::windowOf(const QJsonObject& step) const
{
    return m_host->window(categoryOf(step));
}

// The window's list is a Qt item view; its rows are what the user sees.
QAbstractItemView* UserSimulator::listOf(const QJsonObject& step) const
{
    return windowOf(step)->findChild<QAbstractItemView*>();
}

// The row's rectangle in the list's viewport; empty, with a line said, when there is no such row.
QRect UserSimulator::rowRect(QAbstractItemView* list, const QJsonObject& step)
{
    const int row = step.value(QStringLiteral("row")).toInt();
    if (!list || !list->model() || !list->isVisible()) {
        emit said(QStringLiteral("user: no list to click in"));
        return QRect();
    }
    const QRect rect = list->visualRect(list->model()->index(row, 0));
    if (rect.isEmpty())
        emit said(QStringLiteral("user: no row %1").arg(row));
    return rect;
}

void UserSimulator::clickRow(const QJsonObject& step)
{
    QAbstractItemView* list = listOf(step);
    const QRect rect = rowRect(list, step);
    // On the avatar: never on a button.
    if (!rect.isEmpty())
        click(list->viewport(), QPoint(rect.left() + 20, rect.center().y()));
}

// The button is found on a picture of the row by its colour, not by the
// row's layout: its size follows the translated label and its place may move,
// but a user always sees the green button.
void UserSimulator::enterClassRoom(const QJsonObject& step)
{
    QAbstractItemView* list = listOf(step);
    const QRect rect = rowRect(list, step);
    if (rect.isEmpty())
        return;
    const QPixmap picture = list->viewport()->grab(rect);
    const QRect button = EnterButtonLocator::find(picture.toImage());
    if (button.isNull()) {
        emit said(QStringLiteral("user: row %1 has no enter-classroom button").arg(step.value(QStringLiteral("row")).toInt()));
        return;
    }
    const qreal ratio = picture.devicePixelRatio();
    click(list->viewport(), rect.topLeft() + QPointF(QPointF(button.center()) / ratio).toPoint());
}

void UserSimulator::closeWindow(const QJsonObject& step)
{
    if (auto* button = windowOf(step)->findChild<QToolButton*>())
        button->click();
}

void UserSimulator::hover(const QJsonObject& step)
{
    NoticeListWidget* window = windowOf(step);
    if (step.value(QStringLiteral("on")).toBool())
        QCursor::setPos(window->mapToGlobal(window->rect().center()));
    else
        QCursor::setPos(QPoint(0, 0));
}

void UserSimulator::dragWindow(const QJsonObject& step)
{
    // A hand can't hold a window that is still sliding into place: its slide would carry it off.
    WindowSettler::waitForStillWindows();
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
