#include "PopNoticeBaseWidget.h"

#include "GlobalStyle.h"
#include "ImSignalObject.h"
#include "Movable.h"
#include "NoticeWindowMetrics_p.h"
#include "OutsideText_p.h"
#include "PushTracking_p.h"
#include "ScreenCorner.h"
#include "ShadowMask_p.h"
#include "VyrUtils.h"

#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPropertyAnimation>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <qdrawutil.h>

namespace {
constexpr int kTitleHeight = 30;
constexpr int kHoldTimeMs = 15000;
constexpr int kAnimationMs = 500;
} // namespace

PopNoticeBaseWidget::PopNoticeBaseWidget(QWidget* parent)
    : QWidget(parent, Qt::WindowFlags())
    , m_shadowMargins(NoticeWindowMetrics::CardShadow, NoticeWindowMetrics::CardShadow, NoticeWindowMetrics::CardShadow,
                      NoticeWindowMetrics::CardShadow)
{
    // Intended: the result of open() is not looked at; a missing sheet leaves the card unstyled.
    QFile file(QStringLiteral(":/im/qss/notice/PopNoticeStyleSheet.qss"));
    file.open(QIODevice::ReadOnly);
    setStyleSheet(QString::fromUtf8(file.readAll()));
    file.close();

    setAttribute(Qt::WA_TranslucentBackground, true);
    setAttribute(Qt::WA_DeleteOnClose, true);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowFlags(windowFlags() | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint | Qt::Tool);

    // A log-out closes every pop-up at once, without a fade.
    connect(ImSignalObject::instance(), &ImSignalObject::signalLogOut, this, &QWidget::close);

    initUi();
    setAttribute(Qt::WA_ShowWithoutActivating, true);
    // Without a compositor the shadow border would show black: only the card shows then.
    ShadowMask::follow(this, m_shadowMargins);
}

// Timer, animations and panels are children; nothing is deleted by hand.
PopNoticeBaseWidget::~PopNoticeBaseWidget() = default;

QWidget* PopNoticeBaseWidget::createTitleWidget()
{
    m_titleLabel = new QLabel(this);
    m_titleLabel->setObjectName(QStringLiteral("titleLabel"));
    // Some titles are the host's words from a server (a study activity's).
    OutsideText::makePlain(m_titleLabel);
    GlobalStyle::getInstance()->applyCurrentFontSize(m_titleLabel, 12, QFont::Medium);
    GlobalStyle::getInstance()->applyCurrentStyle(m_titleLabel, QStringLiteral("QLabel_IMMainStyle_Title"), false);
    VyrUtils::styleBold(m_titleLabel);

    m_closeBtn = new QToolButton(this);
    m_closeBtn->setObjectName(QStringLiteral("closeBtn"));
    m_closeBtn->setFixedSize(30, 24);
    GlobalStyle::getInstance()->applyCurrentStyle(m_closeBtn, QStringLiteral("QToolButton_SameMainWindowClose"),
                                                  false);
    m_closeBtn->setToolTip(qtTrId("ID_Close", -1));
    m_closeBtn->setAccessibleName(qtTrId("ID_PopNotice_CloseAccessibleName", -1));
    m_closeBtn->setCursor(Qt::PointingHandCursor);
    connect(m_closeBtn, &QToolButton::clicked, this, &QWidget::close);

    auto* layout = new QHBoxLayout();
    layout->setContentsMargins(8, 0, 4, 0);
    layout->setSpacing(0);
    layout->addWidget(m_titleLabel);
    layout->addStretch(0);
    layout->addWidget(m_closeBtn);

    auto* titleWidget = new QWidget(this);
    titleWidget->setObjectName(QStringLiteral("titleWidget"));
    titleWidget->setLayout(layout);
    return titleWidget;
}

void PopNoticeBaseWidget::initUi()
{
    m_titleWidget = createTitleWidget();
    m_titleWidget->setFixedHeight(kTitleHeight);

    // The shadow border and the title row start a drag. Owned by the window as its child.
    auto* movable = new Movable(this, Movable::MoveByTopArea);
    movable->setMoveTriggerArea(m_shadowMargins.top() + m_titleWidget->height());

    m_contentWidget = new QWidget(this);
    m_contentWidget->setObjectName(QStringLiteral("contentWidget"));

    auto* centralLayout = new QVBoxLayout();
    centralLayout->setContentsMargins(0, 0, 0, 0);
    centralLayout->setSpacing(0);
    centralLayout->addWidget(m_titleWidget);
    centralLayout->addWidget(m_contentWidget);

    auto* centralWidget = new QWidget(this);
    centralWidget->setObjectName(QStringLiteral("centralWidget"));
    centralWidget->setStyleSheet(QStringLiteral("QWidget#centralWidget{        background:#FFFFFF;        "
                                                "border-radius:4px;    }"));
    centralWidget->setLayout(centralLayout);

    auto* mainLayout = new QVBoxLayout();
    mainLayout->setContentsMargins(m_shadowMargins);
    mainLayout->setSpacing(0);
    mainLayout->addWidget(centralWidget);
    setLayout(mainLayout);
}

