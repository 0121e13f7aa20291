#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "WindowFixture.h"
#include "WorkerGate.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>

using namespace ShownWidgets;
using namespace ShownWidgets;

namespace {

const QString noSelection = QStringLiteral("Select item in library to see details");

void clickTick(const WindowFixture &window, int row)
{
    constexpr int tickMiddle = 21;
    LibraryListView *list = window.libraryList();
    const QRect rect = list->visualRect(list->model()->index(row, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(tickMiddle, rect.center().y()));
    WindowFixture::settle();
}

QString ticks(const WindowFixture &window)
{
    return TestPatches::names(window.library.getMultiSelection()).join(u' ');
}

} // namespace

class TestLibraryRegion : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePlaceholderCountsAsNothing()
    {
        const auto window = WindowFixture::shown({});
        QCOMPARE(window->libraryList()->model()->rowCount(), 1);
        QVERIFY(window->isSaid(QStringLiteral("Showing: 0 element out of 0")));
        QCOMPARE(window->labelOf(QStringLiteral("Select")), QStringLiteral("Select (0)"));
        WindowFixture::click(window->libraryList(), 0);
        for (const char *button : {"Sort", "Select", "Delete", "Duplicate"}) {
            QVERIFY2(!window->isEnabled(QLatin1String(button)), button);
        }
        QVERIFY(!window->menuEntry(QStringLiteral("Select All"))->isEnabled());
        QVERIFY(!window->isSaid(noSelection));
    }

