#include "FriendRequestFixture.h"
#include "FriendRequestModel.h"
#include "FriendRequestModelProbe.h"
#include "FriendRequestShowMoreSignals_p.h"
#include "FriendRequestTreeItem_p.h"
#include "FriendRequestTreeRecorder.h"
#include "LogCapture.h"
#include "ModelTesterComplaints.h"

#include <QAbstractItemModelTester>
#include <QtTest>
#include <memory>

using namespace Fr;
using VyrEngine::FriendRequestInfo;
using Probe = FriendRequestModelProbe;
using namespace FriendRequest;

// The friend-request tree: items, data, and what update, preAdd, lastAdd,
// loadMore and the delete do to the tree and which signals they send.
class TestFriendRequestModel : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void itemHoldsItsFieldsAndThreeSetters();
    void cloneCopiesPersonAndChildrenOnly();
    void idTextIsThePersonInDecimal();
    void newModelIsEmptyWithOneColumn();
    void dataByRole_data();
    void dataByRole();
    void flagsForValidAndInvalidIndex();
    void indexOnlyInsideTheRows_data();
    void indexOnlyInsideTheRows();
    void displayIdIsTheOtherPerson_data();
    void displayIdIsTheOtherPerson();
    void ownRefusedRecordChangesNothing_data();
    void ownRefusedRecordChangesNothing();
    void othersRefusedRecordIsShown();
    void firstRecordMakesGroupAndRow();
    void sameDaySecondRequestUpdatesInPlace();
    void sameDayUpdateKeepsPlaceAndGroupDate();
    void sameDayUpdateSignalsTopLevelIndexOfLeafRow_data();
    void sameDayUpdateSignalsTopLevelIndexOfLeafRow();
    void otherDayMovesTheRow_data();
    void otherDayMovesTheRow();
    void groupRemovalSkipsNextGroup_data();
    void groupRemovalSkipsNextGroup();
    void secondGroupOfADayIsReachedToo();
    void preAddEmissions_data();
    void preAddEmissions();
    void lastAddEmissions_data();
    void lastAddEmissions();
    void loadMoreOfPresentPersonChangesNothing();
    void loadMorePlacesAtEndOfDayOrNewGroup_data();
    void loadMorePlacesAtEndOfDayOrNewGroup();
    void deleteUnknownIdAnswersTrueAndEmitsNothing();
    void deleteOneOfTwoRowsKeepsGroup();
    void deleteLastRowEmptiesRoot();
    void deleteLooksOnlyInFirstGroupOfTheDay();
    void recordSlotsAllUpdate_data();
    void recordSlotsAllUpdate();
    void engineSignalsAreQueuedAndConnectedInOrder();
    void initUiDataAsksFirstPageAndWalksBackwards();
    void initUiDataAgainFoldsIn();
    void badRecordsEndQuietly_data();
    void badRecordsEndQuietly();
    void preAddDebugLineCounts();
    void printAllWritesGroupValues();
    void showMoreSignalsIsOneParentlessInstance();
    void showMoreSignalsDestructorLine();

private:
    void strictTester();
    void warningTester();
    void seed(const QList<FriendRequestInfo>& records);
    QString tree() const { return FriendRequestTree::text(m_model.get()); }

    std::unique_ptr<FriendRequestModel> m_model;
    std::unique_ptr<FriendRequestTreeRecorder> m_recorder;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<ModelTesterComplaints> m_complaints;
};

void TestFriendRequestModel::init()
{
    resetKit();
    m_model = std::make_unique<FriendRequestModel>();
    m_recorder = std::make_unique<FriendRequestTreeRecorder>(m_model.get());
    strictTester();
}

void TestFriendRequestModel::cleanup()
{
    m_tester.reset();
    m_complaints.reset();
    m_recorder.reset();
    m_model.reset();
    resetKit();
}

// Any complaint of the tester fails the test.
void TestFriendRequestModel::strictTester()
{
    m_tester.reset();
    m_complaints.reset();
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get(),
                                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
}

// Only for the two index oddities that trip the tester: its complaints are
// collected, and the test asserts exactly which ones came.
void TestFriendRequestModel::warningTester()
{
    m_tester.reset();
    m_complaints = std::make_unique<ModelTesterComplaints>();
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get(),
                                                          QAbstractItemModelTester::FailureReportingMode::Warning);
}

void TestFriendRequestModel::seed(const QList<FriendRequestInfo>& records)
{
    for (const FriendRequestInfo& info : records)
        Probe::update(m_model.get(), info);
    m_recorder->clear();
}

// The item keeps the seven fields it was made with; only date, message and status change.
void TestFriendRequestModel::itemHoldsItsFieldsAndThreeSetters()
{
    FriendRequestTreeItem item(7, 42, 1800000000, QStringLiteral("hi"), 4, 42, Me, nullptr);
    QCOMPARE(item.sequenceId(), 7);
    QCOMPARE(item.displayId(), quint64(42));
    QCOMPARE(item.date(), quint64(1800000000));
    QCOMPARE(item.message(), QStringLiteral("hi"));
    QCOMPARE(item.status(), 4);
    QCOMPARE(item.sourceId(), quint64(42));
    QCOMPARE(item.targetId(), Me);
    QVERIFY(!item.parentItem());
    item.setDate(1);
    item.setMessage(QStringLiteral("later"));
    item.setStatus(6);
    QCOMPARE(item.date(), quint64(1));
    QCOMPARE(item.message(), QStringLiteral("later"));
    QCOMPARE(item.status(), 6);
    QCOMPARE(item.sequenceId(), 7);
}

