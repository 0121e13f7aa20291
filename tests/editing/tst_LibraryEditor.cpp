#include "DeskFixture.h"
#include "TestProgram.h"

#include <QTest>

using TestPatches::imported;
using TestPatches::isIdentical;

namespace {

const QString abc = QStringLiteral("A B C");

} // namespace

class TestLibraryEditor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDroppedRowMoves_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("location");
        QTest::addColumn<QString>("order");
        QTest::newRow("onto its own place") << 1 << 1 << abc;
        QTest::newRow("just below itself") << 1 << 2 << abc;
        QTest::newRow("to the start") << 2 << 0 << QStringLiteral("C A B");
        QTest::newRow("to the end") << 0 << 3 << QStringLiteral("B C A");
        QTest::newRow("down by one") << 0 << 2 << QStringLiteral("B A C");
        QTest::newRow("below everything") << 0 << 9 << QStringLiteral("B C A");
        QTest::newRow("above everything") << 1 << -1 << QStringLiteral("B A C");
    }

    void aDroppedRowMoves()
    {
        QFETCH(const int, row);
        QFETCH(const int, location);
        QFETCH(const QString, order);
        DeskFixture desk(abc);
        desk.libraryEditor.drop({desk.row(row)}, location);
        QCOMPARE(desk.shown(), order);
        QCOMPARE(desk.library.order(), TestPatches::ids(desk.library.patches()));
        const QStringList save{QStringLiteral("delayedSave ") + QString(order).replace(u' ', u',')};
        QCOMPARE(desk.calls.calls, order == abc ? QStringList() : save);
    }

    void movingInASortedLibraryMakesTheSortedOrderTheRememberedOne()
    {
        DeskFixture desk(QStringLiteral("C A B"));
        desk.libraryEditor.sort();
        desk.libraryEditor.drop({desk.row(0)}, 2);
        QCOMPARE(desk.shown(), QStringLiteral("B A C"));
        desk.libraryEditor.sort();
        QCOMPARE(desk.shown(), QStringLiteral("B A C"));
    }

    void whatIsNotThereDropsNothing_data()
    {
        QTest::addColumn<QList<TransferablePatch>>("items");
        const TransferablePatch gone{.cid = QUuid::createUuid(), .id = 1, .name = QStringLiteral("Gone"), .origin = 0};
        TransferablePatch unknown = gone;
        unknown.cid.reset();
        unknown.origin = TransferablePatch::fromLibrary;
        TransferablePatch withoutSlot = gone;
        withoutSlot.cid.reset();
        QTest::newRow("unknown library patch") << QList{unknown};
        QTest::newRow("slot that went meanwhile") << QList{gone};
        QTest::newRow("slots that went meanwhile") << QList{gone, gone};
        QTest::newRow("no slot") << QList{withoutSlot};
        QTest::newRow("nothing") << QList<TransferablePatch>();
    }

    void whatIsNotThereDropsNothing()
    {
        QFETCH(const QList<TransferablePatch>, items);
        DeskFixture desk(abc, QStringLiteral("X Y"));
        desk.library.setSelection(desk.idOf(1));
        desk.libraryEditor.drop(items, 0);
        QCOMPARE(desk.shown(), abc);
        QCOMPARE(desk.library.selection(), std::optional(desk.idOf(1)));
        QVERIFY(!desk.libraryEditor.canKeep(items));
        QCOMPARE(desk.calls.calls + desk.lines.take(), QStringList());
    }

    void severalLibraryPatchesDropNothing()
    {
        DeskFixture desk(abc);
        desk.libraryEditor.drop({desk.row(2), desk.row(1)}, 0);
        QCOMPARE(desk.shown(), abc);
        QCOMPARE(desk.calls.calls, QStringList());
    }

    void thePlaceholderCannotBeMoved()
    {
        DeskFixture desk;
        desk.libraryEditor.drop({desk.row(0)}, 1);
        QCOMPARE(desk.calls.calls, QStringList());
    }

    void slotsAreKeptAtTheEndWhereverTheyAreDropped_data()
    {
        QTest::addColumn<int>("location");
        for (const int location : {0, 1, 2, 99}) {
            QTest::addRow("%d", location) << location;
        }
    }

    void slotsAreKeptAtTheEndWhereverTheyAreDropped()
    {
        QFETCH(const int, location);
        DeskFixture desk(QStringLiteral("A B"), QStringLiteral("W X Y Z"));
        const ReferenceDate before = ReferenceDate::now();
        desk.libraryEditor.drop({desk.slot(3), desk.slot(0), desk.slot(2)}, location);
        QCOMPARE(desk.shown(), QStringLiteral("A B Z W Y"));
        QCOMPARE(desk.library.selection(), std::optional(desk.idOf(2)));
        QVERIFY(desk.library.patches().last().date.seconds >= before.seconds);
        QCOMPARE(desk.library.order(), TestPatches::ids(desk.library.patches()));
        QCOMPARE(desk.calls.calls, QStringList{QStringLiteral("delayedSave A,B,Z,W,Y")});
        QCOMPARE(desk.lines.take(), QStringList{QStringLiteral("Select %1").arg(desk.idOf(2))});
    }

    void keepingGivesThePatchTheDateOfNow()
    {
        DeskFixture desk({}, QStringLiteral("X"));
        VelgorPatch old = DeskFixture::patch(QStringLiteral("X"));
        old.date = {1};
        old.comment = QStringLiteral("kept");
        desk.content.setPatch(old, 0);
        desk.libraryEditor.drop({desk.slot(0)}, 0);
        VelgorPatch kept = desk.library.patches().first();
        QVERIFY(kept.date.seconds > 700'000'000);
        kept.date = old.date;
        QVERIFY(isIdentical(kept, old));
        QCOMPARE(desk.content.velgorContentPatchList().first().patch.date, old.date);
    }

    void aKnownPatchIsSelectedAndNotKeptTwice()
    {
        DeskFixture desk(abc, QStringLiteral("B"));
        const VelgorPatch known = desk.library.patches().at(1);
        desk.libraryEditor.drop({desk.slot(0)}, 0);
        QCOMPARE(desk.shown(), abc);
        QVERIFY(isIdentical(desk.library.patches().at(1), known));
        QCOMPARE(desk.library.selection(), std::optional(known.id()));
        QCOMPARE(desk.calls.calls, QStringList());
    }

    void twoSlotsWithOnePatchAreKeptOnce()
    {
        DeskFixture desk({}, QStringLiteral("X X"));
        desk.libraryEditor.drop({desk.slot(0), desk.slot(1)}, 0);
        QCOMPARE(desk.shown(), QStringLiteral("X"));
        QCOMPARE(desk.library.count(), 1);
    }

    void onlyTheFirstDroppedSlotCanBecomeTheSelection()
    {
        DeskFixture desk(QStringLiteral("A"), QStringLiteral("X Y"));
        const TransferablePatch gone{.cid = QUuid::createUuid(), .id = 1, .name = {}, .origin = 0};
        desk.libraryEditor.drop({gone, desk.slot(1)}, 0);
        QCOMPARE(desk.shown(), QStringLiteral("A Y"));
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
    }

    void aSlotWithoutPresetDataCannotBeKept()
    {
        DeskFixture desk(QStringLiteral("A"));
        desk.content.setLimit(2);
        desk.content.adjust(std::nullopt);
        QVERIFY(!desk.libraryEditor.canKeep({desk.slot(0)}));
        desk.libraryEditor.drop({desk.slot(0)}, 0);
        QCOMPARE(desk.shown(), QStringLiteral("A"));
        desk.content.setPatch(DeskFixture::patch(QStringLiteral("X")), 1);
        QVERIFY(desk.libraryEditor.canKeep({desk.slot(0), desk.slot(1)}));
    }

    void theSelectedSlotsAreKeptInTheirOrder()
    {
        DeskFixture desk(QStringLiteral("A"), QStringLiteral("W X Y Z"));
        QVERIFY(!desk.libraryEditor.canKeepSelectedSlots());
        desk.libraryEditor.keepSelectedSlots();
        QCOMPARE(desk.shown(), QStringLiteral("A"));
        desk.selectSlots({3, 1});
        QVERIFY(desk.libraryEditor.canKeepSelectedSlots());
        desk.libraryEditor.keepSelectedSlots();
        QCOMPARE(desk.shown(), QStringLiteral("A X Z"));
        QCOMPARE(desk.library.selection(), std::optional(desk.idOf(1)));
    }

    void anEditReachesTheSlotsThatHoldThePatch()
    {
        DeskFixture desk(abc, QStringLiteral("B X B"));
        VelgorPatch edited = desk.library.patches().at(1);
        edited.name = QStringLiteral("New");
        desk.library.update(edited);
        desk.libraryEditor.changed(edited.id());
        QCOMPARE(desk.content.velgorContentPatchList().at(0).patch.name, QStringLiteral("New"));
        QCOMPARE(desk.content.velgorContentPatchList().at(1).patch.name, QStringLiteral("X"));
        QCOMPARE(desk.content.velgorContentPatchList().at(2).patch.name, QStringLiteral("New"));
        QCOMPARE(desk.calls.calls, QStringList{QStringLiteral("delayedSave A,New,C")});
    }

    void anEditOfAnUnknownPatchStillAsksForASave()
    {
        DeskFixture desk(abc, QStringLiteral("X"));
        desk.libraryEditor.changed(12);
        QCOMPARE(desk.calls.calls, QStringList{QStringLiteral("delayedSave A,B,C")});
    }

    void aChangeRemembersTheOrder()
    {
        DeskFixture desk(QStringLiteral("C A B"));
        desk.libraryEditor.sort();
        desk.libraryEditor.changed();
        QCOMPARE(desk.library.order(), TestPatches::ids(desk.library.patches()));
        QCOMPARE(desk.shown(), abc);
    }

    void placesAreThoseOfTheSoundUnderAnyName()
    {
        DeskFixture desk(QStringLiteral("A"), QStringLiteral("A B A C D"));
        desk.content.setPatch(imported(QStringLiteral("Other name"), u'A'), 3);
        desk.content.setPatch(imported(QStringLiteral("A"), u'A', TestRecords::userIR(0)), 2);
        QStringList places;
        QSet<QUuid> ids;
        for (const BankNumber &place : desk.libraryEditor.inContentPatch(desk.idOf(0))) {
            places.append(QStringLiteral("%1.%2").arg(place.bank).arg(place.number));
            ids.insert(place.id);
        }
        QCOMPARE(places.join(u' '), QStringLiteral("1.1 2.1"));
        QCOMPARE(ids.size(), 2);
    }

    void thereAreNoPlacesForWhatHasNoSound()
    {
        DeskFixture desk({}, {});
        desk.content.setLimit(2);
        desk.content.adjust(std::nullopt);
        QVERIFY(desk.libraryEditor.inContentPatch(desk.idOf(0)).isEmpty());
        QVERIFY(desk.libraryEditor.inContentPatch(12).isEmpty());
        desk.library.append(TestPatches::stored(7, QStringLiteral("Without file")), false, false);
        desk.content.setPatch(desk.library.patches().first(), 0);
        QVERIFY(desk.libraryEditor.inContentPatch(7).isEmpty());
        QVERIFY(DeskFixture(abc).libraryEditor.inContentPatch(DeskFixture(abc).idOf(0)).isEmpty());
    }

    void theDefaultPatchIsSetById()
    {
        DeskFixture desk(abc);
        QVERIFY(!desk.libraryEditor.isDefaultPatch(desk.idOf(0)));
        desk.libraryEditor.setDefaultPatch(desk.idOf(0));
        desk.libraryEditor.setDefaultPatch(12);
        QVERIFY(desk.libraryEditor.isDefaultPatch(desk.idOf(0)));
        desk.library.setSelection(desk.idOf(2));
        desk.libraryEditor.setSelectedAsDefault();
        QVERIFY(desk.libraryEditor.isDefaultPatch(desk.idOf(2)));
        desk.libraryEditor.select(std::nullopt);
        desk.libraryEditor.setSelectedAsDefault();
        QVERIFY(desk.libraryEditor.isDefaultPatch(desk.idOf(2)));
        QCOMPARE(desk.calls.calls.size(), 2);
    }

    void thePlaceholderIsNoDefaultPatch()
    {
        DeskFixture desk;
        desk.libraryEditor.setDefaultPatch(desk.idOf(0));
        QVERIFY(!desk.libraryEditor.isDefaultPatch(desk.idOf(0)));
        QCOMPARE(desk.calls.calls, QStringList());
    }

    void sortingClearsTheSelectionAndSavesNothing()
    {
        DeskFixture desk(QStringLiteral("C A B"));
        desk.library.setSelection(desk.idOf(0));
        desk.libraryEditor.sort();
        QCOMPARE(desk.shown(), abc);
        QCOMPARE(desk.library.selection(), std::optional<quint64>());
        QCOMPARE(desk.calls.calls, QStringList());
    }

    void duplicatingCopiesTheSelectedPatchToTheEnd()
    {
        DeskFixture desk(abc);
        desk.libraryEditor.duplicateSelected();
        QCOMPARE(desk.calls.calls, QStringList());
        desk.library.setSelection(desk.idOf(0));
        desk.libraryEditor.duplicateSelected();
        desk.libraryEditor.duplicateSelected();
        QCOMPARE(desk.shown(), QStringLiteral("A B C A-1 A-2"));
        QCOMPARE(desk.calls.calls.size(), 2);
        QCOMPARE(desk.library.selection(), std::optional(desk.idOf(0)));
    }
};

VELGOR_TEST(TestLibraryEditor)
#include "tst_LibraryEditor.moc"
