#pragma once

#include "GatherNotice.h"
#include "VyrNoticeExport.h"

#include <QAbstractItemModel>
#include <QMap>
#include <QMargins>
#include <QModelIndex>
#include <QPixmap>
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

/**
 * The gathered-notice window of one category: a frameless, always-on-top tool
 * window at the bottom right corner of the work area, with all notices of that
 * category in one list, newest first.
 *
 * The host creates one per VyrEngine::NoticeCategory and keeps it; it starts
 * hidden and is hidden, not destroyed, when it has nothing to show. The host
 * drives it from NoticeListModel's signals: on popupNoticeListWidget() it calls
 * adjustListHeight(0) and then popNoticeListWidget() or a re-position; on
 * removeNoticeListItem() it calls adjustListHeight(1). The window answers with
 * its signals: what the user asked for, and noticeWidgetHidden() when it went.
 *
 * A window holds for 15 seconds from its last new notice (in the Lesson
 * window, also from its last updated one); the count pauses while the pointer
 * is on it. Then it fades out over 500 ms, hides and deletes every notice of
 * its category, read or not; the close button does the same at once.
 *
 * A click on a row sends a "PushClick" tracking event with "check_up" true,
 * emits the view... signal of the row's kind (or enterClassRoom() for the
 * row's button) and removes that row only, right after the signal, which
 * leads to removeNoticeListItem().
 *
 * The 20-pixel shadow around the panel needs a translucent window, so on X11
 * a compositing manager must run. The user can drag the window by its top
 * strip (shadow and title); see isPosChanged().
 */
class VYRNOTICE_EXPORT NoticeListWidget : public QWidget
{
    Q_OBJECT

public:
    /**
     * A hidden window for @p noticeCategory, which never changes. It reads
     * NoticeListModel::instance() as it is now, so make windows after any
     * NoticeListModel::release(). @p parent is normally null: the window is a
     * top-level tool window.
     */
    explicit NoticeListWidget(VyrEngine::NoticeCategory noticeCategory, QWidget* parent = nullptr);
    /** Deletes the window's children; the notices stay in the model. */
    ~NoticeListWidget() override;

