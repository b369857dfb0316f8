#include "FriendRequestWidget.h"

#include "ImSignalObject.h"
#include "NoticeEngine.h"
#include "friendrequesttreeview.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

// The style sheets are the page's own and stay as they are, tabs included.
namespace {
const char* const kPageStyle = "QWidget#friendRequestWidget{background:#F3F3F3;}";
const char* const kTitleStyle =
    "QLabel{border-bottom: 1px solid #EBEBEB; padding-top:19px;padding-bottom:16px;background: "
    "#FFFFFF;font-size:16px;color: #000000;}";
const char* const kCenterStyle =
    "QWidget#centerWidget{margin-left:42px;margin-right:42px;margin-top:8px;margin-bottom:16px;border:1px solid "
    "rgba(0, 0, 0, 0.08);\t\t\t\t\t\t\tbackground: #FCFCFC;font-size:12px;color: #000000;border-radius:4px;}";
const char* const kSubtitleStyle =
    "QLabel{margin-left:72px;margin-right:100px;margin-top:38px;background: #FCFCFC;font-size:16px;color:#000000;}";
const char* const kStackStyle =
    "QStackedWidget{margin-left:43px;margin-right:43px;margin-bottom:20px;background:transparent;border:none;"
    "font-size:12px;color:#000000;}";
const char* const kEmptyPageStyle = ".QWidget{background:transparent;border:none;font-size:12px;color: #000000;}";
const char* const kBlankImageStyle =
    "QLabel {background: transparent url(':/common/images/common/icon_blank.svg') center center no-repeat;}";
const char* const kAddFriendStyle =
    "QPushButton{background: #009265; border: none; border-radius: 4px; color: #FFFFFF; font-size: "
    "13px;}QPushButton:hover{background: #0C8962;}QPushButton:pressed{background: "
    "#00835A;}QPushButton:disabled{background: #D3D3D3;}";
const char* const kTreeViewStyle =
    "FriendRequestTreeView#friendRequestView{padding-left:30px;padding-right:30px;padding-top:10px;background:"
    "transparent;border:none;font-size:12px;color: #000000;}";
}

FriendRequestWidget::FriendRequestWidget(QWidget* parent)
    : QWidget(parent, Qt::WindowFlags())
{
    initWidget();
    VyrEngine::NoticeEngine* engine = VyrEngine::NoticeEngine::instance();
    if (engine->isUiDataReady())
        initUiData();
    else
        // Stays connected: each later signalInitUiData reads the first page again.
        connect(engine, &VyrEngine::NoticeEngine::signalInitUiData, this, &FriendRequestWidget::initUiData);
}

void FriendRequestWidget::initUiData()
{
    m_treeView->initUiData();
}

void FriendRequestWidget::initWidget()
{
    setAttribute(Qt::WA_StyledBackground);
    setObjectName(QStringLiteral("friendRequestWidget"));
    setStyleSheet(QString::fromLatin1(kPageStyle));

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    auto* title = new QLabel(qtTrId("ID_friendrequesttreeview_NewFriend", -1), this);
    title->setFixedHeight(60);
    title->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    title->setTextFormat(Qt::PlainText);
    title->setStyleSheet(QString::fromLatin1(kTitleStyle));

    auto* center = new QWidget(this);
    center->setObjectName(QStringLiteral("centerWidget"));
    center->setStyleSheet(QString::fromLatin1(kCenterStyle));
    auto* centerLayout = new QVBoxLayout(center);
    centerLayout->setContentsMargins(0, 0, 0, 0);
    centerLayout->setSpacing(0);

    auto* subtitle = new QLabel(qtTrId("ID_friendrequesttreeview_NewFriendRequest", -1), center);
    subtitle->setStyleSheet(QString::fromLatin1(kSubtitleStyle));

    m_stackedWidget = new QStackedWidget(center);
    m_stackedWidget->setStyleSheet(QString::fromLatin1(kStackStyle));
    m_emptyPage = makeEmptyPage();

    m_treeView = new FriendRequestTreeView(this);
    m_treeView->setObjectName(QStringLiteral("friendRequestView"));
    m_treeView->setStyleSheet(QString::fromLatin1(kTreeViewStyle));
    connect(m_treeView, &FriendRequestTreeView::friendRequestChangeSignal, this,
            &FriendRequestWidget::onFriendRequestChange);

    m_stackedWidget->insertWidget(0, m_emptyPage);
    m_stackedWidget->addWidget(m_treeView);

    centerLayout->addWidget(subtitle);
    centerLayout->addWidget(m_stackedWidget);
    outer->addWidget(title);
    outer->addWidget(center);

    onFriendRequestChange();
}

QWidget* FriendRequestWidget::makeEmptyPage()
{
    auto* page = new QWidget(m_stackedWidget);
    page->setStyleSheet(QString::fromLatin1(kEmptyPageStyle));

    auto* blank = new QLabel(page);
    blank->setObjectName(QStringLiteral("nullPixmapLabel"));
    blank->setFixedSize(101, 38);
    blank->setStyleSheet(QString::fromLatin1(kBlankImageStyle));

    auto* addFriend = new QPushButton(qtTrId("ID_AddFriends", -1), page);
    addFriend->setFixedSize(86, 30);
    addFriend->setStyleSheet(QString::fromLatin1(kAddFriendStyle));
    connect(addFriend, &QPushButton::clicked, this, []() {
        emit ImSignalObject::instance()->menuAddContacts(QString(), QString::fromUtf8("联系人-新的好友"));
    });

    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 68);
    layout->setSpacing(0);
    layout->addStretch();
    layout->addWidget(blank, 0, Qt::AlignHCenter | Qt::AlignVCenter);
    layout->addSpacing(20);
    layout->addWidget(addFriend, 0, Qt::AlignHCenter | Qt::AlignVCenter);
    layout->addSpacing(30);
    layout->addStretch();
    return page;
}

void FriendRequestWidget::onFriendRequestChange()
{
    QWidget* wanted = m_treeView->isFriendRequestEmpty() ? m_emptyPage : static_cast<QWidget*>(m_treeView);
    if (m_stackedWidget->currentWidget() != wanted)
        m_stackedWidget->setCurrentWidget(wanted);
}
