#include "TestKit.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

// Every "ID_..." literal in the library's sources.
QSet<QString> keysUsedInCode()
{
    QSet<QString> keys;
    const QString root = QStringLiteral(VYR_SOURCE_DIR "/src/plugins/im/VyrNotice");
    QDirIterator it(root, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    const QRegularExpression literal(QStringLiteral("\"(ID_[A-Za-z0-9_]+)\""));
    while (it.hasNext()) {
        QFile file(it.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.readAll());
        auto matches = literal.globalMatch(text);
        while (matches.hasNext())
            keys.insert(matches.next().captured(1));
    }
    return keys;
}

// id -> translation of one .ts file.
QHash<QString, QString> readTs(const QString& path)
{
    QHash<QString, QString> out;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return out;
    QXmlStreamReader xml(&file);
    QString id;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("message"))
            id = xml.attributes().value(QLatin1String("id")).toString();
        else if (xml.name() == QLatin1String("translation") && !id.isEmpty())
            out.insert(id, xml.readElementText());
    }
    return out;
}

// Every message id of one .ts file, in file order, repeats included; empty
// with an error string when the file isn't well-formed XML.
QStringList readIds(const QString& path, QString* error)
{
    QStringList ids;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return ids;
    }
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("message"))
            ids << xml.attributes().value(QLatin1String("id")).toString();
    }
    if (xml.hasError())
        *error = xml.errorString();
    return ids;
}

// What is wrong with the messages of one .ts file, one line each: a message
// needs exactly one <translation>, not empty and not marked unfinished,
// obsolete or vanished.
QStringList unfinishedMessages(const QString& path)
{
    QStringList problems;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {file.errorString()};
    QXmlStreamReader xml(&file);
    QString id;
    int translations = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("message")) {
            id = xml.attributes().value(QLatin1String("id")).toString();
            translations = 0;
        } else if (xml.isStartElement() && xml.name() == QLatin1String("translation")) {
            ++translations;
            const QString type = xml.attributes().value(QLatin1String("type")).toString();
            if (!type.isEmpty())
                problems << id + QStringLiteral(": type=") + type;
            if (xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed().isEmpty())
                problems << id + QStringLiteral(": empty");
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            if (translations != 1)
                problems << id + QStringLiteral(": %1 translations").arg(translations);
        }
    }
    if (xml.hasError())
        problems << xml.errorString();
    return problems;
}

QStringList placeholders(const QString& text)
{
    QStringList found;
    auto it = QRegularExpression(QStringLiteral("%\\d")).globalMatch(text);
    while (it.hasNext())
        found << it.next().captured(0);
    found.sort();
    found.removeDuplicates();
    return found;
}

const QString kTsDir = QStringLiteral(VYR_SOURCE_DIR "/src/plugins/im/VyrNotice/translations/");

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT
private slots:
    void everyKeyInCodeIsTranslated_data();
    void everyKeyInCodeIsTranslated();
    void placeholdersAgreeBetweenLanguages();
    void eachKeyOnceAndWellFormed_data();
    void eachKeyOnceAndWellFormed();
    void everyMessageHasOneFinishedTranslation_data();
    void everyMessageHasOneFinishedTranslation();
    void chineseRefusedRequestText();
    void compiledTranslationsLoad_data();
    void compiledTranslationsLoad();
};

void TestTranslations::everyKeyInCodeIsTranslated_data()
{
    QTest::addColumn<QString>("tsFile");
    QTest::newRow("en") << "VyrNotice_en.ts";
    QTest::newRow("zh_CN") << "VyrNotice_zh_CN.ts";
}

// A key that the code uses and a .ts file lacks fails here.
void TestTranslations::everyKeyInCodeIsTranslated()
{
    QFETCH(QString, tsFile);
    const QSet<QString> used = keysUsedInCode();
    QVERIFY(used.size() >= 4);
    const QHash<QString, QString> ts = readTs(kTsDir + tsFile);
    QVERIFY(!ts.isEmpty());
    QStringList missing;
    for (const QString& key : used) {
        if (ts.value(key).isEmpty())
            missing << key;
    }
    missing.sort();
    QCOMPARE(missing, QStringList());
}

