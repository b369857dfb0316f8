#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

class QTimer;

/**
 * A busy indicator drawn over its parent: a rounded, half-transparent box
 * with a ring of lines turning round and an optional text under it.
 *
 * The widget covers its parent's whole area and follows its resizes; only
 * the box is painted, the rest stays transparent. With `centerOnParent` the
 * box stands in the middle of the parent, else at its top left corner. With
 * `passMouseThrough` clicks go through to the widgets under it, so the
 * parent stays usable while it spins; without, the spinner swallows the
 * clicks that land on the parent. It is hidden until start().
 *
 * Host side (to observe it):
 *   isSpinning()         start() called and stop() not since
 *   currentCounter()     the line the ring's head is on; advances every
 *                        1000 / (revolutionsPerSecond * numberOfLines) ms
 *   text(), isTextVisible(), innerRadius(), lineLength(), lineWidth(),
 *   borderRadius(), opacity()
 *   boxRect()            where the box is painted, in the widget's coordinates
 */
class WaitingSpinnerWidget : public QWidget
{
    Q_OBJECT
public:
    WaitingSpinnerWidget(QWidget* parent, bool centerOnParent = true, bool passMouseThrough = true);

    void setInnerRadius(int radius);
    void setLineLength(int length);
    void setLineWidth(int width);
    /** The box's corner radius. The name is the client's, typo included. */
    void setBorderRaius(double radius);
    /** Opacity of the box's dark background, 0 to 1. */
    void setOpacity(double opacity);
    /** The text under the ring, shown when @p visible. */
    void setText(const QString& text, bool visible);
    void setColor(const QColor& color);

    void start();
    void stop();

    bool isSpinning() const;
    int currentCounter() const;
    QString text() const;
    bool isTextVisible() const;
    int innerRadius() const;
    int lineLength() const;
    int lineWidth() const;
    double borderRadius() const;
    double opacity() const;
    QRect boxRect() const;

    static constexpr int NumberOfLines = 12;
    static constexpr double RevolutionsPerSecond = 1.0;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void rotate();
    void fitToParent();
    QSize boxSize() const;
    QColor lineColor(int distance) const;

    QTimer* m_timer = nullptr;
    bool m_centerOnParent = true;
    bool m_spinning = false;
    int m_currentCounter = 0;
    int m_innerRadius = 10;
    int m_lineLength = 10;
    int m_lineWidth = 2;
    double m_borderRadius = 0.0;
    double m_opacity = 1.0;
    QString m_text;
    bool m_textVisible = false;
    QColor m_color = QColor(Qt::white);
};
