#include "AbstractTreeItem.h"
#include "AbstractTreeModel.h"
#include "Movable.h"
#include "VyrListView.h"
#include "SimpleMessagePopup.h"
#include "WaitingSpinnerWidget.h"

#include <QPointer>
#include "VyrCustomNormalDialog.h"
#include "VyrMenuEx.h"
#include "VyrModalAnswerer.h"
#include "VyrTreeView.h"
#include "vyrmessagebox"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest>

namespace {
int s_alive = 0;

// A named node that counts how many of its kind are alive.
class NamedItem : public AbstractTreeItem
{
public:
    explicit NamedItem(const QString& name, AbstractTreeItem* parent = nullptr)
        : AbstractTreeItem(parent)
        , m_name(name)
    {
        ++s_alive;
    }
    ~NamedItem() override { --s_alive; }
    AbstractTreeItem* clone() const override { return new NamedItem(m_name); }
    QString idText() const override { return m_name; }

private:
    QString m_name;
};

class NamedModel : public AbstractTreeModel
{
public:
    explicit NamedModel(AbstractTreeItem* root)
        : AbstractTreeModel(root)
    {
    }
    using AbstractTreeModel::root;
};

QString names(const AbstractTreeItem* item)
{
    QStringList out;
    for (AbstractTreeItem* child : item->children())
        out << child->idText();
    return out.join(QLatin1Char(' '));
}
} // namespace

// The client's widgets: the drag helper, the list view, the tree item and the tree model.
class TestVyrWidgets : public QObject
{
    Q_OBJECT
private slots:
    void movableDragsByTriggerStripOnly_data();
    void movableDragsByTriggerStripOnly();
    void movableWholeAndNoneTypes();
    void listViewHasNoFrame();

    void init() { s_alive = 0; }
    void childOutOfRangeIsNull_data();
    void childOutOfRangeIsNull();
    void insertAppendAndRow();
    void removeChildFreesItAndIgnoresStrangers();
    void deletingFreesTheSubtree();
    void modelWalksTheItems();
    void modelIndexOutOfRangeIsInvalid_data();
    void modelIndexOutOfRangeIsInvalid();
    void modelPassesTheTester();
    void modelOwnsTheRoot();

    void spinnerHiddenUntilStartAndCoversItsParent();
    void spinnerTurnsWhileSpinningAndStops();
    void spinnerKeepsItsSettings();
    void spinnerDrawsItsBoxInTheMiddle();
    void spinnerPassesClicksThroughOrNot();
    void messageStandsAtItsPlaceWithItsSize();
    void messageClosesItselfAfterItsTime();
    // Modal boxes, menus, dialogs and the answer hook.
    void answererPressesTheBoxButton_data();
    void answererPressesTheBoxButton();
    void answererServesModalsInOrderAndLogsThem();
    void answererChoosesTheMenuEntry();
    void answererUnknownEntryClosesTheMenu();
    void answererTypesIntoTheDialog();
    void answererHandlerRunsInsideExec();
    void answererClosesUnansweredWhenAsked();
    void answererClearDropsAnswersAndLog();
    void messageBoxLogsAroundExec();
    void messageBoxDeletesItselfOnClose();
    void messageBoxClientThemeAndButtons();
    void dialogTitleAndCenterWidget();
    void dialogCloseButtonRejects();
    void treeViewHasNoFrame();
};

// Move type 2 drags only from the top strip; the signal reports each move.
void TestVyrWidgets::movableDragsByTriggerStripOnly_data()
{
    QTest::addColumn<int>("pressY");
    QTest::addColumn<bool>("moves");
    QTest::newRow("top") << 0 << true;
    QTest::newRow("inside") << 30 << true;
    QTest::newRow("last-pixel") << 61 << true;
    QTest::newRow("below") << 62 << false;
}


