#include "DragOver.h"
#include "DraggedRows.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QWindow>

#include <utility>

using namespace DraggedRows;
using namespace ShownWidgets;

namespace {

class ChildrenAdded : public QObject {
public:
    explicit ChildrenAdded(QObject *parent) { parent->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::ChildAdded ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

    int count = 0;
};

} // namespace

class TestDragOfRows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void slotsMoveBetweenTheOthers_data()
    {
        QTest::addColumn<QList<int>>("dragged");
        QTest::addColumn<int>("row");
        QTest::addColumn<qreal>("part");
        QTest::addColumn<QString>("expected");
        QTest::newRow("down") << QList<int>{0} << 2 << lowerHalf << QStringLiteral("B C A D E");
        QTest::newRow("up") << QList<int>{4} << 1 << upperHalf << QStringLiteral("A E B C D");
        QTest::newRow("onto itself") << QList<int>{2} << 2 << upperHalf << QStringLiteral("A B C D E");
        QTest::newRow("just below itself") << QList<int>{2} << 2 << lowerHalf << QStringLiteral("A B C D E");
        QTest::newRow("to the end") << QList<int>{1} << 4 << lowerHalf << QStringLiteral("A C D E B");
        QTest::newRow("below the rows") << QList<int>{1} << -1 << upperHalf << QStringLiteral("A C D E B");
        QTest::newRow("several apart") << QList<int>{0, 3} << 1 << lowerHalf << QStringLiteral("B A D C E");
        QTest::newRow("several, dragged backwards")
            << QList<int>{4, 1} << 0 << upperHalf << QStringLiteral("B E A C D");
        QTest::newRow("all") << QList<int>{0, 1, 2, 3, 4} << 2 << lowerHalf << QStringLiteral("A B C D E");
    }

    void slotsMoveBetweenTheOthers()
    {
        QFETCH(const QList<int>, dragged);
        QFETCH(const int, row);
        QFETCH(const qreal, part);
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B C D E"));
        ContentListView *list = window->contentList();
        WindowFixture::click(list, dragged.first());
        const QSet<QUuid> selected = window->content.selections();
        const QPoint point = row < 0 ? belowRows(list) : pointIn(list, row, part);
        DragOver drag(list->viewport(), rows(list, dragged));
        QVERIFY(drag.moveTo(point));
        QCOMPARE(list->dropMark().kind, DropMark::Insert);
        QCOMPARE(list->dropMark().row, row < 0 ? 5 : row + (part > 0.5 ? 1 : 0));
        QVERIFY(drag.dropAt(point));
        WindowFixture::settle();
        QTEST(window->slotNames(), "expected");
        for (int i = 0; i < 5; ++i) {
            const VelgorContentPatch &slot = window->content.velgorContentPatchList().at(i);
            QCOMPARE(std::pair(slot.bank, slot.number), std::pair(i / 3 + 1, i % 3 + 1));
            const bool isSelected = list->selectionModel()->isSelected(list->model()->index(i, 0));
            QCOMPARE(isSelected, selected.contains(slot.id));
        }
        QCOMPARE(window->content.selections(), selected);
    }

    void aLibraryPatchMovesBetweenTheOthers_data()
    {
        QTest::addColumn<QList<int>>("dragged");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<int>("row");
        QTest::addColumn<qreal>("part");
        QTest::addColumn<QString>("expected");
        QTest::newRow("onto itself") << QList<int>{1} << "" << 1 << upperHalf << QStringLiteral("Ann Bea Abe Ada");
        QTest::newRow("just below itself")
            << QList<int>{1} << "" << 1 << lowerHalf << QStringLiteral("Ann Bea Abe Ada");
        QTest::newRow("to the end") << QList<int>{0} << "" << 3 << lowerHalf << QStringLiteral("Bea Abe Ada Ann");
        QTest::newRow("below the rows") << QList<int>{0} << "" << -1 << lowerHalf << QStringLiteral("Bea Abe Ada Ann");
        QTest::newRow("to the top") << QList<int>{3} << "" << 0 << upperHalf << QStringLiteral("Ada Ann Bea Abe");
        QTest::newRow("the shown row counts in the whole list")
            << QList<int>{0} << "a" << 1 << lowerHalf << QStringLiteral("Bea Ann Abe Ada");
        QTest::newRow("several stay") << QList<int>{0, 1} << "" << 3 << lowerHalf << QStringLiteral("Ann Bea Abe Ada");
    }

