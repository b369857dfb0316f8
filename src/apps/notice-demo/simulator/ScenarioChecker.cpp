#include "ScenarioChecker.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <cmath>

namespace {

using Field = ScenarioFormat::Field;
using Type = ScenarioFormat::Type;

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// What a wrong value is, for "expected an integer, got a string "ten"".
QString describe(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double: {
        // Whole numbers in full, so that 2147483648 doesn't read as 2.14748e+09.
        const double number = value.toDouble();
        if (std::trunc(number) == number && std::fabs(number) < 1e15)
            return QStringLiteral("a number %1").arg(static_cast<qint64>(number));
        return QStringLiteral("a number %1").arg(number);
    }
    case QJsonValue::String:
        return QStringLiteral("a string %1").arg(quoted(value.toString()));
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

QString expected(Type type)
{
    switch (type) {
    case Type::Integer:
        return QStringLiteral("an integer");
    case Type::Duration:
        return QStringLiteral("milliseconds from 0 to %1").arg(ScenarioFormat::DurationMax);
    case Type::String:
        return QStringLiteral("a string");
    case Type::Boolean:
        return QStringLiteral("true or false");
    case Type::IntegerList:
        return QStringLiteral("a list of integers");
    case Type::Array:
        return QStringLiteral("an array");
    default:
        // A string out of a list of choices, named as the format names its type.
        return QStringLiteral("a %1 (a string)").arg(ScenarioFormat::typeName(type));
    }
}

bool isInteger(const QJsonValue& value)
{
    return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
}

bool hasType(const QJsonValue& value, Type type)
{
    switch (type) {
    case Type::Integer:
        return isInteger(value);
    case Type::Duration:
        return isInteger(value) && value.toDouble() >= 0 && value.toDouble() <= ScenarioFormat::DurationMax;
    case Type::String:
    case Type::Category:
    case Type::NoticeType:
    case Type::ClassNoticeType:
    case Type::CardButton:
    case Type::MenuEntry:
    case Type::BoxButton:
    case Type::HoverTarget:
        return value.isString();
    case Type::IntegerList: {
        if (!value.isArray())
            return false;
        const QJsonArray items = value.toArray();
        return std::all_of(items.begin(), items.end(), [](const QJsonValue& item) { return isInteger(item); });
    }
    case Type::Boolean:
        return value.isBool();
    case Type::Array:
        return value.isArray();
    }
    return false;
}

const Field* findField(const QString& name, const QVector<Field>& fields, const QVector<Field>& extraFields)
{
    for (const QVector<Field>* list : {&fields, &extraFields}) {
        for (const Field& field : *list) {
            if (field.name == name)
                return &field;
        }
    }
    return nullptr;
}

} // namespace

bool ScenarioChecker::load(const QString& path, QJsonObject* scenario, QStringList* errors)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *errors << QStringLiteral("%1: cannot open it: %2").arg(path, file.errorString());
        return false;
    }
    // Read no further than the limit: a larger file is refused whole.
    return read(file.read(ScenarioFormat::FileSizeMax + 1), path, scenario, errors);
}

bool ScenarioChecker::read(const QByteArray& json, const QString& name, QJsonObject* scenario, QStringList* errors)
{
    if (json.size() > ScenarioFormat::FileSizeMax) {
        *errors << QStringLiteral("%1: larger than %2 bytes").arg(name).arg(ScenarioFormat::FileSizeMax);
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *errors << QStringLiteral("%1: %2").arg(name, describeSyntaxError(json, parseError));
        return false;
    }
    if (!doc.isObject()) {
        *errors << QStringLiteral("%1: top level: expected an object").arg(name);
        return false;
    }
    QJsonObject checked = doc.object();
    const QStringList problems = check(&checked);
    for (const QString& problem : problems)
        *errors << QStringLiteral("%1: %2").arg(name, problem);
    if (!problems.isEmpty())
        return false;
    *scenario = checked;
    return true;
}

QStringList ScenarioChecker::check(QJsonObject* scenario)
{
    QStringList errors;
    checkObject(scenario, ScenarioFormat::topLevelFields(), {}, QStringLiteral("top level"), &errors);
    if (errors.isEmpty() && scenario->value(QStringLiteral("steps")).toArray().isEmpty())
        errors << QStringLiteral("top level: field \"steps\": no steps");
    return errors;
}