void TestVyrWidgets::movableDragsByTriggerStripOnly()
{
    QFETCH(int, pressY);
    QFETCH(bool, moves);
    QWidget target;
    target.resize(200, 200);
    target.move(100, 100);
    auto* movable = new Movable(&target, Movable::MoveByTopArea);
    QCOMPARE(movable->parent(), &target);
    movable->setMoveTriggerArea(62);
    QSignalSpy changed(movable, &Movable::signalPosChanged);
    const QPoint grip(50, pressY);
    QTest::mousePress(&target, Qt::LeftButton, Qt::NoModifier, grip);
    QMouseEvent move(QEvent::MouseMove, grip + QPoint(30, 40), target.mapToGlobal(grip) + QPoint(30, 40),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &move);
    QCOMPARE(movable->isDragging(), moves);
    QTest::mouseRelease(&target, Qt::LeftButton, Qt::NoModifier, grip);
    QVERIFY(!movable->isDragging());
    QCOMPARE(target.pos(), moves ? QPoint(130, 140) : QPoint(100, 100));
    QCOMPARE(changed.count(), moves ? 1 : 0);
}


// Type 0 drags from anywhere, type 1 never.
void TestVyrWidgets::movableWholeAndNoneTypes()
{
    for (Movable::MoveType type : {Movable::MoveWhole, Movable::MoveNone}) {
        QWidget target;
        target.move(0, 0);
        target.resize(100, 100);
        new Movable(&target, type);
        const QPoint grip(50, 90);
        QTest::mousePress(&target, Qt::LeftButton, Qt::NoModifier, grip);
        QMouseEvent move(QEvent::MouseMove, grip + QPoint(20, 0), target.mapToGlobal(grip) + QPoint(20, 0),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &move);
        QCOMPARE(target.pos(), type == Movable::MoveWhole ? QPoint(20, 0) : QPoint(0, 0));
    }
}


// The client's list view: frameless with a slim scroll bar.
void TestVyrWidgets::listViewHasNoFrame()
{
    VyrListView view;
    QCOMPARE(view.frameShape(), QFrame::NoFrame);
    QVERIFY(view.verticalScrollBar()->styleSheet().contains(QLatin1String("width: 6px")));
}


// child() answers null for any row out of range, negative ones included.
void TestVyrWidgets::childOutOfRangeIsNull_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");
    QTest::newRow("-1") << -1 << "";
    QTest::newRow("-100") << -100 << "";
    QTest::newRow("0") << 0 << "a";
    QTest::newRow("1") << 1 << "b";
    QTest::newRow("2 (count)") << 2 << "";
    QTest::newRow("INT_MAX") << INT_MAX << "";
}

void TestVyrWidgets::childOutOfRangeIsNull()
{
    QFETCH(int, row);
    QFETCH(QString, expected);
    NamedItem root(QStringLiteral("root"));
    root.appendChild(new NamedItem(QStringLiteral("a")));
    root.appendChild(new NamedItem(QStringLiteral("b")));
    AbstractTreeItem* child = root.child(row);
    QCOMPARE(child ? child->idText() : QString(), expected);
}

// insertChild places and adopts (a row out of range appends); row() is the place under the parent.
void TestVyrWidgets::insertAppendAndRow()
{
    NamedItem root(QStringLiteral("root"));
    auto* b = new NamedItem(QStringLiteral("b"));
    root.appendChild(b);
    root.insertChild(0, new NamedItem(QStringLiteral("a")));
    root.insertChild(99, new NamedItem(QStringLiteral("d")));
    root.insertChild(2, new NamedItem(QStringLiteral("c")));
    root.insertChild(-5, new NamedItem(QStringLiteral("e")));
    root.insertChild(0, nullptr);
    QCOMPARE(names(&root), QStringLiteral("a b c d e"));
    QCOMPARE(root.childCount(), 5);
    QCOMPARE(b->row(), 1);
    QCOMPARE(b->parentItem(), &root);
    QCOMPARE(root.row(), 0);
}

// removeChild detaches and deletes the child; an item that is not a child is left alone.
void TestVyrWidgets::removeChildFreesItAndIgnoresStrangers()
{
    NamedItem root(QStringLiteral("root"));
    auto* a = new NamedItem(QStringLiteral("a"));
    root.appendChild(a);
    root.appendChild(new NamedItem(QStringLiteral("b")));
    NamedItem stranger(QStringLiteral("s"));
    QCOMPARE(s_alive, 4);
    root.removeChild(a);
    QCOMPARE(s_alive, 3);
    QCOMPARE(names(&root), QStringLiteral("b"));
    root.removeChild(&stranger);
    root.removeChild(nullptr);
    QCOMPARE(s_alive, 3);
    QCOMPARE(root.childCount(), 1);
}