// clone copies the person and a clone of each child, nothing else (the copy has date 0).
void TestFriendRequestModel::cloneCopiesPersonAndChildrenOnly()
{
    FriendRequestTreeItem group(3, 9, 1800000000, QStringLiteral("g"), 4, 9, Me, nullptr);
    group.appendChild(new FriendRequestTreeItem(5, 11, 1800000001, QStringLiteral("a"), 2, 11, Me, nullptr));
    group.appendChild(new FriendRequestTreeItem(6, 12, 1800000002, QStringLiteral("b"), 5, Me, 12, nullptr));
    std::unique_ptr<AbstractTreeItem> copy(group.clone());
    auto* c = dynamic_cast<FriendRequestTreeItem*>(copy.get());
    QVERIFY(c);
    QCOMPARE(c->displayId(), quint64(9));
    QCOMPARE(c->sequenceId(), 0);
    QCOMPARE(c->date(), quint64(0));
    QCOMPARE(c->message(), QString());
    QCOMPARE(c->status(), 0);
    QCOMPARE(c->sourceId(), quint64(0));
    QCOMPARE(c->targetId(), quint64(0));
    QCOMPARE(c->childCount(), 2);
    auto* first = static_cast<FriendRequestTreeItem*>(c->child(0));
    auto* second = static_cast<FriendRequestTreeItem*>(c->child(1));
    QCOMPARE(first->displayId(), quint64(11));
    QCOMPARE(second->displayId(), quint64(12));
    QCOMPARE(first->date(), quint64(0));
    QCOMPARE(second->message(), QString());
    QVERIFY(first != group.child(0));
    QCOMPARE(first->parentItem(), c);
}

// idText is the person's uid as decimal text, the full 64 bits.
void TestFriendRequestModel::idTextIsThePersonInDecimal()
{
    FriendRequestTreeItem item(0, 18446744073709551615ULL, 0, QString(), 0, 0, 0, nullptr);
    QCOMPARE(item.idText(), QStringLiteral("18446744073709551615"));
    FriendRequestTreeItem zero(0, 0, 0, QString(), 0, 0, 0, nullptr);
    QCOMPARE(zero.idText(), QStringLiteral("0"));
}

// A new model has a root without children and one column everywhere.
void TestFriendRequestModel::newModelIsEmptyWithOneColumn()
{
    QVERIFY(m_model->isFriendRequestEmpty());
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(m_model->columnCount(), 1);
    seed({from(7, 1, 4, at(0))});
    QVERIFY(!m_model->isFriendRequestEmpty());
    QCOMPARE(m_model->columnCount(m_model->index(0, 0)), 1);
    QCOMPARE(m_model->columnCount(m_model->index(0, 0, m_model->index(0, 0))), 1);
}

// Roles 100 to 106 give the row's fields in their types; any other role and an invalid index give nothing.
void TestFriendRequestModel::dataByRole_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("100 SequenceIdRole") << 100 << QVariant(int(77));
    QTest::newRow("101 DisplayIdRole") << 101 << QVariant(qulonglong(5000000000ULL));
    QTest::newRow("102 DateRole") << 102 << QVariant(qulonglong(at(0)));
    QTest::newRow("103 MessageRole") << 103 << QVariant(QStringLiteral("let me in"));
    QTest::newRow("104 StatusRole") << 104 << QVariant(int(4));
    QTest::newRow("105 SourceIdRole") << 105 << QVariant(qulonglong(5000000000ULL));
    QTest::newRow("106 TargetIdRole") << 106 << QVariant(qulonglong(Me));
    QTest::newRow("99") << 99 << QVariant();
    QTest::newRow("107") << 107 << QVariant();
    QTest::newRow("DisplayRole") << int(Qt::DisplayRole) << QVariant();
    QTest::newRow("ToolTipRole") << int(Qt::ToolTipRole) << QVariant();
    QTest::newRow("UserRole") << int(Qt::UserRole) << QVariant();
}

void TestFriendRequestModel::dataByRole()
{
    QFETCH(int, role);
    QFETCH(QVariant, expected);
    seed({from(5000000000ULL, 77, 4, at(0), QStringLiteral("let me in"))});
    const QModelIndex row = m_model->index(0, 0, m_model->index(0, 0));
    const QVariant value = m_model->data(row, role);
    QCOMPARE(value, expected);
    QCOMPARE(value.userType(), expected.userType());
    QVERIFY(!m_model->data(QModelIndex(), role).isValid());
}

// A valid index is selectable and enabled, a row never has children; an invalid one gets the base answer, no flags.
void TestFriendRequestModel::flagsForValidAndInvalidIndex()
{
    seed({from(7, 1, 4, at(0))});
    const Qt::ItemFlags both = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    QCOMPARE(m_model->flags(m_model->index(0, 0)), both);
    QCOMPARE(m_model->flags(m_model->index(0, 0, m_model->index(0, 0))), both | Qt::ItemNeverHasChildren);
    QCOMPARE(m_model->flags(QModelIndex()), Qt::ItemFlags(Qt::NoItemFlags));
}

// An index exists for each group and row and nowhere else; a row's index leads to its own person.
void TestFriendRequestModel::indexOnlyInsideTheRows_data()
{
    QTest::addColumn<bool>("underGroup");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<quint64>("person");   // 0: no index
    QTest::newRow("group") << false << 0 << 0 << quint64(0);
    QTest::newRow("row 0") << true << 0 << 0 << quint64(8);
    QTest::newRow("row 1") << true << 1 << 0 << quint64(7);
    QTest::newRow("row past") << true << 2 << 0 << quint64(0);
    QTest::newRow("row -1") << true << -1 << 0 << quint64(0);
    QTest::newRow("column 1") << true << 0 << 1 << quint64(0);
    QTest::newRow("column -1") << true << 0 << -1 << quint64(0);
    QTest::newRow("group past") << false << 1 << 0 << quint64(0);
    QTest::newRow("group col 1") << false << 0 << 1 << quint64(0);
}

void TestFriendRequestModel::indexOnlyInsideTheRows()
{
    QFETCH(bool, underGroup);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(quint64, person);
    seed({from(7, 1, 4, at(0)), from(8, 2, 4, at(0, 13))});
    const QModelIndex parent = underGroup ? m_model->index(0, 0) : QModelIndex();
    const QModelIndex index = m_model->index(row, column, parent);
    const bool group = !underGroup && row == 0 && column == 0;
    QCOMPARE(index.isValid(), group || person != 0);
    if (person != 0) {
        QCOMPARE(index.row(), row);
        QCOMPARE(index.parent(), parent);
        QCOMPARE(index.data(DisplayIdRole).toULongLong(), person);
    }
}

