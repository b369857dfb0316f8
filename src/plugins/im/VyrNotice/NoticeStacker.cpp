#include "NoticeStacker.h"

#include "NoticeListWidget.h"
#include "NoticeWindowMetrics_p.h"
#include "PopNoticeBaseWidget.h"
#include "ScreenCorner.h"

#include <QEvent>
#include <QMouseEvent>
#include <QWidget>

// The transparent shadow border around a window's visible panel: 10 pixels
// for a card, 20 for a gathered window, none for any other window.
int NoticeStacker::shadowRight(const QWidget* window)
{
    if (qobject_cast<const PopNoticeBaseWidget*>(window))
        return NoticeWindowMetrics::CardShadow;
    if (qobject_cast<const NoticeListWidget*>(window))
        return NoticeWindowMetrics::GatheredShadow;
    return 0;
}

NoticeStacker::NoticeStacker(QObject* parent)
    : QObject(parent)
{
}

NoticeStacker::~NoticeStacker()
{
    for (const Entry& entry : qAsConst(m_entries)) {
        if (entry.window)
            entry.window->removeEventFilter(this);
    }
}

void NoticeStacker::addWindow(QWidget* window)
{
    if (!window || indexOf(window) >= 0)
        return;
    Entry entry;
    entry.window = window;
    m_entries.append(entry);
    window->installEventFilter(this);
    connect(window, &QObject::destroyed, this, &NoticeStacker::onWindowDestroyed);
    if (window->isVisible())
        restack();
}

void NoticeStacker::removeWindow(QWidget* window)
{
    const int index = indexOf(window);
    if (index < 0)
        return;
    window->removeEventFilter(this);
    disconnect(window, &QObject::destroyed, this, &NoticeStacker::onWindowDestroyed);
    m_entries.removeAt(index);
    restack();
}

QList<QWidget*> NoticeStacker::windows() const
{
    QList<QWidget*> out;
    for (const Entry& entry : m_entries) {
        if (entry.window)
            out << entry.window.data();
    }
    return out;
}

bool NoticeStacker::isDragged(QWidget* window) const
{
    const int index = indexOf(window);
    return index >= 0 && m_entries.at(index).dragged;
}

void NoticeStacker::setSpacing(int spacing)
{
    m_spacing = spacing;
    restack();
}

int NoticeStacker::spacing() const
{
    return m_spacing;
}

void NoticeStacker::restack()
{
    // The visible panels share one right edge: windows with a thinner shadow
    // border stand that much further left.
    int widestShadow = 0;
    for (const Entry& entry : qAsConst(m_entries)) {
        if (entry.window && entry.window->isVisible() && !entry.dragged)
            widestShadow = qMax(widestShadow, shadowRight(entry.window));
    }
    ScreenCorner::Corner probe;
    // An unknown taskbar edge gives no corner: the windows stay where they put themselves.
    if (!ScreenCorner::cornerFor(QSize(0, 0), 0, &probe))
        return;
    const QRect area = workArea();
    int offset = 0;      // height taken in the present column
    int shift = 0;       // how far the present column stands left of the corner
    int columnLeft = area.right() + 1;
    bool columnUsed = false;
    m_moving = true;
    for (const Entry& entry : qAsConst(m_entries)) {
        QWidget* window = entry.window;
        if (!window || !window->isVisible() || entry.dragged)
            continue;
        const int nudge = widestShadow - shadowRight(window);
        ScreenCorner::Corner corner;
        ScreenCorner::cornerFor(window->size(), offset, &corner);
        if (columnUsed && corner.end.y() < area.top()) {
            // No room above: a new column left of this one. When none fits,
            // the window stays in this column at the work area's top (below).
            const int nextShift = area.right() + 1 - columnLeft + m_spacing;
            if (corner.end.x() - nextShift - nudge >= area.left()) {
                shift = nextShift;
                offset = 0;
                ScreenCorner::cornerFor(window->size(), 0, &corner);
            }
        }
        QPoint place = corner.end - QPoint(shift + nudge, 0);
        // A window larger than the work area keeps its top left corner inside.
        place.setX(qMax(place.x(), area.left()));
        place.setY(qMax(place.y(), area.top()));
        window->move(place);
        offset += window->height() + m_spacing;
        columnLeft = qMin(columnLeft, place.x());
        columnUsed = true;
    }
    m_moving = false;
}

// The work area in the frame the corner is measured in (the screen's top
// left at (0, 0)): the corner's lengths less what the taskbar takes.
QRect NoticeStacker::workArea()
{
    const ScreenCorner::Screen screen = ScreenCorner::current();
    int width = 0;
    int height = 0;
    ScreenCorner::screenLengths(screen, &width, &height);
    const int left = qMax(0, width - screen.availableGeometry.width());
    const int top = qMax(0, height - screen.availableGeometry.height());
    return QRect(QPoint(left, top), QPoint(width - 1, height - 1));
}

bool NoticeStacker::eventFilter(QObject* watched, QEvent* event)
{
    const int index = indexOf(watched);
    if (index < 0)
        return false;
    Entry& entry = m_entries[index];
    switch (event->type()) {
    case QEvent::Show:
        // A new showing: the window goes on top of the stack, undragged.
        entry.dragged = false;
        entry.pressed = false;
        moveToEnd(index);
        restack();
        break;
    case QEvent::Hide:
        entry.dragged = false;
        entry.pressed = false;
        restack();
        break;
    case QEvent::Resize:
        if (static_cast<QWidget*>(watched)->isVisible())
            restack();
        break;
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            entry.pressed = true;
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            entry.pressed = false;
            // The dragged window left its place; the others close up.
            if (entry.dragged)
                restack();
        }
        break;
    case QEvent::Move:
        if (entry.pressed && !m_moving)
            entry.dragged = true;
        break;
    default:
        break;
    }
    return false;
}

int NoticeStacker::indexOf(const QObject* window) const
{
    for (int i = 0; i < m_entries.size(); ++i) {
        if (m_entries.at(i).window == window)
            return i;
    }
    return -1;
}

void NoticeStacker::onWindowDestroyed(QObject* window)
{
    for (int i = m_entries.size() - 1; i >= 0; --i) {
        if (!m_entries.at(i).window || m_entries.at(i).window == window)
            m_entries.removeAt(i);
    }
    restack();
}

void NoticeStacker::moveToEnd(int index)
{
    if (index < m_entries.size() - 1)
        m_entries.append(m_entries.takeAt(index));
}