// An item frees its children, and theirs.
void TestVyrWidgets::deletingFreesTheSubtree()
{
    auto* root = new NamedItem(QStringLiteral("root"));
    auto* a = new NamedItem(QStringLiteral("a"));
    root->appendChild(a);
    a->appendChild(new NamedItem(QStringLiteral("a1")));
    a->appendChild(new NamedItem(QStringLiteral("a2")));
    QCOMPARE(s_alive, 4);
    delete root;
    QCOMPARE(s_alive, 0);
}

// index, parent and rowCount follow the items; data shows idText.
void TestVyrWidgets::modelWalksTheItems()
{
    auto* root = new NamedItem(QStringLiteral("root"));
    auto* a = new NamedItem(QStringLiteral("a"));
    auto* b = new NamedItem(QStringLiteral("b"));
    root->appendChild(a);
    root->appendChild(b);
    a->appendChild(new NamedItem(QStringLiteral("a1")));
    b->appendChild(new NamedItem(QStringLiteral("b1")));
    NamedModel model(root);
    QCOMPARE(model.root(), root);
    QCOMPARE(model.rowCount(), 2);
    const QModelIndex ia = model.index(0, 0);
    QCOMPARE(ia.internalPointer(), static_cast<void*>(a));
    QCOMPARE(model.rowCount(ia), 1);
    const QModelIndex ia1 = model.index(0, 0, ia);
    QCOMPARE(ia1.data().toString(), QStringLiteral("a1"));
    QCOMPARE(model.parent(ia1), ia);
    QCOMPARE(model.parent(ia), QModelIndex());
    // A parent that is not the first row keeps its own row number.
    const QModelIndex ib = model.index(1, 0);
    const QModelIndex ib1 = model.index(0, 0, ib);
    QCOMPARE(ib1.data().toString(), QStringLiteral("b1"));
    QCOMPARE(model.parent(ib1), ib);
    QCOMPARE(model.parent(ib1).row(), 1);
    QCOMPARE(model.parent(QModelIndex()), QModelIndex());
    QCOMPARE(model.columnCount(), 1);
    QVERIFY(!model.data(ia, Qt::ToolTipRole).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());
}

// A row or a column out of range gives an invalid index.
void TestVyrWidgets::modelIndexOutOfRangeIsInvalid_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("valid");
    QTest::newRow("0,0") << 0 << 0 << true;
    QTest::newRow("1,0") << 1 << 0 << true;
    QTest::newRow("2,0") << 2 << 0 << false;
    QTest::newRow("-1,0") << -1 << 0 << false;
    QTest::newRow("0,1") << 0 << 1 << false;
    QTest::newRow("1,1") << 1 << 1 << false;
    QTest::newRow("0,-1") << 0 << -1 << false;
}

void TestVyrWidgets::modelIndexOutOfRangeIsInvalid()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(bool, valid);
    auto* root = new NamedItem(QStringLiteral("root"));
    root->appendChild(new NamedItem(QStringLiteral("a")));
    root->appendChild(new NamedItem(QStringLiteral("b")));
    NamedModel model(root);
    QCOMPARE(model.index(row, column).isValid(), valid);
}

// The model is a consistent tree for Qt's model tester.
void TestVyrWidgets::modelPassesTheTester()
{
    auto* root = new NamedItem(QStringLiteral("root"));
    for (int g = 0; g < 3; ++g) {
        auto* group = new NamedItem(QStringLiteral("g%1").arg(g));
        root->appendChild(group);
        for (int r = 0; r < g + 1; ++r)
            group->appendChild(new NamedItem(QStringLiteral("r%1").arg(r)));
    }
    NamedModel model(root);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Q_UNUSED(tester);
}