// The row's person is the target when the user asked, the asker otherwise.
void TestFriendRequestModel::displayIdIsTheOtherPerson_data()
{
    QTest::addColumn<quint64>("source");
    QTest::addColumn<quint64>("target");
    QTest::addColumn<quint64>("person");
    QTest::newRow("user asked") << Me << quint64(8) << quint64(8);
    QTest::newRow("peer asked") << quint64(9) << Me << quint64(9);
    QTest::newRow("user on both sides") << Me << Me << Me;
    QTest::newRow("neither is the user") << quint64(3) << quint64(4) << quint64(3);
    QTest::newRow("uid 0 asked") << quint64(0) << Me << quint64(0);
}

void TestFriendRequestModel::displayIdIsTheOtherPerson()
{
    QFETCH(quint64, source);
    QFETCH(quint64, target);
    QFETCH(quint64, person);
    QCOMPARE(Probe::displayId(m_model.get(), rec(1, source, target, 4, at(0))), person);
}

// The user's own request refused by the peer changes nothing, in each of the four operations, also over an existing row.
void TestFriendRequestModel::ownRefusedRecordChangesNothing_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("personHasRow");
    for (const char* op : {"update", "loadMore", "preAdd", "lastAdd"}) {
        QTest::addRow("%s, empty tree", op) << QString::fromLatin1(op) << false;
        QTest::addRow("%s, person has a row", op) << QString::fromLatin1(op) << true;
    }
}

void TestFriendRequestModel::ownRefusedRecordChangesNothing()
{
    QFETCH(QString, operation);
    QFETCH(bool, personHasRow);
    if (personHasRow)
        seed({to(8, 1, 5, at(0), QStringLiteral("waiting"))});
    const QString before = tree();
    const QString rowsBefore = FriendRequestTree::rows(m_model.get());
    const auto datesBefore = Probe::dates(m_model.get());
    const FriendRequestInfo refused = to(8, 2, RefusedByPeer, at(0, 13), QStringLiteral("refused"));
    const QModelIndex group = m_model->rowCount() ? m_model->index(0, 0) : QModelIndex();
    if (operation == QLatin1String("update"))
        Probe::update(m_model.get(), refused);
    else if (operation == QLatin1String("loadMore"))
        Probe::loadMore(m_model.get(), refused);
    else if (operation == QLatin1String("preAdd"))
        Probe::preAdd(m_model.get(), refused, group);
    else
        Probe::lastAdd(m_model.get(), refused, group);
    QCOMPARE(tree(), before);
    QCOMPARE(FriendRequestTree::rows(m_model.get()), rowsBefore);
    QCOMPARE(Probe::dates(m_model.get()), datesBefore);
    QCOMPARE(m_recorder->joined(), QString());
}

// Status 3 from somebody else is an ordinary row.
void TestFriendRequestModel::othersRefusedRecordIsShown()
{
    Probe::update(m_model.get(), from(9, 1, RefusedByPeer, at(0), QStringLiteral("no")));
    QCOMPARE(tree(), QStringLiteral("[%1[p9]]").arg(day(0)));
    QCOMPARE(FriendRequestTree::rows(m_model.get()), QStringLiteral("p9:3:no:1:9>1000"));
}

// The first record makes a group and its first row from the same record, then expands.
void TestFriendRequestModel::firstRecordMakesGroupAndRow()
{
    Probe::update(m_model.get(), from(7, 1, 4, at(0), QStringLiteral("hello")));
    QCOMPARE(tree(), QStringLiteral("[%1[p7]]").arg(day(0)));
    QCOMPARE(m_recorder->joined(), QStringLiteral("ins(-:0) ins(0:0) change need(-) expand"));
    const QModelIndex group = m_model->index(0, 0);
    QCOMPARE(group.data(DisplayIdRole).toULongLong(), quint64(7));
    QCOMPARE(group.data(MessageRole).toString(), QStringLiteral("hello"));
    QCOMPARE(group.data(SequenceIdRole).toInt(), 1);
    QCOMPARE(Probe::dates(m_model.get()).value(7), at(0));
}

// A second request on the same day keeps one row with the new date, message and
// status and the first request's sequence id and direction.
void TestFriendRequestModel::sameDaySecondRequestUpdatesInPlace()
{
    seed({to(7, 1, AwaitingPeerAnswer, at(0, 9), QStringLiteral("first"))});
    Probe::update(m_model.get(), from(7, 2, AwaitingMyAnswer, at(0, 18), QStringLiteral("second")));
    QCOMPARE(tree(), QStringLiteral("[%1[p7]]").arg(day(0)));
    QCOMPARE(FriendRequestTree::rows(m_model.get()), QStringLiteral("p7:4:second:1:1000>7"));
    QCOMPARE(m_model->index(0, 0, m_model->index(0, 0)).data(DateRole).toULongLong(), at(0, 18));
    QCOMPARE(Probe::dates(m_model.get()).value(7), at(0, 18));
    // Row 0 of its group: the top-level index 0 happens to exist.
    QCOMPARE(m_recorder->joined(), QStringLiteral("data(0) expand"));
}

// A same-day update leaves the row where it is and its group's date as the group's first record made it.
void TestFriendRequestModel::sameDayUpdateKeepsPlaceAndGroupDate()
{
    seed({from(3, 1, 4, at(1, 8)), from(5, 2, 4, at(0, 8)), from(7, 3, 4, at(0, 9))});
    QCOMPARE(tree(), QStringLiteral("[%1[p7 p5] %2[p3]]").arg(day(0), day(1)));
    Probe::update(m_model.get(), from(5, 4, 6, at(0, 23), QStringLiteral("late")));
    QCOMPARE(tree(), QStringLiteral("[%1[p7 p5] %2[p3]]").arg(day(0), day(1)));
    const QModelIndex group = m_model->index(0, 0);
    QCOMPARE(group.data(DateRole).toULongLong(), at(0, 8));
    QCOMPARE(group.data(DisplayIdRole).toULongLong(), quint64(5));
    QCOMPARE(group.data(MessageRole).toString(), QStringLiteral("m2"));
    QCOMPARE(m_model->index(1, 0, group).data(MessageRole).toString(), QStringLiteral("late"));
    QCOMPARE(m_recorder->joined(), QStringLiteral("data(1) expand"));
}

