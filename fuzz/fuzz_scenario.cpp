// The demo's scenario reader: any file is read without a crash or a sanitizer
// report; it is refused with at least one line naming the file, or accepted,
// and then an accepted scenario passes the checker again unchanged.
#include "FuzzSupport.h"
#include "ScenarioChecker.h"

#include <QByteArray>
#include <QJsonDocument>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    VyrFuzz::initCore(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray json(reinterpret_cast<const char*>(data), int(size));
    const QString name = QStringLiteral("fuzz.json");
    QJsonObject scenario;
    QStringList errors;
    const bool accepted = ScenarioChecker::read(json, name, &scenario, &errors);
    const QString input = QString::fromUtf8(json);

    VyrFuzz::require(accepted == errors.isEmpty(), "accepted with errors, or refused without one", input);
    for (const QString& error : qAsConst(errors))
        VyrFuzz::require(error.startsWith(name + QStringLiteral(": ")), "an error line without the file's name", error);
    if (accepted) {
        QJsonObject again = scenario;
        VyrFuzz::require(ScenarioChecker::check(&again).isEmpty(), "an accepted scenario fails a second check", input);
        VyrFuzz::require(again == scenario, "a second check changed an accepted scenario", input);
    }
    return 0;
}