// Both languages fill the same %N arguments for every key.
void TestTranslations::placeholdersAgreeBetweenLanguages()
{
    const auto en = readTs(kTsDir + "VyrNotice_en.ts");
    const auto zh = readTs(kTsDir + "VyrNotice_zh_CN.ts");
    QCOMPARE(QSet<QString>(en.keyBegin(), en.keyEnd()), QSet<QString>(zh.keyBegin(), zh.keyEnd()));
    for (auto it = en.constBegin(); it != en.constEnd(); ++it)
        QVERIFY2(placeholders(it.value()) == placeholders(zh.value(it.key())), qPrintable(it.key()));
    QCOMPARE(placeholders(en.value("ID_LMSClassAheadNotice_LessonWillStartAfter")), (QStringList{"%1", "%2"}));
    QCOMPARE(placeholders(en.value("ID_ClassAheadNotice_LessonWillStartAfterOneHour")), (QStringList{"%1", "%2"}));
    QCOMPARE(placeholders(en.value("ID_LMS_ClassStartNotice_LessonStart")), (QStringList{"%1"}));
}

void TestTranslations::eachKeyOnceAndWellFormed_data()
{
    everyKeyInCodeIsTranslated_data();
}

// A key given twice (the later one silently wins) or a broken file fails here.
void TestTranslations::eachKeyOnceAndWellFormed()
{
    QFETCH(QString, tsFile);
    QString error;
    const QStringList ids = readIds(kTsDir + tsFile, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY(ids.size() > 10);
    QStringList repeated;
    QSet<QString> seen;
    for (const QString& id : ids) {
        if (seen.contains(id))
            repeated << id;
        seen.insert(id);
    }
    QVERIFY2(repeated.isEmpty(), qPrintable(repeated.join(QLatin1String(", "))));
}

void TestTranslations::everyMessageHasOneFinishedTranslation_data()
{
    everyKeyInCodeIsTranslated_data();
}

// A second <translation> (read in place of the first), an empty one or one not yet finished fails here.
void TestTranslations::everyMessageHasOneFinishedTranslation()
{
    QFETCH(QString, tsFile);
    QString error;
    QVERIFY(readIds(kTsDir + tsFile, &error).size() > 10);
    QCOMPARE(unfinishedMessages(kTsDir + tsFile), QStringList());
}

// A request the other side refused reads as such in Chinese, not as "later".
void TestTranslations::chineseRefusedRequestText()
{
    QVERIFY(TestKit::loadTranslations(QStringLiteral("zh_CN")));
    QCOMPARE(qtTrId("ID_friendrequest_FriendRequestHasBeenReject", -1), QStringLiteral("对方已拒绝你的好友申请"));
}

void TestTranslations::compiledTranslationsLoad_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("tsFile");
    QTest::newRow("en") << "en" << "VyrNotice_en.ts";
    QTest::newRow("zh_CN") << "zh_CN" << "VyrNotice_zh_CN.ts";
}

// The .qm files built by lrelease, as the library embeds them and as they install
// beside it, translate every key as its .ts says.
void TestTranslations::compiledTranslationsLoad()
{
    QFETCH(QString, locale);
    QFETCH(QString, tsFile);
    QVERIFY(TestKit::loadTranslations(locale));
    const auto ts = readTs(kTsDir + tsFile);
    // A .ts file that could not be read would leave the loop below nothing to check.
    QVERIFY(ts.size() > 10);
    for (auto it = ts.constBegin(); it != ts.constEnd(); ++it)
        QCOMPARE(qtTrId(it.key().toUtf8().constData(), -1), it.value());

    QFile embedded(QStringLiteral(":/VyrNotice/translations/VyrNotice_") + locale + QStringLiteral(".qm"));
    QVERIFY(embedded.open(QIODevice::ReadOnly));
    QFile built(QStringLiteral(VYR_TRANSLATIONS_DIR "/VyrNotice_") + locale + QStringLiteral(".qm"));
    QVERIFY(built.open(QIODevice::ReadOnly));
    QCOMPARE(embedded.readAll(), built.readAll());
}

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
