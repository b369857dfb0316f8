#include "FriendRequestActions.h"

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "DemoHost.h"
#include "FriendRequestInfo.h"
#include "FriendRequestModel.h"
#include "FriendRequestPageHost.h"
#include "FriendRequestWidget.h"
#include "NoticeEngine.h"
#include "ScenarioPlayer.h"
#include "TeenModeWidget.h"
#include "UserInfo.h"
#include "VyrModalAnswerer.h"
#include "VyrSettings.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>

using namespace FriendRequest;

namespace {

quint64 idOf(const QJsonObject& step, const char* key)
{
    return quint64(step.value(QLatin1String(key)).toDouble());
}

QString text(const QJsonObject& step, const char* key)
{
    return step.value(QLatin1String(key)).toString();
}

quint64 now()
{
    return quint64(VyrEngine::CoreEngine::instance()->currentDateTime().toSecsSinceEpoch());
}

const char* const kNicknames[] = {"Lin Wei", "张小雨", "Ana Souza", "王老师", "Tom Becker", "李明", "Priya", "陈静",
                                  "Jonas", "赵磊", "Mia Rossi", "刘洋", "", "Kenji", "孙悦"};
const char* const kMessages[] = {
    "Hello, I'm in your Tuesday maths class.",
    "你好，我是三年级二班的家长",
    "Could we share the homework notes?",
    "老师您好，我想加您为好友，方便沟通孩子的学习情况。谢谢！",
    "Hi!  We met   at the   open day.\nPlease add me.",
    "我是你的同学",
    "A very long introduction that goes on and on about the reasons for this request, far longer than a row can show in one line.",
};

VyrEngine::FriendRequestInfo record(int sequenceId, quint64 peer, bool fromMe, int status, quint64 date,
                                    const QString& message)
{
    const quint64 me = VyrEngine::CoreEngine::instance()->currentUid();
    VyrEngine::FriendRequestInfo info;
    info.setSequenceId(sequenceId);
    info.setSourceId(fromMe ? me : peer);
    info.setTargetId(fromMe ? peer : me);
    info.setStatus(status);
    info.setDate(date);
    info.setMessage(message);
    info.setUnread(status == AwaitingMyAnswer);
    return info;
}

const VyrEngine::FriendRequestInfo* storedWith(const QVector<VyrEngine::FriendRequestInfo>& store, quint64 peer)
{
    for (const auto& info : store) {
        if (info.sourceId() == peer || info.targetId() == peer)
            return &info;
    }
    return nullptr;
}

} // namespace

FriendRequestActions::FriendRequestActions(DemoHost* host, QObject* parent)
    : QObject(parent)
    , m_host(host)
{
}

void FriendRequestActions::registerActions(ScenarioPlayer* player)
{
    const auto bind = [this, player](const char* name, void (FriendRequestActions::*handler)(const QJsonObject&)) {
        player->addAction(QLatin1String(name), [this, handler](const QJsonObject& step) { (this->*handler)(step); });
    };
    player->addAction(QStringLiteral("friendRequestPage"), [this](const QJsonObject&) { m_host->openFriendRequestPage(); });
    bind("friendRequestSeed", &FriendRequestActions::seed);
    bind("friendRequestNew", &FriendRequestActions::newRequest);
    bind("friendRequestReply", &FriendRequestActions::reply);
    bind("friendRequestOverdue", &FriendRequestActions::overdue);
    bind("friendRequestDelete", &FriendRequestActions::remove);
    bind("friendRequestError", &FriendRequestActions::errorText);
    bind("friendRequestInitData", &FriendRequestActions::initData);
    bind("friendRequestTeenMode", &FriendRequestActions::teenMode);
    player->addAction(QStringLiteral("friendRequestAgree"), [this](const QJsonObject& step) { answerButton(step, true); });
    player->addAction(QStringLiteral("friendRequestRefuse"), [this](const QJsonObject& step) { answerButton(step, false); });
    bind("friendRequestRightClick", &FriendRequestActions::rightClick);
    bind("friendRequestMenuEntry", &FriendRequestActions::chooseEntry);
    bind("friendRequestAnswerBox", &FriendRequestActions::answerBox);
    bind("friendRequestPassword", &FriendRequestActions::password);
    bind("friendRequestHover", &FriendRequestActions::hover);
    bind("friendRequestClickPerson", &FriendRequestActions::clickPerson);
    bind("friendRequestScrollEnd", &FriendRequestActions::scrollToEnd);
}

