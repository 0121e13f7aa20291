#include "EditorDesk.h"
#include "TestPatches.h"
#include "TestProgram.h"

#include <QTest>

using namespace EditorDesk;
using TestPatches::imported;
using TestPatches::names;

class TestLibraryTicks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void deletingTakesTheSelectedPatchWithoutTicking()
    {
        Desk desk(abc);
        desk.library.setSelection(desk.idOf(1));
        const quint64 id = desk.idOf(1);
        desk.editor.setDefaultPatch(id);
        QVERIFY(desk.editor.isDefaultPatch(id));
        desk.storage.calls.clear();
        desk.editor.deleteSelected();
        QCOMPARE(desk.storage.calls, (QStringList{QStringLiteral("remove %1").arg(id), QStringLiteral("save A,C")}));
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
        QVERIFY(!desk.editor.isDefaultPatch(id));
        QVERIFY(!desk.library.multiSelections().isTicked(id));
    }

    void deletingTakesTheTickedPatchesAndNotTheSelectedOne()
    {
        Desk desk(QStringLiteral("A B C D"));
        desk.tick({0, 2});
        desk.library.setSelection(desk.idOf(1));
        desk.editor.deleteSelected();
        QCOMPARE(desk.shown(), QStringLiteral("B D"));
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
        QVERIFY(desk.library.isMultiSel());
        QCOMPARE(desk.library.multiSelections().count(true), 0);
        QCOMPARE(desk.storage.calls.last(), QStringLiteral("save B,D"));
    }

    void deletingWithoutASelectionOnlyDeselects()
    {
        Desk desk(abc);
        desk.library.setSelection(12);
        desk.editor.deleteSelected();
        QCOMPARE(desk.storage.calls, QStringList());
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
    }

    void deletingTheLastPatchesEndsTicking()
    {
        Desk desk(abc);
        desk.tick({0, 1, 2});
        desk.editor.deleteSelected();
        QCOMPARE(desk.library.count(), 0);
        QCOMPARE(desk.shown(), QStringLiteral("Empty library"));
        QVERIFY(!desk.library.isMultiSel());
    }

    void deletingAnUnknownIdDoesNothing()
    {
        Desk desk(abc);
        desk.editor.deleteFromId(12);
        QCOMPARE(desk.storage.calls, QStringList());
        desk.editor.deleteFromId(desk.idOf(0));
        QCOMPARE(desk.shown(), QStringLiteral("B C"));
    }

    void bothEndsOfTickingClearTheTicks()
    {
        Desk desk(abc);
        desk.tick({0});
        desk.editor.flipMultiSelection();
        QVERIFY(!desk.library.isMultiSel());
        QVERIFY(desk.library.multiSelections() == MultiSelections());
        desk.tick({0});
        desk.library.setIsMultiSel(false);
        desk.editor.flipMultiSelection();
        QVERIFY(desk.library.isMultiSel());
        QVERIFY(desk.library.multiSelections() == MultiSelections());
    }

    void theFirstPressTicks()
    {
        Desk desk(abc);
        const quint64 id = desk.idOf(1);
        desk.editor.flipTick(id);
        QVERIFY(desk.library.multiSelections().isTicked(id));
        QCOMPARE(desk.library.multiSelections().count(true), 1);
        desk.editor.flipTick(id);
        QVERIFY(!desk.library.multiSelections().isTicked(id));
        desk.editor.flipTick(id);
        QVERIFY(desk.library.multiSelections().isTicked(id));
    }

    void tickingAllTurnsTickingOn()
    {
        Desk desk(abc);
        desk.editor.tickAll();
        QVERIFY(desk.library.isMultiSel());
        QCOMPARE(desk.library.getMultiSelection().size(), 3);
        Desk empty;
        empty.editor.tickAll();
        QVERIFY(!empty.library.isMultiSel());
        QCOMPARE(empty.library.multiSelections().count(true), 0);
    }

    void tickingSimilarPatchesTurnsTickingOn()
    {
        Desk desk(abc);
        desk.editor.tickSimilar();
        QVERIFY(!desk.library.isMultiSel());
        desk.library.append(imported(QStringLiteral("Like B"), u'B'), false, false);
        desk.library.setSelection(desk.idOf(1));
        desk.editor.tickSimilar();
        QVERIFY(desk.library.isMultiSel());
        QCOMPARE(names(desk.library.getMultiSelection()).join(u','), QStringLiteral("B,Like B"));
    }

    void thePlaceholderIsNeverTheSelectedPatch()
    {
        Desk desk;
        desk.library.setSelection(desk.idOf(0));
        QVERIFY(!desk.editor.selectedPatch());
        desk.editor.flipFlagOfSelected(&VelgorPatch::solo);
        QVERIFY(!desk.library.patches().first().solo);
        desk.editor.duplicateSelected();
        QCOMPARE(desk.library.count(), 0);
        desk.library.setSelection(12);
        QVERIFY(!desk.editor.selectedPatch());
    }

    void aFlagOfTheSelectedPatchIsFlippedEverywhere()
    {
        Desk desk(abc, QStringLiteral("X B"));
        desk.editor.flipFlagOfSelected(&VelgorPatch::solo);
        QCOMPARE(desk.storage.calls, QStringList());
        desk.library.setSelection(desk.idOf(1));
        desk.editor.flipFlagOfSelected(&VelgorPatch::solo);
        QVERIFY(desk.library.patches().at(1).solo);
        QVERIFY(desk.content.velgorContentPatchList().at(1).patch.solo);
        QVERIFY(!desk.library.patches().at(0).solo && !desk.content.velgorContentPatchList().at(0).patch.solo);
        desk.editor.flipFlagOfSelected(&VelgorPatch::solo);
        QVERIFY(!desk.library.patches().at(1).solo);
        QCOMPARE(desk.storage.calls.size(), 2);
    }
};

VELGOR_TEST(TestLibraryTicks)
#include "tst_LibraryTicks.moc"
