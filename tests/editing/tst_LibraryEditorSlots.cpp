#include "DiagnosticRecorder.h"
#include "EditHistory.h"
#include "FakeLibraryStorage.h"
#include "LibraryEditor.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QCoreApplication>
#include <QTest>

using TestPatches::imported;
using TestPatches::names;

namespace {

/// A library, a list of patches whose names hash alike, and the editor between them.
struct Desk {
    VelgorLibrary library;
    VelgorContent content;
    FakeLibraryStorage storage;
    EditHistory history{library, content, storage};
    LibraryEditor editor{library, content, history};
    DiagnosticRecorder recorder;

    explicit Desk(const QStringList &slotNames)
    {
        QList<SPatch> records;
        for (const QString &name : slotNames) {
            records.append(TestRecords::patch(name));
        }
        content.populate(TestRecords::file(records, {}, "V1.21"));
    }

    [[nodiscard]] const VelgorPatch &slot(qsizetype row) const
    {
        return content.velgorContentPatchList().at(row).patch;
    }
    [[nodiscard]] QString slotNames() const
    {
        QStringList result;
        for (const VelgorContentPatch &each : content.velgorContentPatchList()) {
            result.append(each.patch.name);
        }
        return result.join(u',');
    }
    void keep(const QList<qsizetype> &rows)
    {
        QList<TransferablePatch> items;
        for (const qsizetype row : rows) {
            items.append(TransferablePatch::ofSlot(content.velgorContentPatchList().at(row)));
        }
        editor.drop(items, 0);
    }
    void rename(quint64 id, const QString &name)
    {
        VelgorPatch patch = *library.getPatchFromId(id)->patch;
        patch.name = name;
        library.update(patch);
        editor.changed(id);
    }
    [[nodiscard]] quint64 idOf(qsizetype row) const { return library.patches().at(row).id(); }
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
        desk.library.setSelection(desk.idOf(0));
        VelgorPatch expected = desk.slot(1);
        for (const bool isSet : {true, false}) {
            desk.editor.flipFlagOfSelected(flag);
            expected.*flag = isSet;
            expected.date = desk.library.patches().first().date;
            QVERIFY(TestPatches::isIdentical(desk.slot(1), expected));
            QVERIFY(!(desk.slot(0).*flag) && !(desk.slot(2).*flag));
        }
    }

    void keepingSelectsThePatchAmongThoseWithOneHash()
    {
        Desk desk(presets);
        desk.keep({2});
        desk.keep({0, 1, 2});
        QCOMPARE(names(desk.library.patches()).join(u','), QStringLiteral("Preset 03,Preset 01,Preset 02"));
        QCOMPARE(desk.library.selection(), std::optional(desk.idOf(1)));
        QCOMPARE(desk.recorder.lines().last(), QStringLiteral("Select %1").arg(desk.idOf(1)));
    }

    void anEditMeansTheSlotsOfThisPatchAlone()
    {
        Desk desk(presets + presets.first(2));
        desk.keep({0, 1, 2});
        desk.rename(desk.idOf(1), QStringLiteral("Lead"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Preset 01,Lead,Preset 03,Preset 01,Lead"));
        desk.rename(desk.idOf(1), QStringLiteral("Preset 01"));
        desk.rename(desk.idOf(0), QStringLiteral("Solo"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Solo,Preset 01,Preset 03,Solo,Preset 01"));
    }

    void placesAreThoseOfThisPatchAlone()
    {
        Desk desk(presets);
        desk.keep({0, 1});
        const auto places = [&desk](qsizetype row) {
            QStringList texts;
            for (const BankNumber &place : desk.editor.inContentPatch(desk.idOf(row))) {
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
            QCOMPARE(desk.editor.patchOfSlot(row), std::optional(desk.idOf(row)));
        }
    }

    void anEditReachesASlotThatHasThePatchUnderItsFormerId()
    {
        Desk desk(presets);
        desk.keep({0, 1});
        desk.content.setPatch(desk.library.patches().at(1), 2);
        desk.library.deletePatches(TestPatches::ids(desk.library.patches()));
        desk.keep({1});
        QVERIFY(desk.slot(2).id() != desk.idOf(0));
        desk.rename(desk.idOf(0), QStringLiteral("Lead"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Preset 01,Lead,Lead"));
    }

    void anEditOfANewCopySparesTheSlotsOfTheOneThatHadItsName()
    {
        Desk desk({QStringLiteral("Lead"), QStringLiteral("Other"), QStringLiteral("Other")});
        desk.keep({0});
        for (const qsizetype slot : {1, 2}) {
            desk.library.setSelection(desk.idOf(0));
            desk.editor.duplicateSelected();
            desk.content.setPatch(desk.library.patches().last(), slot);
            if (slot == 1) {
                desk.rename(desk.library.patches().last().id(), QStringLiteral("Solo"));
            }
        }
        QCOMPARE(desk.slotNames(), QStringLiteral("Lead,Solo,Lead-1"));
        desk.rename(desk.library.patches().last().id(), QStringLiteral("Third"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Lead,Solo,Third"));
        desk.rename(desk.idOf(1), QStringLiteral("Second"));
        QCOMPARE(desk.slotNames(), QStringLiteral("Lead,Second,Third"));
    }
};

VELGOR_TEST(TestLibraryEditorSlots)
#include "tst_LibraryEditorSlots.moc"
