#include "DiagnosticRecorder.h"
#include "ExaminedLibrary.h"
#include "KeptLibraries.h"
#include "LibraryJournal.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QTest>

#include <algorithm>

using namespace ExaminedLibrary;
using namespace TestLibraries;
using Kind = LibraryFinding::Kind;

class TestDoctorRescue : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;
    LibraryState m_three = importedThree();
    VelgorPatch m_lead = m_three.patches.first();

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void patchWithoutFileIsRescuedFromAFileThatHoldsIt()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        QVERIFY(QFile::rename(directory.filePath(fileOf(m_lead)), directory.filePath(QStringLiteral("lib-x.7.prst"))));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::PatchWithoutFile && finding.rescued);
        repair(directory);
        QList<VelgorPatch> patches = loaded(directory);
        QVERIFY(areIdentical(patches, m_three.patches));
        // The file under the wrong name stays, and is of no more account.
        const LibraryHealth health = examine(directory);
        QVERIFY(health.findings.isEmpty());
        QCOMPARE(health.notes.size(), 1);
        QVERIFY(health.notes.first().kind == Kind::SpareFile);
        QCOMPARE(health.notes.first().file, QStringLiteral("lib-x.7.prst"));
    }

    void fileWithoutEntryIsAdopted()
    {
        const LibraryDirectory directory;
        LibraryState two = m_three;
        two.patches.removeFirst();
        QVERIFY(!save(directory, two).hasError());
        directory.write(fileOf(m_lead), patchBytes(m_lead));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::FileWithoutEntry && finding.rescued);
        repair(directory);
        QVERIFY(examine(directory).findings.isEmpty());
        const VelgorPatch adopted = loaded(directory).last();
        QCOMPARE(adopted.id(), m_lead.id());
        QCOMPARE(adopted.records->patchData, m_lead.records->patchData);
    }

    void adoptedFileGetsBackWhatAFormerLibraryFileKnows()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        VelgorPatch renamed = m_lead.withId(m_lead.id());
        renamed.name = QStringLiteral("Renamed");
        LibraryState former = m_three;
        former.patches.first() = renamed;
        directory.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), LibraryJson::encode(m_three));
        directory.write(QStringLiteral("velgorlibrary-20260102T000000-00.json"), LibraryJson::encode(former));
        LibraryState two = m_three;
        two.patches.removeFirst();
        directory.write(libraryFile, LibraryJson::encode(two));
        repair(directory);
        QVERIFY(TestPatches::isIdentical(loaded(directory).first(), renamed));
        QVERIFY(examine(directory).findings.isEmpty());
    }

    void damagedLibraryFileIsRebuiltFromThePatchFiles()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), LibraryJson::encode(m_three));
        directory.write(libraryFile, "garbled");
        const LibraryHealth health = examine(directory);
        QVERIFY(health.findings.first().kind == Kind::DamagedLibraryFile);
        QCOMPARE(health.rescuedPatches().size(), 3);
        repair(directory);
        QList<VelgorPatch> patches = loaded(directory);
        QCOMPARE(patches.size(), 3);
        for (const VelgorPatch &patch : std::as_const(m_three.patches)) {
            QVERIFY(std::any_of(patches.begin(), patches.end(),
                [&patch](const VelgorPatch &other) { return TestPatches::isIdentical(patch, other); }));
        }
        QCOMPARE(datedCopies(directory).size(), 2);
        QCOMPARE(directory.read(datedCopies(directory).last()), QByteArray("garbled"));
    }

    void restoringIsPreviewedAndCanBeTakenBack()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        LibraryState then = m_three;
        then.patches.removeAt(2);
        then.patches.first().comment = QStringLiteral("former words");
        then.patches.append(imported(QStringLiteral("Gone"), 7));
        then.defaultPatch = m_lead.id();
        directory.write(former, LibraryJson::encode(then));

        LibraryStorageManager manager(directory.path());
        auto library = libraryOf(manager.decodeLibrary());
        const auto preview = KeptLibraries::preview(directory.path(), former, library->state());
        QVERIFY(preview);
        QCOMPARE(preview->comingBack, QStringList());
        QCOMPARE(preview->changing, QStringList{QStringLiteral("Lead")});
        QCOMPARE(preview->leaving, QStringList{QStringLiteral("Clean")});
        QCOMPARE(preview->withoutFile, QStringList{QStringLiteral("Gone")});

        library->adopt({.patches = preview->patches, .defaultPatch = preview->defaultPatch});
        manager.keepLibraryFile();
        manager.save(*library);
        QCOMPARE(manager.keptFiles().size(), 1);
        QCOMPARE(loadedNames(directory), (QStringList{QStringLiteral("Lead"), QStringLiteral("A/B")}));
        QCOMPARE(load(directory).library->defaultPatch, std::optional(m_lead.id()));

        const QString kept = QFileInfo(manager.keptFiles().constFirst()).fileName();
        const auto back = KeptLibraries::preview(directory.path(), kept, library->state());
        QCOMPARE(back->comingBack, QStringList{QStringLiteral("Clean")});
        QVERIFY(areIdentical(back->patches, m_three.patches));
    }

    void formerLibraryFileThatCannotBeReadHasNoPreview()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), "garbled");
        QVERIFY(!KeptLibraries::preview(directory.path(), QStringLiteral("velgorlibrary-20260101T000000-00.json"), {}));
        QVERIFY(!KeptLibraries::preview(directory.path(), QStringLiteral("missing.json"), {}));
    }

    void damagedCopyOfAPatchWithoutFileIsNoRescue()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        QVERIFY(QFile::remove(directory.filePath(fileOf(m_lead))));
        directory.write(QStringLiteral("copy.%1.prst").arg(m_lead.id()), "damaged");
        const LibraryHealth health = examine(directory);
        QCOMPARE(health.findings.size(), 2);
        QVERIFY(health.findings.first().kind == Kind::ForeignFile);
        QVERIFY(health.findings.last().kind == Kind::PatchWithoutFile);
        QVERIFY(health.rescuedPatches().isEmpty());
    }

    void adoptedFileKeepsTheNameThatTheUserGave_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("found");
        QTest::newRow("unchanged") << QStringLiteral("Lead") << QStringLiteral("Lead");
        QTest::newRow("given") << QStringLiteral("My Solo. v.2") << QStringLiteral("My Solo. v.2");
        QTest::newRow("not for a file name") << QStringLiteral("A/B") << QStringLiteral("A$B");
        QTest::newRow("empty") << QString() << QString();
    }

    void adoptedFileKeepsTheNameThatTheUserGave()
    {
        QFETCH(const QString, name);
        const LibraryDirectory directory;
        VelgorPatch named = m_lead;
        named.name = name;
        QVERIFY(!save(directory, {{named}, std::nullopt}).hasError());
        QVERIFY(QFile::remove(directory.filePath(libraryFile)));
        repair(directory);
        const QList<VelgorPatch> patches = loaded(directory);
        QCOMPARE(patches.size(), 1);
        QTEST(patches.first().name, "found");
        QCOMPARE(patches.first().id(), m_lead.id());
        QCOMPARE(patches.first().records->patchData, m_lead.records->patchData);
        QVERIFY(directory.has(fileOf(named)));
        QVERIFY(examine(directory).findings.isEmpty());
    }

    void renamedCopyIsAdoptedUnderItsName()
    {
        const LibraryDirectory directory;
        const QString name = QString(14, QChar(0x00e4)) + QStringLiteral("-1");
        const VelgorPatch copy = VelgorPatch::copyNamed(m_lead, name);
        QVERIFY(!save(directory, {{m_lead, copy}, std::nullopt}).hasError());
        QVERIFY(QFile::remove(directory.filePath(libraryFile)));
        repair(directory);
        QList<VelgorPatch> patches = loaded(directory);
        QCOMPARE(patches.size(), 2);
        QVERIFY(std::any_of(patches.begin(), patches.end(),
            [&copy](const VelgorPatch &patch) { return patch.id() == copy.id() && patch.name == copy.name; }));
    }

    void stagedPatchOfADamagedLibraryIsRescued()
    {
        const LibraryDirectory directory;
        const VelgorPatch unknown = imported(QStringLiteral("Unknown"), 9);
        QVERIFY(!save(directory, m_three).hasError());
        // The last two were about to be put in place when the library file was cut.
        const QString stagedClean = TemporaryFiles::prefix() + QStringLiteral("a");
        const QString stagedUnknown = TemporaryFiles::prefix() + QStringLiteral("b");
        QVERIFY(QFile::rename(directory.filePath(fileOf(m_three.patches.last())), directory.filePath(stagedClean)));
        directory.write(stagedUnknown, patchBytes(unknown));
        LibraryJournal journal;
        journal.staged = {{m_three.patches.last().id(), stagedClean}, {unknown.id(), stagedUnknown}};
        directory.write(LibraryFileNames::journalFile(), journal.encode());
        directory.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), LibraryJson::encode(m_three));
        directory.write(libraryFile, LibraryJson::encode(m_three).chopped(9));

        const LibraryHealth health = examine(directory);
        QCOMPARE(health.rescuedPatches().size(), 4);
        const auto named = std::find_if(health.findings.begin(), health.findings.end(),
            [&stagedUnknown](const LibraryFinding &finding) { return finding.file == stagedUnknown; });
        QVERIFY(named != health.findings.end() && named->kind == Kind::FileWithoutEntry);
        QCOMPARE(named->name, QStringLiteral("Unknown"));
        QVERIFY(!named->reason.isEmpty());
        repair(directory);
        QList<VelgorPatch> patches = loaded(directory);
        QCOMPARE(patches.size(), 4);
        QVERIFY(areIdentical(patches.first(3), m_three.patches));
        QCOMPARE(patches.last().id(), unknown.id());
        QCOMPARE(patches.last().records->patchData, unknown.records->patchData);
        QVERIFY(directory.has(fileOf(unknown)));
    }

    void exchangedFilesArePutRight()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        const VelgorPatch &clean = m_three.patches.last();
        directory.write(fileOf(m_lead), patchBytes(clean));
        directory.write(fileOf(clean), patchBytes(m_lead));
        QCOMPARE(TestPatches::ids(examine(directory).rescuedPatches()).size(), 2);
        repair(directory);
        QVERIFY(areIdentical(load(directory).library->patches, m_three.patches));
        QVERIFY(examine(directory).findings.isEmpty());
    }

    void copyElsewhereOfAnOverwrittenPatchPutsItRight()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(QStringLiteral("lib-x.7.prst"), patchBytes(m_lead));
        directory.write(fileOf(m_lead), patchBytes(m_three.patches.last()));
        QVERIFY(examine(directory).notes.isEmpty());
        repair(directory);
        QVERIFY(areIdentical(load(directory).library->patches, m_three.patches));
    }

    void previewTellsOfTheDefaultPatchAndTheOrder()
    {
        const LibraryDirectory directory;
        LibraryState now = m_three;
        now.defaultPatch = m_lead.id();
        QVERIFY(!save(directory, now).hasError());
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        const auto previewOf = [&](const LibraryState &then) {
            directory.write(former, LibraryJson::encode(then));
            return *KeptLibraries::preview(directory.path(), former, now);
        };
        LibraryState then = now;
        QVERIFY(!previewOf(then).isDefaultChanging && !previewOf(then).isOrderChanging);
        then.defaultPatch = m_three.patches.last().id();
        QVERIFY(previewOf(then).isDefaultChanging);
        QCOMPARE(previewOf(then).defaultName, QStringLiteral("Clean"));
        then.defaultPatch = 77;
        QVERIFY(previewOf(then).isDefaultChanging && previewOf(then).defaultName.isEmpty());
        then = now;
        then.patches.removeAt(1);
        QVERIFY(!previewOf(then).isOrderChanging);
        then.patches.swapItemsAt(0, 1);
        QVERIFY(previewOf(then).isOrderChanging && !previewOf(then).isDefaultChanging);
    }

    void previewTellsMissingFilesFromUnreadableOnes()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        directory.write(former, LibraryJson::encode(m_three));
        QVERIFY(QFile::remove(directory.filePath(fileOf(m_lead))));
        directory.write(fileOf(m_three.patches.last()), "damaged");
        const auto preview = KeptLibraries::preview(directory.path(), former, m_three);
        QCOMPARE(preview->withoutFile, QStringList{QStringLiteral("Lead")});
        QCOMPARE(preview->unreadable.size(), 1);
        QCOMPARE(preview->unreadable.first().name, QStringLiteral("Clean"));
        QVERIFY(!preview->unreadable.first().reason.isEmpty());
    }
};

VELGOR_TEST(TestDoctorRescue)
#include "tst_DoctorRescue.moc"
