#pragma once

#include "GatherNotice.h"

#include <QJsonObject>
#include <QModelIndex>
#include <QObject>

class GatheredNoticeHost;
class QAbstractItemView;
class NoticeListWidget;
class ScenarioPlayer;
class ScreenshotTaker;

// Scenario actions that act on the gathered windows the way a user would:
//   {"do": "clickRow", "category": "Lesson", "row": 0}        click a row (left of its button)
//   {"do": "enterClassRoom", "category": "Lesson", "row": 0}  press a row's enter-classroom button
//   {"do": "closeWindow", "category": "Activity"}             click the close button
//   {"do": "hover", "category": "Lesson", "on": true}         move the pointer onto the window (or away)
//   {"do": "dragWindow", "category": "Lesson", "dx": -80, "dy": -40}  drag the window by its title
//   {"do": "screenshot", "name": "two-windows"}               grab every visible window (with --screenshots)
//   {"do": "quitWhenHidden", "timeout": 20000}                quit once both windows have gone (real ms)
class WindowActions : public QObject
{
    Q_OBJECT
public:
    WindowActions(GatheredNoticeHost* host, ScreenshotTaker* screenshots, QObject* parent = nullptr);

    void registerActions(ScenarioPlayer* player);
    void screenshot(const QJsonObject& step);
    // A "quitWhenHidden" step is waiting for the windows to go.
    bool isWaitingToQuit() const { return m_waitingToQuit; }

signals:
    void said(const QString& line);

private:
    NoticeListWidget* windowOf(const QJsonObject& step) const;
    QAbstractItemView* viewOf(NoticeListWidget* window) const;
    void clickViewAt(const QJsonObject& step, bool onEnterButton);
    void clickRow(const QJsonObject& step);
    void enterClassRoom(const QJsonObject& step);
    void closeWindow(const QJsonObject& step);
    void hover(const QJsonObject& step);
    void dragWindow(const QJsonObject& step);
    void quitWhenHidden(const QJsonObject& step);

    GatheredNoticeHost* m_host;
    ScreenshotTaker* m_screenshots;
    bool m_waitingToQuit = false;
};
