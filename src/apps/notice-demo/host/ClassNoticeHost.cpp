#include "ClassNoticeHost.h"

#include "ClassNoticeManager.h"
#include "ClassNoticeWidget.h"
#include "CourseEngine.h"
#include "ImSignalObject.h"

#include <QMetaEnum>

namespace {

QString typeName(int type)
{
    const char* key = QMetaEnum::fromType<ClassNoticeWidget::ClassNoticeType>().valueToKey(type);
    return key ? QString::fromLatin1(key) : QString::number(type);
}

} // namespace

ClassNoticeHost::ClassNoticeHost(Say say, NoticeStacker* stacker, QObject* parent)
    : HostPart(std::move(say), stacker, parent)
{
    connect(ClassNoticeManager::instance(), &ClassNoticeManager::closeStartNoticeWidget, this,
            [this](qulonglong lessonId) { m_say(QStringLiteral("manager: closeStartNoticeWidget(%1)").arg(lessonId)); });
}

void ClassNoticeHost::classNoticeDue(int type, quint64 lessonId)
{
    const QSharedPointer<VyrEngine::SnapshotLesson> lesson = lessonOf(lessonId);
    if (!lesson)
        return;
    ClassNoticeManager* manager = ClassNoticeManager::instance();
    if (manager->isExistTheNotice(lessonId)) {
        m_say(QStringLiteral("class notice: turned lesson %1 to %2").arg(lessonId).arg(typeName(type)));
        emit manager->classTypeAndDataChange(type, lesson);
        return;
    }
    createClassNotice(type, lesson);
}

void ClassNoticeHost::turnClassNotice(int type, quint64 lessonId)
{
    const QSharedPointer<VyrEngine::SnapshotLesson> lesson = lessonOf(lessonId);
    if (!lesson)
        return;
    m_say(QStringLiteral("class notice: turned lesson %1 to %2").arg(lessonId).arg(typeName(type)));
    // Every open card hears it; only the lesson's own turns.
    emit ClassNoticeManager::instance()->classTypeAndDataChange(type, lesson);
}

void ClassNoticeHost::createClassNotice(int type, const QSharedPointer<VyrEngine::SnapshotLesson>& lesson)
{
    const quint64 lessonId = lesson->lessonId;
    auto* notice = new ClassNoticeWidget(static_cast<ClassNoticeWidget::ClassNoticeType>(type), lesson);
    connect(notice, &ClassNoticeWidget::startClass, this, &ClassNoticeHost::onStartClass);
    popCounted(notice, QStringLiteral("class notice: closed (lesson %1)").arg(lessonId),
               [this, lessonId]() { emit classNoticeClosed(lessonId); });
    ClassNoticeManager::instance()->addClassNotice(lessonId);
    m_say(QStringLiteral("class notice: created %1 for lesson %2").arg(typeName(type)).arg(lessonId));
}

// The client enters the classroom when asked; the card closes when it hears the announcement.
void ClassNoticeHost::onStartClass(QSharedPointer<VyrEngine::SnapshotLesson> lesson)
{
    if (!lesson)
        return;
    m_say(QStringLiteral("class notice: startClass(%1)").arg(lesson->lessonId));
    startClassroom(lesson->lessonId, false);
}

void ClassNoticeHost::startClassroom(quint64 lessonId, bool local)
{
    const QSharedPointer<VyrEngine::SnapshotLesson> known = VyrEngine::CourseEngine::instance()->lessonSnapshot(lessonId);
    const VyrEngine::SnapshotLesson lesson = known ? *known : VyrEngine::SnapshotLesson();
    ImSignalObject* hub = ImSignalObject::instance();
    if (local) {
        const QSharedPointer<VyrEngine::CourseRecord> course =
            VyrEngine::CourseEngine::instance()->courseRecord(lesson.courseId);
        m_say(QStringLiteral("host: signalStartupLocalClassroom(%1)").arg(lessonId));
        emit hub->signalStartupLocalClassroom(lessonId, lesson.courseId, lesson.schoolId,
                                              course ? course->name : QString(), RoomTypeLocal);
    } else {
        m_say(QStringLiteral("host: signalStartupClassroom(%1)").arg(lessonId));
        emit hub->signalStartupClassroom(lesson.schoolId, lessonId, lesson.courseId, RoomTypeLive, false);
    }
}

void ClassNoticeHost::logOut()
{
    m_say(QStringLiteral("host: signalLogOut()"));
    emit ImSignalObject::instance()->signalLogOut();
}

QSharedPointer<VyrEngine::SnapshotLesson> ClassNoticeHost::lessonOf(quint64 lessonId)
{
    const QSharedPointer<VyrEngine::SnapshotLesson> lesson = VyrEngine::CourseEngine::instance()->lessonSnapshot(lessonId);
    // The client shows no card for a lesson its engine doesn't know.
    if (!lesson)
        m_say(QStringLiteral("class notice: no lesson %1, nothing shown").arg(lessonId));
    return lesson;
}