// The model frees the root and everything under it.
void TestVyrWidgets::modelOwnsTheRoot()
{
    {
        auto* root = new NamedItem(QStringLiteral("root"));
        root->appendChild(new NamedItem(QStringLiteral("a")));
        NamedModel model(root);
        QCOMPARE(s_alive, 2);
    }
    QCOMPARE(s_alive, 0);
}

// Hidden when made; start() shows it over the whole parent, and it follows the parent's size.
void TestVyrWidgets::spinnerHiddenUntilStartAndCoversItsParent()
{
    QWidget parent;
    parent.resize(300, 200);
    parent.show();
    auto* spinner = new WaitingSpinnerWidget(&parent, true, true);
    QVERIFY(!spinner->isVisible());
    QVERIFY(!spinner->isSpinning());
    spinner->start();
    QVERIFY(spinner->isVisible());
    QVERIFY(spinner->isSpinning());
    QCOMPARE(spinner->geometry(), parent.rect());
    parent.resize(400, 250);
    QCOMPARE(spinner->geometry(), QRect(0, 0, 400, 250));
}

// The ring's head advances on a timer while spinning and stands still once stopped.
void TestVyrWidgets::spinnerTurnsWhileSpinningAndStops()
{
    QWidget parent;
    parent.resize(200, 200);
    parent.show();
    WaitingSpinnerWidget spinner(&parent);
    spinner.start();
    const int first = spinner.currentCounter();
    QTRY_VERIFY(spinner.currentCounter() != first);
    spinner.stop();
    QVERIFY(!spinner.isVisible());
    QVERIFY(!spinner.isSpinning());
    const int stopped = spinner.currentCounter();
    QTest::qWait(200);
    QCOMPARE(spinner.currentCounter(), stopped);
}

// Every setter is kept, the client's misspelt border radius setter too; the text shows only when asked.
void TestVyrWidgets::spinnerKeepsItsSettings()
{
    QWidget parent;
    parent.resize(300, 200);
    WaitingSpinnerWidget spinner(&parent, true, true);
    spinner.setInnerRadius(4);
    spinner.setLineLength(15);
    spinner.setLineWidth(6);
    spinner.setBorderRaius(4.0);
    spinner.setOpacity(0.5);
    spinner.setText(QStringLiteral("Wait"), true);
    QCOMPARE(spinner.innerRadius(), 4);
    QCOMPARE(spinner.lineLength(), 15);
    QCOMPARE(spinner.lineWidth(), 6);
    QCOMPARE(spinner.borderRadius(), 4.0);
    QCOMPARE(spinner.opacity(), 0.5);
    QCOMPARE(spinner.text(), QStringLiteral("Wait"));
    QVERIFY(spinner.isTextVisible());
    const QRect withText = spinner.boxRect();
    spinner.setText(QStringLiteral("Wait"), false);
    QVERIFY(spinner.boxRect().height() < withText.height());
    spinner.setOpacity(3.0);
    QCOMPARE(spinner.opacity(), 1.0);
}

// Grabbed: a dark box round the middle of the parent, the parent's own colour outside it.
void TestVyrWidgets::spinnerDrawsItsBoxInTheMiddle()
{
    QWidget parent;
    parent.setAutoFillBackground(true);
    QPalette palette = parent.palette();
    palette.setColor(QPalette::Window, Qt::white);
    parent.setPalette(palette);
    parent.resize(300, 200);
    parent.show();
    WaitingSpinnerWidget spinner(&parent, true, true);
    spinner.setOpacity(1.0);
    spinner.setText(QString(), false);
    spinner.start();
    const QRect box = spinner.boxRect();
    QCOMPARE(box.center(), parent.rect().center());
    const QImage image = parent.grab().toImage();
    QCOMPARE(QColor(image.pixel(box.left() + 3, box.center().y())), QColor(Qt::black));
    QCOMPARE(QColor(image.pixel(5, 5)), QColor(Qt::white));
    // Off centre: the box sits in the top left corner.
    WaitingSpinnerWidget corner(&parent, false, true);
    QCOMPARE(corner.boxRect().topLeft(), QPoint(0, 0));
}