void PopNoticeBaseWidget::popNotice()
{
    showAnimation();
}

void PopNoticeBaseWidget::setAutoClose(bool autoClose)
{
    // Intended: stored and read by nothing; the timed close always runs.
    m_autoClose = autoClose;
}

void PopNoticeBaseWidget::setWindowTitle(QString title)
{
    m_titleLabel->setText(title);
    // What a screen reader announces with the alert.
    setAccessibleName(title);
}

void PopNoticeBaseWidget::setCloseBtnVisible(bool visible)
{
    m_closeBtn->setVisible(visible);
}

void PopNoticeBaseWidget::applyCurrentStyle(QWidget* widget, const QString& style, bool repolish)
{
    widget->setProperty("PropertyStyle", style);
    if (repolish) {
        this->style()->unpolish(widget);
        this->style()->polish(widget);
    }
}

void PopNoticeBaseWidget::applyCurrentFontSize(QWidget* widget, int pixelSize, QFont::Weight weight)
{
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    widget->setFont(font);
}

void PopNoticeBaseWidget::trackPushMessage(QMap<QString, QVariant>& data)
{
    PushTracking::send(PushTracking::PushSend, data, m_titleLabel->text());
}

void PopNoticeBaseWidget::trackClickPushMessage(QMap<QString, QVariant>& data)
{
    PushTracking::send(PushTracking::PushClick, data, m_titleLabel->text());
}

void PopNoticeBaseWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Loaded on every paint; there is no cache of our own.
    const QPixmap shadow(QStringLiteral(":/im/images/common/shadow.png"));
    qDrawBorderPixmap(&painter, rect(), m_shadowMargins, shadow, shadow.rect(), m_shadowMargins,
                      QTileRules(Qt::StretchTile, Qt::StretchTile), QDrawBorderPixmap::DrawingHints());
    // The base paints while the painter is still alive.
    QWidget::paintEvent(event);
}

void PopNoticeBaseWidget::showAnimation()
{
    ScreenCorner::Corner corner;
    // Any other taskbar edge leaves the positions of the last time.
    if (ScreenCorner::cornerFor(size(), 0, &corner)) {
        // Intended: stored and read by nothing; the card doesn't slide in.
        m_startPos = corner.start;
        m_endPos = corner.end;
    }
    move(m_endPos);
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);

    // Intended: a second call doesn't look at a fade-in that is running. Qt
    // stops that one (as it stops any animation of the same property), so
    // only the newer one finishes.
    m_showAnimation = new QPropertyAnimation(this, "windowOpacity", this);
    m_showAnimation->setObjectName(QStringLiteral("m_showAnimation"));
    m_showAnimation->setDuration(kAnimationMs);
    m_showAnimation->setStartValue(0.0);
    m_showAnimation->setEndValue(1.0);
    connect(m_showAnimation, &QPropertyAnimation::finished, this, &PopNoticeBaseWidget::closePosAnimation);
    m_showAnimation->start(QAbstractAnimation::KeepWhenStopped);
}

void PopNoticeBaseWidget::closePosAnimation()
{
    delete m_showAnimation;
    m_showAnimation = nullptr;

    // Not single-shot: the slot stops it. Never paused: the pointer doesn't hold the card.
    m_closeTimer = new QTimer(this);
    m_closeTimer->setObjectName(QStringLiteral("m_closeTimer"));
    connect(m_closeTimer, &QTimer::timeout, this, &PopNoticeBaseWidget::startOpacityAnimation);
    m_closeTimer->start(kHoldTimeMs);
}

void PopNoticeBaseWidget::startOpacityAnimation()
{
    // A timer left over from a second popNotice() may find the member already gone.
    if (m_closeTimer) {
        m_closeTimer->stop();
        delete m_closeTimer;
        m_closeTimer = nullptr;
    }

    m_opacityAnimation = new QPropertyAnimation(this, "windowOpacity", this);
    m_opacityAnimation->setObjectName(QStringLiteral("m_opacityAnimation"));
    m_opacityAnimation->setDuration(kAnimationMs);
    m_opacityAnimation->setStartValue(1.0);
    m_opacityAnimation->setEndValue(0.0);
    m_opacityAnimation->start(QAbstractAnimation::KeepWhenStopped);
    connect(m_opacityAnimation, &QPropertyAnimation::finished, this, &PopNoticeBaseWidget::closeOpacityAnimation);
}

void PopNoticeBaseWidget::closeOpacityAnimation()
{
    delete m_opacityAnimation;
    m_opacityAnimation = nullptr;
    close();
}
