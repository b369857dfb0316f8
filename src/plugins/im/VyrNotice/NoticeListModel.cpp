#include "NoticeListModel.h"

#include "ClusterID.h"
#include "ClusterNoticeText_p.h"
#include "ClusterInfo.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "FutureObserver_p.h"
#include "LessonNoticeText_p.h"
#include "Model.h"
#include "NoticeLog_p.h"
#include "PushTracking_p.h"
#include "VyrUtils.h"

#include <QDebug>

#include <algorithm>

NoticeListModel* NoticeListModel::m_pInstance = nullptr;

namespace {

// The cluster of a lesson's course, or, failing that, of the classroom the user is in.
std::shared_ptr<VyrEngine::ClusterInfo> findLessonCluster(quint64 courseId)
{
    auto* contacts = VyrEngine::ContactsEngine::instance();
    std::shared_ptr<VyrEngine::ClusterInfo> cluster = contacts->clusterInfoById(VyrEngine::ClusterID(courseId, 0), false);
    QPointer<Model> model = Model::getInstance();
    if (!cluster && model) {
        const VyrEngine::ClusterID classroomCluster =
            contacts->clusterIdForClassroom(model->getCourseId(), model->getClassroomId());
        cluster = contacts->clusterInfoById(classroomCluster, false);
    }
    return cluster;
}

quint32 engineNow()
{
    return quint32(VyrEngine::CoreEngine::instance()->currentTime());
}

// A report may borrow its course's name only for these kinds of lesson.
bool reportMayUseCourseName(const VyrEngine::SnapshotLesson& lesson)
{
    const qint16 namedCourseType = 3;
    auto* courseEngine = VyrEngine::CourseEngine::instance();
    if (courseEngine->isKnownLessonKind(lesson.lessonId) || lesson.courseType == namedCourseType)
        return true;
    QSharedPointer<VyrEngine::CourseRecord> course = courseEngine->courseRecord(lesson.courseId);
    return course && course->courseType == namedCourseType;
}

// The report row's title: the cluster's name, else, where allowed, the course's
// name if the engine already has it. Unlike the lesson rule there is no
// fallback to the course record's name.
QString studyReportTitle(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson)
{
    if (std::shared_ptr<VyrEngine::ClusterInfo> cluster = findLessonCluster(lesson->courseId))
        return cluster->name();

    const QString unknown = QStringLiteral("Unknown");
    if (!reportMayUseCourseName(*lesson)) {
        qCInfo(lcVyrNotice) << "oops, failed to get cluster name" << lesson->courseId;
        return unknown;
    }
    // Only polled: an unfinished look-up leaves the title unknown, with no word.
    auto courseFuture = VyrEngine::CourseEngine::instance()->courseInfoFuture(lesson);
    if (!courseFuture.isFinished())
        return unknown;
    // A finished look-up is trusted to carry a record; one without is logged
    // rather than dereferenced.
    if (courseFuture.resultCount() < 1 || !courseFuture.resultAt(0)) {
        qCInfo(lcVyrNotice) << "oops, course info finished without a record, id:" << lesson->courseId;
        return unknown;
    }
    return courseFuture.resultAt(0)->name;
}

} // namespace

NoticeListModel::NoticeListModel(QObject* parent)
    : QAbstractListModel(parent)
{
}

NoticeListModel::~NoticeListModel() = default;

NoticeListModel* NoticeListModel::instance()
{
    if (!m_pInstance) {
        m_pInstance = new NoticeListModel(nullptr);
        m_pInstance->init();
    }
    return m_pInstance;
}

void NoticeListModel::release()
{
    if (m_pInstance) {
        m_pInstance->deleteLater();
        m_pInstance = nullptr;
    }
}

void NoticeListModel::init()
{
}

int NoticeListModel::rowCount(const QModelIndex& parent) const
{
    Q_UNUSED(parent)
    return m_shownRows;
}

// A window's proxy builds two indexes per comparison of its sort: answered
// here without the two virtual look-ups of hasIndex().
QModelIndex NoticeListModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0 || row >= m_shownRows || parent.isValid())
        return {};
    return createIndex(row, 0);
}

QVariant NoticeListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::UserRole)
        return {};
    if (index.row() < 0 || index.row() >= m_shownRows)
        return {};
    return QVariant::fromValue(m_notices[size_t(index.row())]);
}

bool NoticeListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    // Rows are never edited through the model interface.
    return QAbstractItemModel::setData(index, value, role);
}

