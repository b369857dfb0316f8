#include "GatherNotice.h"
#include "NoticeListModel.h"
#include "NoticeMetaTypes.h"
#include "TestKit.h"

#include <QtTest>

using namespace VyrEngine;

namespace {
// Detects a getter, to pin down that two fields are deliberately write-only.
template <typename T, typename = void>
struct HasSchoolIdGetter : std::false_type {};
template <typename T>
struct HasSchoolIdGetter<T, std::void_t<decltype(std::declval<const T&>().schoolId())>> : std::true_type {};
template <typename T, typename = void>
struct HasCreatorIdGetter : std::false_type {};
template <typename T>
struct HasCreatorIdGetter<T, std::void_t<decltype(std::declval<const T&>().creatorId())>> : std::true_type {};
template <typename T, typename = void>
struct HasContentIdGetter : std::false_type {};
template <typename T>
struct HasContentIdGetter<T, std::void_t<decltype(std::declval<const T&>().contentId())>> : std::true_type {};
} // namespace

class TestGatherNotice : public QObject
{
    Q_OBJECT
private slots:
    void metaTypesRegisterOnFirstUseUnderTheirNames_data();
    void metaTypesRegisterOnFirstUseUnderTheirNames();
    void categoryFollowsType_data();
    void categoryFollowsType();
    void defaultRecord();
    void overwritingTypeMovesCategoryAndNothingElse();
    void accessorsRoundTrip();
    void schoolAndCreatorAreWriteOnly();
    void foreignVariantGivesNullPointer();
    void startTimeKeepsLowBitsAndReadsBackUnsigned_data();
    void startTimeKeepsLowBitsAndReadsBackUnsigned();
    void displayPodConstructorOrder();
    void displayPodNamedSetters_data();
    void displayPodNamedSetters();
    void displayPodDefaultAndCopies();
};

// Every type that crosses a QVariant or a queued signal is registered lazily under its exact name.
void TestGatherNotice::metaTypesRegisterOnFirstUseUnderTheirNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("which");
    QTest::newRow("GatherNoticePtr") << QByteArray("VyrEngine::GatherNoticePtr") << 0;
    QTest::newRow("SnapshotLesson") << QByteArray("QSharedPointer<VyrEngine::SnapshotLesson>") << 1;
    QTest::newRow("OpaqueCommonPod") << QByteArray("QSharedPointer<OpaqueCommonPod>") << 2;
    QTest::newRow("RoomType") << QByteArray("RoomType") << 3;
    QTest::newRow("ClusterID") << QByteArray("VyrEngine::ClusterID") << 4;
    QTest::newRow("ClusterID vector") << QByteArray("std::vector<VyrEngine::ClusterID>") << 5;
    QTest::newRow("DisplayPod") << QByteArray("StudyActivityNoticeWidgetDisplayPod") << 6;
    QTest::newRow("FriendRequestInfo") << QByteArray("VyrEngine::FriendRequestInfo") << 7;
}

void TestGatherNotice::metaTypesRegisterOnFirstUseUnderTheirNames()
{
    QFETCH(QByteArray, name);
    QFETCH(int, which);
    QCOMPARE(QMetaType::type(name.constData()), int(QMetaType::UnknownType));
    int id = 0;
    switch (which) {
    case 0: id = qMetaTypeId<GatherNoticePtr>(); break;
    case 1: id = qMetaTypeId<QSharedPointer<SnapshotLesson>>(); break;
    case 2: id = qMetaTypeId<QSharedPointer<OpaqueCommonPod>>(); break;
    case 3: id = qMetaTypeId<RoomType>(); break;
    case 4: id = qMetaTypeId<ClusterID>(); break;
    case 5: id = qMetaTypeId<std::vector<ClusterID>>(); break;
    case 6: id = qMetaTypeId<StudyActivityNoticeWidgetDisplayPod>(); break;
    case 7: id = qMetaTypeId<FriendRequestInfo>(); break;
    }
    QVERIFY(id != QMetaType::UnknownType);
    QCOMPARE(QByteArray(QMetaType::typeName(id)), name);
    QCOMPARE(QMetaType::type(name.constData()), id);
}

