#pragma once

#include "GatherNotice.h"

#include <QJsonObject>
#include <QObject>
#include <QTextStream>

class ScenarioPlayer;

// A host program for the notice library: feeds the client kit from a
// scenario, drives the library the way the client's messaging part does and
// prints what comes back (model signals, rows, tracking events).
class DemoHost : public QObject
{
    Q_OBJECT
public:
    explicit DemoHost(QObject* parent = nullptr);

    // Seeds the kit with the scenario's clock, clusters, courses and lessons.
    void seed(const QJsonObject& scenario);
    // Registers the actions that scenario steps may name.
    void registerActions(ScenarioPlayer* player);

    void printRows();
    void announceStep(int index, const QJsonObject& step);

private:
    void onPopupNoticeListWidget(VyrEngine::NoticeCategory category);
    void onRemoveNoticeListItem(VyrEngine::NoticeCategory category);
    void onTracked(const QString& event, const QVariantMap& data);
    void say(const QString& line);

    QTextStream m_out;
};
