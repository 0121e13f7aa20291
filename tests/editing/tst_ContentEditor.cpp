#include "ContentEditor.h"
#include "EditHistory.h"
#include "FakeLibraryStorage.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using TestPatches::imported;

namespace {

const QString fiveSlots = QStringLiteral("v w x y z");

/// Nothing but a library, a list and the editor between them. Names in capital letters are of the library.
struct Desk {
    VelgorLibrary library;
    VelgorContent content;
    FakeLibraryStorage storage;
    EditHistory history{library, content, storage};
    ContentEditor editor{library, content, history};

    explicit Desk(const QString &libraryNames, const QString &slotNames = fiveSlots)
    {
        for (const QString &name : libraryNames.split(u' ', Qt::SkipEmptyParts)) {
            library.append(imported(name, name.at(0).unicode()), false, false);
        }
        QList<SPatch> records;
        for (const QString &name : slotNames.split(u' ', Qt::SkipEmptyParts)) {
            records.append(TestRecords::patch(name, name.at(0).unicode()));
        }
        if (!records.isEmpty()) {
            content.populate(TestRecords::file(records));
        }
    }

    [[nodiscard]] quint64 idOf(qsizetype row) const { return library.patches().at(row).id(); }
    [[nodiscard]] QUuid slotId(qsizetype row) const { return content.velgorContentPatchList().at(row).id; }
    [[nodiscard]] QString shown() const
    {
        QStringList names;
        for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
            names.append(slot.patch.name);
        }
        return names.join(u' ');
    }
    /// The slots number themselves by their place.
    [[nodiscard]] bool isNumbered() const
    {
        const auto &list = content.velgorContentPatchList();
        for (qsizetype row = 0; row < list.size(); ++row) {
            if (list.at(row).bank != row / 3 + 1 || list.at(row).number != row % 3 + 1) {
                return false;
            }
        }
        return true;
    }
    void tick(const QList<qsizetype> &rows)
    {
        library.setIsMultiSel(true);
        MultiSelections ticks;
        for (const qsizetype row : rows) {
            ticks.multiSelections.insert(idOf(row), true);
        }
        library.setMultiSelections(ticks);
    }
    void select(const QList<int> &rows)
    {
        QSet<QUuid> ids;
        for (const int row : rows) {
            ids.insert(slotId(row));
        }
        content.setSelections(ids);
    }
};

} // namespace

