#pragma once

#include <QObject>
#include <functional>

class FriendRequestWidget;
class QWidget;

// The host's friend-request page: the library's FriendRequestWidget in a
// window of its own, made on first use and kept. The page fills itself from
// the notice engine; the host only places it and answers the page's request
// to open the add-contact function.
class FriendRequestPageHost : public QObject
{
    Q_OBJECT
public:
    explicit FriendRequestPageHost(std::function<void(const QString&)> say, QObject* parent = nullptr);
    ~FriendRequestPageHost() override;

    // Shows the page's window and brings it to the front.
    void open();
    // The page's window; null before the first open().
    QWidget* window() const;
    FriendRequestWidget* page() const { return m_page; }

signals:
    // The page's window has just shown, before it is raised: where a window
    // manager would place it.
    void pageShown(QWidget* window);

private:
    void onAddContacts(const QString& keyword, const QString& from);

    std::function<void(const QString&)> m_say;
    FriendRequestWidget* m_page = nullptr;
};
