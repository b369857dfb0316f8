#include "friendrequesttreeview.h"

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "FriendRequestModel.h"
#include "FriendRequestSortFilterProxyModel_p.h"
#include "FriendRequestViewItem.h"
#include "NoticeEngine.h"
#include "NoticeLog_p.h"
#include "OutsideText_p.h"
#include "PersonInfoWidget.h"
#include "TeenModeWidget.h"
#include "UserInfo.h"
#include "VyrCustomNormalDialog.h"
#include "VyrMenuEx.h"
#include "VyrSettings.h"
#include "VyrTrack.h"
#include "VyrUtils.h"
#include "vyrmessagebox"

#include <QCursor>
#include <QDebug>
#include <QKeySequence>
#include <QScrollBar>
#include <QTimer>

using namespace FriendRequest;

namespace {
// A request may be answered for seven days from its date.
const quint64 kAnswerWindowSeconds = 604800;

quint64 nowSeconds()
{
    return quint64(VyrEngine::CoreEngine::instance()->currentDateTime().toMSecsSinceEpoch() / 1000);
}

// Unsigned on purpose: a date in the future wraps to a huge age and counts as overdue.
bool withinAnswerWindow(quint64 date)
{
    return nowSeconds() - date <= kAnswerWindowSeconds;
}
}

FriendRequestTreeView::FriendRequestTreeView(QWidget* parent)
    : VyrTreeView(parent)
{
    setAttribute(Qt::WA_MacShowFocusRect, false);
    setAttribute(Qt::WA_StyledBackground, true);
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setMouseTracking(true);

    m_model = new FriendRequestModel(this);
    // The proxy has no parent on purpose; the destructor frees it.
    setModel(new FriendRequestSortFilterProxyModel(m_model, nullptr));
    m_viewItem = new FriendRequestViewItem(this);
    setItemDelegate(m_viewItem);
    expandAll();

    connect(m_model, &FriendRequestModel::expandAllSignal, this, &FriendRequestTreeView::friendRequestViewExpandAll);
    connect(m_model, &FriendRequestModel::friendRequestChangeSignal, this,
            &FriendRequestTreeView::friendRequestChangeSignal);
    // The answers run boxes, menus and dialogs with event loops of their own. They start once the
    // delegate's mouse event is over: a model change inside them would otherwise leave the view's
    // own mouse handling with a dead index. Emission order is kept.
    connect(m_viewItem, &FriendRequestViewItem::agreeButtonClickSignal, this,
            [this](QModelIndex index) { runLater(&FriendRequestTreeView::agree, index); });
    connect(m_viewItem, &FriendRequestViewItem::refuseButtonClickSignal, this,
            [this](QModelIndex index) { runLater(&FriendRequestTreeView::refuse, index); });
    connect(m_viewItem, &FriendRequestViewItem::avatarClickSignal, this,
            [this](QModelIndex index) { runLater(&FriendRequestTreeView::showPersondetaiils, index); });
    connect(m_viewItem, &FriendRequestViewItem::rightClickSignal, this, [this](QModelIndex index, QPoint pos) {
        const QPersistentModelIndex kept(index);
        QTimer::singleShot(0, this, [this, kept, pos]() {
            if (kept.isValid())
                onShowRightClickMenu(kept, pos);
        });
    });
    connect(VyrEngine::NoticeEngine::instance(), &VyrEngine::NoticeEngine::signalFriendRequestErrorNotice, this,
            &FriendRequestTreeView::errorNotice);
}

FriendRequestTreeView::~FriendRequestTreeView()
{
    QAbstractItemModel* proxy = model();
    setModel(nullptr);
    delete proxy;
}

void FriendRequestTreeView::runLater(void (FriendRequestTreeView::*slot)(QModelIndex), const QModelIndex& index)
{
    const QPersistentModelIndex kept(index);
    QTimer::singleShot(0, this, [this, slot, kept]() {
        if (kept.isValid())
            (this->*slot)(kept);
    });
}

void FriendRequestTreeView::initUiData()
{
    m_model->initUiData();
}

bool FriendRequestTreeView::isFriendRequestEmpty()
{
    return m_model->isFriendRequestEmpty();
}

void FriendRequestTreeView::verticalScrollbarValueChanged(int value)
{
    VyrTreeView::verticalScrollbarValueChanged(value);
    if (value == verticalScrollBar()->maximum())
        m_model->loadMoreUiData();
}