int NoticeListModel::getNoticeItemNum(VyrEngine::NoticeCategory noticeCategory)
{
    // Walks the list itself, not a copy: nothing can change it during the count.
    int count = 0;
    for (const VyrEngine::GatherNoticePtr& notice : m_notices) {
        if (notice && notice->category() == noticeCategory)
            ++count;
    }
    return count;
}

void NoticeListModel::addNotice(VyrEngine::GatherNoticePtr notice)
{
    const VyrEngine::NoticeCategory category = notice->category();
    if (category == VyrEngine::Lesson && !m_lessonRowsStale)
        m_lessonRows.emplace(notice->lessonId(), notice);
    if (m_batchDepth > 0) {
        // Shown, and announced, when the batch ends.
        m_notices.push_back(notice);
        auto counted = std::find_if(m_batchAdded.begin(), m_batchAdded.end(),
                                    [category](const auto& added) { return added.first == category; });
        if (counted == m_batchAdded.end())
            m_batchAdded.emplace_back(category, 1);
        else
            ++counted->second;
        return;
    }
    beginResetModel();
    m_notices.push_back(notice);
    m_shownRows = int(m_notices.size());
    endResetModel();
    emitPopup(category, 1);
}

void NoticeListModel::emitPopup(VyrEngine::NoticeCategory category, int added)
{
    m_popupCategory = category;
    m_popupCount = added;
    emit popupNoticeListWidget(category);
    m_popupCount = 0;
}

int NoticeListModel::batchAddedCount(VyrEngine::NoticeCategory noticeCategory) const
{
    return m_popupCount > 0 && m_popupCategory == noticeCategory ? m_popupCount : 0;
}

NoticeListModel::BatchScope::BatchScope(NoticeListModel* model)
    : m_model(model)
{
    if (m_model)
        m_model->beginBatch();
}

NoticeListModel::BatchScope::~BatchScope()
{
    if (m_model)
        m_model->endBatch();
}

void NoticeListModel::beginBatch()
{
    ++m_batchDepth;
}

void NoticeListModel::endBatch()
{
    if (m_batchDepth == 0) {
        qCInfo(lcVyrNotice) << "end of a batch that was never begun, ignored";
        return;
    }
    if (--m_batchDepth == 0)
        announceBatch();
}

bool NoticeListModel::isBatching() const
{
    return m_batchDepth > 0;
}

// The one reset of a batch and the signals its adds and updates owe the windows.
void NoticeListModel::announceBatch()
{
    const bool rowsAdded = !m_batchAdded.empty();
    if (!rowsAdded && !m_batchLessonUpdated)
        return;
    const std::vector<std::pair<VyrEngine::NoticeCategory, int>> added = std::move(m_batchAdded);
    m_batchAdded.clear();
    const bool lessonUpdated = m_batchLessonUpdated;
    m_batchLessonUpdated = false;

    beginResetModel();
    m_shownRows = int(m_notices.size());
    endResetModel();
    for (const auto& category : added)
        emitPopup(category.first, category.second);
    if (lessonUpdated)
        emit lessonNoticeUpdated();
}

void NoticeListModel::addContactorAddNotice()
{
    auto notice = std::make_shared<VyrEngine::GatherNotice>(VyrEngine::ContactorAdd);
    notice->setTime(engineNow());
    notice->setNoticeId(VyrUtils::createUuid());
    addNotice(notice);
}

void NoticeListModel::addClusterNoticeRemindNotice(QString content, quint64 contentId, quint64 clusterId,
                                                   quint64 creatorId)
{
    auto notice = std::make_shared<VyrEngine::GatherNotice>(VyrEngine::ClusterNoticeRemind);
    notice->setTime(engineNow());
    notice->setContent(content);
    notice->setContentId(contentId);
    notice->setClusterId(clusterId);
    notice->setCreatorId(creatorId);
    notice->setNoticeId(VyrUtils::createUuid());
    notice->setDisplayContent(ClusterNoticeText::displayContent(content));

    // No second look-up and no "Unknown" here: an unknown cluster leaves the title empty.
    auto* contacts = VyrEngine::ContactsEngine::instance();
    if (std::shared_ptr<VyrEngine::ClusterInfo> cluster = contacts->clusterInfoById(VyrEngine::ClusterID(clusterId, 0), false))
        notice->setTitle(cluster->name());
    addNotice(notice);
}

