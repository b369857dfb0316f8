#include "NoticeListModel.h"

#include <QLoggingCategory>
#include <QModelIndex>
#include <QtTest>

// The library writes every line under its own logging category, so that a
// host can filter the library's lines and keep its own.
class TestNoticeLog : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void linesCarryTheLibrarysCategory();
    void hostCanSilenceTheCategory();

private:
    struct Seen
    {
        QtMsgType type;
        QString category;
        QString file;
        QString text;
    };
    static void handler(QtMsgType type, const QMessageLogContext& context, const QString& text);
    static QList<Seen> s_seen;
};

QList<TestNoticeLog::Seen> TestNoticeLog::s_seen;

void TestNoticeLog::handler(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    s_seen.append({type, QString::fromLatin1(context.category), QString::fromUtf8(context.file), text});
}

void TestNoticeLog::cleanup()
{
    QLoggingCategory::setFilterRules(QString());
    qInstallMessageHandler(nullptr);
    s_seen.clear();
    NoticeListModel::release();
}

// A bad index is logged at info level, from the model's source file, under "vyr.notice".
void TestNoticeLog::linesCarryTheLibrarysCategory()
{
    qInstallMessageHandler(&TestNoticeLog::handler);
    NoticeListModel::instance()->delNotice(QModelIndex());
    qInstallMessageHandler(nullptr);

    QCOMPARE(s_seen.size(), 1);
    QCOMPARE(s_seen[0].text, QStringLiteral("delete notice, index is invalid"));
    QCOMPARE(s_seen[0].type, QtInfoMsg);
    QCOMPARE(s_seen[0].category, QStringLiteral("vyr.notice"));
    QVERIFY2(s_seen[0].file.endsWith(QStringLiteral("NoticeListModel.cpp")), qPrintable(s_seen[0].file));
}

// A filter rule on the category silences the library and nothing else.
void TestNoticeLog::hostCanSilenceTheCategory()
{
    QLoggingCategory::setFilterRules(QStringLiteral("vyr.notice.info=false"));
    qInstallMessageHandler(&TestNoticeLog::handler);
    NoticeListModel::instance()->delNotice(QModelIndex());
    qInfo() << "the host's own line";
    qInstallMessageHandler(nullptr);

    QCOMPARE(s_seen.size(), 1);
    QCOMPARE(s_seen[0].text, QStringLiteral("the host's own line"));
    QCOMPARE(s_seen[0].category, QStringLiteral("default"));
}

QTEST_MAIN(TestNoticeLog)
#include "tst_noticelog.moc"
