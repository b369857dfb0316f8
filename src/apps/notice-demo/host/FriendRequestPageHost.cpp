#include "FriendRequestPageHost.h"

#include "FriendRequestWidget.h"
#include "ImSignalObject.h"

FriendRequestPageHost::FriendRequestPageHost(std::function<void(const QString&)> say, QObject* parent)
    : QObject(parent)
    , m_say(std::move(say))
{
    connect(ImSignalObject::instance(), &ImSignalObject::menuAddContacts, this, &FriendRequestPageHost::onAddContacts);
}

FriendRequestPageHost::~FriendRequestPageHost()
{
    delete m_page;
}

void FriendRequestPageHost::open()
{
    if (!m_page) {
        m_page = new FriendRequestWidget;
        m_page->setWindowTitle(QStringLiteral("New friends"));
        m_page->resize(720, 780);
        m_say(QStringLiteral("friend requests: page made"));
    }
    m_page->show();
    emit pageShown(m_page);
    m_page->raise();
    m_page->activateWindow();
    m_say(QStringLiteral("friend requests: page open"));
}

QWidget* FriendRequestPageHost::window() const
{
    return m_page;
}

void FriendRequestPageHost::onAddContacts(const QString& keyword, const QString& from)
{
    m_say(QStringLiteral("friend requests: add contacts asked (keyword \"%1\", from \"%2\")").arg(keyword, from));
}
