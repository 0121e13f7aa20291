#include "ContentFiles.h"
#include "DiagnosticRecorder.h"
#include "EditHistory.h"
#include "FakeFiles.h"
#include "FakeLibraryStorage.h"
#include "PatchFileHandler.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using TestPatches::imported;

namespace {

const QString in = QStringLiteral("/lists/in.prst");
const QString out = QStringLiteral("/lists/out.prst");

QByteArray threePatches()
{
    return TestRecords::fileBytes(
        {TestRecords::patch(QStringLiteral("A"), 1), TestRecords::patch(QStringLiteral("B"), 2),
            TestRecords::patch(QStringLiteral("C"), 3)},
        {TestRecords::userIR(0), {}, TestRecords::userIR(2, 5)});
}

} // namespace

class TestContentFiles : public QObject {
    Q_OBJECT

    /// What the files and dialogs are to be, and what came of it.
    struct Desk {
        FakeFileAccess files;
        FakeFileDialogs dialogs;
        PatchFileHandler handler{files, &dialogs};
        VelgorContent content;
        VelgorLibrary library;
        FakeLibraryStorage storage;
        EditHistory history{library, content, storage};
        ContentFiles contentFiles{content, handler, history};

        Desk()
        {
            files.files.insert(in, threePatches());
            dialogs.answer = in;
        }
        [[nodiscard]] const VelgorPatch &patch(qsizetype row) const
        {
            return content.velgorContentPatchList().at(row).patch;
        }
        [[nodiscard]] QStringList names() const
        {
            QStringList names;
            for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
                names.append(slot.patch.name);
            }
            return names;
        }
        void exportTo(const QString &path)
        {
            dialogs.answer = path;
            QVERIFY(contentFiles.exportList());
        }
    };

    using Change = std::function<void(Desk &)>;

    std::unique_ptr<DiagnosticRecorder> m_recorder;

