#include "WaitingSpinnerWidget.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QTimer>
#include <QtMath>

namespace {
constexpr int kPadding = 8;
constexpr int kTextGap = 4;
constexpr int kTextPixelSize = 12;
constexpr double kMinTrailOpacity = 0.15;
} // namespace

WaitingSpinnerWidget::WaitingSpinnerWidget(QWidget* parent, bool centerOnParent, bool passMouseThrough)
    : QWidget(parent)
    , m_timer(new QTimer(this))
    , m_centerOnParent(centerOnParent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents, passMouseThrough);
    // Its own small text, whatever the parent's style sheet gives its children.
    QFont small = font();
    small.setPixelSize(kTextPixelSize);
    setFont(small);
    m_timer->setInterval(int(1000 / (RevolutionsPerSecond * NumberOfLines)));
    connect(m_timer, &QTimer::timeout, this, &WaitingSpinnerWidget::rotate);
    if (parent)
        parent->installEventFilter(this);
    fitToParent();
    hide();
}

void WaitingSpinnerWidget::setInnerRadius(int radius)
{
    m_innerRadius = radius;
    update();
}

void WaitingSpinnerWidget::setLineLength(int length)
{
    m_lineLength = length;
    update();
}

void WaitingSpinnerWidget::setLineWidth(int width)
{
    m_lineWidth = width;
    update();
}

void WaitingSpinnerWidget::setBorderRaius(double radius)
{
    m_borderRadius = radius;
    update();
}

void WaitingSpinnerWidget::setOpacity(double opacity)
{
    m_opacity = qBound(0.0, opacity, 1.0);
    update();
}

void WaitingSpinnerWidget::setText(const QString& text, bool visible)
{
    m_text = text;
    m_textVisible = visible;
    update();
}

void WaitingSpinnerWidget::setColor(const QColor& color)
{
    m_color = color;
    update();
}

void WaitingSpinnerWidget::start()
{
    m_spinning = true;
    fitToParent();
    show();
    raise();
    m_timer->start();
}

void WaitingSpinnerWidget::stop()
{
    m_spinning = false;
    m_timer->stop();
    m_currentCounter = 0;
    hide();
}

bool WaitingSpinnerWidget::isSpinning() const
{
    return m_spinning;
}

int WaitingSpinnerWidget::currentCounter() const
{
    return m_currentCounter;
}

QString WaitingSpinnerWidget::text() const
{
    return m_text;
}

bool WaitingSpinnerWidget::isTextVisible() const
{
    return m_textVisible;
}

int WaitingSpinnerWidget::innerRadius() const
{
    return m_innerRadius;
}

int WaitingSpinnerWidget::lineLength() const
{
    return m_lineLength;
}

int WaitingSpinnerWidget::lineWidth() const
{
    return m_lineWidth;
}

double WaitingSpinnerWidget::borderRadius() const
{
    return m_borderRadius;
}

double WaitingSpinnerWidget::opacity() const
{
    return m_opacity;
}

QSize WaitingSpinnerWidget::boxSize() const
{
    const int ring = 2 * (m_innerRadius + m_lineLength) + m_lineWidth;
    int width = ring;
    int height = ring;
    if (m_textVisible && !m_text.isEmpty()) {
        const QFontMetrics metrics(font());
        width = qMax(width, metrics.horizontalAdvance(m_text));
        height += kTextGap + metrics.height();
    }
    return QSize(width + 2 * kPadding, height + 2 * kPadding);
}

QRect WaitingSpinnerWidget::boxRect() const
{
    QRect box(QPoint(0, 0), boxSize());
    if (m_centerOnParent)
        box.moveCenter(rect().center());
    return box;
}

QColor WaitingSpinnerWidget::lineColor(int distance) const
{
    // The head is opaque; the lines behind it fade towards the tail.
    QColor color = m_color;
    const double step = (1.0 - kMinTrailOpacity) / (NumberOfLines - 1);
    color.setAlphaF(qMax(kMinTrailOpacity, 1.0 - distance * step));
    return color;
}

void WaitingSpinnerWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    const QRect box = boxRect();

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, qRound(255 * m_opacity)));
    painter.drawRoundedRect(box, m_borderRadius, m_borderRadius);

    const int ring = 2 * (m_innerRadius + m_lineLength) + m_lineWidth;
    const QPointF centre(box.center().x() + 0.5, box.top() + kPadding + ring / 2.0);
    for (int i = 0; i < NumberOfLines; ++i) {
        painter.save();
        painter.translate(centre);
        painter.rotate(360.0 * i / NumberOfLines);
        const int distance = (m_currentCounter - i + NumberOfLines) % NumberOfLines;
        painter.setBrush(lineColor(distance));
        painter.drawRoundedRect(QRectF(m_innerRadius, -m_lineWidth / 2.0, m_lineLength, m_lineWidth),
                                m_lineWidth / 2.0, m_lineWidth / 2.0);
        painter.restore();
    }

    if (m_textVisible && !m_text.isEmpty()) {
        painter.setPen(m_color);
        const QRect textRect(box.left(), box.top() + kPadding + ring + kTextGap, box.width(),
                             QFontMetrics(font()).height());
        painter.drawText(textRect, Qt::AlignCenter, m_text);
    }
}

bool WaitingSpinnerWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        fitToParent();
    return QWidget::eventFilter(watched, event);
}

void WaitingSpinnerWidget::rotate()
{
    m_currentCounter = (m_currentCounter + 1) % NumberOfLines;
    update();
}

void WaitingSpinnerWidget::fitToParent()
{
    if (parentWidget())
        setGeometry(parentWidget()->rect());
}