void NoticeListModel::addStudyActivityNotice(QSharedPointer<AppendixDataPod> pod,
                                             QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod)
{
    auto notice = std::make_shared<VyrEngine::GatherNotice>(VyrEngine::StudyActivity);
    notice->setTime(engineNow());
    // The host always passes both records; a missing one is logged and the row still comes.
    if (pod && pod->courseData)
        notice->setClusterId(quint64(pod->courseData->courseId));
    else
        qCInfo(lcVyrNotice) << "study activity notice without its course record";
    if (displayPod)
        notice->setTitle(displayPod->headingText);
    else
        qCInfo(lcVyrNotice) << "study activity notice without its display record";
    notice->setAppendixPod(pod);
    notice->setDisplayPod(displayPod);
    notice->setNoticeId(VyrUtils::createUuid());
    addNotice(notice);
}

void NoticeListModel::addStudyReportNotice(quint64 lessonId)
{
    auto* courseEngine = VyrEngine::CourseEngine::instance();
    QSharedPointer<VyrEngine::SnapshotLesson> lesson = courseEngine->lessonSnapshot(lessonId);
    if (!lesson || lesson->role == 0)
        return;

    auto future = courseEngine->lessonInfoFuture(lesson->schoolId, lesson->courseId, lesson->lessonId);
    observeFuture(this, future, [this, lesson](QSharedPointer<VyrEngine::LessonInfo> info) {
        onStudyReportInfoArrived(lesson, info);
    });
}

void NoticeListModel::onStudyReportInfoArrived(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                                               QSharedPointer<VyrEngine::LessonInfo> lessonInfo)
{
    // Reports have no rule against duplicates: every completion adds a row.
    auto notice = std::make_shared<VyrEngine::GatherNotice>(VyrEngine::StudyReport);
    notice->setTime(engineNow());
    notice->setLessonId(lesson->lessonId);
    notice->setSchoolId(lesson->schoolId);
    notice->setClusterId(lesson->courseId);
    notice->setReportRole(lesson->role);
    notice->setLessonName(lessonInfo->name);
    notice->setNoticeId(VyrUtils::createUuid());
    notice->setTitle(studyReportTitle(lesson));
    addNotice(notice);
}

void NoticeListModel::addLessonNotice(VyrEngine::NoticeType type, quint64 lessonId)
{
    auto* courseEngine = VyrEngine::CourseEngine::instance();
    QSharedPointer<VyrEngine::SnapshotLesson> lesson = courseEngine->lessonSnapshot(lessonId);
    if (!lesson || lesson->role == 0)
        return;

    // The completion works on this snapshot; it does not look at the lesson's role again.
    auto future = courseEngine->lessonInfoFuture(lesson->schoolId, lesson->courseId, lesson->lessonId);
    observeFuture(this, future, [this, type, lessonId, lesson](QSharedPointer<VyrEngine::LessonInfo> info) {
        onLessonInfoArrived(type, lessonId, lesson, info);
    });
}

void NoticeListModel::onLessonInfoArrived(VyrEngine::NoticeType type, quint64 lessonId,
                                          const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                                          QSharedPointer<VyrEngine::LessonInfo> lessonInfo)
{
    // One row per lesson: searched here, not at the call, so that two calls in
    // quick succession also end in one row.
    if (const VyrEngine::GatherNoticePtr existing = findLessonRow(lessonId)) {
        const bool batching = m_batchDepth > 0;
        if (!batching)
            beginResetModel();
        // Any type is taken here, even one outside the lesson range.
        existing->setType(type);
        updateLessonNotice(lesson, lessonInfo, existing);
        // A type outside the lesson range, or another id, takes the row out of its entry.
        if (existing->category() != VyrEngine::Lesson || existing->lessonId() != lessonId)
            m_lessonRowsStale = true;
        trackPushMessage(existing);
        if (batching) {
            m_batchLessonUpdated = true;
            return;
        }
        endResetModel();
        emit lessonNoticeUpdated();
        return;
    }

    VyrEngine::GatherNotice record(type);
    record.setNoticeId(VyrUtils::createUuid());
    if (record.category() != VyrEngine::Lesson)
        return;
    auto notice = std::make_shared<VyrEngine::GatherNotice>(record);
    updateLessonNotice(lesson, lessonInfo, notice);
    // Tracked before the row exists.
    trackPushMessage(notice);
    addNotice(notice);
}

// The first lesson row of @p lessonId in list order, or null: what a walk of
// the list would find, read from the index while it holds. Records change
// only through this model's intakes, which keep the index in step.
VyrEngine::GatherNoticePtr NoticeListModel::findLessonRow(quint64 lessonId)
{
    if (!m_lessonRowsStale) {
        auto entry = m_lessonRows.find(lessonId);
        if (entry == m_lessonRows.end())
            return nullptr;
        const VyrEngine::GatherNoticePtr& notice = entry->second;
        if (notice && notice->lessonId() == lessonId && notice->category() == VyrEngine::Lesson)
            return notice;
    }
    rebuildLessonRows();
    auto entry = m_lessonRows.find(lessonId);
    return entry == m_lessonRows.end() ? nullptr : entry->second;
}

