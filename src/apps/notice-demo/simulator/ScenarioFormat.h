#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

// What a scenario file may hold: its top-level fields, the fields of each
// seed entry, the fields every step has and, per action, the fields of that
// action. The checker reads this table and nothing else; docs/SCENARIO.md
// describes the same table for people.
class ScenarioFormat
{
public:
    enum class Type {
        Integer,      // a JSON number without a fraction
        Duration,     // milliseconds: an integer from 0 to DurationMax
        String,
        Boolean,
        Category,     // "Lesson" or "Activity"
        NoticeType,   // a lesson notice type: "LessonAhead", "LessonPrepare", "LessonStart"
        ClassNoticeType, // a class notice's page: "AheadNotice", "PrepareNotice", "StartNotice"
        CardButton,   // a button of the class notice card: "known", "enter", "later", "close"
        MenuEntry,    // an entry of the friend-request row menu: "details", "delete", or "" for none
        BoxButton,    // a message box's button: "Ok", "Yes", "No"
        HoverTarget,  // where on a friend-request row: "agree", "refuse", "row"
        IntegerList,  // a JSON array of integers
        Array,        // a JSON array of objects, each checked against `entry`
    };

    struct Field
    {
        QString name;
        Type type;
        bool required;
        // Filled in when an optional field is absent; Undefined for a required one.
        QJsonValue defaultValue;
        QString entry;   // for Array fields: the name of the entry's field list
    };

    struct Action
    {
        QString name;
        QVector<Field> fields;
    };

    // The longest time a step may name (what a Qt timer takes).
    static constexpr qint64 DurationMax = 2147483647;
    // A scenario file larger than this is refused unread.
    static constexpr qint64 FileSizeMax = 1024 * 1024;

    static const QVector<Field>& topLevelFields();
    // "cluster", "course", "lesson" or "step"; empty for any other name.
    static const QVector<Field>& entryFields(const QString& entry);
    static const QVector<Action>& actions();
    // Null for an unknown action.
    static const Action* action(const QString& name);

    static QString typeName(Type type);
    // The values a field of a choice type (Category, NoticeType,
    // ClassNoticeType, CardButton) accepts, in order; empty for other types.
    static QStringList choices(Type type);
    // The default as the format's document writes it: "—" for a required field, else compact JSON.
    static QString defaultText(const Field& field);
};
