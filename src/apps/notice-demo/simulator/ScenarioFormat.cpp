#include "ScenarioFormat.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

using Field = ScenarioFormat::Field;
using Type = ScenarioFormat::Type;

Field required(const char* name, Type type, const char* entry = "")
{
    return {QLatin1String(name), type, true, QJsonValue(QJsonValue::Undefined), QLatin1String(entry)};
}

Field optional(const char* name, Type type, const QJsonValue& defaultValue, const char* entry = "")
{
    return {QLatin1String(name), type, false, defaultValue, QLatin1String(entry)};
}

} // namespace

const QVector<ScenarioFormat::Field>& ScenarioFormat::topLevelFields()
{
    static const QVector<Field> fields = {
        optional("name", Type::String, QString()),
        // 0 leaves the kit's clock where it is.
        optional("clock", Type::Integer, 0),
        optional("uid", Type::Integer, 0),
        optional("clusters", Type::Array, QJsonArray(), "cluster"),
        optional("courses", Type::Array, QJsonArray(), "course"),
        optional("lessons", Type::Array, QJsonArray(), "lesson"),
        required("steps", Type::Array, "step"),
    };
    return fields;
}

const QVector<ScenarioFormat::Field>& ScenarioFormat::entryFields(const QString& entry)
{
    static const QVector<Field> cluster = {
        required("id", Type::Integer),
        required("name", Type::String),
    };
    static const QVector<Field> course = {
        required("id", Type::Integer),
        required("name", Type::String),
        optional("courseType", Type::Integer, 0),
    };
    static const QVector<Field> lesson = {
        required("id", Type::Integer),
        required("courseId", Type::Integer),
        required("name", Type::String),
        optional("schoolId", Type::Integer, 0),
        optional("courseType", Type::Integer, 0),
        optional("startIn", Type::Integer, 0),
        optional("role", Type::Integer, 1),
    };
    static const QVector<Field> step = {
        required("at", Type::Duration),
        required("do", Type::String),
    };
    static const QVector<Field> none;
    if (entry == QLatin1String("cluster"))
        return cluster;
    if (entry == QLatin1String("course"))
        return course;
    if (entry == QLatin1String("lesson"))
        return lesson;
    if (entry == QLatin1String("step"))
        return step;
    return none;
}

