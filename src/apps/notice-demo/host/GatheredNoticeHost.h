#pragma once

#include "GatherNotice.h"

#include "HostPart.h"

#include <memory>

class NoticeListWidget;

// The host's side of the gathered notices: one window per category, the
// model's signals wired to handlers that size a window first and then pop or
// re-position it, and every signal of both windows reported.
//
// Both windows are handed to the host's NoticeStacker, which places them
// (with the single pop-ups) so that none covers another and leaves a window
// the user has dragged where it was put until it hides.
class GatheredNoticeHost : public HostPart
{
    Q_OBJECT
public:
    GatheredNoticeHost(Say say, NoticeStacker* stacker, QObject* parent = nullptr);
    ~GatheredNoticeHost() override;

    NoticeListWidget* window(VyrEngine::NoticeCategory category) const;
    bool anyVisible() const;

signals:
    void windowHidden(VyrEngine::NoticeCategory category);

private:
    void onPopupNoticeListWidget(VyrEngine::NoticeCategory category);
    void onRemoveNoticeListItem(VyrEngine::NoticeCategory category);
    void onNoticeWidgetHidden(VyrEngine::NoticeCategory category, bool isPosChanged);
    void reportSignals(NoticeListWidget* window, const QString& name);

    std::unique_ptr<NoticeListWidget> m_activityWindow;
    std::unique_ptr<NoticeListWidget> m_lessonWindow;
};