void TestGatherNotice::categoryFollowsType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("category");
    QTest::newRow("unset -1") << -1 << int(Activity);
    QTest::newRow("ContactorAdd") << 0 << int(Activity);
    QTest::newRow("ClusterNoticeRemind") << 1 << int(Activity);
    QTest::newRow("LessonAhead") << 2 << int(Lesson);
    QTest::newRow("LessonPrepare") << 3 << int(Lesson);
    QTest::newRow("LessonStart") << 4 << int(Lesson);
    QTest::newRow("StudyReport") << 5 << int(Activity);
    QTest::newRow("StudyActivity") << 6 << int(Activity);
    QTest::newRow("beyond 7") << 7 << int(Activity);
}

void TestGatherNotice::categoryFollowsType()
{
    QFETCH(int, type);
    QFETCH(int, category);
    GatherNotice notice(static_cast<NoticeType>(type));
    QCOMPARE(int(notice.type()), type);
    QCOMPARE(int(notice.category()), category);
}

// A default-constructed record has type -1 and so counts as an activity.
void TestGatherNotice::defaultRecord()
{
    GatherNotice notice;
    QCOMPARE(int(notice.type()), -1);
    QCOMPARE(notice.category(), Activity);
    QCOMPARE(notice.time(), 0u);
    QVERIFY(notice.noticeId().isEmpty());
    QVERIFY(notice.title().isEmpty());
    QCOMPARE(notice.lessonStartTime(), 0u);
    QVERIFY(!notice.appendixPod());
    QVERIFY(!notice.displayPod());
    QCOMPARE(sizeof(NoticeType), size_t(4));
    QCOMPARE(sizeof(NoticeCategory), size_t(4));
}

// Setting type 5 on a lesson notice moves it to Activity on the spot, and changes nothing else.
void TestGatherNotice::overwritingTypeMovesCategoryAndNothingElse()
{
    GatherNotice notice(LessonStart);
    notice.setTime(1234);
    notice.setLessonId(42);
    notice.setLessonName(QStringLiteral("Algebra"));
    notice.setTitle(QStringLiteral("Class 3"));
    notice.setNoticeId(QStringLiteral("n-1"));
    notice.setLessonStartTime(999);
    notice.setClusterId(500);
    QCOMPARE(notice.category(), Lesson);

    notice.setType(StudyReport);
    QCOMPARE(notice.category(), Activity);
    QCOMPARE(notice.time(), 1234u);
    QCOMPARE(notice.lessonId(), 42ull);
    QCOMPARE(notice.lessonName(), QStringLiteral("Algebra"));
    QCOMPARE(notice.title(), QStringLiteral("Class 3"));
    QCOMPARE(notice.noticeId(), QStringLiteral("n-1"));
    QCOMPARE(notice.lessonStartTime(), 999u);
    QCOMPARE(notice.clusterId(), 500ull);
}

void TestGatherNotice::accessorsRoundTrip()
{
    GatherNotice notice(ClusterNoticeRemind);
    notice.setContent(QStringLiteral("raw"));
    notice.setDisplayContent(QStringLiteral("shown"));
    notice.setContentId(11);
    notice.setCreatorId(12);
    notice.setSchoolId(13);
    notice.setReportRole(1);
    auto pod = QSharedPointer<AppendixDataPod>::create();
    auto display = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create();
    notice.setAppendixPod(pod);
    notice.setDisplayPod(display);
    QCOMPARE(notice.content(), QStringLiteral("raw"));
    QCOMPARE(notice.displayContent(), QStringLiteral("shown"));
    QCOMPARE(notice.contentId(), 11ull);
    QCOMPARE(notice.reportRole(), 1);
    QCOMPARE(notice.appendixPod(), pod);
    QCOMPARE(notice.displayPod(), display);

    GatherNotice copy = notice;
    QCOMPARE(copy.displayContent(), notice.displayContent());
    QCOMPARE(copy.appendixPod(), pod);
}

// schoolId and creatorId are written by the intake and read by nobody: no getters.
void TestGatherNotice::schoolAndCreatorAreWriteOnly()
{
    QVERIFY(!HasSchoolIdGetter<GatherNotice>::value);
    QVERIFY(!HasCreatorIdGetter<GatherNotice>::value);
    QVERIFY(HasContentIdGetter<GatherNotice>::value);
}

