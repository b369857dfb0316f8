#include "NoticeWindowHarness.h"

#include "NoticeListModel.h"
#include "NoticeListViewItem.h"
#include "NoticeListWidget.h"
#include "ScreenCornerOverride_p.h"
#include "VyrPauseableTimer.h"

#include <QCoreApplication>
#include <QCursor>
#include <QLabel>
#include <QListView>
#include <QPropertyAnimation>

namespace NoticeWindowHarness {

void useTestScreen(TaskbarEdge taskbarEdge)
{
    ScreenCorner::Screen screen;
    screen.taskbarEdge = taskbarEdge;
    screen.geometry = QRect(0, 0, 800, 600);
    screen.availableGeometry = QRect(0, 0, 800, 560);
    ScreenCornerOverride::set(screen);
}

QString sourceFile()
{
    return QStringLiteral("src/plugins/im/VyrNotice/NoticeListWidget.cpp");
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

QString title(NoticeListWidget* window)
{
    return window->findChild<QLabel*>(QStringLiteral("titleLabel"))->text();
}

QListView* view(NoticeListWidget* window)
{
    return window->findChild<QListView*>(QStringLiteral("noticeListView"));
}

NoticeListViewItem* delegate(NoticeListWidget* window)
{
    return window->findChild<NoticeListViewItem*>();
}

int rowCount(NoticeListWidget* window)
{
    return view(window)->model()->rowCount();
}

QModelIndex rowIndex(NoticeListWidget* window, int row)
{
    return view(window)->model()->index(row, 0);
}

void addActivityNotices(NoticeListWidget* window, int count)
{
    for (int i = 0; i < count; ++i) {
        NoticeListModel::instance()->addContactorAddNotice();
        window->adjustListHeight(0);
    }
}

void removeNewestNotice(NoticeListWidget* window)
{
    NoticeListModel* model = NoticeListModel::instance();
    model->delNotice(model->index(model->rowCount() - 1));
    window->adjustListHeight(1);
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
