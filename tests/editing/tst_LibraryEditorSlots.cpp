#include "DeskFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using TestPatches::imported;
using TestPatches::names;

namespace {

/// A library, a list of patches whose names hash alike, and the editor between them.
struct Desk : DeskFixture {
    explicit Desk(const QStringList &names)
    {
        QList<SPatch> records;
        for (const QString &name : names) {
            records.append(TestRecords::patch(name));
        }
        content.populate(TestRecords::file(records, {}, "V1.21"));
    }

    void keep(const QList<qsizetype> &rows)
    {
        QList<TransferablePatch> items;
        for (const qsizetype row : rows) {
            items.append(slot(row));
        }
        libraryEditor.drop(items, 0);
    }
    void rename(quint64 id, const QString &name)
    {
        DeskFixture::rename(id, name);
        libraryEditor.changed(id);
    }
};

using Flag = bool VelgorPatch::*;

const QStringList presets{QStringLiteral("Preset 01"), QStringLiteral("Preset 02"), QStringLiteral("Preset 03")};

} // namespace

/// Which slots an edit in the library means, and what it changes of them.
class TestLibraryEditorSlots : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyFlagReachesTheSlotAndNothingElseDoes_data()
    {
        QTest::addColumn<Flag>("flag");
        QTest::newRow("guitar") << &VelgorPatch::guitar;
        QTest::newRow("bass") << &VelgorPatch::bass;
        QTest::newRow("clean") << &VelgorPatch::clean;
        QTest::newRow("crunch") << &VelgorPatch::crunch;
        QTest::newRow("drive") << &VelgorPatch::drive;
        QTest::newRow("higain") << &VelgorPatch::higain;
        QTest::newRow("rythm") << &VelgorPatch::rythm;
        QTest::newRow("solo") << &VelgorPatch::solo;
    }

    void everyFlagReachesTheSlotAndNothingElseDoes()
    {
        QFETCH(const Flag, flag);
        Desk desk(presets);
        // The library has the patch from a list of other firmware.
        desk.library.append(imported(presets.at(1), 1, {}, "V1.20"), false, false);
        desk.select(0);
        VelgorPatch expected = desk.inSlot(1);
        for (const bool isSet : {true, false}) {
            desk.libraryEditor.flipFlagOfSelected(flag);
            expected.*flag = isSet;
            expected.date = desk.library.patches().first().date;
            QVERIFY(TestPatches::isIdentical(desk.inSlot(1), expected));
            QVERIFY(!(desk.inSlot(0).*flag) && !(desk.inSlot(2).*flag));
        }
    }

    void keepingSelectsThePatchAmongThoseWithOneHash()
    {
        Desk desk(presets);
        desk.keep({2});
        desk.keep({0, 1, 2});
        QCOMPARE(names(desk.library.patches()).join(u','), QStringLiteral("Preset 03,Preset 01,Preset 02"));
        QCOMPARE(desk.library.selection(), std::optional(desk.idOf(1)));
        QCOMPARE(desk.lines.lines().last(), QStringLiteral("Select %1").arg(desk.idOf(1)));
    }

    void anEditMeansTheSlotsOfThisPatchAlone()
    {
        Desk desk(presets + presets.first(2));
        desk.keep({0, 1, 2});
        desk.rename(desk.idOf(1), QStringLiteral("Lead"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Preset 01 Lead Preset 03 Preset 01 Lead"));
        desk.rename(desk.idOf(1), QStringLiteral("Preset 01"));
        desk.rename(desk.idOf(0), QStringLiteral("Solo"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Solo Preset 01 Preset 03 Solo Preset 01"));
    }

    void placesAreThoseOfThisPatchAlone()
    {
        Desk desk(presets);
        desk.keep({0, 1});
        const auto places = [&desk](qsizetype row) {
            QStringList texts;
            for (const BankNumber &place : desk.libraryEditor.inContentPatch(desk.idOf(row))) {
                texts.append(QStringLiteral("%1.%2").arg(place.bank).arg(place.number));
            }
            return texts.join(u' ');
        };
        // The library has not got the third, whose sound both have.
        QCOMPARE(places(0), QStringLiteral("1.1 1.3"));
        QCOMPARE(places(1), QStringLiteral("1.2 1.3"));
        desk.keep({2});
        QCOMPARE(places(0), QStringLiteral("1.1"));
        QCOMPARE(places(1), QStringLiteral("1.2"));
        QCOMPARE(places(2), QStringLiteral("1.3"));
    }

    void theWayFromASlotLeadsToItsVeryPatch()
    {
        Desk desk(presets);
        desk.keep({0, 1, 2});
        for (qsizetype row = 0; row < presets.size(); ++row) {
            QCOMPARE(desk.libraryEditor.patchOfSlot(row), std::optional(desk.idOf(row)));
        }
    }

    void anEditReachesASlotThatHasThePatchUnderItsFormerId()
    {
        Desk desk(presets);
        desk.keep({0, 1});
        desk.content.setPatch(desk.library.patches().at(1), 2);
        desk.library.deletePatches(TestPatches::ids(desk.library.patches()));
        desk.keep({1});
        QVERIFY(desk.inSlot(2).id() != desk.idOf(0));
        desk.rename(desk.idOf(0), QStringLiteral("Lead"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Preset 01 Lead Lead"));
    }

    void anEditOfANewCopySparesTheSlotsOfTheOneThatHadItsName()
    {
        Desk desk({QStringLiteral("Lead"), QStringLiteral("Other"), QStringLiteral("Other")});
        desk.keep({0});
        for (const qsizetype slot : {1, 2}) {
            desk.select(0);
            desk.libraryEditor.duplicateSelected();
            desk.content.setPatch(desk.library.patches().last(), slot);
            if (slot == 1) {
                desk.rename(desk.library.patches().last().id(), QStringLiteral("Solo"));
            }
        }
        QCOMPARE(desk.slotNames(), QStringLiteral("Lead Solo Lead-1"));
        desk.rename(desk.library.patches().last().id(), QStringLiteral("Third"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Lead Solo Third"));
        desk.rename(desk.idOf(1), QStringLiteral("Second"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Lead Second Third"));
    }
};

VELGOR_TEST(TestLibraryEditorSlots)
#include "tst_LibraryEditorSlots.moc"