const QVector<ScenarioFormat::Action>& ScenarioFormat::actions()
{
    static const QVector<Action> actions = {
        // The server's side: notices handed to the host's intakes.
        {QStringLiteral("lessonNotice"), {required("type", Type::NoticeType), required("lessonId", Type::Integer)}},
        {QStringLiteral("contactorAdd"), {}},
        {QStringLiteral("studyReport"), {required("lessonId", Type::Integer)}},
        {QStringLiteral("studyActivity"),
         {required("activityId", Type::Integer), optional("courseId", Type::Integer, 0),
          optional("windowTitle", Type::String, QString()), optional("content", Type::String, QString()),
          optional("heading", Type::String, QString()), optional("pushScenes", Type::String, QString()),
          optional("pushBody", Type::String, QString())}},
        {QStringLiteral("clusterNotice"),
         {required("clusterId", Type::Integer), required("contentId", Type::Integer),
          required("content", Type::String), optional("creatorId", Type::Integer, 0)}},
        // The kit and the run.
        {QStringLiteral("advanceClock"), {required("seconds", Type::Integer)}},
        {QStringLiteral("printRows"), {}},
        {QStringLiteral("screenshot"), {optional("name", Type::String, QStringLiteral("shot"))}},
        {QStringLiteral("quitWhenHidden"), {optional("timeout", Type::Duration, 20000)}},
        {QStringLiteral("quit"), {}},
        // The user.
        {QStringLiteral("clickRow"), {required("category", Type::Category), optional("row", Type::Integer, 0)}},
        {QStringLiteral("enterClassRoom"), {required("category", Type::Category), optional("row", Type::Integer, 0)}},
        {QStringLiteral("closeWindow"), {required("category", Type::Category)}},
        {QStringLiteral("hover"), {required("category", Type::Category), optional("on", Type::Boolean, true)}},
        {QStringLiteral("dragWindow"),
         {required("category", Type::Category), optional("dx", Type::Integer, 0), optional("dy", Type::Integer, 0)}},
        // The host's class notices: a lesson's card shown or turned, the classroom entered, a log-out.
        {QStringLiteral("classNotice"), {required("type", Type::ClassNoticeType), required("lessonId", Type::Integer)}},
        {QStringLiteral("turnClassNotice"),
         {required("type", Type::ClassNoticeType), required("lessonId", Type::Integer)}},
        {QStringLiteral("classroomStart"), {required("lessonId", Type::Integer), optional("local", Type::Boolean, false)}},
        {QStringLiteral("logOut"), {}},
        // The course engine's events.
        {QStringLiteral("lessonRemoved"), {required("lessonId", Type::Integer)}},
        {QStringLiteral("lessonRoleInvalid"), {required("lessonId", Type::Integer)}},
        {QStringLiteral("lessonInfoChanged"), {required("lessonId", Type::Integer), optional("closed", Type::Boolean, false)}},
        {QStringLiteral("lessonEnd"), {required("lessonId", Type::Integer)}},
        {QStringLiteral("lessonsInfoChanged"),
         {required("lessonIds", Type::IntegerList), optional("closed", Type::Boolean, false)}},
        {QStringLiteral("coursePixmapChanged"),
         {required("courseId", Type::Integer), optional("color", Type::String, QStringLiteral("#2F80ED"))}},
        // The user at the newest class notice card.
        {QStringLiteral("clickClassNotice"), {required("button", Type::CardButton)}},
        {QStringLiteral("dragClassNotice"), {optional("dx", Type::Integer, 0), optional("dy", Type::Integer, 0)}},
        // Tests and homework: their pop-ups, the people they name, their withdrawal.
        {QStringLiteral("examNotice"),
         {required("examId", Type::Integer), required("courseId", Type::Integer), required("name", Type::String),
          required("state", Type::Integer), optional("review", Type::Boolean, false),
          optional("userId", Type::Integer, 0), optional("activityId", Type::Integer, 0),
          optional("expireCount", Type::Integer, 0)}},
        {QStringLiteral("homeworkNotice"),
         {required("homeworkId", Type::Integer), required("courseId", Type::Integer), required("name", Type::String),
          required("state", Type::Integer), optional("review", Type::Boolean, false),
          optional("revised", Type::Boolean, false), optional("userId", Type::Integer, 0),
          optional("activityId", Type::Integer, 0), optional("expireCount", Type::Integer, 0)}},
        {QStringLiteral("knowUser"), {required("uid", Type::Integer), required("nickname", Type::String)}},
        {QStringLiteral("withdrawExam"), {required("courseId", Type::Integer), required("examId", Type::Integer)}},
        {QStringLiteral("withdrawHomework"),
         {required("courseId", Type::Integer), required("homeworkId", Type::Integer)}},
        // Single pop-ups: the cluster notice reminder and its details server, the
        // certification reminder, the friend-request pop-up, and the user's clicks on them.
        {QStringLiteral("clusterNoticeRemind"),
         {required("clusterId", Type::Integer), required("contentId", Type::Integer),
          required("content", Type::String), optional("creatorId", Type::Integer, 0),
          optional("nickname", Type::String, QString())}},
        {QStringLiteral("noticeServer"),
         {required("answer", Type::String), optional("delay", Type::Duration, 3000)}},
        {QStringLiteral("clickNoticeRemind"), {required("button", Type::String)}},
        {QStringLiteral("schoolCertification"), {}},
        {QStringLiteral("clickCertification"), {required("button", Type::String)}},
        {QStringLiteral("friendRequestPopup"), {}},
        {QStringLiteral("clickFriendRequestPopup"), {}},
        // The friend-request page: the host opens it; the notice engine's side.
        {QStringLiteral("friendRequestPage"), {}},
        {QStringLiteral("friendRequestSeed"), {optional("count", Type::Integer, 300), optional("days", Type::Integer, 42)}},
        {QStringLiteral("friendRequestNew"),
         {required("peer", Type::Integer), optional("nickname", Type::String, QString()),
          optional("message", Type::String, QString())}},
        {QStringLiteral("friendRequestReply"), {required("peer", Type::Integer), optional("agreed", Type::Boolean, true)}},
        {QStringLiteral("friendRequestOverdue"), {required("peer", Type::Integer)}},
        {QStringLiteral("friendRequestDelete"), {required("peer", Type::Integer)}},
        {QStringLiteral("friendRequestError"), {required("text", Type::String)}},
        {QStringLiteral("friendRequestInitData"), {}},
        {QStringLiteral("friendRequestTeenMode"),
         {optional("on", Type::Boolean, true), optional("password", Type::String, QStringLiteral("1234"))}},
        // The user at the friend-request page.
        {QStringLiteral("friendRequestAgree"), {optional("row", Type::Integer, 0)}},
        {QStringLiteral("friendRequestRefuse"), {optional("row", Type::Integer, 0)}},
        {QStringLiteral("friendRequestRightClick"), {optional("row", Type::Integer, 0), optional("entry", Type::MenuEntry, QString())}},
        {QStringLiteral("friendRequestMenuEntry"), {required("entry", Type::MenuEntry)}},
        {QStringLiteral("friendRequestAnswerBox"), {required("button", Type::BoxButton)}},
        {QStringLiteral("friendRequestPassword"), {required("password", Type::String)}},
        {QStringLiteral("friendRequestHover"), {optional("row", Type::Integer, 0), optional("on", Type::HoverTarget, QStringLiteral("agree"))}},
        {QStringLiteral("friendRequestClickPerson"), {optional("row", Type::Integer, 0)}},
        {QStringLiteral("friendRequestScrollEnd"), {}},
        // The host's single pop-ups of activities, micro-lectures and reports, and the file server's covers.
        {QStringLiteral("studyActivityPopup"),
         {required("activityId", Type::Integer), optional("activityType", Type::Integer, 0),
          optional("courseId", Type::Integer, 0), optional("withCourse", Type::Boolean, true),
          optional("windowTitle", Type::String, QString()), optional("content", Type::String, QString()),
          optional("heading", Type::String, QString()), optional("pushScenes", Type::String, QString()),
          optional("pushBody", Type::String, QString())}},
        {QStringLiteral("withdrawActivity"),
         {required("activityId", Type::Integer), optional("activityType", Type::Integer, 0)}},
        {QStringLiteral("microCoursePopup"),
         {required("id", Type::Integer), optional("type", Type::Integer, 2), optional("auditStatus", Type::Integer, 4),
          optional("lectureName", Type::String, QString()), optional("coverUrl", Type::String, QString())}},
        {QStringLiteral("studyReportPopup"), {required("lessonId", Type::Integer), optional("role", Type::Integer, -1)}},
        {QStringLiteral("coverServer"),
         {required("answer", Type::String), optional("delay", Type::Duration, 3000)}},
    };
    return actions;
}

