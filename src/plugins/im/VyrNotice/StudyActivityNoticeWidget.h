#pragma once

#include "AppendixDataPod.h"
#include "PopNoticeBaseWidget.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"
#include "VyrNoticeExport.h"

#include <QSharedPointer>
#include <vector>

namespace VyrEngine {
class ClusterID;
}

class QLabel;
class QPushButton;
class QTextBrowser;

// The pop-up of one study activity. Its words are the host's: the display
// record gives the title and the heading (shown as typed), the body (rich
// text, shown as it comes: not escaped, but cut with "…" past 1,024
// characters of markup or deep nesting; it loads no picture or style sheet
// from outside the library, and a click on a link in it opens nothing), and
// the tracking's scene and body; the engine's appendix record says which
// activity and course it is about.
//
// A host creates the window with both records, connects signalSeeDetails(),
// calls popNotice() and keeps no pointer. The window closes itself when the
// activity is withdrawn (StudyActivityMessagePushManager), when the course's
// cluster is deleted, on the user's word, on log-out and 16 seconds after it
// popped. A change of the signed-in user's data refills it from the same
// records. Those outside signals are taken queued: one emitted while the
// window is being built acts once the event loop runs.
//
// Both records must be given; an appendix without its inner course record
// leaves the view details button without effect.
//
// @code
// auto* notice = new StudyActivityNoticeWidget(appendix, display, nullptr);
// QObject::connect(notice, &StudyActivityNoticeWidget::signalSeeDetails, host, &Host::openActivity);
// notice->popNotice();
// @endcode
class VYRNOTICE_EXPORT StudyActivityNoticeWidget : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    StudyActivityNoticeWidget(QSharedPointer<AppendixDataPod> pod,
                              QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod,
                              QWidget* parent = nullptr);

signals:
    // The user asked to see the activity; emitted before the window closes.
    void signalSeeDetails(QSharedPointer<AppendixDataPod> pod);

private slots:
    void onActivityDeleted(QSharedPointer<AppendixDataPod> pod);
    void onClustersDeleted(const std::vector<VyrEngine::ClusterID>& ids);
    void onUsersChanged(const std::vector<quint64>& uids);
    void onViewDetails();
    void onLater();

private:
    void initUi();
    void updateData();
    bool isSameActivity(QSharedPointer<AppendixDataPod> other);
    bool hasCourse() const;
    void trackClick(bool checkUp);

    QLabel* m_iconLabel = nullptr;
    QLabel* m_headingLabel = nullptr;
    QTextBrowser* m_contentBrowser = nullptr;
    QPushButton* m_viewDetailsBtn = nullptr;
    QPushButton* m_laterBtn = nullptr;
    QSharedPointer<AppendixDataPod> m_appendix;
    QSharedPointer<StudyActivityNoticeWidgetDisplayPod> m_displayPod;
};
