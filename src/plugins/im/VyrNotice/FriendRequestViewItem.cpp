#include "FriendRequestViewItem.h"

#include "FriendRequestModel.h"

#include "AvatarManager.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "ImageOp.h"
#include "NoticeLog_p.h"
#include "RowPaintCache_p.h"
#include "UserInfo.h"
#include "VyrUtils.h"

#include <QDateTime>
#include <QDebug>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTextOption>

using namespace FriendRequest;

namespace {

const int HeaderHeight = 28;
const int LeafHeight = 58;
const int AvatarSide = 36;
const int ButtonWidth = 66;
const int ButtonHeight = 24;
const int ButtonGap = 12;
// Measured from the inner rectangle's right edge to the first button's left.
const int ButtonsOffset = 144;
const int NameWidth = 250;
// Left part of a row that counts as a click on the person: avatar and name.
const int AvatarZoneWidth = 312;
const int MaxUnknownPeopleLogged = 1024;

const char* const AgreeStyle =
    "QPushButton {background: #009265;border: none;border-radius: 4px;font-size: 12px;color: #fff;text-align: center;}"
    "\t\t\t\t\t\t\t\t   QPushButton:hover{background: #0C8962;}"
    "\t\t\t\t\t\t\t\t   QPushButton:pressed{background: #00835A;}"
    "\t\t\t\t\t\t\t\t   QPushButton:disabled {background: #F2F2F2;}";
const char* const RefuseStyle =
    "QPushButton {background: #FFFFFF;border: 1px solid #FF4A27;border-radius: 4px;font-size: 12px;color: #FF4A27;text-align: center;}"
    "\t\t\t\t\t\t\t\t\tQPushButton:hover {background: #FEF9F8;}"
    "\t\t\t\t\t\t\t\t\tQPushButton:pressed {background: #DDE2F5;}"
    "\t\t\t\t\t\t\t\t\tQPushButton:disabled {background: #F2F2F2;}";
const char* const StateStyle =
    "QPushButton {background: #009265;border: none;border-radius: 4px;font-size: 12px;color: #fff;text-align: center;}"
    "\t\t\t\t\t\t\t\t QPushButton:hover{background: #0C8962;}"
    "\t\t\t\t\t\t\t\tQPushButton:pressed{background: #00835A;}"
    "\t\t\t\t\t\t\t\tQPushButton:disabled {background: #D3D3D3;}";

QFont pixelFont(int pixelSize)
{
    QFont font;
    font.setPixelSize(pixelSize);
    return font;
}

QPushButton* styleSourceButton(const char* styleSheet)
{
    auto* button = new QPushButton();
    button->setStyleSheet(QString::fromLatin1(styleSheet));
    return button;
}

bool isMouseEvent(const QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return true;
    default:
        return false;
    }
}

// The translated words each status shows: its button's label and its line of text.
QString statusWording(int status)
{
    switch (status) {
    case AwaitingMyAnswer:
        return qtTrId("ID_Agree", -1) + QLatin1Char('\n') + qtTrId("ID_friendrequest_Refuse", -1);
    case AgreedByMe:
        return qtTrId("ID_friendrequest_Agreed", -1) + QLatin1Char('\n')
            + qtTrId("ID_friendrequest_AgreeFriendRequest", -1);
    case AgreedByPeer:
        return qtTrId("ID_friendrequest_Agreed", -1) + QLatin1Char('\n')
            + qtTrId("ID_friendrequest_FriendRequestHasBeenAgreed", -1);
    case RefusedByMe:
        return qtTrId("ID_friendrequest_Rejected", -1) + QLatin1Char('\n')
            + qtTrId("ID_friendrequest_RejectFriendRequest", -1);
    case RefusedByPeer:
        return qtTrId("ID_friendrequest_Rejected", -1) + QLatin1Char('\n')
            + qtTrId("ID_friendrequest_FriendRequestHasBeenReject", -1);
    case AwaitingPeerAnswer:
        return qtTrId("ID_friendrequest_WaitingVerify", -1);
    case Overdue:
        return qtTrId("ID_friendrequest_Overdue", -1);
    default:
        return QString();
    }
}

} // namespace

// Everything a row's picture shows, read at each paint.
struct FriendRequestViewItem::RowInputs
{
    bool isHeader = false;
    QString headerText;
    quint64 uid = 0;
    qint64 avatarKey = 0;
    QString name;
    int status = 0;
    QString message;
    QString wording;
    int agreeLook = 0;
    int refuseLook = 0;
    QFont applicationFont;