QString ScenarioChecker::describeSyntaxError(const QByteArray& json, const QJsonParseError& error)
{
    // The parser's byte offset is just past the character it choked on (but at
    // stray text after the document, and at the end of the data); people count
    // lines and characters from 1.
    // At an unterminated string or document the offset lies past the data.
    int offset = qBound(0, error.offset, json.size());
    if (error.error != QJsonParseError::GarbageAtEnd && offset > 0 && offset < json.size())
        --offset;
    while (offset > 0 && offset < json.size() && (json.at(offset) & 0xC0) == 0x80)
        --offset;   // not inside a UTF-8 sequence
    const QByteArray before = json.left(offset);
    const int line = before.count('\n') + 1;
    const QByteArray lineStart = before.mid(before.lastIndexOf('\n') + 1);
    const int column = QString::fromUtf8(lineStart).size() + 1;
    return QStringLiteral("line %1, column %2: JSON syntax error: %3").arg(line).arg(column).arg(error.errorString());
}

void ScenarioChecker::checkObject(QJsonObject* object, const QVector<Field>& fields, const QVector<Field>& extraFields,
                                  const QString& where, QStringList* errors)
{
    for (auto it = object->constBegin(); it != object->constEnd(); ++it) {
        if (!findField(it.key(), fields, extraFields))
            *errors << QStringLiteral("%1: unknown field %2").arg(where, quoted(it.key()));
    }
    for (const QVector<Field>* list : {&fields, &extraFields}) {
        for (const Field& field : *list) {
            if (!object->contains(field.name)) {
                if (field.required)
                    *errors << QStringLiteral("%1: missing required field %2").arg(where, quoted(field.name));
                else
                    object->insert(field.name, field.defaultValue);
                continue;
            }
            const QString problem = checkValue(object->value(field.name), field);
            if (!problem.isEmpty())
                *errors << QStringLiteral("%1: field %2: %3").arg(where, quoted(field.name), problem);
            else if (field.type == Type::Array)
                checkArray(object, field, errors);
        }
    }
}

void ScenarioChecker::checkArray(QJsonObject* owner, const Field& field, QStringList* errors)
{
    QJsonArray entries = owner->value(field.name).toArray();
    for (int i = 0; i < entries.size(); ++i) {
        if (field.entry == QLatin1String("step")) {
            QJsonObject step = entries.at(i).toObject();
            if (!entries.at(i).isObject()) {
                *errors << QStringLiteral("step %1: expected an object, got %2").arg(i).arg(describe(entries.at(i)));
                continue;
            }
            checkStep(&step, i, errors);
            entries[i] = step;
            continue;
        }
        const QString entryWhere = QStringLiteral("%1[%2]").arg(field.name).arg(i);
        if (!entries.at(i).isObject()) {
            *errors << QStringLiteral("%1: expected an object, got %2").arg(entryWhere, describe(entries.at(i)));
            continue;
        }
        QJsonObject entry = entries.at(i).toObject();
        checkObject(&entry, ScenarioFormat::entryFields(field.entry), {}, entryWhere, errors);
        entries[i] = entry;
    }
    owner->insert(field.name, entries);
}

void ScenarioChecker::checkStep(QJsonObject* step, int index, QStringList* errors)
{
    const QJsonValue name = step->value(QStringLiteral("do"));
    if (!name.isString()) {
        const QString problem = name.isUndefined() ? QStringLiteral("missing required field \"do\"")
                                                   : QStringLiteral("field \"do\": expected a string, got %1")
                                                         .arg(describe(name));
        *errors << QStringLiteral("step %1: %2").arg(index).arg(problem);
        return;
    }
    const QString where = QStringLiteral("step %1 (%2)").arg(index).arg(name.toString());
    const ScenarioFormat::Action* action = ScenarioFormat::action(name.toString());
    if (!action) {
        QStringList known;
        for (const ScenarioFormat::Action& each : ScenarioFormat::actions())
            known << each.name;
        *errors << QStringLiteral("%1: field \"do\": unknown action %2 (known: %3)")
                       .arg(where, quoted(name.toString()), known.join(QStringLiteral(", ")));
        return;
    }
    checkObject(step, ScenarioFormat::entryFields(QStringLiteral("step")), action->fields, where, errors);
}

QString ScenarioChecker::checkValue(const QJsonValue& value, const Field& field)
{
    if (!hasType(value, field.type)) {
        QString got = describe(value);
        // An array of the wrong things: say which.
        if (field.type == Type::IntegerList && value.isArray()) {
            const QJsonArray items = value.toArray();
            const auto bad = std::find_if(items.begin(), items.end(), [](const QJsonValue& item) { return !isInteger(item); });
            got = QStringLiteral("an array holding %1").arg(describe(*bad));
        }
        return QStringLiteral("expected %1, got %2").arg(expected(field.type), got);
    }
    const QStringList choices = ScenarioFormat::choices(field.type);
    if (choices.isEmpty() || choices.contains(value.toString()))
        return QString();
    return QStringLiteral("unknown %1 %2 (one of: %3)")
        .arg(ScenarioFormat::typeName(field.type), quoted(value.toString()), choices.join(QStringLiteral(", ")));
}
