#include "Movable.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

Movable::Movable(QWidget* target, MoveType type)
    : QObject(target)
    , m_target(target)
    , m_type(type)
{
    if (target)
        target->installEventFilter(this);
}

void Movable::setMoveTriggerArea(int height)
{
    m_triggerArea = height;
}

bool Movable::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_target)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        onPress(static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseMove:
        onMove(static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            onRelease();
        break;
    case QEvent::Hide:
        onRelease();
        break;
    default:
        break;
    }
    return false;
}

bool Movable::startsDrag(const QPoint& localPos) const
{
    switch (m_type) {
    case MoveWhole:
        return true;
    case MoveByTopArea:
        return localPos.y() >= 0 && localPos.y() < m_triggerArea;
    case MoveNone:
        break;
    }
    return false;
}

void Movable::onPress(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !startsDrag(event->pos()))
        return;
    m_pressed = true;
    m_dragging = false;
    m_pressGlobalPos = event->globalPos();
    m_pressTargetPos = m_target->pos();
}

void Movable::onMove(QMouseEvent* event)
{
    if (!m_pressed || !(event->buttons() & Qt::LeftButton))
        return;
    const QPoint delta = event->globalPos() - m_pressGlobalPos;
    if (!m_dragging && delta.manhattanLength() < QApplication::startDragDistance())
        return;
    m_dragging = true;
    const QPoint newPos = m_pressTargetPos + delta;
    if (newPos == m_target->pos())
        return;
    m_target->move(newPos);
    emit signalPosChanged();
}

void Movable::onRelease()
{
    m_pressed = false;
    m_dragging = false;
}