// dataChanged names the top-level row with the leaf's row number: a group, or
// nothing at all when there are fewer groups; the tester complains about the latter.
void TestFriendRequestModel::sameDayUpdateSignalsTopLevelIndexOfLeafRow_data()
{
    QTest::addColumn<int>("groups");
    QTest::addColumn<QString>("signalsText");
    QTest::addColumn<bool>("testerComplains");
    QTest::newRow("leaf row 2, three groups: names group 2") << 3 << QStringLiteral("data(2) expand") << false;
    QTest::newRow("leaf row 2, one group: invalid index") << 1 << QStringLiteral("data(-) expand") << true;
}

void TestFriendRequestModel::sameDayUpdateSignalsTopLevelIndexOfLeafRow()
{
    QFETCH(int, groups);
    QFETCH(QString, signalsText);
    QFETCH(bool, testerComplains);
    // Intended index oddity: this test alone runs the tester in Warning mode.
    warningTester();
    QList<FriendRequestInfo> records;
    for (int g = groups - 1; g >= 1; --g)
        records << from(100 + g, 100 + g, 4, at(g));
    records << from(3, 1, 4, at(0, 8)) << from(4, 2, 4, at(0, 9)) << from(5, 3, 4, at(0, 10));
    seed(records);
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 3);
    Probe::update(m_model.get(), from(3, 9, 2, at(0, 11)));
    QCOMPARE(m_recorder->joined(), signalsText);
    const QStringList expected{QStringLiteral("topLeft.isValid()")};
    QCOMPARE(m_complaints->unexpected(expected), QStringList());
    QCOMPARE(!m_complaints->messages().isEmpty(), testerComplains);
}

// A request on another day moves the row to the top of that day's group or of a
// new group; the old group goes with its last row.
void TestFriendRequestModel::otherDayMovesTheRow_data()
{
    QTest::addColumn<QList<FriendRequestInfo>>("before");
    QTest::addColumn<QString>("treeBefore");
    QTest::addColumn<FriendRequestInfo>("record");
    QTest::addColumn<QString>("treeAfter");
    QTest::addColumn<QString>("signalsText");
    QTest::newRow("later day with a group, old group keeps another row")
        << QList<FriendRequestInfo>{from(7, 1, 4, at(1, 8)), from(3, 2, 4, at(1, 9)), from(5, 3, 4, at(0))}
        << QStringLiteral("[%1[p5] %2[p3 p7]]").arg(day(0), day(1)) << from(7, 4, 2, at(0, 20))
        << QStringLiteral("[%1[p7 p5] %2[p3]]").arg(day(0), day(1))
        << QStringLiteral("ins(0:0) change need(0) rem(1:1) expand");
    QTest::newRow("later day without a group, old group goes")
        << QList<FriendRequestInfo>{from(3, 1, 4, at(2))} << QStringLiteral("[%1[p3]]").arg(day(2))
        << from(3, 2, 2, at(0)) << QStringLiteral("[%1[p3]]").arg(day(0))
        << QStringLiteral("rem(-:0) ins(-:0) ins(0:0) change need(-) expand");
    QTest::newRow("later day without a group, old group keeps another row")
        << QList<FriendRequestInfo>{from(7, 1, 4, at(2, 8)), from(3, 2, 4, at(2, 9))}
        << QStringLiteral("[%1[p3 p7]]").arg(day(2)) << from(3, 3, 2, at(0))
        << QStringLiteral("[%1[p3] %2[p7]]").arg(day(0), day(2))
        << QStringLiteral("rem(0:0) ins(-:0) ins(0:0) change need(-) expand");
    QTest::newRow("earlier day with a group, behind the old one")
        << QList<FriendRequestInfo>{from(5, 1, 4, at(2)), from(3, 2, 4, at(0, 8)), from(7, 3, 4, at(0, 9))}
        << QStringLiteral("[%1[p7 p3] %2[p5]]").arg(day(0), day(2)) << from(3, 4, 6, at(2, 20))
        << QStringLiteral("[%1[p7] %2[p3 p5]]").arg(day(0), day(2))
        << QStringLiteral("rem(0:1) ins(1:0) change need(1) expand");
}

void TestFriendRequestModel::otherDayMovesTheRow()
{
    QFETCH(QList<FriendRequestInfo>, before);
    QFETCH(QString, treeBefore);
    QFETCH(FriendRequestInfo, record);
    QFETCH(QString, treeAfter);
    QFETCH(QString, signalsText);
    seed(before);
    QCOMPARE(tree(), treeBefore);
    Probe::update(m_model.get(), record);
    QCOMPARE(tree(), treeAfter);
    QCOMPARE(m_recorder->joined(), signalsText);
    QCOMPARE(Probe::dates(m_model.get()).value(record.sourceId()), record.date());
    // The moved row carries every field of the new record.
    bool found = false;
    for (const QString& row : FriendRequestTree::rows(m_model.get()).split(QLatin1Char(' '))) {
        if (row.startsWith(QStringLiteral("p%1:").arg(record.sourceId()))) {
            QCOMPARE(row, QStringLiteral("p%1:%2:%3:%4:%5>1000")
                              .arg(record.sourceId())
                              .arg(record.status())
                              .arg(record.message())
                              .arg(record.sequenceId())
                              .arg(record.sourceId()));
            found = true;
        }
    }
    QVERIFY(found);
}

