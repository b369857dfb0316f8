#pragma once

#include "GatherNotice.h"

#include <QObject>
#include <QTextStream>
#include <memory>

class GatheredNoticeHost;
class NoticeListWidget;

// The host program's messaging part, written against the notice library's
// exported API only, as the client would: takes notices in through the
// model's intakes, owns the gathered windows (GatheredNoticeHost) and prints
// what comes back (model signals, window signals, rows, tracking events).
class DemoHost : public QObject
{
    Q_OBJECT
public:
    // The words a host composes for a study activity beside the engine's record.
    struct ActivityWords
    {
        QString windowTitle;
        QString content;
        QString heading;
        QString pushScenes;
        QString pushBody;
    };

    explicit DemoHost(QObject* parent = nullptr);
    ~DemoHost() override;

    // Notices arriving from the server.
    void lessonNoticeArrived(VyrEngine::NoticeType type, quint64 lessonId);
    void friendRequestArrived();
    void studyReportArrived(quint64 lessonId);
    void studyActivityArrived(quint64 activityId, quint32 courseId, const ActivityWords& words);
    void clusterNoticeArrived(const QString& content, quint64 contentId, quint64 clusterId, quint64 creatorId);

    NoticeListWidget* window(VyrEngine::NoticeCategory category) const;
    bool anyWindowVisible() const;

    void printRows();
    void say(const QString& line);

signals:
    void windowHidden(VyrEngine::NoticeCategory category);

private:
    void onPopupNoticeListWidget(VyrEngine::NoticeCategory category);
    void onRemoveNoticeListItem(VyrEngine::NoticeCategory category);
    void onTracked(const QString& event, const QVariantMap& data);

    QTextStream m_out;
    std::unique_ptr<GatheredNoticeHost> m_gathered;
};
