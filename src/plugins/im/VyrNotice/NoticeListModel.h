#pragma once

#include "GatherNotice.h"
#include "LessonInfo.h"
#include "SnapshotLesson.h"
#include "VyrNoticeExport.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QSharedPointer>
#include <QSortFilterProxyModel>
#include <unordered_map>
#include <vector>

/**
 * The one list of gathered notices, of both categories, in order of adding.
 *
 * A singleton that the host fills through the add...() intakes and empties
 * through delNotice(); each NoticeListWidget shows the rows of its category.
 * The model watches no clock and no engine signal: a notice stays until a
 * window closes, a row is clicked or the host deletes it.
 *
 * The host connects popupNoticeListWidget() and removeNoticeListItem() to its
 * own handlers and answers them on the window of that category (see
 * NoticeListWidget). Every change is a full model reset (no row insertions,
 * no dataChanged), and each window's proxy re-sorts on it.
 *
 * Notices travel as VyrEngine::GatherNoticePtr (std::shared_ptr): the list
 * owns them, and a reader that copies the pointer keeps the record alive
 * after the row has gone. Everything runs on the GUI thread; nothing locks.
 */
class VYRNOTICE_EXPORT NoticeListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    /**
     * The model, created with no parent on the first call. GUI thread only.
     * Windows take their source model from here when they are constructed.
     */
    static NoticeListModel* instance();
    /**
     * Schedules the model's deletion (deleteLater()) and forgets it: the next
     * instance() is a new, empty model. Reconnect its signals, and make new
     * windows: one built before keeps reading the old model.
     */
    static void release();

    /** Frees the list; a notice lives on while a reader still holds its pointer. */
    ~NoticeListModel() override;

    /** Notices of both categories; @p parent is not looked at. */
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    /**
     * The same index as QAbstractListModel::index() gives: column 0 of a shown
     * row under no parent, else an invalid index.
     */
    QModelIndex index(int row, int column = 0, const QModelIndex& parent = QModelIndex()) const override;
    /**
     * For Qt::UserRole, the row's VyrEngine::GatherNoticePtr in a QVariant;
     * an invalid QVariant for every other role and for a bad index.
     */
    QVariant data(const QModelIndex& index, int role) const override;
    /** Rows are never edited through the model: changes nothing, returns false. */
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    /**
     * How many notices of @p noticeCategory the whole list holds, rows that
     * an open batch has taken in included.
     */
    int getNoticeItemNum(VyrEngine::NoticeCategory noticeCategory);

    /**
     * Takes many notices in as one change, e.g. the hundreds that arrive at
     * log-in. While a scope lives, every intake (also a lesson or report
     * look-up that completes inside it) works as usual: the same rows in the
     * same order, the same lesson de-duplication, the same "PushSend" events
     * at the same moments. Only the model's reset and the window signals wait
     * for the end of the outermost scope; the item model (rowCount(), data(),
     * the windows) keeps showing the list as it stood before.
     *
     * At that end, if anything changed, the model resets once and emits, in
     * this order: popupNoticeListWidget() once for each category that got
     * new rows (the category of the first new row first), while
     * batchAddedCount() tells how many it got, then lessonNoticeUpdated() once
     * if any lesson row was updated in place. A window sized from that one
     * signal (adjustListHeight(0) in the handler, as for a single add) ends as
     * high as after the single adds. A batch that changed nothing ends with
     * no reset and no signal.
     *
     * A removal inside a batch first ends what the batch has so far (its
     * reset and signals, as above), then removes as it does outside one, with
     * its own reset and signal; the batch goes on after it.
     *
     * Scopes nest; only the outermost one's end counts. Outliving the model
     * (release()) is harmless. GUI thread only, like every intake.
     */
    class VYRNOTICE_EXPORT BatchScope
    {
    public:
        explicit BatchScope(NoticeListModel* model = NoticeListModel::instance());
        ~BatchScope();
        BatchScope(const BatchScope&) = delete;
        BatchScope& operator=(const BatchScope&) = delete;

    private:
        QPointer<NoticeListModel> m_model;
    };

    /** The same as a BatchScope's start: nests, and needs its endBatch(). */
    void beginBatch();
    /** The same as a BatchScope's end; one without a beginBatch() is logged and ignored. */
    void endBatch();
    /** True while a batch is open. */
    bool isBatching() const;
    /**
     * While popupNoticeListWidget(@p noticeCategory) is being emitted: how
     * many notices of that category it stands for, 1 for a single add, more
     * at the end of a batch. 0 at any other time. NoticeListWidget reads it
     * to grow as the single adds would have made it grow.
     */
    int batchAddedCount(VyrEngine::NoticeCategory noticeCategory) const;

    /**
     * Takes in a lesson event: @p type is LessonAhead, LessonPrepare or
     * LessonStart; the host chooses it, the library never derives it.
     *
     * Asynchronous: the lesson is looked up in the course engine now (an
     * unknown lesson, or one whose role is 0, is dropped with no word) and its
     * name is fetched through an engine future. The row comes only when that
     * future completes, on a later turn of the event loop; a cancelled future
     * brings none.
     *
     * One row per lesson: if the lesson already has a row when the look-up
     * completes, that row is updated in place (type, time, names; it keeps its
     * noticeId and rises to the top) and lessonNoticeUpdated() is emitted
     * instead of popupNoticeListWidget(). Each new or updated row sends a
     * "PushSend" tracking event. A type outside the three lesson types is
     * dropped after the look-up unless the lesson already has a row, which
     * then takes it as it comes.
     */
    void addLessonNotice(VyrEngine::NoticeType type, quint64 lessonId);
    /**
     * Takes in a study report of a lesson (category Activity). Asynchronous
     * like addLessonNotice(), with the same silent drop for an unknown lesson
     * or role 0, but with no rule against duplicates: every completed call
     * adds a row.
     */
    void addStudyReportNotice(quint64 lessonId);
    /**
     * Adds a study activity row at once (category Activity). The row's title is
     * @p displayPod's headingText and its body that record's texts; both
     * pointers are kept and come back with viewStudyActivityNoticeDetails().
     */
    void addStudyActivityNotice(QSharedPointer<AppendixDataPod> pod,
                                QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod);
    /**
     * Adds a cluster notice row at once (category Activity). The text is
     * broken into at most two lines here, when it is taken in, and shown as
     * plain text. The title is the cluster's name, empty for an unknown
     * cluster. @p contentId comes back with viewClusterNoticeDetails().
     */
    void addClusterNoticeRemindNotice(QString content, quint64 contentId, quint64 clusterId, quint64 creatorId);
    /**
     * Adds a friend-request row at once (category Activity). It names nobody;
     * each call adds one more row.
     */
    void addContactorAddNotice();

    /**
     * Removes the row at @p index, an index of this model (not of a window's
     * proxy), and emits removeNoticeListItem(). A bad index is logged and
     * changes nothing.
     */
    void delNotice(const QModelIndex& index);
    /**
     * Removes the notice with @p noticeId and emits removeNoticeListItem().
     * The reset and the signal come even when no notice matches; the signal's
     * category then means nothing.
     */
    void delNotice(const QString& noticeId);
    /**
     * Removes every notice of @p noticeCategory. Emits no signal: the windows
     * call it as they close, having told the host already. Called by the host
     * while that window is up, it leaves the window open on an empty list
     * until its hold runs out.
     */
    void delNotice(VyrEngine::NoticeCategory noticeCategory);