// Removing a whole group in the walk skips the group that moves into its place;
// when that is the new day's group a second group of that day is made (intended).
void TestFriendRequestModel::groupRemovalSkipsNextGroup_data()
{
    QTest::addColumn<QList<FriendRequestInfo>>("before");
    QTest::addColumn<int>("toDay");
    QTest::addColumn<QString>("treeAfter");
    QTest::addColumn<QString>("signalsText");
    QTest::newRow("old group goes: skipped, second group of the day")
        << QList<FriendRequestInfo>{from(2, 1, 4, at(2)), from(1, 2, 4, at(1))} << 2
        << QStringLiteral("[%1[p1] %1[p2]]").arg(day(2))
        << QStringLiteral("rem(-:0) ins(-:0) ins(0:0) change need(-) expand");
    QTest::newRow("old group stays: no skip, joins the day's group")
        << QList<FriendRequestInfo>{from(2, 1, 4, at(2)), from(1, 2, 4, at(1, 8)), from(4, 3, 4, at(1, 9))} << 2
        << QStringLiteral("[%1[p4] %2[p1 p2]]").arg(day(1), day(2))
        << QStringLiteral("rem(0:1) ins(1:0) change need(1) expand");
    QTest::newRow("skipped group is another day: nothing lost")
        << QList<FriendRequestInfo>{from(2, 1, 4, at(3)), from(6, 2, 4, at(2)), from(1, 3, 4, at(1))} << 3
        << QStringLiteral("[%1[p6] %2[p1 p2]]").arg(day(2), day(3))
        << QStringLiteral("rem(-:0) ins(1:0) change need(1) expand");
}

void TestFriendRequestModel::groupRemovalSkipsNextGroup()
{
    QFETCH(QList<FriendRequestInfo>, before);
    QFETCH(int, toDay);
    QFETCH(QString, treeAfter);
    QFETCH(QString, signalsText);
    seed(before);
    // Person 1 moves to an older day.
    Probe::update(m_model.get(), from(1, 50, 2, at(toDay, 20)));
    QCOMPARE(tree(), treeAfter);
    QCOMPARE(m_recorder->joined(), signalsText);
}

// The walk reaches every group of a day: once a skipped removal has left two
// groups of one day, an update of that day updates the row in one and adds a
// row to the other, and a new person gets a row in each (intended).
void TestFriendRequestModel::secondGroupOfADayIsReachedToo()
{
    struct Step
    {
        const char* tag;
        FriendRequestInfo record;
        QString tree;
        QString signalsText;
    };
    const QString d0 = day(0), d2 = day(2), d1 = day(1);
    const QList<Step> steps{
        {"p2 on day 2", from(2, 1, 4, at(2, 8)), QStringLiteral("[%1[p2]]").arg(d2),
         QStringLiteral("ins(-:0) ins(0:0) change need(-) expand")},
        {"p1 on day 1", from(1, 2, 4, at(1)), QStringLiteral("[%1[p1] %2[p2]]").arg(d1, d2),
         QStringLiteral("ins(-:0) ins(0:0) change need(-) expand")},
        {"p1 back to day 2", from(1, 3, 2, at(2, 20)), QStringLiteral("[%1[p1] %1[p2]]").arg(d2),
         QStringLiteral("rem(-:0) ins(-:0) ins(0:0) change need(-) expand")},
        {"p2 again on day 2", from(2, 4, 6, at(2, 21), QStringLiteral("late")),
         QStringLiteral("[%1[p2 p1] %1[p2]]").arg(d2), QStringLiteral("ins(0:0) change need(0) data(0) expand")},
        {"p9 new on day 2", from(9, 5, 4, at(2, 22)), QStringLiteral("[%1[p9 p2 p1] %1[p9 p2]]").arg(d2),
         QStringLiteral("ins(0:0) change need(0) ins(1:0) change need(1) expand")},
        {"p9 to day 0", from(9, 6, 2, at(0)), QStringLiteral("[%1[p9] %2[p2 p1] %2[p2]]").arg(d0, d2),
         QStringLiteral("rem(0:0) rem(1:0) ins(-:0) ins(0:0) change need(-) expand")},
        {"p2 to day 0", from(2, 7, 2, at(0, 13)), QStringLiteral("[%1[p2 p9] %2[p1]]").arg(d0, d2),
         QStringLiteral("ins(0:0) change need(0) rem(1:0) rem(-:2) expand")},
    };
    for (const Step& step : steps) {
        m_recorder->clear();
        Probe::update(m_model.get(), step.record);
        const QString tag = QLatin1String(step.tag) + QStringLiteral(": ");
        QCOMPARE(tag + tree(), tag + step.tree);
        QCOMPARE(tag + m_recorder->joined(), tag + step.signalsText);
        QCOMPARE(Probe::dates(m_model.get()).value(step.record.sourceId()), step.record.date());
        if (QByteArray(step.tag) == "p2 again on day 2") {
            // A new row of the whole record in the first group; the old row in the second keeps its first record.
            QCOMPARE(FriendRequestTree::rows(m_model.get()),
                     QStringLiteral("p2:6:late:4:2>1000 p1:2:m3:3:1>1000 p2:6:late:1:2>1000"));
        }
    }
    QCOMPARE(FriendRequestTree::rows(m_model.get()), QStringLiteral("p2:2:m7:7:2>1000 p9:2:m6:6:9>1000 p1:2:m3:3:1>1000"));
}

// preAdd puts a row on top: into a group, or a new group on top with its row; then change and needUpdate, no expand.
void TestFriendRequestModel::preAddEmissions_data()
{
    QTest::addColumn<bool>("intoGroup");
    QTest::addColumn<QString>("treeAfter");
    QTest::addColumn<QString>("signalsText");
    QTest::newRow("into group 1") << true << QStringLiteral("[%1[p5] %2[p8 p3]]").arg(day(0), day(1))
                                  << QStringLiteral("ins(1:0) change need(1)");
    QTest::newRow("new group") << false << QStringLiteral("[%1[p8] %2[p5] %1[p3]]").arg(day(1), day(0))
                               << QStringLiteral("ins(-:0) ins(0:0) change need(-)");
}

void TestFriendRequestModel::preAddEmissions()
{
    QFETCH(bool, intoGroup);
    QFETCH(QString, treeAfter);
    QFETCH(QString, signalsText);
    seed({from(3, 1, 4, at(1)), from(5, 2, 4, at(0))});
    Probe::preAdd(m_model.get(), from(8, 3, 4, at(1, 14)), intoGroup ? m_model->index(1, 0) : QModelIndex());
    QCOMPARE(tree(), treeAfter);
    QCOMPARE(m_recorder->joined(), signalsText);
    // preAdd alone leaves the person map to its callers.
    QVERIFY(!Probe::dates(m_model.get()).contains(8));
}

