#include "SimpleMessagePopup.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QTimer>

namespace {
constexpr int kRadius = 6;
constexpr int kMargin = 12;
const QColor kBackground(0, 0, 0, 191);
} // namespace

QList<SimpleMessagePopup*> SimpleMessagePopup::m_open;

void SimpleMessagePopup::popupSimpleMessage(QString text, int durationMs, QSize size, QPoint pos)
{
    auto* popup = new SimpleMessagePopup(text, durationMs);
    popup->setFixedSize(size);
    popup->move(pos);
    popup->show();
    popup->m_closeTimer->start(qMax(0, durationMs));
}

QList<SimpleMessagePopup*> SimpleMessagePopup::openPopups()
{
    return m_open;
}

SimpleMessagePopup::SimpleMessagePopup(const QString& text, int durationMs)
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::Tool | Qt::WindowStaysOnTopHint)
    , m_label(new QLabel(this))
    , m_closeTimer(new QTimer(this))
    , m_durationMs(durationMs)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating);
    // A message must never keep the application running.
    setAttribute(Qt::WA_QuitOnClose, false);

    m_label->setObjectName(QStringLiteral("simpleMessageLabel"));
    m_label->setText(text);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setAlignment(Qt::AlignCenter);
    m_label->setWordWrap(true);
    m_label->setStyleSheet(QStringLiteral("color: #FFFFFF; background: transparent;"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->addWidget(m_label);

    m_closeTimer->setSingleShot(true);
    // The time is what the caller asked, not a coarse timer's approximation of it.
    m_closeTimer->setTimerType(Qt::PreciseTimer);
    connect(m_closeTimer, &QTimer::timeout, this, &QWidget::close);
    m_open.append(this);
}

SimpleMessagePopup::~SimpleMessagePopup()
{
    m_open.removeAll(this);
}

QString SimpleMessagePopup::text() const
{
    return m_label->text();
}

int SimpleMessagePopup::durationMs() const
{
    return m_durationMs;
}

int SimpleMessagePopup::remainingMs() const
{
    return m_closeTimer->isActive() ? m_closeTimer->remainingTime() : -1;
}

void SimpleMessagePopup::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kBackground);
    painter.drawRoundedRect(rect(), kRadius, kRadius);
}
