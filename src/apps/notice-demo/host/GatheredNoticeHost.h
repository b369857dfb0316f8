#pragma once

#include "GatherNotice.h"

#include <QObject>
#include <functional>
#include <memory>

class NoticeListWidget;

// The host's side of the gathered notices: one window per category, the
// model's signals wired to handlers that size a window first and then pop or
// re-position it, and every signal of both windows reported.
//
// The Lesson window sits in the corner; the Activity window stacks above it
// while the Lesson window is up. A window the user has dragged is left where
// it was put until it hides.
class GatheredNoticeHost : public QObject
{
    Q_OBJECT
public:
    using Say = std::function<void(const QString&)>;

    explicit GatheredNoticeHost(Say say, QObject* parent = nullptr);
    ~GatheredNoticeHost() override;

    NoticeListWidget* window(VyrEngine::NoticeCategory category) const;
    bool anyVisible() const;

    // Gap between the two stacked panels.
    static constexpr int kStackGap = 12;

signals:
    void windowHidden(VyrEngine::NoticeCategory category);

private:
    void onPopupNoticeListWidget(VyrEngine::NoticeCategory category);
    void onRemoveNoticeListItem(VyrEngine::NoticeCategory category);
    void onNoticeWidgetHidden(VyrEngine::NoticeCategory category, bool isPosChanged);
    int bottomOffsetFor(VyrEngine::NoticeCategory category) const;
    void place(VyrEngine::NoticeCategory category);
    void restackActivity();
    void reportSignals(NoticeListWidget* window, const QString& name);

    Say m_say;
    std::unique_ptr<NoticeListWidget> m_activityWindow;
    std::unique_ptr<NoticeListWidget> m_lessonWindow;
};
