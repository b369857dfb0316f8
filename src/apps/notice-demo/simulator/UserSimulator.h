#pragma once

#include "GatherNotice.h"

#include <QJsonObject>
#include <QObject>

class DemoHost;
class QAbstractItemView;
class NoticeListWidget;
class ScenarioPlayer;

// The user in front of the gathered windows: clicks rows and their
// enter-classroom buttons, the close button, hovers and drags, with real
// mouse events on what can be seen (Qt's own widgets, pixels), never through
// the library's internals. The steps' fields are in docs/SCENARIO.md.
class UserSimulator : public QObject
{
    Q_OBJECT
public:
    explicit UserSimulator(DemoHost* host, QObject* parent = nullptr);

    void registerActions(ScenarioPlayer* player);

signals:
    void said(const QString& line);

private:
    NoticeListWidget* windowOf(const QJsonObject& step) const;
    QAbstractItemView* listOf(const QJsonObject& step) const;
    QRect rowRect(QAbstractItemView* list, const QJsonObject& step);
    void clickRow(const QJsonObject& step);
    void enterClassRoom(const QJsonObject& step);
    void closeWindow(const QJsonObject& step);
    void hover(const QJsonObject& step);
    void dragWindow(const QJsonObject& step);

    DemoHost* m_host;
};