// By default clicks go through to the parent's widgets; asked otherwise, the spinner takes them.
void TestVyrWidgets::spinnerPassesClicksThroughOrNot()
{
    QWidget parent;
    WaitingSpinnerWidget through(&parent, true, true);
    WaitingSpinnerWidget blocking(&parent, true, false);
    QVERIFY(through.testAttribute(Qt::WA_TransparentForMouseEvents));
    QVERIFY(!blocking.testAttribute(Qt::WA_TransparentForMouseEvents));
}

// The message opens at once where it was asked, with that size and text, on top and frameless.
void TestVyrWidgets::messageStandsAtItsPlaceWithItsSize()
{
    SimpleMessagePopup::popupSimpleMessage(QStringLiteral("Gone"), 3000, QSize(328, 184), QPoint(120, 80));
    QCOMPARE(SimpleMessagePopup::openPopups().size(), 1);
    SimpleMessagePopup* popup = SimpleMessagePopup::openPopups().first();
    QVERIFY(popup->isVisible());
    QCOMPARE(popup->pos(), QPoint(120, 80));
    QCOMPARE(popup->size(), QSize(328, 184));
    QCOMPARE(popup->text(), QStringLiteral("Gone"));
    QCOMPARE(popup->durationMs(), 3000);
    QVERIFY2(popup->remainingMs() > 2800 && popup->remainingMs() <= 3000, qPrintable(QString::number(popup->remainingMs())));
    QVERIFY(popup->windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(popup->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(popup->testAttribute(Qt::WA_ShowWithoutActivating));
    delete popup;
    QVERIFY(SimpleMessagePopup::openPopups().isEmpty());
}

// After its time the message closes and deletes itself.
void TestVyrWidgets::messageClosesItselfAfterItsTime()
{
    SimpleMessagePopup::popupSimpleMessage(QStringLiteral("Short"), 100, QSize(100, 40), QPoint(0, 0));
    QPointer<SimpleMessagePopup> popup = SimpleMessagePopup::openPopups().value(0);
    QVERIFY(popup);
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY(!popup);
    QVERIFY(clock.elapsed() >= 90);
    QVERIFY(SimpleMessagePopup::openPopups().isEmpty());
}

namespace {
// Runs the next modal with the answer hook reset and every box closed if no
// answer was queued, so a broken answer fails the test instead of hanging it.
void resetAnswerer()
{
    VyrModalAnswerer::instance()->clear();
    VyrModalAnswerer::instance()->setCloseUnanswered(true);
}

QStringList infoLines;
void collectInfo(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtInfoMsg)
        infoLines.append(text);
}
}

// A queued button answer presses exactly that button of the next box.
void TestVyrWidgets::answererPressesTheBoxButton_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("yes") << int(QMessageBox::Yes);
    QTest::newRow("no") << int(QMessageBox::No);
}

void TestVyrWidgets::answererPressesTheBoxButton()
{
    QFETCH(int, button);
    resetAnswerer();
    VyrModalAnswerer::instance()->pressButton(QMessageBox::StandardButton(button));
    const auto answer = ThemeMessageBox<1>::question(nullptr, "Q", "Delete it?", QMessageBox::Yes | QMessageBox::No,
                                                     QMessageBox::Yes);
    QCOMPARE(int(answer), button);
    QCOMPARE(VyrModalAnswerer::instance()->pendingCount(), 0);
}

// Answers serve the modals in the order queued, and each modal shown is logged.
void TestVyrWidgets::answererServesModalsInOrderAndLogsThem()
{
    resetAnswerer();
    auto* answerer = VyrModalAnswerer::instance();
    answerer->pressButton(QMessageBox::Ok);
    answerer->pressButton(QMessageBox::No);
    QCOMPARE(answerer->pendingCount(), 2);
    QCOMPARE(int(ThemeMessageBox<1>::warning(nullptr, "W", "first", QMessageBox::Ok)), int(QMessageBox::Ok));
    QCOMPARE(int(ThemeMessageBox<1>::question(nullptr, "Q", "second")), int(QMessageBox::No));
    QCOMPARE(answerer->seen(), QStringList({"box W | first", "box Q | second"}));
}