class TestContentEditor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDroppedPatchTakesOneSlot()
    {
        Desk desk(QStringLiteral("A B"));
        const QUuid id = desk.slotId(4);
        desk.editor.dropDest(desk.idOf(1), 4);
        QCOMPARE(desk.shown(), QStringLiteral("v w x y B"));
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
        Desk desk(library);
        const quint64 id = isKnown ? desk.idOf(0) : 12;
        QVERIFY(desk.editor.placementFor(id, location).patches.isEmpty());
        const QSignalSpy placed(&desk.editor, &ContentEditor::placed);
        desk.editor.dropDest(id, location);
        QCOMPARE(desk.shown(), fiveSlots);
        QCOMPARE(placed.count(), 0);
    }

    void anActionOnManySlotsIsAnnouncedOnce()
    {
        Desk desk(QStringLiteral("A B C D"));
        desk.tick({0, 2, 3});
        int changes = 0;
        connect(&desk.content, &VelgorContent::rowsChanged, this, [&changes] { ++changes; });
        desk.editor.dropDest(desk.idOf(0), 1);
        QCOMPARE(desk.shown(), QStringLiteral("v A C D z"));
        QCOMPARE(changes, 1);
        desk.library.setSelection(desk.idOf(1));
        desk.content.setSelections({desk.slotId(0), desk.slotId(2), desk.slotId(4)});
        desk.editor.replaceSelectedSlots();
        QCOMPARE(desk.shown(), QStringLiteral("B A B D B"));
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
        Desk desk(QStringLiteral("A B C D"));
        desk.tick({3, 0, 2});
        const MultiSelections ticks = desk.library.multiSelections();
        const ContentEditor::Placement placement = desk.editor.placementFor(desk.idOf(1), location);
        const qsizetype fit = std::min(3, 5 - location);
        QCOMPARE(placement.patches.size(), fit);
        QCOMPARE(placement.leftOut, 3 - fit);
        QCOMPARE(placement.firstLeftOut, QStringLiteral("A C D").split(u' ').sliced(fit));
        desk.editor.dropDest(desk.idOf(1), location);
        QCOMPARE(desk.editor.lastPlacement().leftOut, 3 - fit);
        QCOMPARE(desk.shown(), shown);
        QVERIFY(!desk.library.isMultiSel());
        QVERIFY(desk.library.multiSelections() == ticks);
    }

    void whileNothingIsTickedTheRowItselfIsPlaced()
    {
        Desk desk(QStringLiteral("A B C D"));
        desk.tick({});
        desk.editor.dropDest(desk.idOf(1), 2);
        QCOMPARE(desk.shown(), QStringLiteral("v w B y z"));
        QVERIFY(!desk.library.isMultiSel());
    }

    void ofManyThatFindNoSlotTheFirstFewAreNamed()
    {
        Desk desk(QStringLiteral("A B C D E F"), QStringLiteral("v"));
        desk.tick({0, 1, 2, 3, 4, 5});
        const ContentEditor::Placement placement = desk.editor.placementFor(desk.idOf(1), 0);
        QCOMPARE(placement.patches.size(), 1);
        QCOMPARE(placement.leftOut, 5);
        QCOMPARE(placement.wanted(), 6);
        QCOMPARE(placement.firstLeftOut, QStringLiteral("B C D").split(u' '));
    }

    void ticksOutsideTickingDoNotCount()
    {
        Desk desk(QStringLiteral("A B"));
        desk.tick({0, 1});
        desk.library.setIsMultiSel(false);
        desk.editor.dropDest(desk.idOf(1), 0);
        QCOMPARE(desk.shown(), QStringLiteral("B w x y z"));
    }

    void aPatchOfAnotherFirmwareWarns()
    {
        Desk desk(QStringLiteral("A"));
        desk.library.append(imported(QStringLiteral("Other"), 9, {}, "V1.21"), false, false);
        desk.editor.dropDest(desk.idOf(0), 0);
        QVERIFY(!desk.content.mixVersions());
        desk.editor.dropDest(desk.idOf(1), 0);
        QVERIFY(desk.content.mixVersions());
        desk.editor.dropDest(desk.idOf(0), 0);
        QVERIFY(!desk.content.mixVersions());
    }

    void aDropThatPlacesNothingStillLooksForMixedVersions()
    {
        Desk desk(QStringLiteral("A"));
        desk.content.setPatch(imported(QStringLiteral("Other"), 9, {}, "V1.21"), 1);
        desk.editor.dropDest(12, 0);
        QVERIFY(desk.content.mixVersions());
    }

    void replacingTheWholeListRaisesNoFalseAlarm()
    {
        Desk desk(QStringLiteral("A"));
        desk.library.append(imported(QStringLiteral("Other"), 9, {}, "V1.21"), false, false);
        desk.library.setDefaultPatch(desk.idOf(1));
        desk.editor.reset();
        desk.editor.dropDest(desk.idOf(1), 0);
        QVERIFY(!desk.content.mixVersions());
        desk.library.setSelection(desk.idOf(0));
        desk.select({7});
        desk.editor.replaceSelectedSlots();
        QVERIFY(desk.content.mixVersions());
    }

    void replacingEverySlotEndsTheMixture()
    {
        Desk desk(QStringLiteral("A"));
        desk.library.append(imported(QStringLiteral("Other"), 9, {}, "V1.21"), false, false);
        desk.library.setSelection(desk.idOf(1));
        desk.select({0, 1, 2, 3, 4});
        desk.editor.replaceSelectedSlots();
        QVERIFY(!desk.content.mixVersions());
        desk.editor.dropDest(desk.idOf(1), 2);
        QVERIFY(!desk.content.mixVersions());
    }

    void resetFillsANewList()
    {
        Desk desk(QStringLiteral("A B"));
        desk.select({0});
        desk.library.setDefaultPatch(desk.idOf(1));
        desk.editor.reset();
        QCOMPARE(desk.content.velgorContentPatchList().size(), 99);
        QCOMPARE(desk.content.velgorContentPatchList().last().patch.id(), desk.idOf(1));
        QCOMPARE(desk.content.velgorContentPatchList().last().bank, 33);
        QVERIFY(desk.content.selections().isEmpty());
        QVERIFY(!desk.content.selectDefault());
    }

    void resetWithoutADefaultPatchAsksForOne()
    {
        Desk desk(QStringLiteral("A"));
        desk.editor.reset();
        QVERIFY(desk.content.selectDefault());
        QCOMPARE(desk.shown(), fiveSlots);
    }

    void resetWithADeletedDefaultPatchAsksForOne()
    {
        Desk desk(QStringLiteral("A B"));
        desk.library.setDefaultPatch(desk.idOf(0));
        desk.library.deletePatch(desk.idOf(0));
        desk.editor.reset();
        QVERIFY(desk.content.selectDefault());
        QCOMPARE(desk.shown(), fiveSlots);
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
        Desk desk(QStringLiteral("A"));
        desk.editor.moveSlots(rows, offset);
        QCOMPARE(desk.shown(), shown);
        QVERIFY(desk.isNumbered());
    }

    void theSelectedPatchGoesIntoTheFirstSelectedSlot()
    {
        Desk desk(QStringLiteral("A B"));
        QVERIFY(!desk.editor.canPut());
        desk.select({3, 1});
        QVERIFY(!desk.editor.canPut());
        desk.editor.putIntoSelectedSlot();
        QCOMPARE(desk.shown(), fiveSlots);
        desk.library.setSelection(desk.idOf(1));
        QVERIFY(desk.editor.canPut());
        desk.editor.putIntoSelectedSlot();
        QCOMPARE(desk.shown(), QStringLiteral("v B x y z"));
        QCOMPARE(desk.editor.selectedRows(), QList<qsizetype>{2});
        desk.editor.putIntoSelectedSlot();
        QCOMPARE(desk.shown(), QStringLiteral("v B B y z"));
    }

    void puttingIntoTheLastSlotKeepsItSelected()
    {
        Desk desk(QStringLiteral("A"));
        desk.library.setSelection(desk.idOf(0));
        desk.select({4});
        desk.editor.putIntoSelectedSlot();
        QCOMPARE(desk.shown(), QStringLiteral("v w x y A"));
        QCOMPARE(desk.editor.selectedRows(), QList<qsizetype>{4});
    }

    void tickedPatchesArePutAndTheSlotBehindIsSelected()
    {
        Desk desk(QStringLiteral("A B C"));
        desk.select({1});
        desk.library.setIsMultiSel(true);
        QVERIFY(!desk.editor.canPut());
        desk.library.setSelection(desk.idOf(1));
        QVERIFY(desk.editor.canPut());
        desk.tick({0, 2});
        QVERIFY(desk.editor.canPut());
        desk.editor.putIntoSelectedSlot();
        QCOMPARE(desk.shown(), QStringLiteral("v A C y z"));
        QCOMPARE(desk.editor.selectedRows(), QList<qsizetype>{3});
    }

    void everySelectedSlotIsReplacedAndStaysSelected()
    {
        Desk desk(QStringLiteral("A B"));
        desk.library.setSelection(desk.idOf(1));
        QVERIFY(!desk.editor.canReplace());
        desk.editor.replaceSelectedSlots();
        desk.select({0, 2, 4});
        QVERIFY(desk.editor.canReplace());
        desk.editor.replaceSelectedSlots();
        QCOMPARE(desk.shown(), QStringLiteral("B w B y B"));
        QCOMPARE(desk.editor.selectedRows(), (QList<qsizetype>{0, 2, 4}));
        QVERIFY(desk.isNumbered());
    }

    void thePlaceholderIsNotPut()
    {
        Desk desk({});
        desk.library.setSelection(desk.idOf(0));
        desk.select({0});
        QVERIFY(!desk.editor.canPut() && !desk.editor.canReplace());
        desk.editor.putIntoSelectedSlot();
        desk.editor.replaceSelectedSlots();
        QCOMPARE(desk.shown(), fiveSlots);
    }

    void selectedSlotsMoveByOneAsFarAsTheyCan_data()
    {
        QTest::addColumn<QList<int>>("selected");
        QTest::addColumn<int>("step");
        QTest::addColumn<QString>("shown");
        QTest::newRow("up") << QList{2} << -1 << QStringLiteral("v x w y z");
        QTest::newRow("down") << QList{2} << 1 << QStringLiteral("v w y x z");
        QTest::newRow("first up") << QList{0} << -1 << fiveSlots;
        QTest::newRow("last down") << QList{4} << 1 << fiveSlots;
        QTest::newRow("a block up") << QList{2, 3} << -1 << QStringLiteral("v x y w z");
        QTest::newRow("a block down") << QList{2, 3} << 1 << QStringLiteral("v w z x y");
        QTest::newRow("block at the end down") << QList{3, 4} << 1 << fiveSlots;
        QTest::newRow("none") << QList<int>() << 1 << fiveSlots;
    }

    void selectedSlotsMoveByOneAsFarAsTheyCan()
    {
        QFETCH(const QList<int>, selected);
        QFETCH(const int, step);
        QFETCH(const QString, shown);
        Desk desk(QStringLiteral("A"));
        desk.select(selected);
        const QSet<QUuid> before = desk.content.selections();
        QCOMPARE(desk.editor.canMoveSelected(step), shown != fiveSlots);
        desk.editor.moveSelectedSlots(step);
        QCOMPARE(desk.shown(), shown);
        QCOMPARE(desk.content.selections(), before);
        QVERIFY(desk.isNumbered());
    }

    void slotsThatAreGoneAreNotSelected()
    {
        Desk desk(QStringLiteral("A"));
        desk.content.setSelections({QUuid::createUuid(), desk.slotId(3)});
        QCOMPARE(desk.editor.selectedRows(), QList<qsizetype>{3});
        desk.content.setSelections({QUuid::createUuid()});
        desk.library.setSelection(desk.idOf(0));
        QVERIFY(!desk.editor.canPut() && !desk.editor.canReplace() && !desk.editor.canMoveSelected(1));
    }

    void anEmptyListTakesNothing()
    {
        Desk desk(QStringLiteral("A"), {});
        desk.editor.dropDest(desk.idOf(0), 0);
        desk.editor.moveSlots({}, 0);
        desk.library.setSelection(desk.idOf(0));
        desk.editor.putIntoSelectedSlot();
        QVERIFY(desk.content.velgorContentPatchList().isEmpty());
        QVERIFY(!desk.content.mixVersions());
    }
};

VELGOR_TEST(TestContentEditor)
#include "tst_ContentEditor.moc"
