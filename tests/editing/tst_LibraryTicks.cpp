#include "DeskFixture.h"
#include "TestProgram.h"

#include <QTest>

using TestPatches::imported;
using TestPatches::names;

namespace {

const QString abc = QStringLiteral("A B C");

} // namespace

class TestLibraryTicks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void deletingTakesTheSelectedPatchWithoutTicking()
    {
        DeskFixture desk(abc);
        desk.library.setSelection(desk.idOf(1));
        const quint64 id = desk.idOf(1);
        desk.libraryEditor.setDefaultPatch(id);
        QVERIFY(desk.libraryEditor.isDefaultPatch(id));
        desk.calls.calls.clear();
        desk.libraryEditor.deleteSelected();
        QCOMPARE(desk.calls.calls, (QStringList{QStringLiteral("remove %1").arg(id), QStringLiteral("save A,C")}));
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
        QVERIFY(!desk.libraryEditor.isDefaultPatch(id));
        QVERIFY(!desk.library.multiSelections().isTicked(id));
    }

    void deletingTakesTheTickedPatchesAndNotTheSelectedOne()
    {
        DeskFixture desk(QStringLiteral("A B C D"));
        desk.tick({0, 2});
        desk.library.setSelection(desk.idOf(1));
        desk.libraryEditor.deleteSelected();
        QCOMPARE(desk.shown(), QStringLiteral("B D"));
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
        QVERIFY(desk.library.isMultiSel());
        QCOMPARE(desk.library.multiSelections().count(true), 0);
        QCOMPARE(desk.calls.calls.last(), QStringLiteral("save B,D"));
    }

    void deletingWithoutASelectionOnlyDeselects()
    {
        DeskFixture desk(abc);
        desk.library.setSelection(12);
        desk.libraryEditor.deleteSelected();
        QCOMPARE(desk.calls.calls, QStringList());
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
    }

    void deletingTheLastPatchesEndsTicking()
    {
        DeskFixture desk(abc);
        desk.tick({0, 1, 2});
        desk.libraryEditor.deleteSelected();
        QCOMPARE(desk.library.count(), 0);
        QCOMPARE(desk.shown(), QStringLiteral("Empty library"));
        QVERIFY(!desk.library.isMultiSel());
    }

    void deletingAnUnknownIdDoesNothing()
    {
        DeskFixture desk(abc);
        desk.libraryEditor.deleteFromId(12);
        QCOMPARE(desk.calls.calls, QStringList());
        desk.libraryEditor.deleteFromId(desk.idOf(0));
        QCOMPARE(desk.shown(), QStringLiteral("B C"));
    }

    void bothEndsOfTickingClearTheTicks()
    {
        DeskFixture desk(abc);
        desk.tick({0});
        desk.libraryEditor.flipMultiSelection();
        QVERIFY(!desk.library.isMultiSel());
        QVERIFY(desk.library.multiSelections() == MultiSelections());
        desk.tick({0});
        desk.library.setIsMultiSel(false);
        desk.libraryEditor.flipMultiSelection();
        QVERIFY(desk.library.isMultiSel());
        QVERIFY(desk.library.multiSelections() == MultiSelections());
    }

    void theFirstPressTicks()
    {
        DeskFixture desk(abc);
        const quint64 id = desk.idOf(1);
        desk.libraryEditor.flipTick(id);
        QVERIFY(desk.library.multiSelections().isTicked(id));
        QCOMPARE(desk.library.multiSelections().count(true), 1);
        desk.libraryEditor.flipTick(id);
        QVERIFY(!desk.library.multiSelections().isTicked(id));
        desk.libraryEditor.flipTick(id);
        QVERIFY(desk.library.multiSelections().isTicked(id));
    }

    void tickingAllTurnsTickingOn()
    {
        DeskFixture desk(abc);
        desk.libraryEditor.tickAll();
        QVERIFY(desk.library.isMultiSel());
        QCOMPARE(desk.library.getMultiSelection().size(), 3);
        DeskFixture empty;
        empty.libraryEditor.tickAll();
        QVERIFY(!empty.library.isMultiSel());
        QCOMPARE(empty.library.multiSelections().count(true), 0);
    }

    void tickingSimilarPatchesTurnsTickingOn()
    {
        DeskFixture desk(abc);
        desk.libraryEditor.tickSimilar();
        QVERIFY(!desk.library.isMultiSel());
        desk.library.append(imported(QStringLiteral("Like B"), u'B'), false, false);
        desk.library.setSelection(desk.idOf(1));
        desk.libraryEditor.tickSimilar();
        QVERIFY(desk.library.isMultiSel());
        QCOMPARE(names(desk.library.getMultiSelection()).join(u','), QStringLiteral("B,Like B"));
    }

    void thePlaceholderIsNeverTheSelectedPatch()
    {
        DeskFixture desk;
        desk.library.setSelection(desk.idOf(0));
        QVERIFY(!desk.libraryEditor.selectedPatch());
        desk.libraryEditor.flipFlagOfSelected(&VelgorPatch::solo);
        QVERIFY(!desk.library.patches().first().solo);
        desk.libraryEditor.duplicateSelected();
        QCOMPARE(desk.library.count(), 0);
        desk.library.setSelection(12);
        QVERIFY(!desk.libraryEditor.selectedPatch());
    }

    void aFlagOfTheSelectedPatchIsFlippedEverywhere()
    {
        DeskFixture desk(abc, QStringLiteral("X B"));
        desk.libraryEditor.flipFlagOfSelected(&VelgorPatch::solo);
        QCOMPARE(desk.calls.calls, QStringList());
        desk.library.setSelection(desk.idOf(1));
        desk.libraryEditor.flipFlagOfSelected(&VelgorPatch::solo);
        QVERIFY(desk.library.patches().at(1).solo);
        QVERIFY(desk.content.velgorContentPatchList().at(1).patch.solo);
        QVERIFY(!desk.library.patches().at(0).solo && !desk.content.velgorContentPatchList().at(0).patch.solo);
        desk.libraryEditor.flipFlagOfSelected(&VelgorPatch::solo);
        QVERIFY(!desk.library.patches().at(1).solo);
        QCOMPARE(desk.calls.calls.size(), 2);
    }
};

VELGOR_TEST(TestLibraryTicks)
#include "tst_LibraryTicks.moc"
