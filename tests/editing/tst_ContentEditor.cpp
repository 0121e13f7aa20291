#include "DeskFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using TestPatches::imported;

namespace {

/// Names in capital letters are of the library.
const QString fiveSlots = QStringLiteral("v w x y z");

} // namespace

class TestContentEditor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDroppedPatchTakesOneSlot()
    {
        DeskFixture desk(QStringLiteral("A B"), fiveSlots);
        const QUuid id = desk.slotId(4);
        desk.contentEditor.dropDest(desk.idOf(1), 4);
        QCOMPARE(desk.slotNames(), QStringLiteral("v w x y B"));
        QCOMPARE(desk.slotId(4), id);
        QVERIFY(desk.isNumbered());
        QVERIFY(!desk.content.mixVersions());
    }

    void whatCannotBePlacedIsIgnored_data()
    {
        QTest::addColumn<QString>("library");
        QTest::addColumn<bool>("isKnown");
        QTest::addColumn<int>("location");
        QTest::newRow("unknown patch") << QStringLiteral("A") << false << 0;
        QTest::newRow("placeholder") << QString() << true << 0;
        QTest::newRow("behind the last slot") << QStringLiteral("A") << true << 5;
        QTest::newRow("far behind") << QStringLiteral("A") << true << 500;
    }

    void whatCannotBePlacedIsIgnored()
    {
        QFETCH(const QString, library);
        QFETCH(const bool, isKnown);
        QFETCH(const int, location);
        DeskFixture desk(library, fiveSlots);
        const quint64 id = isKnown ? desk.idOf(0) : 12;
        QVERIFY(desk.contentEditor.placementFor(id, location).patches.isEmpty());
        const QSignalSpy placed(&desk.contentEditor, &ContentEditor::placed);
        desk.contentEditor.dropDest(id, location);
        QCOMPARE(desk.slotNames(), fiveSlots);
        QCOMPARE(placed.count(), 0);
    }

    void anActionOnManySlotsIsAnnouncedOnce()
    {
        DeskFixture desk(QStringLiteral("A B C D"), fiveSlots);
        desk.tick({0, 2, 3});
        int changes = 0;
        connect(&desk.content, &VelgorContent::rowsChanged, this, [&changes] { ++changes; });
        desk.contentEditor.dropDest(desk.idOf(0), 1);
        QCOMPARE(desk.slotNames(), QStringLiteral("v A C D z"));
        QCOMPARE(changes, 1);
        desk.select(1);
        desk.content.setSelections({desk.slotId(0), desk.slotId(2), desk.slotId(4)});
        desk.contentEditor.replaceSelectedSlots();
        QCOMPARE(desk.slotNames(), QStringLiteral("B A B D B"));
        QCOMPARE(changes, 2);
    }

    void tickedPatchesFillTheSlotsBehind_data()
    {
        QTest::addColumn<int>("location");
        QTest::addColumn<QString>("shown");
        QTest::newRow("from the first") << 0 << QStringLiteral("A C D y z");
        QTest::newRow("on the second last") << 3 << QStringLiteral("v w x A C");
        QTest::newRow("on the last") << 4 << QStringLiteral("v w x y A");
        QTest::newRow("behind the last") << 5 << fiveSlots;
    }

    void tickedPatchesFillTheSlotsBehind()
    {
        QFETCH(const int, location);
        QFETCH(const QString, shown);
        DeskFixture desk(QStringLiteral("A B C D"), fiveSlots);
        desk.tick({3, 0, 2});
        const MultiSelections ticks = desk.library.multiSelections();
        const ContentEditor::Placement placement = desk.contentEditor.placementFor(desk.idOf(1), location);
        const qsizetype fit = std::min(3, 5 - location);
        QCOMPARE(placement.patches.size(), fit);
        QCOMPARE(placement.leftOut, 3 - fit);
        QCOMPARE(placement.firstLeftOut, QStringLiteral("A C D").split(u' ').sliced(fit));
        desk.contentEditor.dropDest(desk.idOf(1), location);
        QCOMPARE(desk.contentEditor.lastPlacement().leftOut, 3 - fit);
        QCOMPARE(desk.slotNames(), shown);
        QVERIFY(!desk.library.isMultiSel());
        QVERIFY(desk.library.multiSelections() == ticks);
    }

    void whileNothingIsTickedTheRowItselfIsPlaced()
    {
        DeskFixture desk(QStringLiteral("A B C D"), fiveSlots);
        desk.tick({});
        desk.contentEditor.dropDest(desk.idOf(1), 2);
        QCOMPARE(desk.slotNames(), QStringLiteral("v w B y z"));
        QVERIFY(!desk.library.isMultiSel());
    }

    void ofManyThatFindNoSlotTheFirstFewAreNamed()
    {
        DeskFixture desk(QStringLiteral("A B C D E F"), QStringLiteral("v"));
        desk.tick({0, 1, 2, 3, 4, 5});
        const ContentEditor::Placement placement = desk.contentEditor.placementFor(desk.idOf(1), 0);
        QCOMPARE(placement.patches.size(), 1);
        QCOMPARE(placement.leftOut, 5);
        QCOMPARE(placement.wanted(), 6);
        QCOMPARE(placement.firstLeftOut, QStringLiteral("B C D").split(u' '));
    }

    void ticksOutsideTickingDoNotCount()
    {
        DeskFixture desk(QStringLiteral("A B"), fiveSlots);
        desk.tick({0, 1});
        desk.library.setIsMultiSel(false);
        desk.contentEditor.dropDest(desk.idOf(1), 0);
        QCOMPARE(desk.slotNames(), QStringLiteral("B w x y z"));
    }

    void aPatchOfAnotherFirmwareWarns()
    {
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.library.append(imported(QStringLiteral("Other"), 9, {}, "V1.21"), false, false);
        desk.contentEditor.dropDest(desk.idOf(0), 0);
        QVERIFY(!desk.content.mixVersions());
        desk.contentEditor.dropDest(desk.idOf(1), 0);
        QVERIFY(desk.content.mixVersions());
        desk.contentEditor.dropDest(desk.idOf(0), 0);
        QVERIFY(!desk.content.mixVersions());
    }

    void aDropThatPlacesNothingStillLooksForMixedVersions()
    {
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.content.setPatch(imported(QStringLiteral("Other"), 9, {}, "V1.21"), 1);
        desk.contentEditor.dropDest(12, 0);
        QVERIFY(desk.content.mixVersions());
    }

    void replacingTheWholeListRaisesNoFalseAlarm()
    {
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.library.append(imported(QStringLiteral("Other"), 9, {}, "V1.21"), false, false);
        desk.library.setDefaultPatch(desk.idOf(1));
        desk.contentEditor.reset();
        desk.contentEditor.dropDest(desk.idOf(1), 0);
        QVERIFY(!desk.content.mixVersions());
        desk.select(0);
        desk.selectSlots({7});
        desk.contentEditor.replaceSelectedSlots();
        QVERIFY(desk.content.mixVersions());
    }

    void replacingEverySlotEndsTheMixture()
    {
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.library.append(imported(QStringLiteral("Other"), 9, {}, "V1.21"), false, false);
        desk.select(1);
        desk.selectSlots({0, 1, 2, 3, 4});
        desk.contentEditor.replaceSelectedSlots();
        QVERIFY(!desk.content.mixVersions());
        desk.contentEditor.dropDest(desk.idOf(1), 2);
        QVERIFY(!desk.content.mixVersions());
    }

    void resetFillsANewList()
    {
        DeskFixture desk(QStringLiteral("A B"), fiveSlots);
        desk.selectSlots({0});
        desk.library.setDefaultPatch(desk.idOf(1));
        desk.contentEditor.reset();
        QCOMPARE(desk.content.velgorContentPatchList().size(), 99);
        QCOMPARE(desk.content.velgorContentPatchList().last().patch.id(), desk.idOf(1));
        QCOMPARE(desk.content.velgorContentPatchList().last().bank, 33);
        QVERIFY(desk.content.selections().isEmpty());
        QVERIFY(!desk.content.selectDefault());
    }

    void resetWithoutADefaultPatchAsksForOne()
    {
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.contentEditor.reset();
        QVERIFY(desk.content.selectDefault());
        QCOMPARE(desk.slotNames(), fiveSlots);
    }

    void resetWithADeletedDefaultPatchAsksForOne()
    {
        DeskFixture desk(QStringLiteral("A B"), fiveSlots);
        desk.library.setDefaultPatch(desk.idOf(0));
        desk.library.deletePatch(desk.idOf(0));
        desk.contentEditor.reset();
        QVERIFY(desk.content.selectDefault());
        QCOMPARE(desk.slotNames(), fiveSlots);
    }

    void movedSlotsAreNumberedByTheirNewPlace_data()
    {
        QTest::addColumn<QList<qsizetype>>("rows");
        QTest::addColumn<int>("offset");
        QTest::addColumn<QString>("shown");
        QTest::newRow("one down") << QList<qsizetype>{0} << 3 << QStringLiteral("w x v y z");
        QTest::newRow("one to the end") << QList<qsizetype>{1} << 5 << QStringLiteral("v x y z w");
        QTest::newRow("one to the start") << QList<qsizetype>{4} << 0 << QStringLiteral("z v w x y");
        QTest::newRow("onto itself") << QList<qsizetype>{2} << 2 << fiveSlots;
        QTest::newRow("a block down") << QList<qsizetype>{0, 1} << 4 << QStringLiteral("x y v w z");
        QTest::newRow("a block into itself") << QList<qsizetype>{1, 2, 3} << 2 << fiveSlots;
        QTest::newRow("two apart into their middle") << QList<qsizetype>{0, 4} << 2 << QStringLiteral("w v z x y");
        QTest::newRow("two apart to the start") << QList<qsizetype>{1, 3} << 0 << QStringLiteral("w y v x z");
        QTest::newRow("two apart to the end") << QList<qsizetype>{1, 3} << 5 << QStringLiteral("v x z w y");
        QTest::newRow("all") << QList<qsizetype>{0, 1, 2, 3, 4} << 0 << fiveSlots;
        QTest::newRow("none") << QList<qsizetype>{} << 3 << fiveSlots;
    }

    void movedSlotsAreNumberedByTheirNewPlace()
    {
        QFETCH(const QList<qsizetype>, rows);
        QFETCH(const int, offset);
        QFETCH(const QString, shown);
        DeskFixture desk(QStringLiteral("A"), fiveSlots);
        desk.contentEditor.moveSlots(rows, offset);
        QCOMPARE(desk.slotNames(), shown);
        QVERIFY(desk.isNumbered());
    }

    void anEmptyListTakesNothing()
    {
        DeskFixture desk(QStringLiteral("A"), {});
        desk.contentEditor.dropDest(desk.idOf(0), 0);
        desk.contentEditor.moveSlots({}, 0);
        desk.select(0);
        desk.contentEditor.putIntoSelectedSlot();
        QVERIFY(desk.content.velgorContentPatchList().isEmpty());
        QVERIFY(!desk.content.mixVersions());
    }
};

VELGOR_TEST(TestContentEditor)
#include "tst_ContentEditor.moc"
