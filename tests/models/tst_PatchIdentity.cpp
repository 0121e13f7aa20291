#include "PatchIdentity.h"
#include "TestPatches.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QHash>
#include <QTest>

#include <algorithm>
#include <functional>

using TestPatches::imported;

namespace {

const QString lead = QStringLiteral("Lead");
using Change = std::function<void(VelgorPatch &)>;

VelgorPatch leadWithIR()
{
    return imported(lead, 1, TestRecords::userIR(7, 3, 32));
}

/// Another sound with the same hash: it differs in the same way at two places 8 bytes apart.
VelgorPatch twin(const VelgorPatch &patch)
{
    SPatch record = patch.records->patchData;
    for (const qsizetype place : {16, 24}) {
        record.data[place] = static_cast<char>(record.data.at(place) ^ 0x11);
    }
    return VelgorPatch(record, patch.records->userIRData, patch.records->headerData);
}

/// Finds patches by id in a list.
PatchIdentity::Holder among(const QList<VelgorPatch> &patches)
{
    return [&patches](quint64 id) -> const VelgorPatch * {
        const auto found =
            std::find_if(patches.begin(), patches.end(), [id](const VelgorPatch &patch) { return patch.id() == id; });
        return found == patches.end() ? nullptr : &*found;
    };
}

} // namespace

