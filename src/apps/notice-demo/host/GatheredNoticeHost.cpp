#include "GatheredNoticeHost.h"

#include "AppendixDataPod.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"

#include <QDateTime>
#include <QTimer>

namespace {
QString categoryName(VyrEngine::NoticeCategory category)
{
    return category == VyrEngine::Lesson ? QStringLiteral("Lesson") : QStringLiteral("Activity");
}
} // namespace

GatheredNoticeHost::GatheredNoticeHost(Say say, QObject* parent)
    : QObject(parent)
    , m_say(std::move(say))
    , m_activityWindow(new NoticeListWidget(VyrEngine::Activity))
    , m_lessonWindow(new NoticeListWidget(VyrEngine::Lesson))
{
    NoticeListModel* model = NoticeListModel::instance();
    connect(model, &NoticeListModel::popupNoticeListWidget, this, &GatheredNoticeHost::onPopupNoticeListWidget);
    connect(model, &NoticeListModel::removeNoticeListItem, this, &GatheredNoticeHost::onRemoveNoticeListItem);
    reportSignals(m_activityWindow.get(), QStringLiteral("Activity"));
    reportSignals(m_lessonWindow.get(), QStringLiteral("Lesson"));
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
        target->popNoticeListWidget(bottomOffsetFor(category));
        target->updatePopupTime(quint64(QDateTime::currentMSecsSinceEpoch()));
    } else {
        place(category);
    }
    if (category == VyrEngine::Lesson)
        restackActivity();
}

void GatheredNoticeHost::onRemoveNoticeListItem(VyrEngine::NoticeCategory category)
{
    window(category)->adjustListHeight(1);
    place(category);
    if (category == VyrEngine::Lesson)
        restackActivity();
}

void GatheredNoticeHost::onNoticeWidgetHidden(VyrEngine::NoticeCategory category, bool isPosChanged)
{
    m_say(QStringLiteral("window %1: noticeWidgetHidden(%1, %2)")
              .arg(categoryName(category), isPosChanged ? QStringLiteral("true") : QStringLiteral("false")));
    // The window hides right after telling us; the Activity window drops down then.
    if (category == VyrEngine::Lesson)
        QTimer::singleShot(0, this, &GatheredNoticeHost::restackActivity);
    QTimer::singleShot(0, this, [this, category]() { emit windowHidden(category); });
}

int GatheredNoticeHost::bottomOffsetFor(VyrEngine::NoticeCategory category) const
{
    if (category == VyrEngine::Lesson || !m_lessonWindow->isVisible() || m_lessonWindow->isPosChanged())
        return 0;
    return m_lessonWindow->getContentWidgetSize().height() + kStackGap;
}

void GatheredNoticeHost::place(VyrEngine::NoticeCategory category)
{
    NoticeListWidget* target = window(category);
    // A dragged window stays where the user put it.
    if (!target->isVisible() || target->isPosChanged())
        return;
    const int offset = bottomOffsetFor(category);
    if (offset == 0)
        target->autoAdjustNoticeListWidgetPos();
    else
        target->adjustNoticeListWidgetPos(offset);
}

void GatheredNoticeHost::restackActivity()
{
    place(VyrEngine::Activity);
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