// A removed row leaves the index; a lesson has one lesson row at most, so no
// other row takes its place.
void NoticeListModel::forgetLessonRow(const VyrEngine::GatherNoticePtr& notice)
{
    if (!notice)
        return;
    auto entry = m_lessonRows.find(notice->lessonId());
    if (entry != m_lessonRows.end() && entry->second == notice)
        m_lessonRows.erase(entry);
}

void NoticeListModel::rebuildLessonRows()
{
    m_lessonRows.clear();
    for (const VyrEngine::GatherNoticePtr& notice : m_notices) {
        if (notice && notice->category() == VyrEngine::Lesson)
            m_lessonRows.emplace(notice->lessonId(), notice);
    }
    m_lessonRowsStale = false;
}

void NoticeListModel::updateLessonNotice(const QSharedPointer<VyrEngine::SnapshotLesson>& lesson,
                                         QSharedPointer<VyrEngine::LessonInfo>& lessonInfo,
                                         VyrEngine::GatherNoticePtr notice)
{
    notice->setTime(engineNow());
    notice->setLessonId(lesson->lessonId);
    notice->setSchoolId(lesson->schoolId);
    notice->setClusterId(lesson->courseId);
    notice->setLessonStartTime(quint32(lesson->startTime));
    notice->setLessonName(lessonInfo->name);

    std::shared_ptr<VyrEngine::ClusterInfo> cluster = findLessonCluster(lesson->courseId);

    auto* courseEngine = VyrEngine::CourseEngine::instance();
    // Only polled: the course's name counts if the engine already had it.
    auto courseFuture = courseEngine->courseInfoFuture(lesson);
    QSharedPointer<VyrEngine::CourseRecord> course = courseEngine->courseRecord(lesson->courseId);

    QString title = QStringLiteral("Unknown");
    if (cluster) {
        title = cluster->name();
    } else if (courseFuture.isFinished() && courseFuture.isResultReadyAt(0) && courseFuture.resultAt(0)) {
        title = courseFuture.resultAt(0)->name;
    } else if (course) {
        title = course->name;
    } else {
        qCInfo(lcVyrNotice) << "oops, no cluster info for id:" << lesson->courseId;
    }
    notice->setTitle(title);
}

void NoticeListModel::trackPushMessage(VyrEngine::GatherNoticePtr notice)
{
    const bool isAhead = notice->type() == 2;
    const QString body = LessonNoticeText::body(isAhead, notice->lessonName(), notice->lessonStartTime(),
                                                VyrEngine::CoreEngine::instance()->currentTime());
    QMap<QString, QVariant> data;
    data.insert(QStringLiteral("push_body"), body);
    data.insert(QStringLiteral("push_scenes"), PushTracking::LessonScene);
    PushTracking::send(PushTracking::PushSend, data, qtTrId("ID_ClassAheadNotice_LessonNotice", -1));
}

void NoticeListModel::delNotice(const QModelIndex& index)
{
    if (!index.isValid()) {
        qCInfo(lcVyrNotice) << "delete notice, index is invalid";
        return;
    }
    if (index.row() < 0 || index.row() >= m_shownRows) {
        qCInfo(lcVyrNotice) << "delete notice, index row abnormal, row:" << index.row() << "notice size:" << m_shownRows;
        return;
    }
    // What the batch has so far is announced first; the row keeps its place.
    announceBatch();
    beginResetModel();
    auto it = m_notices.begin() + index.row();
    const VyrEngine::NoticeCategory category = *it ? (*it)->category() : VyrEngine::Activity;
    forgetLessonRow(*it);
    m_notices.erase(it);
    m_shownRows = int(m_notices.size());
    endResetModel();
    emit removeNoticeListItem(category);
}

void NoticeListModel::delNotice(const QString& noticeId)
{
    // What the batch has so far is announced first, as the single adds would have been.
    announceBatch();
    // Carries no meaning when nothing matches; the signal goes out all the same.
    VyrEngine::NoticeCategory category = VyrEngine::Activity;
    beginResetModel();
    for (auto it = m_notices.begin(); it != m_notices.end(); ++it) {
        if (*it && (*it)->noticeId() == noticeId) {
            category = (*it)->category();
            forgetLessonRow(*it);
            m_notices.erase(it);
            break;
        }
    }
    m_shownRows = int(m_notices.size());
    endResetModel();
    emit removeNoticeListItem(category);
}

