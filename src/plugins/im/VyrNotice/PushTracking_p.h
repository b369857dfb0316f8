#pragma once

// Private to the library: the one builder of the push tracking events.

#include "VyrNoticeExport.h"

#include <QMap>
#include <QString>
#include <QVariant>

// "PushSend" and "PushClick" events for the client's usage tracking. The keys
// and the Chinese literals are the analytics' vocabulary and stay as they are
// in every language.
class VYRNOTICE_TESTS_EXPORT PushTracking
{
public:
    static const QString PushSend;     // "PushSend": a lesson notice reached the user
    static const QString PushClick;    // "PushClick": the user reacted to a notice
    static const QString LessonScene;  // "上课通知": the scene of every lesson notice

    // The caller's `data` with a new "push_id" (a fresh brace-form uuid, no
    // link between events), `title` as "push_title" (over any the caller put
    // in) and "app_scene" = "前台唤起". The caller's map is left as it was.
    static QMap<QString, QVariant> event(const QMap<QString, QVariant>& data, const QString& title);

    // Builds the event and hands it to VyrTrack.
    static void send(const QString& name, const QMap<QString, QVariant>& data, const QString& title);
};