private Q_SLOTS:
    void init() { m_recorder = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_recorder.reset(); }

    void startsUnmodifiedWithoutAFile()
    {
        const Desk desk;
        QVERIFY(!desk.contentFiles.isModified());
        QCOMPARE(desk.contentFiles.fileName() + desk.contentFiles.problem(), QString());
    }

    void anImportedListIsItsFile()
    {
        Desk desk;
        const QSignalSpy changes(&desk.contentFiles, &ContentFiles::changed);
        desk.contentFiles.importFile();
        QCOMPARE(desk.names().join(u' '), QStringLiteral("A B C"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(!desk.contentFiles.isModified());
        QVERIFY(!changes.isEmpty());
    }

    void anExportProposesTheNameOfTheListsFile()
    {
        Desk desk;
        desk.contentFiles.importFile(in);
        desk.dialogs.answer = out;
        QVERIFY(desk.contentFiles.exportList());
        QVERIFY(desk.contentFiles.exportList());
        desk.content.createNew(desk.patch(0));
        QVERIFY(desk.contentFiles.exportList());
        QCOMPARE(desk.dialogs.asked,
            (QStringList{QStringLiteral("Save patches list: in.prst"), QStringLiteral("Save patches list: out.prst"),
                QStringLiteral("Save patches list: patches.prst")}));
    }

    void thePatchesOfAFileAreReadBesideTheList()
    {
        Desk desk;
        desk.contentFiles.importFile(in);
        const QStringList before = desk.names();
        const QList<VelgorPatch> patches = desk.contentFiles.patchesIn(in);
        QCOMPARE(patches.size(), 3);
        QCOMPARE(patches.at(2).name, QStringLiteral("C"));
        QVERIFY(patches.at(2).hasUserIR);
        QVERIFY(desk.contentFiles.problem().isEmpty());
        QVERIFY(desk.contentFiles.patchesIn(QStringLiteral("/lists/none.prst")).isEmpty());
        QVERIFY(desk.contentFiles.problem().contains(QStringLiteral("none.prst")));
        QCOMPARE(desk.names(), before);
        QVERIFY(!desk.content.openError());
        QCOMPARE(desk.contentFiles.fileName(), in);
    }

    void aNamedFileIsImportedUnasked()
    {
        Desk desk;
        desk.content.setOpenError(true);
        desk.contentFiles.importFile(in);
        QCOMPARE(desk.dialogs.asked, QStringList());
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(!desk.content.openError());
    }

    void aCancelledImportChangesNothing()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.dialogs.answer.reset();
        desk.contentFiles.importFile();
        QVERIFY(!desk.content.openError());
        QCOMPARE(desk.names().join(u' '), QStringLiteral("New B C"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QCOMPARE(desk.contentFiles.problem(), QString());
        QVERIFY(desk.contentFiles.isModified());
    }

    void anUnreadableFileChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("no preset file") << QByteArray("hello");
        QTest::newRow("cut") << threePatches().chopped(300);
        QTest::newRow("missing") << QByteArray();
    }

    void anUnreadableFileChangesNothing()
    {
        QFETCH(const QByteArray, bytes);
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        if (!bytes.isNull()) {
            desk.files.files.insert(out, bytes);
        }
        desk.contentFiles.importFile(out);
        QVERIFY(desk.content.openError());
        QVERIFY2(desk.contentFiles.problem().contains(out), qPrintable(desk.contentFiles.problem()));
        QCOMPARE(desk.names().join(u' '), QStringLiteral("New B C"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
    }

    void anExportedListIsItsNewFile()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New"), 7), 1);
        QVERIFY(desk.contentFiles.isModified());
        desk.exportTo(out);
        QCOMPARE(desk.contentFiles.fileName(), out);
        QVERIFY(!desk.contentFiles.isModified());
        QVERIFY(!desk.content.saveError());
        QVERIFY(desk.files.files.contains(out));
        QCOMPARE(desk.files.files.value(in), threePatches());
    }

    void aCancelledExportIsNoError()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.dialogs.answer.reset();
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(!desk.content.saveError());
        QVERIFY(!desk.contentFiles.exportPatch(desk.patch(0)));
        QVERIFY(!desk.content.saveError());
        QCOMPARE(desk.contentFiles.problem(), QString());
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
    }

    void aFailedExportKeepsTheState()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.files.writeError = QStringLiteral("disk full");
        desk.dialogs.answer = out;
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(desk.content.saveError());
        QCOMPARE(desk.contentFiles.problem(), out + QStringLiteral(": disk full"));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
        QCOMPARE(desk.names().join(u' '), QStringLiteral("New B C"));
    }

    void theNextExportClearsTheError()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setSaveError(true);
        desk.exportTo(out);
        QVERIFY(!desk.content.saveError());
    }

    void anEmptyListCannotBeExported()
    {
        Desk desk;
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(desk.content.saveError());
        QVERIFY(!desk.contentFiles.problem().isEmpty());
        QCOMPARE(desk.dialogs.asked, QStringList());
    }

    void exportingOnePatchLeavesTheListAlone()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.setPatch(imported(QStringLiteral("New")), 0);
        desk.dialogs.answer = out;
        QVERIFY(desk.contentFiles.exportPatch(desk.patch(1)));
        QCOMPARE(desk.contentFiles.fileName(), in);
        QVERIFY(desk.contentFiles.isModified());
        QCOMPARE(SPresetFile::fromData(desk.files.files.value(out))->patches.first().name, QStringLiteral("B"));
    }

    void aFailedExportOfOnePatchSetsTheError()
    {
        Desk desk;
        QVERIFY(!desk.contentFiles.exportPatch(TestPatches::stored(7, QStringLiteral("Without data"))));
        QVERIFY(desk.content.saveError());
        QVERIFY(desk.contentFiles.problem().contains(QStringLiteral("Without data")));
    }

    void aNewListHasNoFileAndIsModified()
    {
        Desk desk;
        desk.contentFiles.importFile();
        desk.content.createNew(desk.patch(0));
        QVERIFY(desk.contentFiles.isModified());
        QCOMPARE(desk.contentFiles.fileName(), QString());
    }

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
                VelgorPatch patch = desk.patch(0);
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
            VelgorPatch patch = desk.patch(1);
            patch.comment = QStringLiteral("fat");
            patch.solo = true;
            desk.content.propagateChangedPatch(patch);
        });
        row("selection",
            [](Desk &desk) { desk.content.setSelections({desk.content.velgorContentPatchList().first().id}); });
        row("slot with its own patch in it", [](Desk &desk) {
            desk.content.replace(desk.content.velgorContentPatchList().first().id, VelgorPatch(desk.patch(0)));
        });
        row("the patch as the library stores it", [](Desk &desk) {
            QVERIFY(desk.handler.exportTo(QList{desk.patch(2)}, out));
            const SPresetFile file = *SPresetFile::fromData(desk.files.files.value(out));
            desk.content.setPatch(VelgorPatch(file.patches.first(), file.userIRs.first(), file.headerDesc), 2);
        });
        row("the first patch as the library stores it", [](Desk &desk) {
            QVERIFY(desk.handler.exportTo(QList{desk.patch(0)}, out));
            const SPresetFile file = *SPresetFile::fromData(desk.files.files.value(out));
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
        QCOMPARE(desk.files.files.value(out), threePatches());
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
        VelgorPatch patch = desk.patch(2);
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
        const VelgorPatch before = desk.patch(row);
        desk.content.setPatch(VelgorPatch(QStringLiteral("nothing"), false), row);
        QVERIFY(desk.contentFiles.isModified());
        desk.content.setPatch(before, row);
        QVERIFY(!desk.contentFiles.isModified());
    }

    void aListWithoutPresetDataCannotBeExported()
    {
        Desk desk;
        desk.content.createNew(VelgorPatch(QStringLiteral("nothing"), false));
        QVERIFY(desk.contentFiles.isModified());
        desk.dialogs.answer = out;
        QVERIFY(!desk.contentFiles.exportList());
        QVERIFY(desk.content.saveError());
        QVERIFY(!desk.files.files.contains(out));
    }

    void anotherFirmwareInTheFirstSlotIsAChange()
    {
        Desk desk;
        desk.contentFiles.importFile();
        VelgorPatch patch = desk.patch(0);
        patch.records->headerData.pm0[4] = '9';
        desk.content.setPatch(patch, 0);
        QVERIFY(desk.contentFiles.isModified());
    }

private:
    static void rename(Desk &desk, const QString &name)
    {
        VelgorPatch patch = desk.patch(1);
        patch.name = name;
        desk.content.propagateChangedPatch(patch);
    }

    static void resize(Desk &desk, int limit)
    {
        desk.content.setLimit(limit);
        desk.content.adjust(std::nullopt);
    }
};

VELGOR_TEST(TestContentFiles)
#include "tst_ContentFiles.moc"