    bool operator==(const RowInputs& o) const
    {
        return isHeader == o.isHeader && uid == o.uid && avatarKey == o.avatarKey && status == o.status
            && agreeLook == o.agreeLook && refuseLook == o.refuseLook && headerText == o.headerText
            && name == o.name && message == o.message && wording == o.wording && applicationFont == o.applicationFont;
    }
};

FriendRequestViewItem::FriendRequestViewItem(QObject* parent)
    : QStyledItemDelegate(parent)
    , m_rowPictures(std::make_unique<RowPaintCache<RowInputs>>())
{
    m_agreeButton = styleSourceButton(AgreeStyle);
    m_refuseButton = styleSourceButton(RefuseStyle);
    m_stateButton = styleSourceButton(StateStyle);
}

FriendRequestViewItem::~FriendRequestViewItem()
{
    if (m_agreeButton)
        m_agreeButton->deleteLater();
    if (m_refuseButton)
        m_refuseButton->deleteLater();
    if (m_stateButton)
        m_stateButton->deleteLater();
}

QSize FriendRequestViewItem::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (index.data(DateRole).toULongLong() == 0)
        return QSize(0, 0);
    return QSize(option.rect.width(), index.parent().isValid() ? LeafHeight : HeaderHeight);
}

void FriendRequestViewItem::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const
{
    // A blank record (a clone) stands in the tree without being seen.
    if (index.data(DateRole).toULongLong() == 0)
        return;
    painter->save();
    RowInputs inputs;
    if (index.parent().isValid()) {
        if (leafInputs(option, index, inputs))
            m_rowPictures->paint(painter, rowKey(index), rowRect(option), inputs,
                                 [&](QPainter* target) { drawLeaf(target, option, index); });
        else
            drawLeaf(painter, option, index);   // someone unknown: background only
    } else {
        inputs.isHeader = true;
        inputs.headerText = headerText(index);
        inputs.applicationFont = QGuiApplication::font();
        m_rowPictures->paint(painter, rowKey(index), rowRect(option), inputs,
                             [&](QPainter* target) { drawZoom(target, option, index); });
    }
    painter->restore();
}

quint64 FriendRequestViewItem::rowKey(const QModelIndex& index)
{
    // A proxy's children share an internal id: the row tells them apart. A clash only costs a repaint.
    return quint64(index.internalId()) * 1000003u + quint64(index.row()) * 2u + (index.parent().isValid() ? 1u : 0u);
}

bool FriendRequestViewItem::leafInputs(const QStyleOptionViewItem& option, const QModelIndex& index,
                                       RowInputs& inputs) const
{
    auto* contacts = VyrEngine::ContactsEngine::instance();
    const auto user = contacts->userInfo(index.data(DisplayIdRole).toULongLong(), 0);
    if (!user)
        return false;
    inputs.uid = user->uid();
    inputs.avatarKey = AvatarManager::instance().getUserAvatar(user->uid()).cacheKey();
    inputs.name = contacts->userDisplayName(user->uid(), 0);
    inputs.status = index.data(StatusRole).toInt();
    inputs.message = index.data(MessageRole).toString();
    inputs.wording = statusWording(inputs.status);
    inputs.applicationFont = QGuiApplication::font();
    if (inputs.status == AwaitingMyAnswer) {
        const QRect first = firstButtonRect(innerRect(rowRect(option)));
        inputs.agreeLook = buttonLook(first);
        inputs.refuseLook = buttonLook(secondButtonRect(first));
    }
    return true;
}

int FriendRequestViewItem::keptRowPictureCount() const
{
    return m_rowPictures->count();
}

int FriendRequestViewItem::rowPicturesMade() const
{
    return m_rowPictures->picturesMade();
}

int FriendRequestViewItem::rowPictureKilobytes() const
{
    return m_rowPictures->kilobytes();
}

int FriendRequestViewItem::maxRowPictureKilobytes() const
{
    return m_rowPictures->maxKilobytes();
}

int FriendRequestViewItem::buttonLook(const QRect& button) const
{
    // As drawButton() reads the last mouse event: 1 hovered, 2 pressed.
    if (!button.contains(m_mousePos))
        return 0;
    return m_mouseState == 0 ? 1 : m_mouseState == 1 ? 2 : 0;
}

QString FriendRequestViewItem::headerText(const QModelIndex& index)
{
    const quint64 date = index.data(DateRole).toULongLong();
    const QDate day = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(date)).date();
    // "Today" follows the engine's clock, not the machine's.
    const bool isToday = day == VyrEngine::CoreEngine::instance()->currentDateTime().date();
    return isToday ? qtTrId("ID_Today", -1) : VyrUtils::formatTime(static_cast<qint64>(date), false);
}