// Every row folded in, every update and every delete asks for this; a page
// asks 30 times in one go. The groups are opened once, when the event loop
// next turns, and only those not open yet: rows never have children, so that
// is what expandAll() would show, without laying out every row each time.
void FriendRequestTreeView::friendRequestViewExpandAll()
{
    if (m_openPending)
        return;
    m_openPending = true;
    QMetaObject::invokeMethod(this, &FriendRequestTreeView::openEveryGroup, Qt::QueuedConnection);
}

void FriendRequestTreeView::openEveryGroup()
{
    m_openPending = false;
    QAbstractItemModel* groups = model();
    for (int row = 0; row < groups->rowCount(); ++row)
        expand(groups->index(row, 0));
    if (parentWidget())
        parentWidget()->update();
}

void FriendRequestTreeView::showWarning(const QString& text)
{
    ThemeMessageBox<1>::warning(this, VyrUtils::getMessageBoxTitle(QMessageBox::Warning), text,
                                VyrMessageBox::StandardButton(1024), VyrMessageBox::StandardButton(0));
}

bool FriendRequestTreeView::isCheckRequestOverdue(VyrEngine::FriendRequestInfo& info)
{
    const quint64 now = nowSeconds();
    if (now - info.date() <= kAnswerWindowSeconds)
        return false;
    qCInfo(lcVyrNotice) << "request is overdue" << info.date() << now;
    showWarning(qtTrId("ID_friendrequesttreeview_RequestTimeOut", -1));
    info.setStatus(Overdue);
    VyrEngine::NoticeEngine::instance()->markFriendRequestOverdue(info);
    return true;
}

bool FriendRequestTreeView::passTeenModePassword()
{
    VyrSettings* settings = VyrSettings::instance(QString());
    if (!settings->isEnabledTeenModeConfig(TeenModeConfig(4)) || !settings->isEnabledTeenModeConfig(TeenModeConfig(2)))
        return true;
    auto* widget = new TeenModeWidget(this, TeenModeState(2));
    auto* dialog = new VyrCustomNormalDialog(VyrCustomNormalDialog::Type(2), this, Qt::WindowFlags(), nullptr, false);
    dialog->setCenterWidget(widget, true);
    dialog->setTitleText(qtTrId("ID_SettingsWidget_EnterseparatePassword", -1));
    connect(widget, &TeenModeWidget::setTitle, dialog, &VyrCustomNormalDialog::setTitleText);
    connect(widget, &TeenModeWidget::closeWidget, dialog, [dialog](int code) {
        if (code == 4)
            dialog->accept();
        else
            dialog->reject();
    });
    const int result = dialog->exec();
    dialog->deleteLater();
    return result != 0;
}

VyrEngine::FriendRequestInfo FriendRequestTreeView::answerRecord(const QModelIndex& index, int status) const
{
    VyrEngine::FriendRequestInfo info;
    info.setSequenceId(index.data(SequenceIdRole).toInt());
    info.setSourceId(index.data(DisplayIdRole).toULongLong());
    info.setTargetId(VyrEngine::CoreEngine::instance()->currentUid());
    info.setDate(index.data(DateRole).toULongLong());
    info.setStatus(status);
    info.setMessage(index.data(MessageRole).toString());
    info.setUnread(false);
    return info;
}

void FriendRequestTreeView::trackAnswer(const QString& tabName)
{
    QMap<QString, QVariant> map;
    map.insert(QStringLiteral("tab_name"), tabName);
    VyrTrack::instance()->track(QStringLiteral("NewFriends"), map);
}

void FriendRequestTreeView::agree(QModelIndex index)
{
    const QPersistentModelIndex group(index.parent());
    if (!passTeenModePassword())
        return;
    // The dialog's event loop may have dropped the row's day group; its plain index is dead then.
    if (index.parent().isValid() && !group.isValid()) {
        qCInfo(lcVyrNotice) << "agree, the request's day went while the password was asked";
        return;
    }
    VyrEngine::NoticeEngine::instance()->touchFriendRequests();
    // Role 0 is never set, so this is always AgreedByMe; kept as the status source on purpose.
    VyrEngine::FriendRequestInfo info = answerRecord(index, index.data(0).toInt());
    trackAnswer(QString::fromUtf8("同意"));
    if (isCheckRequestOverdue(info))
        return;
    // A failed agreement is reported by the engine's error notice, not here.
    VyrEngine::NoticeEngine::instance()->answerFriendRequest(info);
}