    void aLibraryPatchMovesBetweenTheOthers()
    {
        QFETCH(const QList<int>, dragged);
        QFETCH(const QString, filter);
        QFETCH(const int, row);
        QFETCH(const qreal, part);
        QFETCH(const QString, expected);
        const auto window = WindowFixture::shown(QStringLiteral("Ann Bea Abe Ada"));
        LibraryListView *list = window->libraryList();
        QTest::keyClicks(named<QLineEdit>(*window->window, QStringLiteral("Filter by name")), filter);
        WindowFixture::click(list, dragged.first());
        const QString selected = window->selectedName();
        const bool isTaken = drop(list, dragged, list, row < 0 ? belowRows(list) : pointIn(list, row, part));
        QCOMPARE(isTaken, dragged.size() == 1);
        QCOMPARE(TestPatches::names(window->library.patches()).join(u' '), expected);
        QCOMPARE(window->library.order(), TestPatches::ids(window->library.patches()));
        QCOMPARE(window->calls.calls.size(), expected == QStringLiteral("Ann Bea Abe Ada") ? 0 : 1);
        QCOMPARE(window->selectedName(), selected);
        const QModelIndexList indexes = list->selectionModel()->selectedIndexes();
        QCOMPARE(indexes.size(), 1);
        QCOMPARE(indexes.first().data().toString(), selected);
    }

    void aListScrollsWhileADragIsHeldAtItsEdge()
    {
        QStringList names;
        for (int i = 0; i < 99; ++i) {
            names.append(QStringLiteral("S%1").arg(i));
        }
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), names.join(u' '));
        const PatchListView *const list = window->contentList();
        const QScrollBar *const bar = list->verticalScrollBar();
        DragOver drag(list->viewport(), rows(window->libraryList(), {0}));
        QVERIFY(drag.moveTo(QPoint(100, list->viewport()->height() - 5)));
        QTRY_VERIFY(bar->value() > 200);
        const int row = list->indexAt(QPoint(100, list->viewport()->height() - 5)).row();
        QVERIFY(qAbs(list->dropMark().row - row) <= 1);
        QVERIFY(drag.moveTo(QPoint(100, 5)));
        QTRY_COMPARE(bar->value(), 0);
        QVERIFY(drag.moveTo(QPoint(100, list->viewport()->height() - 5)));
        QTRY_VERIFY(bar->value() > 0);
        drag.leave();
        const int left = bar->value();
        QTest::qWait(100);
        QCOMPARE(bar->value(), left);
    }

    void aSlotThatIsGoneMeanwhileIsLeftOut()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        DragOver toLibrary(window->libraryList()->viewport(), rows(window->contentList(), {0}));
        DragOver toContent(window->contentList()->viewport(), rows(window->contentList(), {0}));
        QVERIFY(toLibrary.moveTo(pointIn(window->libraryList(), 0)));
        toLibrary.leave();
        window->importList(QStringLiteral("C D"));
        QVERIFY(!toLibrary.dropAt(pointIn(window->libraryList(), 0)));
        QVERIFY(!toContent.dropAt(pointIn(window->contentList(), 1)));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead"));
        QCOMPARE(window->slotNames(), QStringLiteral("C D"));
        QVERIFY(!window->library.selection());
        QVERIFY(window->calls.calls.isEmpty());
    }

    void aPatchThatIsGoneMeanwhileIsNotPlaced()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
        DragOver drag(window->contentList()->viewport(), rows(window->libraryList(), {0}));
        window->library.setSelection(window->library.patches().first().id());
        window->libraryEditor.deleteSelected();
        QVERIFY(!drag.dropAt(pointIn(window->contentList(), 0)));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
    }

    void aClickThatEndsAwayFromItsRowLeavesNoDragBehind()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B C"));
        QWindow *const native = window->window->windowHandle();
        const QPoint row =
            window->libraryList()->viewport()->mapTo(window->window.get(), pointIn(window->libraryList(), 1));
        // A drag belongs to its list, and this platform ends it at once.
        ChildrenAdded drags(window->libraryList());
        QTest::mousePress(native, Qt::LeftButton, {}, row);
        QTest::mouseRelease(native, Qt::LeftButton, {}, {1, 1});
        WindowFixture::settle();
        QCOMPARE(drags.count, 0);
        // The second press of a double click is an event of its own.
        for (const QPoint &released : {row, QPoint(1, 1)}) {
            QTest::mousePress(native, Qt::LeftButton, {}, row);
            QTest::mouseRelease(native, Qt::LeftButton, {}, released);
        }
        WindowFixture::settle();
        QCOMPARE(drags.count, 0);
        QTest::mousePress(native, Qt::LeftButton, {}, row);
        QTest::mouseMove(native, {1, 1});
        WindowFixture::settle();
        QCOMPARE(drags.count, 1);
        QTest::mouseRelease(native, Qt::LeftButton, {}, {1, 1});
        WindowFixture::key(window->libraryList(), Qt::Key_Delete, Qt::ControlModifier);
        QVERIFY(!window->message().isEmpty());
    }
};

VELGOR_WIDGET_TEST(TestDragOfRows)
#include "tst_DragOfRows.moc"
