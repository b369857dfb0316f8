#include "UserSimulator.h"

#include "ClassNoticeWidget.h"
#include "DemoHost.h"
#include "EnterButtonLocator.h"
#include "NoticeListWidget.h"
#include "NoticeStacker.h"
#include "ScenarioFormat.h"
#include "ScenarioPlayer.h"
#include "WindowSettler.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QAbstractButton>
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

// What a screen reader reads out for each button of the card, in the order of the format's card buttons.
QString accessibleNameOf(const QString& button)
{
    const QStringList buttons = ScenarioFormat::choices(ScenarioFormat::Type::CardButton);
    const char* const ids[] = {"ID_ClassAheadNotice_Known", "ID_Enter_Classroom", "ID_ClassNotice_Later",
                               "ID_PopNotice_CloseAccessibleName"};
    const int index = buttons.indexOf(button);
    return index < 0 ? QString() : qtTrId(ids[index], -1);
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
    player->addAction(QStringLiteral("clickClassNotice"), [this](const QJsonObject& step) { clickClassNotice(step); });
    player->addAction(QStringLiteral("dragClassNotice"), [this](const QJsonObject& step) { dragClassNotice(step); });
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
    // Grab the title strip.
    drag(window, QPoint(window->width() / 2, 30),
         QPoint(step.value(QStringLiteral("dx")).toInt(), step.value(QStringLiteral("dy")).toInt()));
}

ClassNoticeWidget* UserSimulator::newestClassNotice()
{
    // The stacker lists the host's windows in the order they showed.
    const QList<QWidget*> windows = m_host->stacker()->windows();
    for (auto it = windows.crbegin(); it != windows.crend(); ++it) {
        auto* notice = qobject_cast<ClassNoticeWidget*>(*it);
        if (notice && notice->isVisible())
            return notice;
    }
    emit said(QStringLiteral("user: no class notice is up"));
    return nullptr;
}

// The button is the one the user sees with that label: a button of another
// page of the card is hidden, so "enter" on the ahead page finds nothing.
void UserSimulator::clickClassNotice(const QJsonObject& step)
{
    ClassNoticeWidget* notice = newestClassNotice();
    if (!notice)
        return;
    const QString button = step.value(QStringLiteral("button")).toString();
    const QString name = accessibleNameOf(button);
    const QList<QAbstractButton*> buttons = notice->findChildren<QAbstractButton*>();
    for (QAbstractButton* candidate : buttons) {
        if (candidate->isVisible() && candidate->accessibleName() == name) {
            emit said(QStringLiteral("user: clicks \"%1\" on the class notice").arg(candidate->accessibleName()));
            click(candidate, candidate->rect().center());
            return;
        }
    }
    emit said(QStringLiteral("user: the class notice shows no %1 button").arg(button));
}

void UserSimulator::dragClassNotice(const QJsonObject& step)
{
    WindowSettler::waitForStillWindows();
    ClassNoticeWidget* notice = newestClassNotice();
    if (!notice)
        return;
    // On the title, left of the close button: inside the card's grip strip under its shadow border.
    drag(notice, QPoint(notice->width() / 3, 22),
         QPoint(step.value(QStringLiteral("dx")).toInt(), step.value(QStringLiteral("dy")).toInt()));
}

// Press, move in a few steps, let go.
void UserSimulator::drag(QWidget* window, const QPoint& grip, const QPoint& delta)
{
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
