#pragma once

#include "GatherNotice.h"
#include "LessonInfo.h"
#include "SnapshotLesson.h"
#include "VyrNoticeExport.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QSharedPointer>
#include <QSortFilterProxyModel>
#include <vector>

// The one list of gathered notices, of both categories, in order of adding.
// Every change is a full model reset; windows read it through a
// NoticeListSortFilterModel of their category.
class VYRNOTICE_EXPORT NoticeListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    static NoticeListModel* instance();
    static void release();

    ~NoticeListModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    int getNoticeItemNum(VyrEngine::NoticeCategory noticeCategory);

    void addLessonNotice(VyrEngine::NoticeType type, quint64 lessonId);
    void addStudyReportNotice(quint64 lessonId);
    void addStudyActivityNotice(QSharedPointer<AppendixDataPod> pod,
                                QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod);
    void addClusterNoticeRemindNotice(QString content, quint64 contentId, quint64 clusterId, quint64 creatorId);
    void addContactorAddNotice();

    void delNotice(const QModelIndex& index);
    void delNotice(const QString& noticeId);
    void delNotice(VyrEngine::NoticeCategory noticeCategory);

signals:
    void popupNoticeListWidget(VyrEngine::NoticeCategory noticeCategory);
    void removeNoticeListItem(VyrEngine::NoticeCategory noticeCategory);
    void lessonNoticeUpdated();

private:
    friend class NoticeListSortFilterModel;

    explicit NoticeListModel(QObject* parent);
    void init();

    // The record of a row, or null: what the window's proxy filters and sorts
    // on, read without wrapping a shared pointer in a QVariant each time.
    const VyrEngine::GatherNotice* noticeAt(int row) const
    {
        return row >= 0 && size_t(row) < m_notices.size() ? m_notices[size_t(row)].get() : nullptr;
    }

    void addNotice(VyrEngine::GatherNoticePtr notice);
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
};

// The rows of one category, newest first. Sorting is dynamic, so every reset
// of the source re-sorts the window.
class NoticeListSortFilterModel : public QSortFilterProxyModel
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
    VyrEngine::NoticeCategory m_noticeCategory;
    // The source when it is the notice model, whose records are then read directly.
    QPointer<const NoticeListModel> m_noticeSource;
};