// A variant of another type gives a null pointer to every reader.
void TestGatherNotice::foreignVariantGivesNullPointer()
{
    QVERIFY(!QVariant().value<GatherNoticePtr>());
    QVERIFY(!QVariant(42).value<GatherNoticePtr>());
    QVERIFY(!QVariant(QStringLiteral("notice")).value<GatherNoticePtr>());
    QVERIFY(!QVariant::fromValue(QSharedPointer<SnapshotLesson>::create()).value<GatherNoticePtr>());

    auto notice = std::make_shared<GatherNotice>(LessonAhead);
    QVariant held = QVariant::fromValue(notice);
    QCOMPARE(QByteArray(held.typeName()), QByteArray("VyrEngine::GatherNoticePtr"));
    QCOMPARE(held.value<GatherNoticePtr>(), notice);
}

// The engine's 64-bit start time is cut to its low 32 bits and read back zero-extended.
void TestGatherNotice::startTimeKeepsLowBitsAndReadsBackUnsigned_data()
{
    QTest::addColumn<qint64>("engineStart");
    QTest::addColumn<quint32>("stored");
    QTest::newRow("above 2^32") << qint64(4294967296LL + 1000) << quint32(1000);
    QTest::newRow("max 32-bit + 7") << qint64(4294967295LL + 7) << quint32(6);
    QTest::newRow("between 2^31 and 2^32") << qint64(3000000000LL) << quint32(3000000000u);
}

void TestGatherNotice::startTimeKeepsLowBitsAndReadsBackUnsigned()
{
    QFETCH(qint64, engineStart);
    QFETCH(quint32, stored);
    TestKit::resetAll();
    TestKit::putLesson(1, QStringLiteral("Physics"), engineStart);
    NoticeListModel::instance()->addLessonNotice(LessonStart, 1);
    TestKit::settle();
    QCOMPARE(NoticeListModel::instance()->rowCount(), 1);
    auto notice = NoticeListModel::instance()->data(NoticeListModel::instance()->index(0), Qt::UserRole)
                      .value<GatherNoticePtr>();
    QVERIFY(notice);
    QCOMPARE(notice->lessonStartTime(), stored);
    QVERIFY(qint64(notice->lessonStartTime()) >= 0);
    QCOMPARE(qint64(notice->lessonStartTime()), qint64(stored));
    TestKit::resetAll();
}

// Arguments arrive in field order except lastFlag, which comes last; the reserved fields have no argument.
void TestGatherNotice::displayPodConstructorOrder()
{
    StudyActivityNoticeWidgetDisplayPod pod(QStringLiteral("window"), QStringLiteral("content"), true, false, true,
                                            QStringLiteral("A"), false, QStringLiteral("B"), QStringLiteral("C"),
                                            true, false, true, false, QStringLiteral("heading"),
                                            QStringLiteral("scenes"), QStringLiteral("body"), true);
    QCOMPARE(pod.windowTitleText, QStringLiteral("window"));
    QCOMPARE(pod.contentText, QStringLiteral("content"));
    QCOMPARE(pod.flagA, true);
    QCOMPARE(pod.flagB, false);
    QCOMPARE(pod.flagC, true);
    QCOMPARE(pod.textA, QStringLiteral("A"));
    QCOMPARE(pod.flagD, false);
    QCOMPARE(pod.textB, QStringLiteral("B"));
    QCOMPARE(pod.textC, QStringLiteral("C"));
    QCOMPARE(pod.flagE, true);
    QCOMPARE(pod.flagF, false);
    QCOMPARE(pod.flagG, true);
    QCOMPARE(pod.flagH, false);
    QCOMPARE(pod.headingText, QStringLiteral("heading"));
    QCOMPARE(pod.pushScenes, QStringLiteral("scenes"));
    QCOMPARE(pod.pushBody, QStringLiteral("body"));
    QCOMPARE(pod.lastFlag, true);
    QVERIFY(pod.reservedText.isEmpty());
    QCOMPARE(pod.reservedFlag, false);
}

namespace {

// Every field of a display record in declaration order, for one readable comparison.
QString fieldsOf(const StudyActivityNoticeWidgetDisplayPod& pod)
{
    const auto b = [](bool flag) { return flag ? QStringLiteral("1") : QStringLiteral("0"); };
    return QStringList{pod.windowTitleText, pod.contentText, b(pod.flagA), b(pod.flagB), b(pod.flagC), pod.textA,
                       b(pod.flagD), pod.textB, pod.textC, b(pod.flagE), b(pod.flagF), b(pod.flagG), b(pod.flagH),
                       b(pod.lastFlag), pod.headingText, pod.reservedText, b(pod.reservedFlag), pod.pushScenes,
                       pod.pushBody}
        .join(QLatin1Char('|'));
}

} // namespace