// A menu entry is chosen through the real menu: exec() returns its action and it fires.
void TestVyrWidgets::answererChoosesTheMenuEntry()
{
    resetAnswerer();
    VyrMenuEx menu(false, nullptr);
    QAction* info = menu.addAction("Details");
    QAction* remove = menu.addAction("Delete");
    QSignalSpy removed(remove, &QAction::triggered);
    QSignalSpy informed(info, &QAction::triggered);
    VyrModalAnswerer::instance()->chooseMenuEntry("Delete");
    QCOMPARE(menu.exec(QPoint(10, 10)), remove);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(informed.size(), 0);
    QCOMPARE(VyrModalAnswerer::instance()->seen(), QStringList("menu Details | Delete"));
}

// An entry the menu doesn't have closes it with nothing chosen.
void TestVyrWidgets::answererUnknownEntryClosesTheMenu()
{
    resetAnswerer();
    VyrMenuEx menu(true, nullptr);
    QAction* remove = menu.addAction("Delete");
    QSignalSpy removed(remove, &QAction::triggered);
    VyrModalAnswerer::instance()->chooseMenuEntry("Nothing like it");
    QCOMPARE(menu.exec(QPoint(10, 10)), static_cast<QAction*>(nullptr));
    QCOMPARE(removed.size(), 0);
    QVERIFY(menu.withShadow());
}

// Text goes into the dialog's line edit and Return is pressed there.
void TestVyrWidgets::answererTypesIntoTheDialog()
{
    resetAnswerer();
    VyrCustomNormalDialog dialog(VyrCustomNormalDialog::TitleWithClose, nullptr);
    auto* edit = new QLineEdit;
    QString typed;
    QObject::connect(edit, &QLineEdit::returnPressed, &dialog, [&]() {
        typed = edit->text();
        dialog.accept();
    });
    dialog.setCenterWidget(edit, true);
    VyrModalAnswerer::instance()->enterText("s3cret");
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(typed, QString("s3cret"));
}

// A handler runs from the event loop while the widget's exec() is running.
void TestVyrWidgets::answererHandlerRunsInsideExec()
{
    resetAnswerer();
    VyrCustomNormalDialog dialog(VyrCustomNormalDialog::NoTitleBar, nullptr);
    bool wasVisible = false;
    VyrModalAnswerer::instance()->answerWith([&](QWidget* modal) {
        wasVisible = modal == &dialog && modal->isVisible();
        dialog.done(7);
    });
    QCOMPARE(dialog.exec(), 7);
    QVERIFY(wasVisible);
}

// With nothing queued and closing asked for, the box is closed (Escape's answer).
void TestVyrWidgets::answererClosesUnansweredWhenAsked()
{
    resetAnswerer();
    const auto answer = ThemeMessageBox<1>::question(nullptr, "Q", "anyone?", QMessageBox::Yes | QMessageBox::No,
                                                     QMessageBox::Yes);
    QVERIFY(answer != QMessageBox::Yes);
    QCOMPARE(VyrModalAnswerer::instance()->seen().size(), 1);
}

// clear() drops queued answers and the log of modals seen.
void TestVyrWidgets::answererClearDropsAnswersAndLog()
{
    resetAnswerer();
    auto* answerer = VyrModalAnswerer::instance();
    answerer->pressButton(QMessageBox::Ok);
    ThemeMessageBox<1>::warning(nullptr, "W", "x");
    answerer->pressButton(QMessageBox::Ok);
    QCOMPARE(answerer->pendingCount(), 1);
    answerer->clear();
    QCOMPARE(answerer->pendingCount(), 0);
    QVERIFY(answerer->seen().isEmpty());
}

