#pragma once

#include "SnapshotLesson.h"

#include "HostPart.h"

#include <QSharedPointer>

// The host's side of the class notices, as the client drives them: a lesson
// that needs a notice gets a new card, or its open card is turned to another
// page; the enter button is answered by announcing the classroom start. No
// pointer to a card is kept: each deletes itself when it closes, and the
// stacker (which the cards are handed to) keeps them apart.
class ClassNoticeHost : public HostPart
{
    Q_OBJECT
public:
    ClassNoticeHost(Say say, NoticeStacker* stacker, QObject* parent = nullptr);

    // The lesson needs a notice of `type` (a ClassNoticeWidget::ClassNoticeType):
    // asks the manager first, then creates a card or turns the open one.
    void classNoticeDue(int type, quint64 lessonId);
    // Turns the lesson's open card, if there is one, to `type`.
    void turnClassNotice(int type, quint64 lessonId);
    // Announces that the lesson's classroom is being entered, live or local.
    void startClassroom(quint64 lessonId, bool local);
    // The user logs out of the client.
    void logOut();

signals:
    void classNoticeClosed(quint64 lessonId);

private:
    void createClassNotice(int type, const QSharedPointer<VyrEngine::SnapshotLesson>& lesson);
    void onStartClass(QSharedPointer<VyrEngine::SnapshotLesson> lesson);
    QSharedPointer<VyrEngine::SnapshotLesson> lessonOf(quint64 lessonId);
};