// Requests of every status spread over the days before now, newest first,
// from people the contacts engine knows (one in fifteen with a telephone only).
void FriendRequestActions::seed(const QJsonObject& step)
{
    const int count = step.value(QStringLiteral("count")).toInt();
    const int days = qMax(1, step.value(QStringLiteral("days")).toInt());
    auto* engine = VyrEngine::NoticeEngine::instance();
    auto* contacts = VyrEngine::ContactsEngine::instance();
    const quint64 start = now();
    const quint64 span = quint64(days) * 86400;
    const int statuses[] = {AwaitingMyAnswer, AgreedByMe, AwaitingPeerAnswer, RefusedByMe, Overdue, AgreedByPeer,
                            RefusedByPeer};
    for (int i = 0; i < count; ++i) {
        const quint64 peer = 500000 + quint64(i);
        const char* nickname = kNicknames[i % int(sizeof(kNicknames) / sizeof(*kNicknames))];
        contacts->putUser(VyrEngine::UserInfo(peer, QString::fromUtf8(nickname), QStringLiteral("1380000%1").arg(i, 4, 10, QLatin1Char('0'))));
        const int status = statuses[i % 7];
        // The user's own requests wait for the peer or hear back from them.
        const bool fromMe = status == AwaitingPeerAnswer || status == AgreedByPeer;
        const quint64 date = start - 600 - span * quint64(i) / quint64(qMax(1, count));
        const QString message = QString::fromUtf8(kMessages[i % int(sizeof(kMessages) / sizeof(*kMessages))]);
        engine->putFriendRequest(record(m_nextSequenceId++, peer, fromMe, status, date, message));
    }
    emit said(QStringLiteral("friend requests: %1 requests over %2 days in the engine").arg(count).arg(days));
}

void FriendRequestActions::newRequest(const QJsonObject& step)
{
    const quint64 peer = idOf(step, "peer");
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(peer, text(step, "nickname")));
    const auto info = record(m_nextSequenceId++, peer, false, AwaitingMyAnswer, now(), text(step, "message"));
    VyrEngine::NoticeEngine::instance()->putFriendRequest(info);
    VyrEngine::NoticeEngine::instance()->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAdd, info);
}

void FriendRequestActions::reply(const QJsonObject& step)
{
    const quint64 peer = idOf(step, "peer");
    auto* engine = VyrEngine::NoticeEngine::instance();
    const auto store = engine->storedFriendRequests();
    const VyrEngine::FriendRequestInfo* stored = storedWith(store, peer);
    VyrEngine::FriendRequestInfo info = stored ? *stored : record(m_nextSequenceId++, peer, true, AwaitingPeerAnswer, now(), QString());
    info.setStatus(step.value(QStringLiteral("agreed")).toBool() ? AgreedByPeer : RefusedByPeer);
    engine->putFriendRequest(info);
    engine->emitRecordSignal(VyrEngine::NoticeEngine::ContactorAddReply, info);
}

void FriendRequestActions::overdue(const QJsonObject& step)
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    const auto store = engine->storedFriendRequests();
    const VyrEngine::FriendRequestInfo* stored = storedWith(store, idOf(step, "peer"));
    if (!stored) {
        emit said(QStringLiteral("friend requests: no request of %1 to mark overdue").arg(idOf(step, "peer")));
        return;
    }
    VyrEngine::FriendRequestInfo info = *stored;
    info.setStatus(Overdue);
    engine->putFriendRequest(info);
    engine->emitRecordSignal(VyrEngine::NoticeEngine::FriendRequestOverdue, info);
}

