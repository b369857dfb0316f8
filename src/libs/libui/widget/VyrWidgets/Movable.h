#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

class QMouseEvent;
class QWidget;

/**
 * Lets the user drag a top-level widget with the left mouse button. It is a
 * child of its target and watches the target's mouse events through an
 * event filter; it never consumes them.
 *
 * Move types:
 *   MoveWhole (0)        a press anywhere on the target starts a drag
 *   MoveNone (1)         the target is not draggable (the helper only watches)
 *   MoveByTopArea (2)    only a press in the top strip of setMoveTriggerArea() pixels starts a drag
 *
 * A drag starts once the pointer has travelled QApplication::startDragDistance()
 * from the press. signalPosChanged() is emitted for each step that moves the target.
 *
 * Host side:
 *   isDragging()         a drag is under way
 *   moveTriggerArea()    the height set by setMoveTriggerArea (0 until set)
 */
class Movable : public QObject
{
    Q_OBJECT
public:
    enum MoveType
    {
        MoveWhole = 0,
        MoveNone = 1,
        MoveByTopArea = 2,
    };

    Movable(QWidget* target, MoveType type);

    void setMoveTriggerArea(int height);

    // Host side.
    int moveTriggerArea() const { return m_triggerArea; }
    bool isDragging() const { return m_dragging; }

signals:
    void signalPosChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool startsDrag(const QPoint& localPos) const;
    void onPress(QMouseEvent* event);
    void onMove(QMouseEvent* event);
    void onRelease();

    QPointer<QWidget> m_target;
    MoveType m_type;
    int m_triggerArea = 0;
    bool m_pressed = false;
    bool m_dragging = false;
    QPoint m_pressGlobalPos;
    QPoint m_pressTargetPos;
};