// lastAdd appends; a new group's second insert names the root's rows with the
// row as column (intended): right only while the root had no group, so the tester complains otherwise.
void TestFriendRequestModel::lastAddEmissions_data()
{
    QTest::addColumn<int>("groupsBefore");
    QTest::addColumn<bool>("intoGroup");
    QTest::addColumn<QString>("signalsText");
    QTest::addColumn<bool>("testerComplains");
    QTest::newRow("into group 0") << 1 << true << QStringLiteral("ins(0:1) expand change") << false;
    QTest::newRow("new group, empty root") << 0 << false << QStringLiteral("ins(-:0) ins(0:1) expand change") << false;
    QTest::newRow("new group behind one") << 1 << false << QStringLiteral("ins(-:1) ins(-:2) expand change") << true;
    QTest::newRow("new group behind two") << 2 << false << QStringLiteral("ins(-:2) ins(-:3) expand change") << true;
}

void TestFriendRequestModel::lastAddEmissions()
{
    QFETCH(int, groupsBefore);
    QFETCH(bool, intoGroup);
    QFETCH(QString, signalsText);
    QFETCH(bool, testerComplains);
    // Intended index oddity: this test alone runs the tester in Warning mode.
    warningTester();
    QList<FriendRequestInfo> records;
    for (int g = groupsBefore - 1; g >= 0; --g)
        records << from(10 + g, 10 + g, 4, at(g));
    seed(records);
    Probe::lastAdd(m_model.get(), from(8, 3, 4, at(5)), intoGroup ? m_model->index(0, 0) : QModelIndex());
    QCOMPARE(m_recorder->joined(), signalsText);
    const int lastGroup = m_model->rowCount() - 1;
    const QModelIndex group = m_model->index(lastGroup, 0);
    QCOMPARE(m_model->index(m_model->rowCount(group) - 1, 0, group).data(DisplayIdRole).toULongLong(), quint64(8));
    if (!intoGroup) {
        QCOMPARE(m_model->rowCount(), groupsBefore + 1);
        QCOMPARE(m_model->rowCount(group), 1);
    }
    const QStringList expected{QStringLiteral("rowCount")};
    QCOMPARE(m_complaints->unexpected(expected), QStringList());
    QCOMPARE(!m_complaints->messages().isEmpty(), testerComplains);
}

// loadMore of a person who has a row changes nothing and keeps the stored date.
void TestFriendRequestModel::loadMoreOfPresentPersonChangesNothing()
{
    seed({from(7, 5, 4, at(0), QStringLiteral("new"))});
    const QString rows = FriendRequestTree::rows(m_model.get());
    Probe::loadMore(m_model.get(), from(7, 1, 2, at(3), QStringLiteral("old")));
    Probe::loadMore(m_model.get(), from(7, 2, 2, at(0, 1), QStringLiteral("old, same day")));
    QCOMPARE(FriendRequestTree::rows(m_model.get()), rows);
    QCOMPARE(tree(), QStringLiteral("[%1[p7]]").arg(day(0)));
    QCOMPARE(Probe::dates(m_model.get()).value(7), at(0));
    QCOMPARE(m_recorder->joined(), QString());
}

// A page's new person goes to the end of the day's group, or to a new group at the end of the root.
void TestFriendRequestModel::loadMorePlacesAtEndOfDayOrNewGroup_data()
{
    QTest::addColumn<int>("daysBack");
    QTest::addColumn<QString>("treeAfter");
    QTest::addColumn<QString>("signalsText");
    QTest::newRow("day has a group") << 1 << QStringLiteral("[%1[p5] %2[p3 p8]]").arg(day(0), day(1))
                                     << QStringLiteral("ins(1:1) expand change");
    QTest::newRow("day has no group") << 4
                                      << QStringLiteral("[%1[p5] %2[p3] %3[p8]]").arg(day(0), day(1), day(4))
                                      << QStringLiteral("ins(-:2) ins(-:3) expand change");
}

void TestFriendRequestModel::loadMorePlacesAtEndOfDayOrNewGroup()
{
    QFETCH(int, daysBack);
    QFETCH(QString, treeAfter);
    QFETCH(QString, signalsText);
    // Intended index oddity of lastAdd's new group: Warning mode here.
    warningTester();
    seed({from(3, 1, 4, at(1)), from(5, 2, 4, at(0))});
    Probe::loadMore(m_model.get(), from(8, 3, 4, at(daysBack, 7)));
    QCOMPARE(tree(), treeAfter);
    QCOMPARE(m_recorder->joined(), signalsText);
    QCOMPARE(Probe::dates(m_model.get()).value(8), at(daysBack, 7));
    QCOMPARE(m_complaints->unexpected({QStringLiteral("rowCount")}), QStringList());
}

// A delete of somebody without a row answers true and emits nothing.
void TestFriendRequestModel::deleteUnknownIdAnswersTrueAndEmitsNothing()
{
    QVERIFY(m_model->deleteOneNoticeSlot(7));
    seed({from(3, 1, 4, at(0))});
    QVERIFY(m_model->deleteOneNoticeSlot(7));
    QCOMPARE(m_recorder->joined(), QString());
    QCOMPARE(tree(), QStringLiteral("[%1[p3]]").arg(day(0)));
}

// Deleting one of two rows removes the row and keeps the group.
void TestFriendRequestModel::deleteOneOfTwoRowsKeepsGroup()
{
    seed({from(3, 1, 4, at(0, 8)), from(5, 2, 4, at(0, 9))});
    QVERIFY(m_model->deleteOneNoticeSlot(3));
    QCOMPARE(tree(), QStringLiteral("[%1[p5]]").arg(day(0)));
    QCOMPARE(m_recorder->joined(), QStringLiteral("rem(0:1) expand change"));
    QVERIFY(!Probe::dates(m_model.get()).contains(3));
}

// Deleting the last row removes its group and empties the root.
void TestFriendRequestModel::deleteLastRowEmptiesRoot()
{
    seed({from(3, 1, 4, at(0))});
    QVERIFY(m_model->deleteOneNoticeSlot(3));
    QCOMPARE(tree(), QStringLiteral("[]"));
    QVERIFY(m_model->isFriendRequestEmpty());
    QCOMPARE(m_recorder->joined(), QStringLiteral("rem(-:0) expand change"));
    QVERIFY(Probe::dates(m_model.get()).isEmpty());
}