QRect FriendRequestViewItem::rowRect(const QStyleOptionViewItem& option)
{
    // The tree's indentation is painted over: rows start at the view's left edge.
    QRect row = option.rect;
    row.setLeft(0);
    return row;
}

QRect FriendRequestViewItem::innerRect(const QRect& row)
{
    return row.adjusted(1, 4, -1, -4);
}

QRect FriendRequestViewItem::firstButtonRect(const QRect& inner)
{
    return QRect(inner.right() - ButtonsOffset, inner.y() + (inner.height() - ButtonHeight) / 2, ButtonWidth,
                 ButtonHeight);
}

QRect FriendRequestViewItem::secondButtonRect(const QRect& firstButton)
{
    return QRect(firstButton.right() + ButtonGap, firstButton.y(), ButtonWidth, ButtonHeight);
}

void FriendRequestViewItem::drawZoom(QPainter* painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    const QRect row = rowRect(option);
    painter->fillRect(row, QBrush(QColor(QStringLiteral("#FCFCFC"))));
    painter->setFont(pixelFont(14));
    painter->setPen(QColor(QStringLiteral("#B1B1B1")));
    painter->drawText(QRectF(QRect(row.x() + 1, row.y() + 4, 200, HeaderHeight)), headerText(index), QTextOption());
}

void FriendRequestViewItem::drawLeaf(QPainter* painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    const QRect row = rowRect(option);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillRect(row, QBrush(QColor(QStringLiteral("#FCFCFC"))));
    const QRect inner = innerRect(row);

    auto* contacts = VyrEngine::ContactsEngine::instance();
    const quint64 displayId = index.data(DisplayIdRole).toULongLong();
    const auto user = contacts->userInfo(displayId, 0);
    if (!user) {
        // Someone the contacts engine doesn't know: the row stays blank.
        noteUnknownPerson(displayId);
        return;
    }

    QRect avatar(inner.x(), inner.y() + (inner.height() - AvatarSide) / 2, AvatarSide, AvatarSide);
    painter->drawPixmap(avatar, roundAvatar(user->uid(), avatar.size(), painter->device()->devicePixelRatioF()));
    // Name and text measure from a 40-pixel band around the avatar.
    avatar.adjust(0, -2, 0, 2);

    const QRect name(avatar.right() + 8, avatar.y(), NameWidth, avatar.height() / 2);
    painter->setPen(QColor(QStringLiteral("#202020")));
    painter->setFont(pixelFont(14));
    const QString displayName = contacts->userDisplayName(user->uid(), 0);
    painter->drawText(name, Qt::AlignLeft | Qt::AlignTop,
                      painter->fontMetrics().elidedText(displayName, Qt::ElideRight, name.width(), Qt::TextShowMnemonic));

    const QRect first = firstButtonRect(inner);
    const QRect second = secondButtonRect(first);
    const QRect text(avatar.right() + 8, name.bottom(), inner.width() - avatar.width() - 150, avatar.height() / 2);

    painter->setPen(QColor(QStringLiteral("#999999")));
    drawStatus(painter, index.data(StatusRole).toInt(), index, text, first, second);
}

void FriendRequestViewItem::noteUnknownPerson(quint64 uid) const
{
    if (m_unknownPeopleLogged.contains(uid))
        return;
    // Bounded: a flood of unknown ids logs again rather than growing without end.
    if (m_unknownPeopleLogged.size() >= MaxUnknownPeopleLogged)
        m_unknownPeopleLogged.clear();
    m_unknownPeopleLogged.insert(uid);
    qCInfo(lcVyrNotice) << "friend request of a person the contacts engine doesn't know, row left blank, uid:" << uid;
}

QPixmap FriendRequestViewItem::roundAvatar(quint64 uid, const QSize& size, qreal ratio) const
{
    // The store is asked every time, so a new picture shows at the next paint; only the cut is kept.
    const QPixmap picture = AvatarManager::instance().getUserAvatar(uid);
    RoundAvatar& cached = m_roundAvatars[uid];
    if (cached.pixmap.isNull() || cached.sourceKey != picture.cacheKey() || cached.ratio != ratio) {
        cached.sourceKey = picture.cacheKey();
        cached.ratio = ratio;
        cached.pixmap = ImageOp::magicAvatarSvg(picture, size, ratio);
    }
    return cached.pixmap;
}

