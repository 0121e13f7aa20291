#include "ContentSlots.h"
#include "DiagnosticRecorder.h"
#include "FatalStop.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QTest>

using namespace ContentSlots;
using TestPatches::imported;

namespace {

using Versions = QMap<QString, int>;

const QString v120 = QStringLiteral("V1.20");
const QString v121 = QStringLiteral("V1.21");
const QString none = QStringLiteral("!NONE");

} // namespace

class TestVelgorContent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsEmpty()
    {
        const VelgorContent content;
        QCOMPARE(content.limit(), 0);
        QVERIFY(content.velgorContentPatchList().isEmpty() && content.versions().isEmpty());
        QVERIFY(content.selections().isEmpty());
        QVERIFY(!content.openError() && !content.saveError() && !content.selectDefault());
        QVERIFY(!content.mixVersions() && !content.inverseTailBit());
    }

    void slotsAreNumberedThreeABank()
    {
        VelgorContent content;
        content.populate(fileOf(5));
        QCOMPARE(places(content).join(u' '), QStringLiteral("1-1 1-2 1-3 2-1 2-2"));
        QCOMPARE(BankNumber::ofSlot(98).bank, 33);
        QCOMPARE(BankNumber::ofSlot(98).number, 3);
    }

    void populateTakesEveryRecordOfTheFile()
    {
        const QList<SUserIR> userIRs{TestRecords::userIR(1), SUserIR()};
        const SPresetFile file = TestRecords::file(
            {TestRecords::patch(QStringLiteral("A"), 1), TestRecords::patch(QStringLiteral("B"), 2)}, userIRs);
        VelgorContent content;
        content.populate(file);
        QCOMPARE(content.limit(), 2);
        for (int i = 0; i < 2; ++i) {
            const VelgorPatch &patch = content.velgorContentPatchList().at(i).patch;
            QCOMPARE(patch.id(), VelgorPatch(file.patches.at(i), userIRs.at(i), file.headerDesc).id());
            QVERIFY(patch.records->patchData == file.patches.at(i) && patch.records->userIRData == userIRs.at(i));
            QVERIFY(patch.records->headerData == file.headerDesc);
            QCOMPARE(patch.hasUserIR, i == 0);
        }
    }

    void aFileVersionLikeThatOfPlaceholdersIsCountedOnce()
    {
        VelgorContent content;
        content.populate(fileOf(3, "!NONE"));
        QCOMPARE(content.versions(), (Versions{{none, 1}}));
        content.recountVersions();
        QCOMPARE(content.versions(), (Versions{{none, 3}}));
    }

    void aCountOfZeroPopulatesNothing()
    {
        VelgorContent content;
        content.populate(fileOf(3));
        SPresetFile file = fileOf(1);
        file.headerDesc.nbpatches = 0;
        DiagnosticRecorder recorder;
        Announcements announcements(content);
        content.populate(file);
        QCOMPARE(recorder.take(), QStringList{QStringLiteral("Cannot populate VelgorContent with no value")});
        QCOMPARE(content.velgorContentPatchList().size(), 3);
        QCOMPARE(announcements.take(), QString());
    }

    void createNewFillsAllSlotsAndLeavesTheVersionsAlone()
    {
        VelgorContent content;
        content.populate(fileOf(2, "V1.21"));
        const Versions versions = content.versions();
        const VelgorPatch patch = imported(QStringLiteral("Lead"));
        content.createNew(patch);
        QCOMPARE(content.limit(), 99);
        QCOMPARE(places(content).size(), 99);
        QCOMPARE(places(content).last(), QStringLiteral("33-3"));
        QSet<QUuid> ids;
        for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
            QVERIFY(TestPatches::isIdentical(slot.patch, patch));
            ids.insert(slot.id);
        }
        QCOMPARE(ids.size(), 99);
        QCOMPARE(content.versions(), versions);
    }

    void adjustAddsPlaceholdersAtTheEnd()
    {
        VelgorContent content;
        content.populate(fileOf(2));
        content.checkVersions();
        content.setLimit(4);
        content.adjust(std::nullopt);
        QCOMPARE(names(content).join(u','), QStringLiteral("Patch 0,Patch 1,-empty-,-empty-"));
        QCOMPARE(places(content).last(), QStringLiteral("2-1"));
        const VelgorPatch &placeholder = content.velgorContentPatchList().last().patch;
        QVERIFY(!placeholder.records);
        QVERIFY(!placeholder.hasUserIR && !placeholder.guitar && placeholder.comment.isEmpty());
        QCOMPARE(placeholder.version, none);
        QVERIFY(placeholder.id() != content.velgorContentPatchList().at(2).patch.id());
        QCOMPARE(content.versions(), (Versions{{v120, 2}}));
    }

    void adjustRemovesFromTheEnd()
    {
        VelgorContent content;
        content.populate(fileOf(5));
        content.setLimit(2);
        content.adjust(std::nullopt);
        QCOMPARE(names(content).join(u','), QStringLiteral("Patch 0,Patch 1"));
        QCOMPARE(content.versions(), (Versions{{v120, 5}, {none, 0}}));
    }

    void setPatchNeverCountsBelowZero()
    {
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        content.setPatch(imported(QStringLiteral("New"), 9, {}, "V1.21"), 0);
        QCOMPARE(content.versions(), (Versions{{v120, 0}, {v121, 1}}));
    }

    void setPatchKeepsTheSlot()
    {
        VelgorContent content;
        content.populate(fileOf(5));
        const QUuid id = content.velgorContentPatchList().at(4).id;
        content.setPatch(imported(QStringLiteral("New")), 4);
        QCOMPARE(content.velgorContentPatchList().at(4).id, id);
        QCOMPARE(places(content).last(), QStringLiteral("2-2"));
        QCOMPARE(names(content).last(), QStringLiteral("New"));
    }

    void setPatchBeyondTheListDoesNothing_data()
    {
        QTest::addColumn<qsizetype>("location");
        QTest::newRow("at the slot count") << qsizetype(5);
        QTest::newRow("far beyond") << std::numeric_limits<qsizetype>::max();
    }

    void setPatchBeyondTheListDoesNothing()
    {
        QFETCH(const qsizetype, location);
        VelgorContent content;
        content.populate(fileOf(5));
        Announcements announcements(content);
        content.setPatch(imported(QStringLiteral("New"), 9, {}, "V1.21"), location);
        QVERIFY(!names(content).contains(QStringLiteral("New")));
        QCOMPARE(announcements.take(), QString());
    }

    void theImpossibleStopsTheProgram()
    {
        VelgorContent content;
        QVERIFY(fatalStopOf([&] { content.renum(); }));
        QVERIFY(fatalStopOf([&] { content.adjust(std::nullopt); }));
        QVERIFY(fatalStopOf([&] { (void)content.getPatchesAndUserIRs(); }));
        content.populate(fileOf(2));
        QVERIFY(fatalStopOf([&] { content.setPatch(imported(QStringLiteral("New")), -1); }));
        QVERIFY(fatalStopOf([&] { content.move(2, 0); }));
        QVERIFY(fatalStopOf([&] { content.move(0, 3); }));
        QVERIFY(!fatalStopOf([&] { content.renum(); }));
    }

    void replaceMakesANewSlotAndLeavesTheVersionsAlone()
    {
        VelgorContent content;
        content.populate(fileOf(5));
        const Versions versions = content.versions();
        const QUuid id = content.velgorContentPatchList().at(3).id;
        content.replace(id, imported(QStringLiteral("New"), 9, {}, "V1.21"));
        QVERIFY(content.velgorContentPatchList().at(3).id != id);
        QCOMPARE(names(content).at(3), QStringLiteral("New"));
        QCOMPARE(places(content).at(3), QStringLiteral("2-1"));
        QCOMPARE(content.versions(), versions);
        content.recountVersions();
        content.checkVersions();
        QVERIFY(content.mixVersions());
    }

    void replaceOfAnUnknownSlotDoesNothing()
    {
        VelgorContent content;
        content.populate(fileOf(2));
        Announcements announcements(content);
        content.replace(QUuid::createUuid(), imported(QStringLiteral("New")));
        QCOMPARE(names(content).join(u','), QStringLiteral("Patch 0,Patch 1"));
        QCOMPARE(announcements.take(), QString());
    }

    void propagateReachesEverySlotWithThePatch()
    {
        VelgorContent content;
        VelgorPatch patch = imported(QStringLiteral("Lead"));
        content.createNew(imported(QStringLiteral("Other"), 2));
        content.setPatch(patch, 1);
        content.setPatch(patch, 98);
        patch.name = QStringLiteral("A name longer than sixteen");
        patch.solo = true;
        content.propagateChangedPatch(patch);
        for (const int row : {1, 98}) {
            const VelgorPatch &held = content.velgorContentPatchList().at(row).patch;
            QCOMPARE(held, patch);
            QCOMPARE(held.records->patchData.name, QStringLiteral("Lead"));
            QCOMPARE(held.id(), imported(QStringLiteral("Lead")).id());
        }
        QCOMPARE(names(content).count(QStringLiteral("Other")), 97);
        QCOMPARE(content.getPatchesAndUserIRs().first.at(1).name, QStringLiteral("A name longer th"));
    }

    void propagateSparesWhatTheSlotExports()
    {
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead"), 1, {}, "V1.21"));
        VelgorPatch patch = imported(QStringLiteral("Lead"));
        patch.comment = QStringLiteral("fat");
        patch.date = {5};
        patch.solo = patch.guitar = patch.higain = true;
        content.propagateChangedPatch(patch);
        const VelgorPatch &held = content.velgorContentPatchList().first().patch;
        VelgorPatch expected = imported(QStringLiteral("Lead"), 1, {}, "V1.21");
        expected.applyEdits(patch);
        QVERIFY(TestPatches::isIdentical(held, expected));
        QVERIFY(held.solo && held.guitar && held.higain && !held.bass);
        QCOMPARE(held.comment, patch.comment);
        QCOMPARE(held.date, patch.date);
        QCOMPARE(held.version, QStringLiteral("V1.21"));
    }

    void propagateSparesOtherSoundsWithTheId()
    {
        const VelgorPatch patch = imported(QStringLiteral("Lead"));
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead"), 2).withId(patch.id()));
        content.setPatch(imported(QStringLiteral("Other")).withId(patch.id()), 1);
        content.setPatch(patch, 2);
        VelgorPatch edited = patch;
        edited.name = QStringLiteral("Solo");
        content.propagateChangedPatch(edited);
        QCOMPARE(names(content).first(4).join(u','), QStringLiteral("Lead,Other,Solo,Lead"));
    }

    void recordsComeInSlotOrderUnderTheShownName()
    {
        VelgorContent content;
        content.setLimit(2);
        content.adjust(std::nullopt);
        VelgorPatch renamed = imported(QStringLiteral("Lead"), 1, TestRecords::userIR(5));
        renamed.name = QString::fromUtf8("123456789012345\u00e9");
        content.setPatch(renamed, 1);
        const auto [patches, userIRs] = content.getPatchesAndUserIRs();
        QCOMPARE(patches.size(), 1);
        QCOMPARE(patches.first().name, QStringLiteral("123456789012345"));
        QCOMPARE(patches.first().data, renamed.records->patchData.data);
        QCOMPARE(userIRs, QList{renamed.records->userIRData});
    }

    void moveCountsItsOffsetBeforeTheMove_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("offset");
        QTest::addColumn<QString>("order");
        QTest::newRow("down") << 0 << 2 << "1,0,2,3";
        QTest::newRow("to the end") << 0 << 4 << "1,2,3,0";
        QTest::newRow("up") << 3 << 0 << "3,0,1,2";
        QTest::newRow("onto itself") << 1 << 1 << "0,1,2,3";
        QTest::newRow("just below itself") << 1 << 2 << "0,1,2,3";
    }

    void moveCountsItsOffsetBeforeTheMove()
    {
        QFETCH(const int, from);
        QFETCH(const int, offset);
        VelgorContent content;
        content.populate(fileOf(4));
        const QUuid id = content.velgorContentPatchList().at(from).id;
        Announcements announcements(content);
        content.move(from, offset);
        QTEST(names(content).join(u',').remove(QStringLiteral("Patch ")), "order");
        QCOMPARE(places(content).join(u' '), QStringLiteral("1-1 1-2 1-3 2-1"));
        const qsizetype row = names(content).indexOf(QStringLiteral("Patch %1").arg(from));
        QCOMPARE(content.velgorContentPatchList().at(row).id, id);
        QCOMPARE(announcements.take().isEmpty(), row == from);
    }

    void movedRowsStandTogetherInTheirOrder()
    {
        QRandomGenerator random(1);
        for (int round = 0; round < 500; ++round) {
            const int count = 1 + static_cast<int>(random.bounded(8));
            VelgorContent content;
            content.populate(fileOf(count));
            QList<qsizetype> rows;
            QStringList moved;
            QStringList before;
            QStringList behind;
            const int offset = static_cast<int>(random.bounded(count + 1));
            for (int row = 0; row < count; ++row) {
                const QString name = names(content).at(row);
                if (random.bounded(2) == 0) {
                    rows.append(row);
                    moved.append(name);
                } else {
                    (row < offset ? before : behind).append(name);
                }
            }
            content.move(rows, offset);
            QCOMPARE(names(content), before + moved + behind);
            for (int row = 0; row < count; ++row) {
                QCOMPARE(places(content).at(row), QStringLiteral("%1-%2").arg(row / 3 + 1).arg(row % 3 + 1));
            }
        }
    }

    void newListCanBeFilledWithAPatchOfTheOldOne()
    {
        VelgorContent content;
        content.createNew(imported(QStringLiteral("New")));
        content.createNew(content.velgorContentPatchList().first().patch);
        QCOMPARE(content.velgorContentPatchList().last().patch.name, QStringLiteral("New"));
    }
};

VELGOR_TEST(TestVelgorContent)
#include "tst_VelgorContent.moc"
