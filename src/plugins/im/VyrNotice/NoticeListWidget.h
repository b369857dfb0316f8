#pragma once

#include "GatherNotice.h"
#include "VyrNoticeExport.h"

#include <QAbstractItemModel>
#include <QMap>
#include <QMargins>
#include <QModelIndex>
#include <QPoint>
#include <QSharedPointer>
#include <QVariant>
#include <QWidget>

class AppendixDataPod;
class NoticeListSortFilterModel;
class QLabel;
class QPropertyAnimation;
class StudyActivityNoticeWidgetDisplayPod;
class VyrListView;
class VyrPauseableTimer;

// The gathered-notice window of one category: a frameless, always-on-top tool
// window in the corner of the work area with all notices of that category in
// one list, newest first. The host creates one per category, sizes it with
// adjustListHeight() and shows it with popNoticeListWidget(); the window holds
// for 15 seconds (longer while the pointer is on it), fades out and takes the
// category's notices with it.
class VYRNOTICE_EXPORT NoticeListWidget : public QWidget
{
    Q_OBJECT
public:
    explicit NoticeListWidget(VyrEngine::NoticeCategory noticeCategory, QWidget* parent = nullptr);
    ~NoticeListWidget() override;

    // 0: a notice was added; 1: one was removed; anything else re-applies the height.
    void adjustListHeight(int change);
    // The panel without its shadow border.
    QSize getContentWidgetSize();
    void popNoticeListWidget(int bottomOffset);
    void adjustNoticeListWidgetPos(int bottomOffset);
    void autoAdjustNoticeListWidgetPos();
    bool isPosChanged();
    void updatePopupTime(quint64 popupTime);
    quint64 popupTime();

signals:
    void viewFriendRequestDetails();
    void viewClusterNoticeDetails(qulonglong contentId);
    void viewStudyReportNoticeDetails(qulonglong lessonId);
    void viewLessonNoticeDetails(qulonglong lessonId);
    void viewStudyActivityNoticeDetails(QSharedPointer<AppendixDataPod> pod,
                                        QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod);
    void enterClassRoom(qulonglong lessonId);
    void noticeWidgetHidden(VyrEngine::NoticeCategory noticeCategory, bool isPosChanged);
    void pauseLessonStartAlert(qulonglong lessonId);

public slots:
    void onClickedItem(QAbstractItemModel* model, QModelIndex index);
    void onEnterClassRoom(QAbstractItemModel* model, QModelIndex index);
    void onClickedCloseBtn();

protected slots:
    void onPopAnimationFinished();
    void onPosAnimationFinished();
    void onOpacityAnimationFinished();
    void onStartOpacityAnimation();
    void onLessonNoticeUpdated();

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void init();
    void initWidget();
    QWidget* createTitleWidget();
    QWidget* createListWidget();
    void updateTitle();
    bool isCursorOnWidget(QWidget* widget);
    void trackClickPushMessage(QMap<QString, QVariant>& data);

    void restartHoldTime();
    void emitViewDetails(const VyrEngine::GatherNoticePtr& notice);
    QSize windowSizeFor(const QSize& contentSize) const;
    QPropertyAnimation* restartAnimation(QPropertyAnimation*& animation, const char* objectName,
                                         const QByteArray& property, void (NoticeListWidget::*onFinished)());
    void announceNotices();

    static const QMargins s_shadowMargins;

    VyrEngine::NoticeCategory m_noticeCategory;
    QLabel* m_titleLabel = nullptr;
    QWidget* m_listWidget = nullptr;
    VyrListView* m_listView = nullptr;
    NoticeListSortFilterModel* m_sortFilterModel = nullptr;
    int m_unusedValue = 0;
    double m_maxVisibleItems = 3.5;
    int m_listHeight = 0;
    QPoint m_startPos;
    QPoint m_endPos;
    bool m_isPosChanged = false;
    bool m_needAdjustPos = false;
    quint64 m_popupTime = 0;
    QPropertyAnimation* m_popAnimation = nullptr;
    QPropertyAnimation* m_posAnimation = nullptr;
    QPropertyAnimation* m_opacityAnimation = nullptr;
    VyrPauseableTimer* m_closeTimer = nullptr;
};
