#include "FriendRequestNotice.h"

#include "CardParts_p.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPixmap>
#include <QToolButton>

namespace {
constexpr int kCardWidth = 277;
constexpr int kCardHeight = 87;
constexpr int kIconSize = 20;
const QString kScene = QStringLiteral("添加好友申请");
} // namespace

FriendRequestNotice::FriendRequestNotice(QWidget* parent)
    : PopNoticeBaseWidget(parent)
{
    initUi();
}

void FriendRequestNotice::initUi()
{
    CardParts::fixCardSize(this, m_shadowMargins, kCardWidth, kCardHeight);
    setWindowTitle(qtTrId("ID_FriendRequestNotice_NewMessage", -1));

    m_iconLabel = new QLabel(this);
    m_iconLabel->setObjectName(QStringLiteral("iconLabel"));
    m_iconLabel->setFixedSize(kIconSize, kIconSize);
    // A missing image leaves the label empty.
    m_iconLabel->setPixmap(QPixmap(QStringLiteral(":/im/images/notice/FriendAdd.svg"))
                               .scaled(m_iconLabel->size(), Qt::IgnoreAspectRatio, Qt::FastTransformation));

    m_nameLabel = new QLabel(qtTrId("ID_FriendRequest", -1), this);
    m_nameLabel->setObjectName(QStringLiteral("nameLabel"));
    applyCurrentStyle(m_nameLabel, QStringLiteral("QLabel_MessageTitle"), false);
    applyCurrentFontSize(m_nameLabel, 14, QFont::Medium);

    // Intended: the count is always 1, however many requests wait; nothing sets another.
    m_countLabel = new QLabel(QString("%1").arg(1), this);
    m_countLabel->setObjectName(QStringLiteral("countLabel"));
    applyCurrentStyle(m_countLabel, QStringLiteral("QLabel_MessageTitle"), false);
    applyCurrentFontSize(m_countLabel, 14, QFont::Medium);

    auto* layout = new QHBoxLayout();
    layout->setContentsMargins(35, 13, 35, 13);
    layout->setSpacing(0);
    layout->addWidget(m_iconLabel);
    layout->addSpacing(12);
    layout->addWidget(m_nameLabel);
    layout->addStretch();
    layout->addWidget(m_countLabel);
    m_contentWidget->setLayout(layout);

    // Only tracks: the card's own connection closes the window.
    connect(m_closeBtn, &QToolButton::clicked, this, [this]() { trackClick(false); });
}

void FriendRequestNotice::trackClick(bool checkUp)
{
    QMap<QString, QVariant> data = CardParts::clickData(m_countLabel->text(), kScene, checkUp);
    trackClickPushMessage(data);
}

void FriendRequestNotice::mouseReleaseEvent(QMouseEvent* event)
{
    // Intended: the panel's geometry is in its parent's coordinates and the
    // position in the window's, unmapped; the hit area lies 10 pixels up and
    // left of the drawn panel.
    if (!m_contentWidget->geometry().contains(event->pos()))
        return;
    emit contentClickSignal();
    // Intended: close first, track after; the window is hidden when the event goes out.
    close();
    trackClick(true);
    // Intended: the base handler is not called, on or off the content.
}
