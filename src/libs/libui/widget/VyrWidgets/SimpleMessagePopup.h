#pragma once

#include <QList>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QWidget>

class QLabel;
class QTimer;

/**
 * A short message in a frameless window of its own: a dark rounded panel
 * with white centred text, which closes and deletes itself after the given
 * time. It doesn't take the focus and stays on top.
 *
 * popupSimpleMessage(text, durationMs, size, pos) shows one at `pos` (the
 * window's top left corner on the screen) with `size`; a duration of 0 or
 * less closes it on the next turn of the event loop.
 *
 * Host side (to observe it):
 *   openPopups()         the messages on the screen now, oldest first
 *   text()               the message
 *   durationMs()         the time it was given
 *   remainingMs()        time left before it closes, -1 once it has
 */
class SimpleMessagePopup : public QWidget
{
    Q_OBJECT
public:
    static void popupSimpleMessage(QString text, int durationMs, QSize size, QPoint pos);
    ~SimpleMessagePopup() override;

    static QList<SimpleMessagePopup*> openPopups();
    QString text() const;
    int durationMs() const;
    int remainingMs() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SimpleMessagePopup(const QString& text, int durationMs);

    static QList<SimpleMessagePopup*> m_open;
    QLabel* m_label = nullptr;
    QTimer* m_closeTimer = nullptr;
    int m_durationMs = 0;
};