    void oneMatchIsOneElement()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Lean Bells Choir"));
        QVERIFY(window->isSaid(QStringLiteral("Showing: 4 elements out of 4")));
        QTest::keyClicks(window->field("Filter by name"), QStringLiteral("bell"));
        QVERIFY(window->isSaid(QStringLiteral("Showing: 1 element out of 4")));
        QTest::keyClicks(window->field("Filter by name"), QStringLiteral("x"));
        QVERIFY(window->isSaid(QStringLiteral("Showing: 0 element out of 4")));
        QVERIFY(window->libraryRows().isEmpty());
    }

    void everyKeystrokeNarrowsTheListAndClearsTheSelection()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Lean Bells"));
        QStringList lists;
        for (const QChar letter : QStringLiteral("lead")) {
            WindowFixture::click(window->libraryList(), 0);
            QVERIFY(window->library.selection());
            QTest::keyClick(window->field("Filter by name"), letter.toLatin1());
            lists.append(window->libraryRows());
            QVERIFY(!window->library.selection());
            QCOMPARE(window->selectedRows(window->libraryList()), QString());
            QVERIFY(window->isSaid(noSelection));
        }
        QCOMPARE(lists.join(u'/'), QStringLiteral("Lead Lean Bells/Lead Lean/Lead Lean/Lead"));
    }

    void guitarTwiceGivesTheFormerListBack()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->press(QStringLiteral("Guitar")));
        QVERIFY(window->press(QStringLiteral("Filter: Guitar")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Bells"));
        QVERIFY(window->press(QStringLiteral("Filter: Guitar")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells"));
    }

    void sortGoesUpBackAndDownAndDeselects()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("One Two"));
        WindowFixture::click(window->contentList(), 1);
        QStringList lists;
        for (int i = 0; i < 4; ++i) {
            WindowFixture::click(window->libraryList(), 0);
            QVERIFY(window->press(QStringLiteral("Sort")));
            lists.append(window->libraryRows());
            QVERIFY(!window->library.selection());
            QCOMPARE(window->selectedRows(window->libraryList()), QString());
            QCOMPARE(window->selectedRows(window->contentList()), QStringLiteral("1"));
        }
        QCOMPARE(
            lists.join(u'/'), QStringLiteral("Bells Choir Lead/Lead Bells Choir/Lead Choir Bells/Bells Choir Lead"));
    }

    void aSinglePatchIsNotSorted()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        QVERIFY(!window->isEnabled(QStringLiteral("Sort")));
        QVERIFY(window->isEnabled(QStringLiteral("Select")));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(!window->menuEntry(QStringLiteral("Find Similar Patches"))->isEnabled());
        QVERIFY(window->menuEntry(QStringLiteral("Export One Patch"))->isEnabled());
    }

    void tickingIsCountedAndBeginsAfreshEachTime()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"));
        clickTick(*window, 1);
        QCOMPARE(window->labelOf(QStringLiteral("Select")), QStringLiteral("Select (0)"));
        QVERIFY(window->press(QStringLiteral("Select")));
        clickTick(*window, 1);
        clickTick(*window, 2);
        clickTick(*window, 0);
        clickTick(*window, 2);
        QCOMPARE(ticks(*window), QStringLiteral("Lead Bells"));
        QCOMPARE(window->labelOf(QStringLiteral("Select")), QStringLiteral("Select (2)"));
        QVERIFY(window->menuEntry(QStringLiteral("Delete patches")) != nullptr);
        QVERIFY(window->press(QStringLiteral("Select")));
        QCOMPARE(window->labelOf(QStringLiteral("Select")), QStringLiteral("Select (0)"));
        QVERIFY(window->press(QStringLiteral("Select")));
        QCOMPARE(ticks(*window), QString());
        QVERIFY(window->menuEntry(QStringLiteral("Delete patch")) != nullptr);
    }

    void selectAllAndFindSimilarShowTheirTicks()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"));
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->choose(QStringLiteral("Duplicate Patch")));
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->choose(QStringLiteral("Find Similar Patches")));
        QCOMPARE(window->labelOf(QStringLiteral("Select")), QStringLiteral("Select (2)"));
        QCOMPARE(window->libraryList()->model()->index(3, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QVERIFY(window->choose(QStringLiteral("Select All")));
        QCOMPARE(window->labelOf(QStringLiteral("Select")), QStringLiteral("Select (4)"));
    }

    void deletingAsksWithTheNumberOfTicks_data()
    {
        QTest::addColumn<QList<int>>("ticked");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("next");
        QTest::newRow("selected") << QList<int>{} << QStringLiteral("Do you really want to delete 1 patch?")
                                  << QStringLiteral("Lead Choir") << "remove 1" << QStringLiteral("Choir");
        QTest::newRow("one tick") << QList<int>{2} << QStringLiteral("Do you really want to delete 1 patches?")
                                  << QStringLiteral("Lead Bells") << "remove 1" << QStringLiteral("Bells");
        QTest::newRow("two ticks") << QList<int>{0, 2} << QStringLiteral("Do you really want to delete 2 patches?")
                                   << QStringLiteral("Bells") << "remove 2" << QStringLiteral("Bells");
    }

    void deletingAsksWithTheNumberOfTicks()
    {
        QFETCH(const QList<int>, ticked);
        QFETCH(const QString, title);
        QFETCH(const QString, call);
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"));
        WindowFixture::click(window->libraryList(), 1);
        if (!ticked.isEmpty()) {
            QVERIFY(window->press(QStringLiteral("Select")));
            for (const int row : ticked) {
                clickTick(*window, row);
            }
        }
        QVERIFY(window->press(QStringLiteral("Delete")));
        QCOMPARE(window->message(), title);
        QVERIFY(window->answer(QStringLiteral("No")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells Choir"));
        QVERIFY(window->calls.calls.isEmpty() && !window->library.deleteConfirm());
        QVERIFY(window->choose(ticked.isEmpty() ? QStringLiteral("Delete patch") : QStringLiteral("Delete patches")));
        QCOMPARE(window->message(), title);
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QTEST(window->libraryRows(), "left");
        QCOMPARE(window->library.isMultiSel(), !ticked.isEmpty());
        QTEST(window->selectedName(), "next");
        const int nextRow = static_cast<int>(window->library.getPatchFromId(window->library.selection())->index);
        QCOMPARE(window->selectedRows(window->libraryList()), QString::number(nextRow));
        QVERIFY(!window->isSaid(noSelection));
        QCOMPARE(window->calls.calls.first(2), (QStringList{call, QStringLiteral("save")}));
        window->storage.finish();
        QCOMPARE(window->loadedNames().join(u' '), window->libraryRows());
    }

    void deletingWaitsForNoDisk()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"));
        WindowFixture::click(window->libraryList(), 1);
        WorkerGate gate(window->storage.worker());
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Choir"));
        QVERIFY(window->storage.isSaving());
        QTRY_COMPARE(window->libraryStatus(), QStringLiteral("Saving changes"));
        WindowFixture::click(window->libraryList(), 0);
        QCOMPARE(window->selectedName(), QStringLiteral("Lead"));
        gate.open();
        QTRY_VERIFY(!window->storage.isSaving());
        QCOMPARE(window->loadedNames().join(u' '), QStringLiteral("Lead Choir"));
    }

    void theLastDeletionLeavesTheEmptyLibrary()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QVERIFY(window->isSaid(QStringLiteral("Showing: 0 element out of 0")));
        QVERIFY(!window->isSaid(noSelection));
        QVERIFY(!window->isEnabled(QStringLiteral("Delete")));
        QVERIFY(!window->isEnabled(QStringLiteral("Select")));
    }

    void deletingInAFilteredListGoesOnToTheNextRowThatIsShown()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Lean Choir Leap"));
        QTest::keyClicks(window->field("Filter by name"), QStringLiteral("lea"));
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Leap"));
        QCOMPARE(window->selectedRows(window->libraryList()), QStringLiteral("1"));
        QCOMPARE(window->selectedName(), QStringLiteral("Leap"));
        QVERIFY(window->isSaid(QStringLiteral("Showing: 2 elements out of 4")));
    }

    void detailsStayWhileTheEditedPatchFallsOutOfTheFilter()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Lean Bells"));
        QTest::keyClicks(window->field("Filter by name"), QStringLiteral("lea"));
        WindowFixture::click(window->libraryList(), 0);
        QLineEdit *name = window->field("Name");
        name->setFocus();
        name->selectAll();
        QTest::keyClicks(name, QStringLiteral("Organ"));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lean"));
        QCOMPARE(name->text(), QStringLiteral("Organ"));
        QVERIFY(name->hasFocus());
        QCOMPARE(window->selectedName(), QStringLiteral("Organ"));
        QCOMPARE(window->selectedRows(window->libraryList()), QString());
        QVERIFY(window->isSaid(QStringLiteral("Showing: 1 element out of 3")));
        name->selectAll();
        QTest::keyClicks(name, QStringLiteral("Leaf"));
        QCOMPARE(window->libraryRows(), QStringLiteral("Leaf Lean"));
        QCOMPARE(window->selectedRows(window->libraryList()), QStringLiteral("0"));
        QVERIFY(name->hasFocus());
    }

    void anEditReachesTheSlotsAndIsSavedOnce()
    {
        StoreFixture store({{WindowFixture::patch(QStringLiteral("Lead"))}, std::nullopt});
        WindowFixture window(store, std::chrono::milliseconds(50));
        QVERIFY(window.open());
        window.importList(QStringLiteral("Lead Bells"));
        WindowFixture::click(window.libraryList(), 0);
        QLineEdit *name = window.field("Name");
        name->end(false);
        QTest::keyClicks(name, QStringLiteral("er"));
        QVERIFY(window.press(QStringLiteral("Crunch")));
        QCOMPARE(window.slotNames(), QStringLiteral("Leader Bells"));
        QCOMPARE(window.libraryStatus(), QStringLiteral("Saving changes"));
        QTRY_COMPARE(window.libraryStatus(), QStringLiteral("All changes saved"));
        const QStringList lines = window.lines.take();
        QCOMPARE(lines.filter(QStringLiteral("Saving in progress...")).size(), 1);
        const QList<VelgorPatch> stored = store.loaded();
        QVERIFY(stored.first().crunch);
        QCOMPARE(stored.first().name, QStringLiteral("Leader"));
    }

    void duplicateAddsACopyAtTheEndAndNeedsASelection()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        QVERIFY(!window->isEnabled(QStringLiteral("Duplicate")));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Duplicate")));
        QCOMPARE(window->library.count(), 3);
        QVERIFY(window->libraryRows().startsWith(QStringLiteral("Lead Bells Lead")));
        QCOMPARE(window->calls.calls, QStringList{QStringLiteral("delayedSave")});
    }

    void theDefaultPatchIsSetFromTheMenuAndTheDetails()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        QVERIFY(!window->menuEntry(QStringLiteral("Set as Default Patch"))->isEnabled());
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->choose(QStringLiteral("Set as Default Patch")));
        QCOMPARE(window->library.defaultPatch(), window->library.selection());
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Default")));
        QCOMPARE(window->library.defaultPatch(), std::optional(window->library.patches().first().id()));
    }
};

VELGOR_WIDGET_TEST(TestLibraryRegion)
#include "tst_LibraryRegion.moc"