void FriendRequestViewItem::drawStatus(QPainter* painter, int status, const QModelIndex& index, const QRect& textRect,
                                       const QRect& firstButton, const QRect& secondButton) const
{
    const int textFlags = Qt::AlignLeft | Qt::AlignBottom;
    if (status == AwaitingMyAnswer) {
        drawButton(m_agreeButton, painter, firstButton, qtTrId("ID_Agree", -1), true);
        drawButton(m_refuseButton, painter, secondButton, qtTrId("ID_friendrequest_Refuse", -1), true);
        const QString message = index.data(MessageRole).toString().simplified();
        // Elided with the 14-pixel metrics and drawn at 12 pixels: the line ends short of the buttons on purpose.
        const QString elided = painter->fontMetrics().elidedText(message, Qt::ElideRight, textRect.width(),
                                                                 Qt::TextShowMnemonic);
        painter->setFont(pixelFont(12));
        painter->drawText(textRect, textFlags, elided);
        return;
    }

    const char* labelId = nullptr;
    QString text;
    switch (status) {
    case AgreedByMe:
        labelId = "ID_friendrequest_Agreed";
        text = qtTrId("ID_friendrequest_AgreeFriendRequest", -1);
        break;
    case AgreedByPeer:
        labelId = "ID_friendrequest_Agreed";
        text = qtTrId("ID_friendrequest_FriendRequestHasBeenAgreed", -1);
        break;
    case RefusedByMe:
        labelId = "ID_friendrequest_Rejected";
        text = qtTrId("ID_friendrequest_RejectFriendRequest", -1);
        break;
    case RefusedByPeer:
        labelId = "ID_friendrequest_Rejected";
        text = qtTrId("ID_friendrequest_FriendRequestHasBeenReject", -1);
        break;
    case AwaitingPeerAnswer:
        labelId = "ID_friendrequest_WaitingVerify";
        text = index.data(MessageRole).toString(); // as written, so a long one is clipped
        break;
    case Overdue:
        labelId = "ID_friendrequest_Overdue";
        text = index.data(MessageRole).toString();
        break;
    default:
        return; // an unknown status shows the person alone
    }
    painter->setFont(pixelFont(12));
    drawButton(m_stateButton, painter, secondButton, qtTrId(labelId, -1), false);
    painter->drawText(textRect, textFlags, text);
}

void FriendRequestViewItem::drawButton(QPushButton* button, QPainter* painter, const QRect& rect, const QString& text,
                                       bool enabled) const
{
    QStyleOptionButton option;
    option.rect = rect;
    option.text = text;
    if (enabled) {
        option.state |= QStyle::State_Enabled;
        if (rect.contains(m_mousePos)) {
            if (m_mouseState == 0)
                option.state |= QStyle::State_MouseOver;
            else if (m_mouseState == 1)
                option.state |= QStyle::State_Sunken;
        }
    }
    // The style may leave its own pen and font behind; the row's text must not see them.
    painter->save();
    button->style()->drawControl(QStyle::CE_PushButton, &option, painter, button);
    painter->restore();
}

bool FriendRequestViewItem::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                        const QModelIndex& index)
{
    // A view also hands key presses to the delegate; only mouse events are read here.
    if (!isMouseEvent(event))
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const QRect row = rowRect(option);
    const QRect inner = innerRect(row);
    // Left plus 312 as the width, as the click zone always was; rows start at 0, so it is 312 wide.
    const QRect avatarZone(row.left(), row.top(), row.left() + AvatarZoneWidth, row.height());
    const QRect first = firstButtonRect(inner);
    const QRect second = secondButtonRect(first);
    const bool isRelease = event->type() == QEvent::MouseButtonRelease;

    // Header rows and rows of every status take these two steps.
    if (mouse->button() == Qt::LeftButton && isRelease && avatarZone.contains(mouse->pos()))
        emit avatarClickSignal(index);
    if (mouse->button() == Qt::RightButton && isRelease && row.contains(mouse->pos()))
        emit rightClickSignal(index, mouse->pos());

    if (index.data(StatusRole).toInt() != AwaitingMyAnswer)
        return QStyledItemDelegate::editorEvent(event, model, option, index);

    m_mouseState = -1;
    m_mousePos = mouse->pos();
    QGuiApplication::restoreOverrideCursor();

    bool hit = false;
    const QRect buttons[] = {first, second};
    for (int i = 0; i < 2; ++i) {
        if (!buttons[i].contains(m_mousePos))
            continue;
        hit = true;
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            m_mouseState = 1;
            break;
        case QEvent::MouseButtonRelease:
            // Any mouse button answers: a right release on Agree also agrees, as it always has.
            if (i == 0)
                emit agreeButtonClickSignal(index);
            else
                emit refuseButtonClickSignal(index);
            break;
        case QEvent::MouseMove:
            m_mouseState = 0;
            break;
        default:
            break;
        }
    }
    return hit;
}