void TestGatherNotice::displayPodNamedSetters_data()
{
    QTest::addColumn<bool>("flags");
    QTest::newRow("odd-flags") << true;
    QTest::newRow("even-flags") << false;
}

// The named setters fill the same fields as the 17-argument constructor, each its own, and chain.
void TestGatherNotice::displayPodNamedSetters()
{
    QFETCH(bool, flags);
    const bool f = flags;
    const StudyActivityNoticeWidgetDisplayPod byConstructor(
        QStringLiteral("window"), QStringLiteral("content"), f, !f, f, QStringLiteral("A"), !f, QStringLiteral("B"),
        QStringLiteral("C"), f, !f, f, !f, QStringLiteral("heading"), QStringLiteral("scenes"), QStringLiteral("body"),
        f);
    StudyActivityNoticeWidgetDisplayPod byName;
    byName.setWindowTitleText(QStringLiteral("window"))
        .setContentText(QStringLiteral("content"))
        .setFlagA(f)
        .setFlagB(!f)
        .setFlagC(f)
        .setTextA(QStringLiteral("A"))
        .setFlagD(!f)
        .setTextB(QStringLiteral("B"))
        .setTextC(QStringLiteral("C"))
        .setFlagE(f)
        .setFlagF(!f)
        .setFlagG(f)
        .setFlagH(!f)
        .setHeadingText(QStringLiteral("heading"))
        .setPushScenes(QStringLiteral("scenes"))
        .setPushBody(QStringLiteral("body"))
        .setLastFlag(f);
    QCOMPARE(fieldsOf(byName), fieldsOf(byConstructor));
    // One setter touches one field.
    StudyActivityNoticeWidgetDisplayPod one;
    one.setHeadingText(QStringLiteral("only"));
    StudyActivityNoticeWidgetDisplayPod expected;
    expected.headingText = QStringLiteral("only");
    QCOMPARE(fieldsOf(one), fieldsOf(expected));
}

void TestGatherNotice::displayPodDefaultAndCopies()
{
    const int id = qMetaTypeId<StudyActivityNoticeWidgetDisplayPod>();
    void* made = QMetaType::create(id);
    auto* fromMetaType = static_cast<StudyActivityNoticeWidgetDisplayPod*>(made);
    QVERIFY(fromMetaType->windowTitleText.isEmpty());
    QVERIFY(fromMetaType->headingText.isEmpty());
    QVERIFY(!fromMetaType->flagA && !fromMetaType->flagH && !fromMetaType->lastFlag && !fromMetaType->reservedFlag);
    QMetaType::destroy(id, made);

    StudyActivityNoticeWidgetDisplayPod pod(QStringLiteral("w"), QStringLiteral("c"), false, false, false, {},
                                            false, {}, {}, false, false, false, false, QStringLiteral("h"), {}, {},
                                            true);
    StudyActivityNoticeWidgetDisplayPod copy(pod);
    QCOMPARE(copy.headingText, QStringLiteral("h"));
    QCOMPARE(copy.lastFlag, true);
    StudyActivityNoticeWidgetDisplayPod moved(std::move(copy));
    QCOMPARE(moved.windowTitleText, QStringLiteral("w"));
    StudyActivityNoticeWidgetDisplayPod assigned;
    assigned = pod;
    QCOMPARE(assigned.contentText, QStringLiteral("c"));
    StudyActivityNoticeWidgetDisplayPod moveAssigned;
    moveAssigned = std::move(assigned);
    QCOMPARE(moveAssigned.lastFlag, true);

    QVariant v = QVariant::fromValue(pod);
    QCOMPARE(QByteArray(v.typeName()), QByteArray("StudyActivityNoticeWidgetDisplayPod"));
    QCOMPARE(v.value<StudyActivityNoticeWidgetDisplayPod>().headingText, QStringLiteral("h"));
}

QTEST_MAIN(TestGatherNotice)
#include "tst_gathernotice.moc"