void FriendRequestTreeView::refuse(QModelIndex index)
{
    // Refusing needs no password, unlike agreeing; intended.
    VyrEngine::NoticeEngine::instance()->touchFriendRequests();
    VyrEngine::FriendRequestInfo info = answerRecord(index, RefusedByMe);
    trackAnswer(QString::fromUtf8("拒绝"));
    if (isCheckRequestOverdue(info))
        return;
    if (VyrEngine::NoticeEngine::instance()->answerFriendRequest(info) != 0)
        showWarning(qtTrId("ID_friendrequesttreeview_QuerySendFailed", -1));
}

void FriendRequestTreeView::showPersondetaiils(QModelIndex index)
{
    VyrEngine::NoticeEngine::instance()->touchFriendRequests();
    const quint64 displayId = index.data(DisplayIdRole).toULongLong();
    const quint64 date = index.data(DateRole).toULongLong();
    const int status = index.data(StatusRole).toInt();
    const bool canAnswer = withinAnswerWindow(date) && status == AwaitingMyAnswer;
    PersonInfoWidget::showFloatWidget(displayId, QCursor::pos(), PersonInfoWidget::PosMode(0), 0, canAnswer, false);
}

void FriendRequestTreeView::onShowRightClickMenu(QModelIndex index, QPoint pos)
{
    VyrEngine::NoticeEngine::instance()->touchFriendRequests();
    m_currentIndex = index;
    m_currentGroup = index.parent().isValid() ? QPersistentModelIndex(index.parent()) : QPersistentModelIndex(index);
    // A new menu for each right click, kept after it closes; it goes with the view.
    auto* menu = new VyrMenuEx(false, nullptr);
    connect(this, &QObject::destroyed, menu, [menu]() { delete menu; });
    menu->addAction(qtTrId("ID_friendrequesttreeview_PersonDetail", -1), this, &FriendRequestTreeView::showInfoSlot,
                    QKeySequence());
    menu->addAction(qtTrId("ID_friendrequesttreeview_DeleteMessage", -1), this,
                    &FriendRequestTreeView::deleteOneSlot, QKeySequence());
    menu->exec(mapToGlobal(QPoint(pos.x() + 30, pos.y() + 10)));
}

bool FriendRequestTreeView::currentIndexReadable() const
{
    if (m_currentGroup.isValid())
        return true;
    qCInfo(lcVyrNotice) << "the menu's row is gone with its day";
    return false;
}

void FriendRequestTreeView::showInfoSlot()
{
    if (!currentIndexReadable())
        return;
    const QModelIndex index = m_currentIndex;
    showPersondetaiils(index);
}

void FriendRequestTreeView::deleteOneSlot()
{
    if (!currentIndexReadable())
        return;
    const quint64 displayId = m_currentIndex.data(DisplayIdRole).toULongLong();
    const auto user = VyrEngine::ContactsEngine::instance()->userInfo(displayId, 0);
    if (!user) {
        qCWarning(lcVyrNotice) << "FriendRequestTreeView::deleteOneSlot" << "get person info error";
        return;
    }
    const QString name = user->nickname().isEmpty() ? user->telephone() : user->nickname();
    const auto answer = ThemeMessageBox<1>::question(
        topLevelWidget(), VyrUtils::getMessageBoxTitle(QMessageBox::Question),
        // The box guesses the format: a name that looks like markup is shown as typed.
        OutsideText::forAutoFormat(qtTrId("ID_friendrequesttreeview_IFDeleteFrindRequest", -1).arg(name)),
        VyrMessageBox::StandardButtons(VyrMessageBox::Yes | VyrMessageBox::No), VyrMessageBox::Yes);
    if (answer != VyrMessageBox::Yes)
        return;
    if (!currentIndexReadable())
        return;
    const quint64 sourceId = m_currentIndex.data(SourceIdRole).toULongLong();
    VyrEngine::NoticeEngine::instance()->deleteFriendRequest(
        displayId, VyrEngine::CoreEngine::instance()->currentUid() == sourceId);
}

void FriendRequestTreeView::errorNotice(QString errorString)
{
    // The server's words, shown as typed.
    showWarning(OutsideText::forAutoFormat(errorString));
}
