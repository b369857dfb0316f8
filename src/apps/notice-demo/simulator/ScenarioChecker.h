#pragma once

#include "ScenarioFormat.h"

#include <QJsonObject>
#include <QStringList>

struct QJsonParseError;

// Reads a scenario file and checks it against ScenarioFormat before anything
// runs: JSON syntax (with line and column), unknown fields and actions,
// missing required fields, value types, categories and notice types. Every
// problem is reported, each naming where it is ("step 3 (clickRow)", "lessons[1]")
// and the field.
class ScenarioChecker
{
public:
    // On success `scenario` holds the file with every absent optional field
    // filled in with its default; otherwise `errors` holds one line per problem.
    static bool load(const QString& path, QJsonObject* scenario, QStringList* errors);
    // load() on bytes already read; `name` starts each error line.
    static bool read(const QByteArray& json, const QString& name, QJsonObject* scenario, QStringList* errors);
    // Checks a parsed scenario in place, filling in defaults; returns the problems.
    static QStringList check(QJsonObject* scenario);
    // "line 4, column 17: <what the parser says>"
    static QString describeSyntaxError(const QByteArray& json, const QJsonParseError& error);

private:
    static void checkObject(QJsonObject* object, const QVector<ScenarioFormat::Field>& fields,
                            const QVector<ScenarioFormat::Field>& extraFields, const QString& where,
                            QStringList* errors);
    static void checkArray(QJsonObject* owner, const ScenarioFormat::Field& field, QStringList* errors);
    static void checkStep(QJsonObject* step, int index, QStringList* errors);
    static QString checkValue(const QJsonValue& value, const ScenarioFormat::Field& field);
};