    /**
     * Sizes the list after a change of the model; call it before any pop or
     * re-position, since the position is computed from the height.
     *
     * 0, after popupNoticeListWidget(): updates the title's count and starts
     * the 15-second hold afresh (under the pointer, the paused count starts
     * afresh when the pointer leaves). The list grows by a row, by half a row
     * for the fourth notice, and not at all from the fifth, when it scrolls.
     * On a hidden window it also clears isPosChanged().
     *
     * 1, after removeNoticeListItem(): updates the title and shrinks the list
     * by the same steps. When the last row has gone the window emits
     * noticeWidgetHidden(), hides and stops its hold.
     *
     * Any other value only updates the title and re-applies the height.
     * Sizing never moves the window: it grows and shrinks at its bottom edge.
     */
    void adjustListHeight(int change);
    /**
     * The white panel without the shadow border: 384 pixels wide, the list's
     * height plus 50 high. Pass another window's height as bottomOffset to
     * stand above it.
     */
    QSize getContentWidgetSize();
    /**
     * Puts the window at the bottom right corner of the work area, raised by
     * @p bottomOffset pixels, shows it and fades it in over 500 ms. The hold
     * is left alone: adjustListHeight(0) has started it. Moves a dragged
     * window too, so ask isPosChanged() first. An unknown taskbar edge keeps
     * the place of the last showing.
     */
    void popNoticeListWidget(int bottomOffset);
    /**
     * Slides the window over 500 ms from where it stands to the corner,
     * raised by @p bottomOffset. A slide under way is cut off and the new one
     * starts from the present place. Moves at once, even under the pointer
     * and even when the user has dragged the window. With an unknown taskbar
     * edge the target is (0, 0).
     */
    void adjustNoticeListWidgetPos(int bottomOffset);
    /**
     * adjustNoticeListWidgetPos(0), put off while the pointer is on the window
     * (its shadow border counts): the slide then runs when the pointer leaves,
     * once however many calls came, and always with offset 0.
     */
    void autoAdjustNoticeListWidgetPos();
    /**
     * True once the user has dragged the window during this showing. Cleared
     * when the window hides (after noticeWidgetHidden() has carried it) and by
     * adjustListHeight(0) on a hidden window. The window's own moves ignore
     * it; leaving a dragged window in place is the host's choice.
     */
    bool isPosChanged();
    /** Stores a time stamp of the host's; the window does nothing with it. */
    void updatePopupTime(quint64 popupTime);
    /** The stamp given to updatePopupTime(), 0 before the first. */
    quint64 popupTime();

signals:
    /** The user clicked a friend-request row; open the friend-request page. */
    void viewFriendRequestDetails();
    /** The user clicked a cluster notice row; @p contentId is the one given at intake. */
    void viewClusterNoticeDetails(qulonglong contentId);
    /** The user clicked a study report row of lesson @p lessonId. */
    void viewStudyReportNoticeDetails(qulonglong lessonId);
    /** The user clicked a lesson row, outside its enter-classroom button. */
    void viewLessonNoticeDetails(qulonglong lessonId);
    /** The user clicked a study activity row; the two records given at intake. */
    void viewStudyActivityNoticeDetails(QSharedPointer<AppendixDataPod> pod,
                                        QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod);
    /** The user pressed the enter-classroom button of a LessonPrepare or LessonStart row. */
    void enterClassRoom(qulonglong lessonId);
    /**
     * The window has gone: by its close button, at the end of its fade-out, or
     * by adjustListHeight(1) with the last row. @p isPosChanged tells whether
     * the user dragged it during this showing. After the close button and the
     * fade-out, every notice of the category is deleted right after this
     * signal.
     *
     * It can come again, with false, for a window that is already hidden (the
     * close button during the fade-out, a hold restarted during it, a removal
     * after the window went). Treat that as a no-op.
     */
    void noticeWidgetHidden(VyrEngine::NoticeCategory noticeCategory, bool isPosChanged);
    /**
     * The user closed the window with LessonPrepare or LessonStart rows in it:
     * once per such row, after noticeWidgetHidden() and before the rows are
     * deleted. Stop the host's own start alert for @p lessonId. Not emitted
     * when the window fades out by itself.
     */
    void pauseLessonStartAlert(qulonglong lessonId);

public slots:
    /**
     * A click on a row, from the list's delegate: tracks it, emits the view
     * signal of the row's type and removes the row. Ignored unless @p model is
     * a notice window's proxy; an invalid @p index is logged.
     */
    void onClickedItem(QAbstractItemModel* model, QModelIndex index);
    /**
     * A click on a row's enter-classroom button, from the list's delegate:
     * tracks it, emits enterClassRoom() and removes the row.
     */
    void onEnterClassRoom(QAbstractItemModel* model, QModelIndex index);
    /**
     * The close button: tracks a "PushClick" with "check_up" false, hides at
     * once, emits noticeWidgetHidden() and pauseLessonStartAlert(), stops the
     * hold and deletes every notice of the category. A host may call it to
     * close the window as the user would.
     */
    void onClickedCloseBtn();

protected slots:
    // Each animation is deleted when it ends.
    void onPopAnimationFinished();
    void onPosAnimationFinished();
    // The end of the fade-out: hides, emits noticeWidgetHidden() and deletes the category's notices.
    void onOpacityAnimationFinished();
    // The hold ran out: starts the 500 ms fade-out.
    void onStartOpacityAnimation();
    // A lesson row changed in place: the hold starts afresh (Lesson window only).
    void onLessonNoticeUpdated();

protected:
    // Chooses between the hand and the arrow cursor.
    void mouseMoveEvent(QMouseEvent* event) override;
    // The pointer pauses the hold; leaving resumes it and runs a put-off slide.
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    // The shadow border.
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
    bool growForAddedRows();
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
    // The shadow border's picture, loaded with the window rather than at each paint,
    // and the border as drawn at the window's size and pixel ratio.
    QPixmap m_shadow;
    QPixmap m_shadowFrame;
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
