#include "GatheredNoticeHost.h"

#include "AppendixDataPod.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "NoticeStacker.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"

#include <QDateTime>
#include <QTimer>

namespace {
QString categoryName(VyrEngine::NoticeCategory category)
{
    return category == VyrEngine::Lesson ? QStringLiteral("Lesson") : QStringLiteral("Activity");
}
} // namespace

GatheredNoticeHost::GatheredNoticeHost(Say say, NoticeStacker* stacker, QObject* parent)
    : HostPart(std::move(say), stacker, parent)
    , m_activityWindow(new NoticeListWidget(VyrEngine::Activity))
    , m_lessonWindow(new NoticeListWidget(VyrEngine::Lesson))
{
    NoticeListModel* model = NoticeListModel::instance();
    connect(model, &NoticeListModel::popupNoticeListWidget, this, &GatheredNoticeHost::onPopupNoticeListWidget);
    connect(model, &NoticeListModel::removeNoticeListItem, this, &GatheredNoticeHost::onRemoveNoticeListItem);
    reportSignals(m_activityWindow.get(), QStringLiteral("Activity"));
    reportSignals(m_lessonWindow.get(), QStringLiteral("Lesson"));
    m_stacker->addWindow(m_lessonWindow.get());
    m_stacker->addWindow(m_activityWindow.get());
}

GatheredNoticeHost::~GatheredNoticeHost() = default;

NoticeListWidget* GatheredNoticeHost::window(VyrEngine::NoticeCategory category) const
{
    return category == VyrEngine::Lesson ? m_lessonWindow.get() : m_activityWindow.get();
}

bool GatheredNoticeHost::anyVisible() const
{
    return m_activityWindow->isVisible() || m_lessonWindow->isVisible();
}

void GatheredNoticeHost::onPopupNoticeListWidget(VyrEngine::NoticeCategory category)
{
    NoticeListWidget* target = window(category);
    // The height first: the corner is computed from it.
    target->adjustListHeight(0);
    if (!target->isVisible()) {
        // Shown at the corner; the stacker moves it onto the windows already up.
        target->popNoticeListWidget(0);
        target->updatePopupTime(quint64(QDateTime::currentMSecsSinceEpoch()));
    } else {
        m_stacker->restack();
    }
}

void GatheredNoticeHost::onRemoveNoticeListItem(VyrEngine::NoticeCategory category)
{
    window(category)->adjustListHeight(1);
    m_stacker->restack();
}

void GatheredNoticeHost::onNoticeWidgetHidden(VyrEngine::NoticeCategory category, bool isPosChanged)
{
    m_say(QStringLiteral("window %1: noticeWidgetHidden(%1, %2)")
              .arg(categoryName(category), isPosChanged ? QStringLiteral("true") : QStringLiteral("false")));
    // The window hides right after telling us.
    QTimer::singleShot(0, this, [this, category]() { emit windowHidden(category); });
}

void GatheredNoticeHost::reportSignals(NoticeListWidget* window, const QString& name)
{
    const QString prefix = QStringLiteral("window %1: ").arg(name);
    auto report = [this, prefix](const QString& text) { m_say(prefix + text); };
    connect(window, &NoticeListWidget::viewFriendRequestDetails, this,
            [report]() { report(QStringLiteral("viewFriendRequestDetails()")); });
    connect(window, &NoticeListWidget::viewClusterNoticeDetails, this,
            [report](qulonglong id) { report(QStringLiteral("viewClusterNoticeDetails(%1)").arg(id)); });
    connect(window, &NoticeListWidget::viewStudyReportNoticeDetails, this,
            [report](qulonglong id) { report(QStringLiteral("viewStudyReportNoticeDetails(%1)").arg(id)); });
    connect(window, &NoticeListWidget::viewLessonNoticeDetails, this,
            [report](qulonglong id) { report(QStringLiteral("viewLessonNoticeDetails(%1)").arg(id)); });
    connect(window, &NoticeListWidget::viewStudyActivityNoticeDetails, this,
            [report](QSharedPointer<AppendixDataPod> pod, QSharedPointer<StudyActivityNoticeWidgetDisplayPod>) {
                report(QStringLiteral("viewStudyActivityNoticeDetails(%1)").arg(pod ? pod->activityId : 0));
            });
    connect(window, &NoticeListWidget::enterClassRoom, this,
            [report](qulonglong id) { report(QStringLiteral("enterClassRoom(%1)").arg(id)); });
    connect(window, &NoticeListWidget::noticeWidgetHidden, this, &GatheredNoticeHost::onNoticeWidgetHidden);
    connect(window, &NoticeListWidget::pauseLessonStartAlert, this,
            [report](qulonglong id) { report(QStringLiteral("pauseLessonStartAlert(%1)").arg(id)); });
}
