#include "FriendRequestPageHost.h"

#include "FriendRequestWidget.h"
#include "ImSignalObject.h"
#include "ScreenCorner.h"

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
    fitToSimulatedScreen();
    m_page->raise();
    m_page->activateWindow();
    m_say(QStringLiteral("friend requests: page open"));
}

// On a simulated screen, as a window manager would: the page and its frame
// at the work area's top left, no larger than the work area. The frame is
// known once the window shows.
void FriendRequestPageHost::fitToSimulatedScreen()
{
    if (!ScreenCorner::hasOverride())
        return;
    const QRect area = ScreenCorner::current().availableGeometry;
    const QRect frame = m_page->frameGeometry();
    const QRect inner = m_page->geometry();
    const QSize frameSize = frame.size() - inner.size();
    m_page->resize(QSize(720, 780).boundedTo(area.size() - frameSize));
    m_page->move(area.topLeft());
}

QWidget* FriendRequestPageHost::window() const
{
    return m_page;
}

void FriendRequestPageHost::onAddContacts(const QString& keyword, const QString& from)
{
    m_say(QStringLiteral("friend requests: add contacts asked (keyword \"%1\", from \"%2\")").arg(keyword, from));
}