void FriendRequestActions::remove(const QJsonObject& step)
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    const quint64 peer = idOf(step, "peer");
    const auto store = engine->storedFriendRequests();
    if (const VyrEngine::FriendRequestInfo* stored = storedWith(store, peer))
        engine->removeFriendRequest(stored->sequenceId());
    engine->emitDeleteSignal(peer);
}

void FriendRequestActions::errorText(const QJsonObject& step)
{
    // From the event loop: the page's warning box runs its own loop, which must not hold up this step.
    const QString error = text(step, "text");
    QTimer::singleShot(0, this, [error]() { VyrEngine::NoticeEngine::instance()->emitErrorNotice(error); });
}

void FriendRequestActions::initData(const QJsonObject&)
{
    // Ready again also announces it, so an open page reads the first page anew.
    VyrEngine::NoticeEngine::instance()->setUiDataReady(true);
}

void FriendRequestActions::teenMode(const QJsonObject& step)
{
    const bool on = step.value(QStringLiteral("on")).toBool();
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeEnabled, on);
    VyrSettings::instance(QString())->setTeenModeConfig(TeenModeFriendPassword, on);
    TeenModeWidget::setPassword(text(step, "password"));
}

QAbstractItemView* FriendRequestActions::list()
{
    FriendRequestPageHost* pageHost = m_host->friendRequestPage();
    FriendRequestWidget* page = pageHost ? pageHost->page() : nullptr;
    auto* view = page ? page->findChild<QAbstractItemView*>(QStringLiteral("friendRequestView")) : nullptr;
    if (!view)
        emit said(QStringLiteral("friend requests: the page isn't open"));
    return view;
}

// The n-th person's row from the top of what is loaded; with `withButtons`, of the rows awaiting an answer.
QModelIndex FriendRequestActions::leafRow(int row, bool withButtons)
{
    QAbstractItemView* view = list();
    if (!view)
        return {};
    QAbstractItemModel* model = view->model();
    int seen = 0;
    for (int g = 0; g < model->rowCount(); ++g) {
        const QModelIndex group = model->index(g, 0);
        for (int r = 0; r < model->rowCount(group); ++r) {
            const QModelIndex leaf = model->index(r, 0, group);
            if (withButtons && leaf.data(StatusRole).toInt() != AwaitingMyAnswer)
                continue;
            if (seen++ == row) {
                view->scrollTo(leaf);
                return leaf;
            }
        }
    }
    emit said(QStringLiteral("friend requests: no row %1").arg(row));
    return {};
}

QRect FriendRequestActions::rowRect(const QModelIndex& index)
{
    QRect row = list()->visualRect(index);
    row.setLeft(0);
    return row;
}

// Where the rows paint Agree and Refuse: right of the middle, one beside the other.
QPoint FriendRequestActions::buttonPoint(const QModelIndex& index, bool agree)
{
    const QRect inner = rowRect(index).adjusted(1, 4, -1, -4);
    const QRect agreeRect(inner.right() - 144, inner.y() + (inner.height() - 24) / 2, 66, 24);
    return agree ? agreeRect.center() : agreeRect.center() + QPoint(66 + 12, 0);
}

void FriendRequestActions::move(const QPoint& pos)
{
    QWidget* viewport = list()->viewport();
    // The person's card opens at the pointer, so the pointer goes where the hand is.
    QCursor::setPos(viewport->mapToGlobal(pos));
    QMouseEvent event(QEvent::MouseMove, pos, pos, viewport->mapToGlobal(pos), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &event);
}

void FriendRequestActions::click(const QPoint& pos, Qt::MouseButton button)
{
    QWidget* viewport = list()->viewport();
    move(pos);
    QMouseEvent press(QEvent::MouseButtonPress, pos, pos, viewport->mapToGlobal(pos), button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, pos, pos, viewport->mapToGlobal(pos), button, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &release);
}