signals:
    /**
     * A notice of @p noticeCategory was added and the model reset. Not
     * connected inside the library: call adjustListHeight(0) on that
     * category's window first, then popNoticeListWidget() if it is hidden or
     * a re-position if it is up.
     */
    void popupNoticeListWidget(VyrEngine::NoticeCategory noticeCategory);
    /**
     * One notice of @p noticeCategory was removed by delNotice(QModelIndex) or
     * delNotice(QString). Not connected inside the library: call
     * adjustListHeight(1) on that category's window.
     */
    void removeNoticeListItem(VyrEngine::NoticeCategory noticeCategory);
    /**
     * A lesson row was updated in place. The Lesson window connects itself and
     * gives its hold time a fresh start; the host need do nothing.
     */
    void lessonNoticeUpdated();

private:
    friend class NoticeListSortFilterModel;

    explicit NoticeListModel(QObject* parent);
    void init();

    // The record of a shown row, or null: what the window's proxy filters and
    // sorts on, read without wrapping a shared pointer in a QVariant each time.
    const VyrEngine::GatherNotice* noticeAt(int row) const
    {
        return row >= 0 && row < m_shownRows ? m_notices[size_t(row)].get() : nullptr;
    }

    void addNotice(VyrEngine::GatherNoticePtr notice);
    VyrEngine::GatherNoticePtr findLessonRow(quint64 lessonId);
    void forgetLessonRow(const VyrEngine::GatherNoticePtr& notice);
    void rebuildLessonRows();
    void announceBatch();
    void emitPopup(VyrEngine::NoticeCategory category, int added);
    void onLessonInfoArrived(VyrEngine::NoticeType type, quint64 lessonId,
                             const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                             QSharedPointer<VyrEngine::LessonInfo> lessonInfo);
    void updateLessonNotice(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                            QSharedPointer<VyrEngine::LessonInfo>& lessonInfo, VyrEngine::GatherNoticePtr notice);
    void trackPushMessage(VyrEngine::GatherNoticePtr notice);
    void onStudyReportInfoArrived(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                                  QSharedPointer<VyrEngine::LessonInfo> lessonInfo);

    static NoticeListModel* m_pInstance;
    std::vector<VyrEngine::GatherNoticePtr> m_notices;
    // The first lesson row of each lesson, so that a lesson's completion
    // finds its row without walking the list. A removed row leaves it; it is
    // rebuilt in one pass after a category is cleared or when an entry no
    // longer matches its record.
    std::unordered_map<quint64, VyrEngine::GatherNoticePtr> m_lessonRows;
    bool m_lessonRowsStale = false;
    // Rows the item model shows: all of m_notices but inside a batch.
    int m_shownRows = 0;
    int m_batchDepth = 0;
    // What an open batch owes the windows: new rows by category, in the
    // order the categories first came, and whether a lesson row changed.
    std::vector<std::pair<VyrEngine::NoticeCategory, int>> m_batchAdded;
    bool m_batchLessonUpdated = false;
    // The category and count of the popupNoticeListWidget() being emitted.
    VyrEngine::NoticeCategory m_popupCategory = VyrEngine::Activity;
    int m_popupCount = 0;
};

// The rows of one category, newest first. Sorting is dynamic, so every reset
// of the source re-sorts the window.
class VYRNOTICE_TESTS_EXPORT NoticeListSortFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    NoticeListSortFilterModel(NoticeListModel* sourceModel, VyrEngine::NoticeCategory category, QObject* parent);
    ~NoticeListSortFilterModel() override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    const NoticeListModel* noticeSource() const;
    void refreshKeys() const;

    VyrEngine::NoticeCategory m_noticeCategory;
    // The source when it is the notice model, whose records are then read directly.
    QPointer<const NoticeListModel> m_noticeSource;
    // The same, only compared with an index's model: never read through.
    const NoticeListModel* m_noticeModel = nullptr;
    // Each source row's time and whether it is of this category, read from
    // the records once per filtering pass or sort, so that the n log n
    // comparisons of a sort touch one small array and no record.
    struct RowKey
    {
        quint32 time;
        bool present;
        bool accepted;
    };
    mutable std::vector<RowKey> m_keys;
    mutable bool m_keysStale = true;
};