const ScenarioFormat::Action* ScenarioFormat::action(const QString& name)
{
    for (const Action& action : actions()) {
        if (action.name == name)
            return &action;
    }
    return nullptr;
}

QString ScenarioFormat::typeName(Type type)
{
    switch (type) {
    case Type::Integer:
        return QStringLiteral("integer");
    case Type::Duration:
        return QStringLiteral("duration");
    case Type::String:
        return QStringLiteral("string");
    case Type::Boolean:
        return QStringLiteral("boolean");
    case Type::Category:
        return QStringLiteral("category");
    case Type::NoticeType:
        return QStringLiteral("notice type");
    case Type::ClassNoticeType:
        return QStringLiteral("class notice type");
    case Type::CardButton:
        return QStringLiteral("card button");
    case Type::MenuEntry:
        return QStringLiteral("menu entry");
    case Type::BoxButton:
        return QStringLiteral("box button");
    case Type::HoverTarget:
        return QStringLiteral("hover target");
    case Type::IntegerList:
        return QStringLiteral("integer list");
    case Type::Array:
        return QStringLiteral("array");
    }
    return QString();
}

QStringList ScenarioFormat::choices(Type type)
{
    if (type == Type::Category)
        return {QStringLiteral("Lesson"), QStringLiteral("Activity")};
    if (type == Type::NoticeType)
        return {QStringLiteral("LessonAhead"), QStringLiteral("LessonPrepare"), QStringLiteral("LessonStart")};
    // In the order of ClassNoticeWidget::ClassNoticeType.
    if (type == Type::ClassNoticeType)
        return {QStringLiteral("AheadNotice"), QStringLiteral("PrepareNotice"), QStringLiteral("StartNotice")};
    if (type == Type::CardButton)
        return {QStringLiteral("known"), QStringLiteral("enter"), QStringLiteral("later"), QStringLiteral("close")};
    if (type == Type::MenuEntry)
        return {QStringLiteral("details"), QStringLiteral("delete"), QString()};
    if (type == Type::BoxButton)
        return {QStringLiteral("Ok"), QStringLiteral("Yes"), QStringLiteral("No")};
    if (type == Type::HoverTarget)
        return {QStringLiteral("agree"), QStringLiteral("refuse"), QStringLiteral("row")};
    return {};
}

QString ScenarioFormat::defaultText(const Field& field)
{
    if (field.required)
        return QStringLiteral("—");
    // Wrapped in an array so that a scalar serialises too; the brackets come off again.
    const QByteArray json = QJsonDocument(QJsonArray{field.defaultValue}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2));
}