void NoticeListModel::delNotice(VyrEngine::NoticeCategory noticeCategory)
{
    // What the batch has so far is announced first, as the single adds would have been.
    announceBatch();
    // No signal: the callers are the window's close paths, which already told the host.
    beginResetModel();
    for (auto it = m_notices.begin(); it != m_notices.end();) {
        if (*it && (*it)->category() == noticeCategory)
            it = m_notices.erase(it);
        else
            ++it;
    }
    // The index lets go of the removed records now and is rebuilt when next asked.
    m_lessonRows.clear();
    m_lessonRowsStale = true;
    m_shownRows = int(m_notices.size());
    endResetModel();
}

NoticeListSortFilterModel::NoticeListSortFilterModel(NoticeListModel* sourceModel,
                                                     VyrEngine::NoticeCategory category, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_noticeCategory(category)
{
    connect(this, &QAbstractProxyModel::sourceModelChanged, this, [this]() {
        m_noticeSource = qobject_cast<const NoticeListModel*>(QSortFilterProxyModel::sourceModel());
        m_noticeModel = m_noticeSource.data();
        m_keysStale = true;
    });
    // A sort without a filtering pass (a new sort role, say) reads the records afresh.
    connect(this, &QAbstractItemModel::layoutAboutToBeChanged, this, [this]() { m_keysStale = true; });
    setSourceModel(sourceModel);
    if (sourceModel)
        connect(sourceModel, &QAbstractItemModel::modelAboutToBeReset, this, [this]() { m_keysStale = true; });
    setSortRole(Qt::UserRole);
    setDynamicSortFilter(true);
    sort(0, Qt::DescendingOrder);
}

NoticeListSortFilterModel::~NoticeListSortFilterModel() = default;

QVariant NoticeListSortFilterModel::data(const QModelIndex& index, int role) const
{
    return QSortFilterProxyModel::data(index, role);
}

const NoticeListModel* NoticeListSortFilterModel::noticeSource() const
{
    const NoticeListModel* notices = m_noticeSource.data();
    return notices && notices == sourceModel() ? notices : nullptr;
}

void NoticeListSortFilterModel::refreshKeys() const
{
    const NoticeListModel* notices = noticeSource();
    const int rows = notices ? notices->m_shownRows : 0;
    m_keys.resize(size_t(rows));
    for (int row = 0; row < rows; ++row) {
        const VyrEngine::GatherNotice* notice = notices->m_notices[size_t(row)].get();
        m_keys[size_t(row)] = notice ? RowKey{notice->time(), true, notice->category() == m_noticeCategory}
                                     : RowKey{0, false, false};
    }
    m_keysStale = false;
}

// Filtering and sorting run over every row on every reset of the list, so the
// notice model's records are read directly, once per pass: a pass of Qt's
// filter always starts at row 0, and a sort of its own announces itself by
// layoutAboutToBeChanged(). Any other source model is read through its
// data(), as a view would.
bool NoticeListSortFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (noticeSource()) {
        // A flat list: no row has a parent.
        if (sourceParent.isValid())
            return false;
        if (sourceRow == 0 || m_keysStale || size_t(sourceRow) >= m_keys.size())
            refreshKeys();
        return sourceRow >= 0 && size_t(sourceRow) < m_keys.size() && m_keys[size_t(sourceRow)].accepted;
    }
    const QModelIndex index = sourceModel()->index(sourceRow, 0, sourceParent);
    const auto notice = index.data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
    return notice && notice->category() == m_noticeCategory;
}

bool NoticeListSortFilterModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    if (!left.isValid() || !right.isValid())
        return false;
    // Indexes of the notice model prove it alive; no look-up through the proxy per comparison.
    const QAbstractItemModel* model = left.model();
    if (model && model == m_noticeModel && right.model() == model) {
        if (m_keysStale)
            refreshKeys();
        const size_t leftRow = size_t(left.row());
        const size_t rightRow = size_t(right.row());
        if (leftRow >= m_keys.size() || rightRow >= m_keys.size())
            return false;
        const RowKey& leftKey = m_keys[leftRow];
        const RowKey& rightKey = m_keys[rightRow];
        return leftKey.present && rightKey.present && leftKey.time < rightKey.time;
    }
    const auto leftNotice = left.data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
    const auto rightNotice = right.data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
    if (!leftNotice || !rightNotice)
        return false;
    return leftNotice->time() < rightNotice->time();
}
