#pragma once

#include "GatherNotice.h"

#include <QJsonObject>
#include <QObject>
#include <QTextStream>
#include <memory>

class GatheredNoticeHost;
class ScenarioPlayer;
class ScreenshotTaker;
class WindowActions;

// A host program for the notice library: feeds the client kit from a
// scenario, drives the library the way the client's messaging part does and
// prints what comes back (model signals, window signals, rows, tracking events).
class DemoHost : public QObject
{
    Q_OBJECT
public:
    // `screenshotFolder` empty: the "screenshot" action does nothing.
    explicit DemoHost(const QString& screenshotFolder = QString(), QObject* parent = nullptr);
    ~DemoHost() override;

    // Seeds the kit with the scenario's clock, clusters, courses and lessons.
    void seed(const QJsonObject& scenario);
    // Registers the actions that scenario steps may name.
    void registerActions(ScenarioPlayer* player);

    void printRows();
    void announceStep(int index, const QJsonObject& step);
    // A "quitWhenHidden" step is waiting for the windows to go.
    bool isWaitingToQuit() const;

private:
    void onPopupNoticeListWidget(VyrEngine::NoticeCategory category);
    void onRemoveNoticeListItem(VyrEngine::NoticeCategory category);
    void onTracked(const QString& event, const QVariantMap& data);
    void say(const QString& line);

    QTextStream m_out;
    std::unique_ptr<ScreenshotTaker> m_screenshots;
    std::unique_ptr<GatheredNoticeHost> m_gathered;
    WindowActions* m_windowActions = nullptr;
};
