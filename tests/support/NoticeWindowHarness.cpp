#include "NoticeWindowHarness.h"

#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "ScreenCorner.h"
#include "VyrPauseableTimer.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QCursor>
#include <QLabel>
#include <QPropertyAnimation>

namespace NoticeWindowHarness {

void useTestScreen(TaskbarEdge taskbarEdge)
{
    ScreenCorner::Screen screen;
    screen.taskbarEdge = taskbarEdge;
    screen.geometry = QRect(0, 0, 800, 600);
    screen.availableGeometry = QRect(0, 0, 800, 560);
    ScreenCorner::setOverride(screen);
}

VyrPauseableTimer* closeTimer(NoticeListWidget* window)
{
    return window->findChild<VyrPauseableTimer*>(QStringLiteral("m_closeTimer"));
}

QPropertyAnimation* animation(NoticeListWidget* window, const char* name)
{
    return window->findChild<QPropertyAnimation*>(QLatin1String(name));
}

void finish(QPropertyAnimation* animation)
{
    if (animation)
        animation->setCurrentTime(animation->duration());
}

int listHeight(NoticeListWidget* window)
{
    return window->getContentWidgetSize().height() - 50;
}

int rowCount(NoticeListWidget* window)
{
    auto* view = window->findChild<QAbstractItemView*>(QStringLiteral("noticeListView"));
    return view->model()->rowCount();
}

QString title(NoticeListWidget* window)
{
    return window->findChild<QLabel*>(QStringLiteral("titleLabel"))->text();
}

void movePointer(const QPoint& globalPos)
{
    QCursor::setPos(globalPos);
    QCoreApplication::processEvents();
}

QPoint pointOn(NoticeListWidget* window)
{
    return window->mapToGlobal(QPoint(window->width() / 2, 40));
}

QPoint pointOffWindows()
{
    return QPoint(5, 5);
}

} // namespace NoticeWindowHarness

HostWiring::HostWiring(NoticeListWidget* window, VyrEngine::NoticeCategory category)
    : QObject(window)
    , m_window(window)
    , m_category(category)
{
    NoticeListModel* model = NoticeListModel::instance();
    connect(model, &NoticeListModel::popupNoticeListWidget, this, [this](VyrEngine::NoticeCategory category) {
        if (category != m_category)
            return;
        m_window->adjustListHeight(0);
        if (m_window->isVisible())
            m_window->autoAdjustNoticeListWidgetPos();
        else
            m_window->popNoticeListWidget(0);
    });
    connect(model, &NoticeListModel::removeNoticeListItem, this, [this](VyrEngine::NoticeCategory category) {
        if (category == m_category)
            m_window->adjustListHeight(1);
    });
}
