#pragma once

#include "GatherNotice.h"

#include <QJsonObject>
#include <QObject>

class ClassNoticeWidget;
class DemoHost;
class QAbstractButton;
class QAbstractItemView;
class NoticeListWidget;
class ScenarioPlayer;

// The user in front of the notice windows: clicks the gathered windows' rows
// and their enter-classroom buttons, the close buttons, the class notice
// card's buttons, hovers and drags, with real mouse events on what can be
// seen (Qt's own widgets found by their accessible names, pixels), never
// through the library's internals. The steps' fields are in docs/SCENARIO.md.
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
    // The newest class notice card that is up; null, with a line said, when there is none.
    ClassNoticeWidget* newestClassNotice();
    void clickClassNotice(const QJsonObject& step);
    void dragClassNotice(const QJsonObject& step);
    static void drag(QWidget* window, const QPoint& grip, const QPoint& delta);

    DemoHost* m_host;
};
