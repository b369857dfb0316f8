#pragma once

#include "VyrNoticeExport.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>

class QWidget;

/**
 * Keeps notice windows at the corner from covering each other. Opt-in: a
 * host that doesn't use it gets the windows exactly where they put
 * themselves, one on top of another.
 *
 * The host hands over its single pop-ups and gathered windows with
 * addWindow(), right after creating them (before popNotice() or the first
 * pop). Whenever one of them shows, hides, changes its height or goes away,
 * the visible ones are stacked upward from the corner in the order they
 * showed: the first stays in the corner, each later one stands on the one
 * before, spacing() pixels apart (their transparent shadow borders already
 * keep the cards apart). Their white panels share one right edge: a card,
 * whose shadow border is thinner than a gathered window's, stands that much
 * further left.
 *
 * Every stacked window stays wholly inside the work area. When the next
 * window would reach above the work area's top, it starts a new column just
 * left of the present one (spacing() pixels apart) and the stack goes on
 * upward from the bottom there. When no further column fits in the work
 * area, the window stands in the last column with its top on the work area's
 * top, covering the upper part of the window below it (newest on top), until
 * places free up and restack() closes the gaps. A window larger than the
 * work area keeps its top left corner inside. A window that the user dragged
 * stays where it was dropped and leaves its place in the stack to the others
 * until it hides.
 *
 * The stacker moves windows at once, without animation. A host that uses it
 * lets it place the gathered windows: it calls restack() where it would
 * re-position one itself. It doesn't own the windows; a window that is
 * destroyed simply leaves the stack.
 */
class VYRNOTICE_EXPORT NoticeStacker : public QObject
{
    Q_OBJECT
public:
    /** An empty stacker, owned by @p parent. */
    explicit NoticeStacker(QObject* parent = nullptr);
    /** Lets every window go where it stands. */
    ~NoticeStacker() override;

    /** Takes @p window (a top-level widget) into the stack; a second call for it does nothing. */
    void addWindow(QWidget* window);
    /** Lets @p window go; it stays where it stands and the gap closes. */
    void removeWindow(QWidget* window);
    /** The windows handed over and not yet gone, in the order they last showed. */
    QList<QWidget*> windows() const;
    /** True when the user dragged @p window during its present showing. */
    bool isDragged(QWidget* window) const;

    /** Sets @p spacing extra pixels between two stacked windows and restacks. */
    void setSpacing(int spacing);
    /** The extra pixels between two stacked windows; 0 by default. */
    int spacing() const;

public slots:
    /** Puts every visible, undragged window in its place now. */
    void restack();

protected:
    /** Follows each window's showing, hiding, resizing and dragging. */
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Entry
    {
        QPointer<QWidget> window;
        bool pressed = false;
        bool dragged = false;
    };

    static int shadowRight(const QWidget* window);
    static QRect workArea();
    int indexOf(const QObject* window) const;
    void onWindowDestroyed(QObject* window);
    void moveToEnd(int index);

    QList<Entry> m_entries;
    int m_spacing = 0;
    bool m_moving = false;
};