class TestPatchIdentity : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatDiffersTellsPatchesApart_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<bool>("isSameSound");
        QTest::addColumn<bool>("isSameContent");
        const auto row = [](const char *name, bool isSameSound, bool isSameContent, const Change &change) {
            QTest::newRow(name) << change << isSameSound << isSameContent;
        };
        row("nothing", true, true, [](VelgorPatch &) {});
        row("shown name", true, true, [](VelgorPatch &patch) { patch.name = QStringLiteral("Solo"); });
        row("classification", true, true, [](VelgorPatch &patch) { patch.solo = true; });
        row("place in the list", true, true, [](VelgorPatch &patch) { patch.records->patchData.pos = 5; });
        row("separators", true, true,
            [](VelgorPatch &patch) { patch.records->patchData.sep = patch.records->patchData.sep2 = 9; });
        row("user-IR number", true, true, [](VelgorPatch &patch) { patch.records->userIRData.data[0] = 99; });
        row("header", true, true, [](VelgorPatch &patch) { patch.records->headerData.tailBit = 1; });
        row("name of the record", true, false,
            [](VelgorPatch &patch) { patch.records->patchData.name = QStringLiteral("Solo"); });
        row("bytes of a name that is no text", true, false, [](VelgorPatch &patch) {
            patch.records->patchData.unreadableName = QByteArray("\xFFLead").leftJustified(16, '\0');
        });
        row("tag", false, false, [](VelgorPatch &patch) { patch.records->patchData.mrap[0] = 'X'; });
        row("last byte of the data", false, false, [](VelgorPatch &patch) {
            patch.records->patchData.data.back() = static_cast<char>(~patch.records->patchData.data.back());
        });
        row("length of the data", false, false, [](VelgorPatch &patch) { patch.records->patchData.data.append('x'); });
        row("two places 8 bytes apart", false, false, [](VelgorPatch &patch) { patch = twin(patch); });
        row("response", false, false, [](VelgorPatch &patch) { patch.records->userIRData.data.back() = '!'; });
        row("no user IR", false, false, [](VelgorPatch &patch) { patch.records->userIRData = SUserIR(); });
    }

    void whatDiffersTellsPatchesApart()
    {
        QFETCH(const Change, change);
        const VelgorPatch patch = leadWithIR();
        VelgorPatch other = patch;
        change(other);
        QTEST(PatchIdentity::isSameSound(patch, other), "isSameSound");
        QTEST(PatchIdentity::isSameSound(other, patch), "isSameSound");
        QTEST(PatchIdentity::isSameContent(patch, other), "isSameContent");
        QTEST(PatchIdentity::isSameContent(other, patch), "isSameContent");
        QTEST(PatchIdentity::isSame(patch, other.withId(patch.id())), "isSameContent");
        QVERIFY(!PatchIdentity::isSame(patch, other.withId(patch.id() + 1)));
    }

    void namesAreComparedAsAFileHoldsThem()
    {
        const VelgorPatch whole = imported(QStringLiteral("A name longer than its field"));
        QVERIFY(PatchIdentity::isSameContent(whole, imported(QStringLiteral("A name longer th"))));
        QVERIFY(!PatchIdentity::isSameContent(whole, imported(QStringLiteral("A name longer t"))));
    }

    void withoutPresetDataTheIdDecides()
    {
        const VelgorPatch stored = TestPatches::stored(7, lead);
        QVERIFY(PatchIdentity::isSameContent(stored, imported(lead).withId(7)));
        QVERIFY(!PatchIdentity::isSameContent(stored, imported(lead)));
        QVERIFY(!PatchIdentity::isSameSound(stored, stored));
    }

    void aFreshIdDependsOnTheContentAlone()
    {
        // These numbers are in libraries on disk.
        VelgorPatch small = leadWithIR();
        small.records->patchData.data = QByteArray::fromHex("10203040");
        small.records->patchData.size = 24;
        small.records->userIRData.data = QByteArray::fromHex("00000000a1a2a3a4a5a6");
        small.records->userIRData.size = 10;
        QCOMPARE(PatchIdentity::freshId(small, 1), Q_UINT64_C(0x63ab34c14485685a));
        QCOMPARE(PatchIdentity::freshId(small, 2), Q_UINT64_C(0x7726a0e55e00934b));
        VelgorPatch moved = leadWithIR().withId(5);
        moved.name = QStringLiteral("Solo");
        moved.records->patchData.pos = 98;
        moved.records->userIRData.data[0] = 98;
        QCOMPARE(PatchIdentity::freshId(moved, 1), PatchIdentity::freshId(leadWithIR(), 1));
        QVERIFY(PatchIdentity::freshId(twin(leadWithIR()), 1) != PatchIdentity::freshId(leadWithIR(), 1));
        moved.records->patchData.name = QStringLiteral("Solo");
        QVERIFY(PatchIdentity::freshId(moved, 1) != PatchIdentity::freshId(leadWithIR(), 1));
    }

    void theContentGivesItsHashAndItsFreshId()
    {
        const VelgorPatch patch = leadWithIR();
        QVERIFY(PatchIdentity::givesId(patch.withId(1), patch.id()));
        QVERIFY(PatchIdentity::givesId(patch, PatchIdentity::freshId(patch, 1)));
        QVERIFY(!PatchIdentity::givesId(patch, 1));
        QVERIFY(!PatchIdentity::givesId(patch, PatchIdentity::freshId(patch, 3), 2));
        QVERIFY(PatchIdentity::givesId(patch, PatchIdentity::freshId(patch, 3), 3));
        QVERIFY(!PatchIdentity::givesId(TestPatches::stored(1, lead), 1));
    }

    void aPatchIsFoundUnderEveryIdThatItMayHave()
    {
        const VelgorPatch patch = leadWithIR();
        const VelgorPatch other = twin(patch);
        QCOMPARE(other.id(), patch.id());
        const quint64 first = PatchIdentity::freshId(other, 1);
        const quint64 second = PatchIdentity::freshId(other, 2);
        const auto placed = [&other](const QList<VelgorPatch> &patches) {
            const PatchIdentity::Place place = PatchIdentity::placeOf(other, among(patches));
            return std::pair(place.id, place.isKnown);
        };
        QCOMPARE(placed({}), std::pair(other.id(), false));
        QCOMPARE(placed({other}), std::pair(other.id(), true));
        QCOMPARE(placed({patch}), std::pair(first, false));
        QCOMPARE(placed({patch, other.withId(first)}), std::pair(first, true));
        QCOMPARE(placed({other.withId(first)}), std::pair(first, true));
        QCOMPARE(placed({patch, patch.withId(first)}), std::pair(second, false));
        QCOMPARE(placed({patch, patch.withId(first), other.withId(second)}), std::pair(second, true));
    }

    void manyPatchesWithOneHashAreNotComparedWithEachOther()
    {
        QHash<quint64, VelgorPatch> patches;
        qsizetype looks = 0;
        const auto holder = [&](quint64 id) {
            ++looks;
            const auto found = patches.constFind(id);
            return found == patches.cend() ? nullptr : &*found;
        };
        const VelgorPatch first = leadWithIR();
        for (int round = 0; round < 2; ++round) {
            for (int number = 0; number < 256; ++number) {
                SPatch record = first.records->patchData;
                for (const qsizetype place : {16, 24}) {
                    record.data[place] = static_cast<char>(record.data.at(place) ^ number);
                }
                const VelgorPatch patch(record, first.records->userIRData, first.records->headerData);
                QCOMPARE(patch.id(), first.id());
                looks = 0;
                const PatchIdentity::Place place = PatchIdentity::placeOf(patch, holder);
                QCOMPARE(place.isKnown, round == 1);
                QVERIFY(looks <= 3);
                patches.insert(place.id, patch.withId(place.id));
            }
        }
        QCOMPARE(patches.size(), 256);
    }

    void aPatchUnderAnotherIdIsFoundUnderTheHashOfItsContent()
    {
        const VelgorPatch patch = leadWithIR();
        const PatchIdentity::Place place = PatchIdentity::placeOf(patch.withId(5), among({patch}));
        QCOMPARE(place.id, patch.id());
        QVERIFY(place.isKnown);
        QCOMPARE(PatchIdentity::placeOf(patch.withId(5), among({})).id, 5U);
    }

    void aPatchWithoutPresetDataIsKnownByItsId()
    {
        const VelgorPatch stored = TestPatches::stored(7, lead);
        QVERIFY(PatchIdentity::placeOf(stored, among({imported(lead).withId(7)})).isKnown);
        QVERIFY(!PatchIdentity::placeOf(stored, among({imported(lead)})).isKnown);
    }
};

VELGOR_TEST(TestPatchIdentity)
#include "tst_PatchIdentity.moc"
