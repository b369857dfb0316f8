#pragma once

#include <QJsonObject>
#include <QObject>
#include <functional>

class DemoHost;
class QAbstractItemView;
class QWidget;
class ScenarioPlayer;

// The friend-request page's part of a scenario: the notice engine's side
// (a few hundred requests over several weeks, new requests, replies, overdue
// marks, deletions, error texts, the engine's "data ready") and the user's
// side (Agree, Refuse, the right-click menu, the boxes and the password
// dialog, hovering and scrolling), with real mouse events on the page's list.
// Boxes, menus and dialogs are answered through the kit's answer hook: an
// answer step answers the one open now, or else the next one to open.
class FriendRequestActions : public QObject
{
    Q_OBJECT
public:
    FriendRequestActions(DemoHost* host, QObject* parent = nullptr);

    void registerActions(ScenarioPlayer* player);

signals:
    void said(const QString& line);

private:
    // The engine.
    void seed(const QJsonObject& step);
    void newRequest(const QJsonObject& step);
    void reply(const QJsonObject& step);
    void overdue(const QJsonObject& step);
    void remove(const QJsonObject& step);
    void errorText(const QJsonObject& step);
    void initData(const QJsonObject& step);
    void teenMode(const QJsonObject& step);
    // The user.
    void answerButton(const QJsonObject& step, bool agree);
    void rightClick(const QJsonObject& step);
    void chooseEntry(const QJsonObject& step);
    void answerBox(const QJsonObject& step);
    void password(const QJsonObject& step);
    void hover(const QJsonObject& step);
    void clickPerson(const QJsonObject& step);
    void scrollToEnd(const QJsonObject& step);

    QAbstractItemView* list();
    QModelIndex leafRow(int row, bool withButtons);
    QRect rowRect(const QModelIndex& index);
    QPoint buttonPoint(const QModelIndex& index, bool agree);
    void click(const QPoint& pos, Qt::MouseButton button);
    void move(const QPoint& pos);
    static QWidget* openModal();
    // Answers the box, menu or dialog open now, else queues the answer for the next one.
    void answerOpenOrNext(const std::function<void(QWidget*)>& now, const std::function<void()>& queue);
    static QString entryText(const QString& entry);

    DemoHost* m_host;
    int m_nextSequenceId = 100000;
};
