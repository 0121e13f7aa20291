#include "ImportedList.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace ImportedList;
using TestPatches::imported;

/// Which changes of a list make it another one than its file.
class TestModifiedList : public QObject {
    Q_OBJECT

    using Change = std::function<void(Desk &)>;

private Q_SLOTS:
    void anUndoneChangeIsNoChange_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<Change>("undo");
        const auto row = [](const char *name, const Change &change, const Change &undo) {
            QTest::newRow(name) << change << undo;
        };
        row(
            "placed", [](Desk &desk) { desk.content.setPatch(imported(QStringLiteral("New"), 9), 1); },
            [](Desk &desk) { desk.content.setPatch(imported(QStringLiteral("B"), 2), 1); });
        row(
            "moved", [](Desk &desk) { desk.content.move(0, 3); }, [](Desk &desk) { desk.content.move(2, 0); });
        row(
            "renamed", [](Desk &desk) { rename(desk, QStringLiteral("Other")); },
            [](Desk &desk) { rename(desk, QStringLiteral("B")); });
        row(
            "tail bit", [](Desk &desk) { desk.content.setInverseTailBit(true); },
            [](Desk &desk) { desk.content.setInverseTailBit(false); });
        row(
            "shortened", [](Desk &desk) { resize(desk, 2); },
            [](Desk &desk) {
                const SPresetFile file = *SPresetFile::fromData(threePatches());
                resize(desk, 3);
                desk.content.setPatch(VelgorPatch(file.patches.last(), file.userIRs.last(), file.headerDesc), 2);
            });
        row(
            "replaced by its own patch, impulse response left out",
            [](Desk &desk) {
                VelgorPatch patch = desk.inSlot(0);
                patch.records->userIRData = SUserIR();
                desk.content.setPatch(patch, 0);
            },
            [](Desk &desk) {
                const SPresetFile file = *SPresetFile::fromData(threePatches());
                desk.content.setPatch(VelgorPatch(file.patches.first(), file.userIRs.first(), file.headerDesc), 0);
            });
    }

    void anUndoneChangeIsNoChange()
    {
        QFETCH(const Change, change);
        QFETCH(const Change, undo);
        Desk desk;
        desk.contentFiles.importFile();
        QSignalSpy changes(&desk.contentFiles, &ContentFiles::changed);
        change(desk);
        QVERIFY(desk.contentFiles.isModified());
        QVERIFY(!changes.isEmpty());
        changes.clear();
        undo(desk);
        QVERIFY(!desk.contentFiles.isModified());
        QVERIFY(!changes.isEmpty());
    }

    void whatAnExportDoesNotWriteIsNoChange_data()
    {
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("comment and flags", [](Desk &desk) {
            VelgorPatch patch = desk.inSlot(1);
            patch.comment = QStringLiteral("fat");
            patch.solo = true;
            desk.content.propagateChangedPatch(patch);
        });
        row("selection",
            [](Desk &desk) { desk.content.setSelections({desk.content.velgorContentPatchList().first().id}); });
        row("slot with its own patch in it", [](Desk &desk) {
            desk.content.replace(desk.content.velgorContentPatchList().first().id, VelgorPatch(desk.inSlot(0)));
        });
        row("the patch as the library stores it", [](Desk &desk) {
            QVERIFY(desk.handler.exportTo(QList{desk.inSlot(2)}, out));
            const SPresetFile file = *SPresetFile::fromData(desk.memory.files.value(out));
            desk.content.setPatch(VelgorPatch(file.patches.first(), file.userIRs.first(), file.headerDesc), 2);
        });
        row("the first patch as the library stores it", [](Desk &desk) {
            QVERIFY(desk.handler.exportTo(QList{desk.inSlot(0)}, out));
            const SPresetFile file = *SPresetFile::fromData(desk.memory.files.value(out));
            desk.content.setPatch(VelgorPatch(file.patches.first(), file.userIRs.first(), file.headerDesc), 0);
        });
    }

    void whatAnExportDoesNotWriteIsNoChange()
    {
        QFETCH(const Change, change);
        Desk desk;
        desk.contentFiles.importFile();
        change(desk);
        QVERIFY(!desk.contentFiles.isModified());
        QVERIFY(desk.handler.exportTo(desk.content, out));
        QCOMPARE(desk.memory.files.value(out), threePatches());
    }

    void oneByteOfTheSoundIsAChange_data()
    {
        QTest::addColumn<bool>("isResponse");
        QTest::addColumn<int>("byte");
        QTest::newRow("first of the patch") << false << 0;
        QTest::newRow("last of the patch") << false << -1;
        QTest::newRow("first behind the number of the response") << true << 4;
        QTest::newRow("last of the response") << true << -1;
    }

    void oneByteOfTheSoundIsAChange()
    {
        QFETCH(const bool, isResponse);
        QFETCH(const int, byte);
        Desk desk;
        desk.contentFiles.importFile();
        VelgorPatch patch = desk.inSlot(2);
        QByteArray &bytes = isResponse ? patch.records->userIRData.data : patch.records->patchData.data;
        const qsizetype position = byte < 0 ? bytes.size() + byte : byte;
        bytes[position] = static_cast<char>(bytes.at(position) ^ 1);
        desk.content.setPatch(patch, 2);
        QVERIFY(desk.contentFiles.isModified());
        bytes[position] = static_cast<char>(bytes.at(position) ^ 1);
        desk.content.setPatch(patch, 2);
        QVERIFY(!desk.contentFiles.isModified());
    }

    void aSlotWithoutPresetDataDiffersFromOneWithIt_data()
    {
        QTest::addColumn<qsizetype>("row");
        QTest::newRow("first, which gives the file its header") << qsizetype(0);
        QTest::newRow("another") << qsizetype(1);
    }

    void aSlotWithoutPresetDataDiffersFromOneWithIt()
    {
        QFETCH(const qsizetype, row);
        Desk desk;
        desk.contentFiles.importFile();
        const VelgorPatch before = desk.inSlot(row);
        desk.content.setPatch(VelgorPatch(QStringLiteral("nothing"), false), row);
        QVERIFY(desk.contentFiles.isModified());
        desk.content.setPatch(before, row);
        QVERIFY(!desk.contentFiles.isModified());
    }

    void anotherFirmwareInTheFirstSlotIsAChange()
    {
        Desk desk;
        desk.contentFiles.importFile();
        VelgorPatch patch = desk.inSlot(0);
        patch.records->headerData.pm0[4] = '9';
        desk.content.setPatch(patch, 0);
        QVERIFY(desk.contentFiles.isModified());
    }

private:
    static void rename(Desk &desk, const QString &name)
    {
        VelgorPatch patch = desk.inSlot(1);
        patch.name = name;
        desk.content.propagateChangedPatch(patch);
    }

    static void resize(Desk &desk, int limit)
    {
        desk.content.setLimit(limit);
        desk.content.adjust(std::nullopt);
    }
};

VELGOR_TEST(TestModifiedList)
#include "tst_ModifiedList.moc"