// The delete looks only in the first group of the row's day: a row in a second
// group of that day stays, its map entry too, and the page still hears a change.
void TestFriendRequestModel::deleteLooksOnlyInFirstGroupOfTheDay()
{
    seed({from(2, 1, 4, at(2, 8)), from(1, 2, 4, at(1)), from(1, 3, 2, at(2, 20))});
    QCOMPARE(tree(), QStringLiteral("[%1[p1] %1[p2]]").arg(day(2)));
    QVERIFY(m_model->deleteOneNoticeSlot(2));
    QCOMPARE(tree(), QStringLiteral("[%1[p1] %1[p2]]").arg(day(2)));
    QCOMPARE(m_recorder->joined(), QStringLiteral("change"));
    QVERIFY(Probe::dates(m_model.get()).contains(2));
    m_recorder->clear();
    QVERIFY(m_model->deleteOneNoticeSlot(1));
    QCOMPARE(tree(), QStringLiteral("[%1[p2]]").arg(day(2)));
    QCOMPARE(m_recorder->joined(), QStringLiteral("rem(-:0) expand change"));
}

// Each of the four record slots is update with a copy of the record.
void TestFriendRequestModel::recordSlotsAllUpdate_data()
{
    QTest::addColumn<int>("slot");
    QTest::newRow("contactorAddNoticeSlot") << 0;
    QTest::newRow("contactorAddReplyNoticeSlot") << 1;
    QTest::newRow("contactsAddConfirmNoticeSlot") << 2;
    QTest::newRow("setContactsAddOverdueSlot") << 3;
}

void TestFriendRequestModel::recordSlotsAllUpdate()
{
    QFETCH(int, slot);
    seed({from(7, 1, 4, at(1))});
    const FriendRequestInfo info = from(7, 2, 6, at(0), QStringLiteral("x"));
    switch (slot) {
    case 0: m_model->contactorAddNoticeSlot(info); break;
    case 1: m_model->contactorAddReplyNoticeSlot(info); break;
    case 2: m_model->contactsAddConfirmNoticeSlot(info); break;
    case 3: m_model->setContactsAddOverdueSlot(info); break;
    }
    QCOMPARE(tree(), QStringLiteral("[%1[p7]]").arg(day(0)));
    QCOMPARE(FriendRequestTree::rows(m_model.get()), QStringLiteral("p7:6:x:2:7>1000"));
    QCOMPARE(m_recorder->joined(), QStringLiteral("rem(-:0) ins(-:0) ins(0:0) change need(-) expand"));
}

// The engine's five signals reach the model queued, connected in their order.
void TestFriendRequestModel::engineSignalsAreQueuedAndConnectedInOrder()
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->clear();
    FriendRequestModel model;
    QCOMPARE(engine->connectedSignals(),
             QStringList({QStringLiteral("signalContactsAddConfirmNotice"), QStringLiteral("signalContactorAddReplyNotice"),
                          QStringLiteral("signalContactorAddNotice"), QStringLiteral("signalDeleteOneAddNotice"),
                          QStringLiteral("signalSetFriendRequestOverdue")}));
    const QList<VyrEngine::NoticeEngine::RecordSignal> kinds{
        VyrEngine::NoticeEngine::ContactorAdd, VyrEngine::NoticeEngine::ContactorAddReply,
        VyrEngine::NoticeEngine::ContactsAddConfirm, VyrEngine::NoticeEngine::FriendRequestOverdue};
    int seq = 1;
    for (auto kind : kinds) {
        engine->emitRecordSignal(kind, from(20 + seq, seq, 4, at(0, seq)));
        QCOMPARE(model.rowCount(), seq == 1 ? 0 : 1);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(model.rowCount(model.index(0, 0)), seq);
        ++seq;
    }
    engine->emitDeleteSignal(21);
    QCOMPARE(model.rowCount(model.index(0, 0)), 4);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(FriendRequestTree::text(&model), QStringLiteral("[%1[p24 p23 p22]]").arg(day(0)));
}

// initUiData asks 200 records before now with no sequence anchor and walks the answer backwards.
void TestFriendRequestModel::initUiDataAsksFirstPageAndWalksBackwards()
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    // Newest first in the store's answer; person 7 twice, the newer one a day later.
    engine->putFriendRequest(from(7, 1, 5, at(2), QStringLiteral("old")));
    engine->putFriendRequest(from(3, 2, 4, at(1, 8)));
    engine->putFriendRequest(from(5, 3, 4, at(1, 9)));
    engine->putFriendRequest(from(7, 4, 2, at(0), QStringLiteral("new")));
    m_model->initUiData();
    const auto queries = engine->friendRequestQueries();
    QCOMPARE(queries.size(), 1);
    QCOMPARE(queries.first().count, 200);
    QCOMPARE(queries.first().date, at(-1));
    QCOMPARE(queries.first().sequenceId, -1);
    QVERIFY(queries.first().onEngineThread);
    QCOMPARE(tree(), QStringLiteral("[%1[p7] %2[p5 p3]]").arg(day(0), day(1)));
    QCOMPARE(FriendRequestTree::rows(m_model.get()).section(QLatin1Char(' '), 0, 0), QStringLiteral("p7:2:new:4:7>1000"));
}

// initUiData run again folds the same answer into the tree: no row twice, nothing cleared.
void TestFriendRequestModel::initUiDataAgainFoldsIn()
{
    auto* engine = VyrEngine::NoticeEngine::instance();
    engine->putFriendRequest(from(3, 2, 4, at(1)));
    engine->putFriendRequest(from(5, 3, 4, at(0)));
    m_model->initUiData();
    Probe::update(m_model.get(), from(9, 9, 4, at(-1, 6)));
    const QString rows = FriendRequestTree::rows(m_model.get());
    m_recorder->clear();
    m_model->initUiData();
    m_model->initUiData();
    QCOMPARE(FriendRequestTree::rows(m_model.get()), rows);
    QCOMPARE(tree(), QStringLiteral("[%1[p9] %2[p5] %3[p3]]").arg(day(-1), day(0), day(1)));
    QCOMPARE(m_recorder->joined(), QStringLiteral("data(0) expand data(0) expand data(0) expand data(0) expand"));
}

