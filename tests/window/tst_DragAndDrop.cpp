#include "DragOver.h"
#include "DraggedRows.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>

#include <utility>

using namespace DraggedRows;
using namespace ShownWidgets;

namespace {

void tick(WindowFixture &window, const QList<qsizetype> &ticked)
{
    window.libraryEditor.flipMultiSelection();
    for (const qsizetype row : ticked) {
        window.libraryEditor.flipTick(window.library.patches().at(row).id());
    }
    WindowFixture::settle();
}

} // namespace

class TestDragAndDrop : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLibraryPatchReplacesTheSlotUnderIt()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B C D E F G"));
        const auto before = window->content.velgorContentPatchList();
        QVERIFY(drop(window->libraryList(), {1}, window->contentList(), pointIn(window->contentList(), 5, lowerHalf)));
        QCOMPARE(window->slotNames(), QStringLiteral("A B C D E Bells G"));
        const auto &after = window->content.velgorContentPatchList();
        QCOMPARE(std::pair(after.at(5).bank, after.at(5).number), std::pair(2, 3));
        for (qsizetype row = 0; row < after.size(); ++row) {
            QCOMPARE(after.at(row).patch.id() == before.at(row).patch.id(), row != 5);
        }
        QCOMPARE(window->message(), QString());
        QCOMPARE(window->library.count(), 2);
    }

    void theSlotThatWouldBeReplacedIsHighlighted()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B C D"));
        ContentListView *list = window->contentList();
        const QImage before = list->viewport()->grab().toImage();
        DragOver drag(list->viewport(), rows(window->libraryList(), {0}));
        QVERIFY(drag.moveTo(pointIn(list, 2)));
        QCOMPARE(list->dropMark(), (DropMark{DropMark::Replace, 2, 1, {QStringLiteral("Lead")}}));
        QCOMPARE(window->status(), QStringLiteral("Replaces slot 1.3"));
        const QImage during = list->viewport()->grab().toImage();
        const auto strip = [list](const QImage &image, int row) {
            return image.copy(list->visualRect(list->model()->index(row, 0)).adjusted(0, 4, 0, -4));
        };
        QVERIFY(strip(during, 2) != strip(before, 2));
        QCOMPARE(strip(during, 1), strip(before, 1));
        QVERIFY(drag.moveTo(pointIn(list, 0)));
        QCOMPARE(list->dropMark().row, 0);
        drag.leave();
        QCOMPARE(list->dropMark(), DropMark());
        QCOMPARE(window->libraryStatus(), QStringLiteral("All changes saved"));
        QCOMPARE(list->viewport()->grab().toImage(), before);
        QVERIFY(drag.dropAt(pointIn(list, 0)));
        QCOMPARE(list->dropMark(), DropMark());
    }

    void ofSeveralLibraryPatchesOnlyTheFirstIsPlaced()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B C"));
        QVERIFY(drop(window->libraryList(), {1, 0}, window->contentList(), pointIn(window->contentList(), 0)));
        QCOMPARE(window->slotNames(), QStringLiteral("Bells B C"));
    }

    void tickedPatchesAreCutAtTheLastSlot()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir Drum"), QStringLiteral("A B C D"));
        tick(*window, {3, 0, 1});
        DragOver drag(window->contentList()->viewport(), rows(window->libraryList(), {1}));
        QVERIFY(drag.moveTo(pointIn(window->contentList(), 2)));
        const QStringList names{QStringLiteral("Lead"), QStringLiteral("Bells")};
        const DropMark expected{.kind = DropMark::Replace,
            .row = 2,
            .count = 2,
            .names = names,
            .leftOut = 1,
            .firstLeftOut = {QStringLiteral("Drum")}};
        QCOMPARE(window->contentList()->dropMark(), expected);
        QVERIFY(drag.dropAt(pointIn(window->contentList(), 2)));
        WindowFixture::settle();
        QCOMPARE(window->slotNames(), QStringLiteral("A B Lead Bells"));
        QVERIFY(!window->library.isMultiSel());
        QVERIFY(named<QAbstractButton>(*window->window, QStringLiteral("Select"))->text().endsWith(u"(0)"));
    }

    void belowTheLastSlotAPatchIsRefused()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        QVERIFY(!drop(window->libraryList(), {0}, window->contentList(), belowRows(window->contentList())));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
        DragOver drag(window->contentList()->viewport(), rows(window->libraryList(), {0}));
        QVERIFY(drag.moveTo(pointIn(window->contentList(), 1)));
        QVERIFY(!drag.moveTo(belowRows(window->contentList())));
        QCOMPARE(window->contentList()->dropMark(), DropMark());
    }

    void anEmptyListTakesNoPatch()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        QVERIFY(!drop(window->libraryList(), {0}, window->contentList(), QPoint(20, 20)));
        QCOMPARE(window->content.velgorContentPatchList().size(), 0);
        QCOMPARE(window->message(), QString());
    }

    void slotsAreKeptAtTheEndWhereverTheyAreDropped_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("on the first row") << 0;
        QTest::newRow("below the rows") << -1;
    }

    void slotsAreKeptAtTheEndWhereverTheyAreDropped()
    {
        QFETCH(const int, row);
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B C D"));
        LibraryListView *list = window->libraryList();
        const QPoint point = row < 0 ? belowRows(list) : pointIn(list, row);
        DragOver drag(list->viewport(), rows(window->contentList(), {2, 0, 3}));
        QVERIFY(drag.moveTo(point));
        QCOMPARE(list->dropMark().kind, DropMark::WholeList);
        QVERIFY(drag.dropAt(point));
        WindowFixture::settle();
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells A C D"));
        QCOMPARE(window->selectedName(), QStringLiteral("A"));
        QCOMPARE(window->selectedRows(list), QStringLiteral("2"));
        QVERIFY(window->lines.lines().contains(QStringLiteral("Select %1").arg(*window->library.selection())));
        QCOMPARE(window->calls.calls, QStringList{QStringLiteral("delayedSave")});
        QCOMPARE(window->library.order(), TestPatches::ids(window->library.patches()));
        QCOMPARE(window->slotNames(), QStringLiteral("A B C D"));
    }

    void thePlaceholderGivesWayToTheFirstPatch()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("A B"));
        LibraryListView *list = window->libraryList();
        QVERIFY(!list->model()->flags(list->model()->index(0, 0)).testFlag(Qt::ItemIsDragEnabled));
        QVERIFY(!drop(list, {0}, window->contentList(), pointIn(window->contentList(), 0)));
        QVERIFY(!drop(list, {0}, list, belowRows(list)));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
        QVERIFY(drop(window->contentList(), {1}, list, belowRows(list)));
        QCOMPARE(window->libraryRows(), QStringLiteral("B"));
        QVERIFY(window->isSaid(QStringLiteral("Showing: 1 element out of 1")));
    }

    void aKnownPatchIsNotDoubledButSelected()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A Bells"));
        QVERIFY(drop(window->contentList(), {1}, window->libraryList(), pointIn(window->libraryList(), 0)));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells"));
        QCOMPARE(window->selectedName(), QStringLiteral("Bells"));
    }

    void aDropThatMixesFirmwareVersionsWarnsAtOnce()
    {
        StoreFixture store(
            {{WindowFixture::patch(QStringLiteral("Old")), WindowFixture::patch(QStringLiteral("New"), "V1.30")}, {}});
        WindowFixture window(store);
        QVERIFY(window.open());
        window.importList(QStringLiteral("A B"));
        QVERIFY(drop(window.libraryList(), {0}, window.contentList(), pointIn(window.contentList(), 0)));
        QCOMPARE(window.message(), QString());
        QVERIFY(drop(window.libraryList(), {1}, window.contentList(), pointIn(window.contentList(), 1)));
        QCOMPARE(window.slotNames(), QStringLiteral("Old New"));
        QCOMPARE(window.message(),
            QStringLiteral("You should not mix various versions of Velgor firmware in a preset file"));
        QVERIFY(window.answer(QStringLiteral("OK")));
        QVERIFY(!window.content.mixVersions());
    }
};

VELGOR_WIDGET_TEST(TestDragAndDrop)
#include "tst_DragAndDrop.moc"
