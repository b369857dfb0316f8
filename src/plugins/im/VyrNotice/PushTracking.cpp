#include "PushTracking_p.h"

#include "VyrTrack.h"

#include <QUuid>

const QString PushTracking::PushSend = QStringLiteral("PushSend");
const QString PushTracking::PushClick = QStringLiteral("PushClick");
const QString PushTracking::LessonScene = QStringLiteral("上课通知");

QMap<QString, QVariant> PushTracking::event(const QMap<QString, QVariant>& data, const QString& title)
{
    QMap<QString, QVariant> event = data;
    event.insert(QStringLiteral("push_id"), QUuid::createUuid().toString());
    event.insert(QStringLiteral("push_title"), title);
    event.insert(QStringLiteral("app_scene"), QStringLiteral("前台唤起"));
    return event;
}

void PushTracking::send(const QString& name, const QMap<QString, QVariant>& data, const QString& title)
{
    VyrTrack::instance()->track(name, event(data, title));
}