// Odd records (date 0, far future, uid 0, the user on both sides) each make one quiet row.
void TestFriendRequestModel::badRecordsEndQuietly_data()
{
    QTest::addColumn<FriendRequestInfo>("record");
    QTest::addColumn<QString>("treeText");
    QTest::newRow("date 0") << from(7, 1, 4, 0)
                            << QStringLiteral("[%1[p7]]").arg(QDateTime::fromSecsSinceEpoch(0).date().toString(Qt::ISODate));
    QTest::newRow("next year") << from(7, 1, 4, at(-365)) << QStringLiteral("[%1[p7]]").arg(day(-365));
    // Qt 5.15 turns seconds into milliseconds unchecked: this far future wraps to 1969's last second (UTC here).
    QTest::newRow("beyond QDateTime") << from(7, 1, 4, Q_UINT64_C(0x7fffffffffffffff))
                                      << QStringLiteral("[1969-12-31[p7]]");
    QTest::newRow("uid 0 asks") << rec(1, 0, Me, 4, at(0)) << QStringLiteral("[%1[p0]]").arg(day(0));
    QTest::newRow("user on both sides") << rec(1, Me, Me, 5, at(0)) << QStringLiteral("[%1[p1000]]").arg(day(0));
    QTest::newRow("both sides 0") << rec(1, 0, 0, 4, at(0)) << QStringLiteral("[%1[p0]]").arg(day(0));
}

void TestFriendRequestModel::badRecordsEndQuietly()
{
    QFETCH(FriendRequestInfo, record);
    QFETCH(QString, treeText);
    Probe::update(m_model.get(), record);
    Probe::update(m_model.get(), record);
    Probe::loadMore(m_model.get(), record);
    QCOMPARE(tree(), treeText);
    // The same person on a normal day afterwards still has one row.
    FriendRequestInfo normal = record;
    normal.setDate(at(3));
    Probe::update(m_model.get(), normal);
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 1);
    QVERIFY(m_model->deleteOneNoticeSlot(Probe::displayId(m_model.get(), record)));
    QVERIFY(m_model->isFriendRequestEmpty());
}

// preAdd's debug line counts its calls; release builds have neither the line nor the count.
void TestFriendRequestModel::preAddDebugLineCounts()
{
    LogCapture log;
    Probe::update(m_model.get(), from(7, 1, 4, at(0), QStringLiteral("one")));
    Probe::update(m_model.get(), from(8, 2, 4, at(0), QStringLiteral("two")));
    const QList<LogCapture::Line> lines = log.startingWith(QStringLiteral("=========="));
#ifdef QT_NO_DEBUG_OUTPUT
    QCOMPARE(lines.size(), 0);
#else
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0).type, QtDebugMsg);
    QVERIFY(lines.at(0).file.endsWith(QLatin1String("src/plugins/im/VyrNotice/FriendRequestModel.cpp")));
    const QString first = lines.at(0).text;
    QVERIFY2(first.startsWith(QStringLiteral("========== \"one\" ,  ")), qPrintable(first));
    const int count = first.section(QLatin1Char(' '), -1).toInt();
    QCOMPARE(lines.at(1).text, QStringLiteral("========== \"two\" ,  %1").arg(count + 1));
#endif
}

// The print aid writes each group and each row, the rows with their group's sequence id and day.
void TestFriendRequestModel::printAllWritesGroupValues()
{
    seed({from(3, 11, 4, at(1), QStringLiteral("g1")), from(5, 12, 4, at(0, 8), QStringLiteral("first")),
          from(7, 13, 4, at(0, 9), QStringLiteral("second"))});
    LogCapture log;
    Probe::printAll(m_model.get());
#ifdef QT_NO_DEBUG_OUTPUT
    QCOMPARE(log.lines().size(), 0);
#else
    QStringList texts;
    for (const LogCapture::Line& line : log.lines()) {
        QCOMPARE(line.type, QtDebugMsg);
        texts << line.text;
    }
    const QString d0 = QStringLiteral("QDate(\"%1\")").arg(day(0));
    const QString d1 = QStringLiteral("QDate(\"%1\")").arg(day(1));
    QCOMPARE(texts, QStringList({QStringLiteral("#######parent:  2 5 %1 \"first\"").arg(d0),
                                 QStringLiteral("#######child:  12 7 %1 \"second\"").arg(d0),
                                 QStringLiteral("#######child:  12 5 %1 \"first\"").arg(d0),
                                 QStringLiteral("#######parent:  1 3 %1 \"g1\"").arg(d1),
                                 QStringLiteral("#######child:  11 3 %1 \"g1\"").arg(d1)}));
#endif
}

// One parentless signal carrier serves every model.
void TestFriendRequestModel::showMoreSignalsIsOneParentlessInstance()
{
    FriendRequestShowMoreSignals* carrier = Probe::showMoreSignals();
    QVERIFY(carrier);
    QCOMPARE(Probe::showMoreSignals(), carrier);
    QVERIFY(!carrier->parent());
    QCOMPARE(carrier->thread(), QCoreApplication::instance()->thread());
    // Its one signal reaches the model queued.
    emit carrier->syncLoadMore({from(7, 1, 4, at(0))});
    QCOMPARE(m_model->rowCount(), 0);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(tree(), QStringLiteral("[%1[p7]]").arg(day(0)));
}

// The carrier's destructor leaves a debug line (none in release builds).
void TestFriendRequestModel::showMoreSignalsDestructorLine()
{
    LogCapture log;
    delete new FriendRequestShowMoreSignals();
    const auto lines = log.matching(QStringLiteral("FriendRequestShowMoreSignals::~FriendRequestShowMoreSignals"));
#ifdef QT_NO_DEBUG_OUTPUT
    QCOMPARE(lines.size(), 0);
#else
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().type, QtDebugMsg);
#endif
}

QTEST_MAIN(TestFriendRequestModel)
#include "tst_friendrequestmodel.moc"
