#pragma once

#include "FriendRequestInfo.h"
#include "VyrNoticeExport.h"
#include "VyrTreeView.h"

#include <QModelIndex>

class FriendRequestModel;
class FriendRequestViewItem;

// The list of the friend-request page. It builds the model, its sorting proxy
// and the painted rows, and carries out what the user does to a row: agree
// (after the restricted-mode password when that mode asks for it), refuse,
// open the person's card, delete after a question. Answers go to the notice
// engine; no row changes here, only when the engine's signal comes back.
// Every box, menu and dialog runs a real exec().
class VYRNOTICE_TESTS_EXPORT FriendRequestTreeView : public VyrTreeView
{
    Q_OBJECT
public:
    explicit FriendRequestTreeView(QWidget* parent = nullptr);
    ~FriendRequestTreeView() override;

    void initUiData();
    bool isFriendRequestEmpty();

signals:
    void friendRequestChangeSignal();

public slots:
    void showPersondetaiils(QModelIndex index);
    void friendRequestViewExpandAll();
    void onShowRightClickMenu(QModelIndex index, QPoint pos);
    void agree(QModelIndex index);
    void refuse(QModelIndex index);
    void showInfoSlot();
    void deleteOneSlot();
    void errorNotice(QString errorString);

protected slots:
    void verticalScrollbarValueChanged(int value) override;

private:
    friend class FriendRequestTreeViewProbe; // the tests' window on the private parts

    bool isCheckRequestOverdue(VyrEngine::FriendRequestInfo& info);
    void runLater(void (FriendRequestTreeView::*slot)(QModelIndex), const QModelIndex& index);
    bool passTeenModePassword();
    VyrEngine::FriendRequestInfo answerRecord(const QModelIndex& index, int status) const;
    void trackAnswer(const QString& tabName);
    bool currentIndexReadable() const;
    void showWarning(const QString& text);
    void openEveryGroup();

    FriendRequestModel* m_model;
    FriendRequestViewItem* m_viewItem;
    QModelIndex m_currentIndex;
    // Only tells whether m_currentIndex can still be read: a plain index into
    // a day group the proxy has dropped points at freed memory.
    QPersistentModelIndex m_currentGroup;
    bool m_openPending = false; // an opening of the groups waits for the event loop
};