void FriendRequestActions::answerButton(const QJsonObject& step, bool agree)
{
    const QModelIndex leaf = leafRow(step.value(QStringLiteral("row")).toInt(), true);
    if (!leaf.isValid())
        return;
    emit said(QStringLiteral("friend requests: %1 for %2").arg(agree ? "Agree" : "Refuse").arg(leaf.data(DisplayIdRole).toULongLong()));
    click(buttonPoint(leaf, agree), Qt::LeftButton);
}

QString FriendRequestActions::entryText(const QString& entry)
{
    if (entry == QLatin1String("details"))
        return qtTrId("ID_friendrequesttreeview_PersonDetail", -1);
    if (entry == QLatin1String("delete"))
        return qtTrId("ID_friendrequesttreeview_DeleteMessage", -1);
    return QString();
}

// Right-clicks a row; with an entry, that entry is chosen once the menu is up.
void FriendRequestActions::rightClick(const QJsonObject& step)
{
    const QModelIndex leaf = leafRow(step.value(QStringLiteral("row")).toInt(), false);
    if (!leaf.isValid())
        return;
    const QString entry = entryText(text(step, "entry"));
    if (!entry.isEmpty())
        VyrModalAnswerer::instance()->chooseMenuEntry(entry);
    click(QPoint(rowRect(leaf).width() / 2, rowRect(leaf).center().y()), Qt::RightButton);
}

QWidget* FriendRequestActions::openModal()
{
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup;
    return QApplication::activeModalWidget();
}

void FriendRequestActions::answerOpenOrNext(const std::function<void(QWidget*)>& now,
                                            const std::function<void()>& queue)
{
    QPointer<QWidget> modal = openModal();
    if (!modal) {
        queue();
        return;
    }
    // From the event loop: the answer may open the next box, whose own loop must not hold up this step.
    QTimer::singleShot(0, this, [modal, now]() {
        if (modal)
            now(modal);
    });
}

void FriendRequestActions::chooseEntry(const QJsonObject& step)
{
    const QString entry = entryText(text(step, "entry"));
    answerOpenOrNext([entry](QWidget* menu) { VyrModalAnswerer::chooseMenuEntryOn(menu, entry); },
                     [entry]() { VyrModalAnswerer::instance()->chooseMenuEntry(entry); });
}

void FriendRequestActions::answerBox(const QJsonObject& step)
{
    const QString name = text(step, "button");
    const QMessageBox::StandardButton button = name == QLatin1String("Yes") ? QMessageBox::Yes
        : name == QLatin1String("No")                                      ? QMessageBox::No
                                                                           : QMessageBox::Ok;
    answerOpenOrNext([button](QWidget* box) { VyrModalAnswerer::pressButtonOn(box, button); },
                     [button]() { VyrModalAnswerer::instance()->pressButton(button); });
}

void FriendRequestActions::password(const QJsonObject& step)
{
    const QString typed = text(step, "password");
    answerOpenOrNext([typed](QWidget* dialog) { VyrModalAnswerer::enterTextOn(dialog, typed); },
                     [typed]() { VyrModalAnswerer::instance()->enterText(typed); });
}

void FriendRequestActions::hover(const QJsonObject& step)
{
    const QString on = text(step, "on");
    const QModelIndex leaf = leafRow(step.value(QStringLiteral("row")).toInt(), on != QLatin1String("row"));
    if (!leaf.isValid())
        return;
    move(on == QLatin1String("row") ? rowRect(leaf).center() : buttonPoint(leaf, on == QLatin1String("agree")));
    list()->viewport()->update();
}

void FriendRequestActions::clickPerson(const QJsonObject& step)
{
    const QModelIndex leaf = leafRow(step.value(QStringLiteral("row")).toInt(), false);
    if (leaf.isValid())
        click(QPoint(20, rowRect(leaf).center().y()), Qt::LeftButton);
}

void FriendRequestActions::scrollToEnd(const QJsonObject&)
{
    QAbstractItemView* view = list();
    if (!view)
        return;
    QScrollBar* bar = view->verticalScrollBar();
    bar->setValue(bar->maximum());
    emit said(QStringLiteral("friend requests: scrolled to the end (%1 day groups loaded)").arg(view->model()->rowCount()));
}