// The static helpers log title and text at info level in the constructor, before and after exec().
void TestVyrWidgets::messageBoxLogsAroundExec()
{
    resetAnswerer();
    VyrModalAnswerer::instance()->pressButton(QMessageBox::Ok);
    infoLines.clear();
    QtMessageHandler previous = qInstallMessageHandler(collectInfo);
    ThemeMessageBox<1>::warning(nullptr, "Title A", "Text B", QMessageBox::Ok, QMessageBox::NoButton);
    qInstallMessageHandler(previous);
    QCOMPARE(infoLines.size(), 3);
    for (const QString& line : qAsConst(infoLines)) {
        QVERIFY2(line.contains("Title A") && line.contains("Text B"), qPrintable(line));
    }
    QVERIFY(infoLines.at(1).contains("before exec"));
    QVERIFY(infoLines.at(2).contains("after exec"));
}

// The helpers' boxes are made on the heap and go when closed.
void TestVyrWidgets::messageBoxDeletesItselfOnClose()
{
    resetAnswerer();
    QPointer<QMessageBox> seenBox;
    VyrModalAnswerer::instance()->answerWith([&](QWidget* modal) {
        seenBox = qobject_cast<QMessageBox*>(modal);
        VyrModalAnswerer::pressButtonOn(modal, QMessageBox::Ok);
    });
    ThemeMessageBox<1>::warning(nullptr, "W", "gone");
    // exec() itself deletes a box made to delete on close.
    QVERIFY(seenBox.isNull());
    QCOMPARE(VyrModalAnswerer::instance()->seen(), QStringList("box W | gone"));
}

// Theme 1 is the client's look; icon and buttons are those asked for.
void TestVyrWidgets::messageBoxClientThemeAndButtons()
{
    VyrMessageBox box(nullptr, VyrMessageBox::ClientTheme, "T", "X", QMessageBox::Yes | QMessageBox::No,
                      QMessageBox::Yes, QSharedPointer<CustomMessageBoxPod>());
    QCOMPARE(box.theme(), VyrMessageBox::ClientTheme);
    QVERIFY(!box.styleSheet().isEmpty());
    QVERIFY(box.button(QMessageBox::Yes));
    QVERIFY(box.button(QMessageBox::No));
    QVERIFY(!box.button(QMessageBox::Ok));
    QCOMPARE(box.defaultButton(), box.button(QMessageBox::Yes));
    auto pod = QSharedPointer<CustomMessageBoxPod>::create();
    pod->okText = "Fine";
    VyrMessageBox custom(nullptr, VyrMessageBox::PlainTheme, "T", "X", QMessageBox::Ok, QMessageBox::NoButton, pod);
    QCOMPARE(custom.button(QMessageBox::Ok)->text(), QString("Fine"));
    QVERIFY(custom.styleSheet().isEmpty());
}

// The dialog shows the title it is given and owns its centre widget.
void TestVyrWidgets::dialogTitleAndCenterWidget()
{
    VyrCustomNormalDialog dialog(VyrCustomNormalDialog::TitleOnly, nullptr);
    QPointer<QWidget> center = new QWidget;
    center->setFixedSize(200, 80);
    dialog.setCenterWidget(center, true);
    dialog.setTitleText("Enter it");
    QCOMPARE(dialog.titleText(), QString("Enter it"));
    QCOMPARE(dialog.windowTitle(), QString("Enter it"));
    QCOMPARE(dialog.centerWidget(), center.data());
    QCOMPARE(center->parentWidget(), &dialog);
    QVERIFY(!dialog.closeButton());
    QVERIFY(dialog.height() >= 80);
}

// Type 2's close button rejects the dialog.
void TestVyrWidgets::dialogCloseButtonRejects()
{
    resetAnswerer();
    VyrCustomNormalDialog dialog(VyrCustomNormalDialog::TitleWithClose, nullptr);
    QVERIFY(dialog.closeButton());
    VyrModalAnswerer::instance()->answerWith([&](QWidget*) { dialog.closeButton()->click(); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
}

// The tree view is frameless with a transparent viewport, like the list view.
void TestVyrWidgets::treeViewHasNoFrame()
{
    VyrTreeView view;
    QCOMPARE(view.frameShape(), QFrame::NoFrame);
    QVERIFY(!view.viewport()->autoFillBackground());
    QVERIFY(!view.verticalScrollBar()->styleSheet().isEmpty());
}

QTEST_MAIN(TestVyrWidgets)
#include "tst_vyrwidgets.moc"
