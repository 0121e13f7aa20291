#include "DiagnosticRecorder.h"
#include "DiskFiles.h"
#include "KeptLibraries.h"
#include "LibraryDoctor.h"
#include "LibraryJournal.h"
#include "LibrarySnapshot.h"
#include "LibraryStorageManager.h"
#include "OrdinaryUser.h"
#include "RescuedPatches.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QTest>

#include <algorithm>

#include <unistd.h>

using namespace TestLibraries;
using Kind = LibraryFinding::Kind;

namespace {

const QString libraryFile = LibraryFileNames::libraryFile();

LibraryJson::Content importedThree()
{
    return {
        {imported(QStringLiteral("Lead"), 1), imported(QStringLiteral("A/B"), 2), imported(QStringLiteral("Clean"), 3)},
        std::nullopt};
}

QString fileOf(const VelgorPatch &patch)
{
    return LibraryFileNames::patchFile(patch.name, patch.id());
}

LibraryHealth examine(const LibraryDirectory &directory)
{
    return LibraryDoctor(directory.path()).examine();
}

/// The one finding that there is to be.
LibraryFinding only(const LibraryHealth &health)
{
    return health.findings.size() == 1 ? health.findings.first() : LibraryFinding();
}

/// Does what repairing does: loads, sweeps, adds what was rescued, saves.
void repair(const LibraryDirectory &directory)
{
    LibraryStorageManager manager(directory.path());
    auto library = manager.decodeLibrary();
    if (!library) {
        library = std::make_unique<VelgorLibrary>();
    }
    manager.sweepLeftovers();
    RescuedPatches::addTo(*library, directory.path(), examine(directory).rescuedPatches());
    manager.save(*library);
}

} // namespace

class TestLibraryDoctor : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;
    LibraryJson::Content m_three = importedThree();
    VelgorPatch m_lead = m_three.patches.first();

private Q_SLOTS:
    void directoryThatCannotBeListedIsFound()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, importedThree()).hasError());
        const OrdinaryUser user(directory, 0300);
        const LibraryHealth health = examine(directory);
        QVERIFY(std::any_of(health.findings.begin(), health.findings.end(),
            [](const LibraryFinding &finding) { return finding.kind == Kind::UnlistedDirectory; }));
    }

    void itReportsEachPatchAndGoesOnWhileFilesAndContentsAreLookedAt()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, importedThree()).hasError());
        QList<qsizetype> reported;
        std::ignore = LibraryDoctor(directory.path(), [&reported](qsizetype done, qsizetype) {
            reported.append(done);
        }).examine();
        const qsizetype later = directory.files().size() + importedThree().patches.size();
        QCOMPARE(reported, (QList<qsizetype>{1, 2, 3} + QList<qsizetype>(later, 3)));
    }

    void whatAJournalNamesAndIsNoPatchIsALeftover()
    {
        const LibraryDirectory directory;
        const QString temporary = LibraryFileNames::temporaryPrefix() + QStringLiteral("x");
        directory.write(libraryFile, "cut");
        directory.write(temporary, "no patch");
        directory.write(
            LibraryFileNames::journalFile(), LibraryJournal{.staged = {{42, temporary}}, .removed = {}}.encode());
        const LibraryHealth health = examine(directory);
        QVERIFY(std::any_of(health.findings.begin(), health.findings.end(), [&](const LibraryFinding &finding) {
            return finding.kind == Kind::Leftover && finding.file == temporary;
        }));
    }

    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void soundLibraryHasNoFindings()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(QStringLiteral("notes.txt"), "mine");
        const auto before = directory.stamps();
        QVERIFY(examine(directory).findings.isEmpty());
        QCOMPARE(directory.stamps(), before);
        QVERIFY(examine(LibraryDirectory()).findings.isEmpty());
    }

    void patchWithoutFileIsFound()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        QFile::remove(directory.filePath(fileOf(m_lead)));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::PatchWithoutFile && !finding.rescued);
        QCOMPARE(finding.name, QStringLiteral("Lead"));
        QCOMPARE(finding.id, m_lead.id());
    }

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
        LibraryJson::Content two = m_three;
        two.patches.removeFirst();
        QVERIFY(!save(directory, two).hasError());
        directory.write(fileOf(m_lead), patchBytes(m_lead));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::FileWithoutEntry && finding.rescued);
        repair(directory);
        QVERIFY(examine(directory).findings.isEmpty());
        const VelgorPatch adopted = loaded(directory).last();
        QCOMPARE(adopted.id(), m_lead.id());
        QCOMPARE(adopted.patchData, m_lead.patchData);
    }

    void adoptedFileGetsBackWhatAFormerLibraryFileKnows()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        VelgorPatch renamed = m_lead.withId(m_lead.id());
        renamed.name = QStringLiteral("Renamed");
        LibraryJson::Content former = m_three;
        former.patches.first() = renamed;
        directory.write(QStringLiteral("velgorlibrary-20260101T000000-00.json"), LibraryJson::encode(m_three));
        directory.write(QStringLiteral("velgorlibrary-20260102T000000-00.json"), LibraryJson::encode(former));
        LibraryJson::Content two = m_three;
        two.patches.removeFirst();
        directory.write(libraryFile, LibraryJson::encode(two));
        repair(directory);
        QVERIFY(TestPatches::isIdentical(loaded(directory).first(), renamed));
        QVERIFY(examine(directory).findings.isEmpty());
    }

    void unreadableFileIsFoundOnce()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(fileOf(m_lead), "damaged");
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::UnreadableFile && !finding.rescued && !finding.reason.isEmpty());
        QCOMPARE(finding.file, fileOf(m_lead));
        QCOMPARE(finding.name, QStringLiteral("Lead"));
    }

    void fileOfAnotherPatchIsFound()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(fileOf(m_lead), patchBytes(m_three.patches.at(1)));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::FileOfOtherContent && !finding.rescued);
        QCOMPARE(finding.file, fileOf(m_lead));
        QVERIFY(finding.reason.contains(QStringLiteral("A/B")));
    }

    void renamedPatchIsNoFinding()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        m_three.patches.first().name = QStringLiteral("Renamed");
        QVERIFY(!save(directory, m_three).hasError());
        QVERIFY(examine(directory).findings.isEmpty());
        m_three = importedThree();
    }

    void foreignFilesWithAnIdAreFound_data()
    {
        QTest::addColumn<QString>("file");
        const QString id = QString::number(m_lead.id());
        QTest::newRow("copy") << QStringLiteral("my copy.%1.bak").arg(id);
        QTest::newRow("second file of the patch") << QStringLiteral("lib-Other.%1.prst").arg(id);
        QTest::newRow("in a directory") << QStringLiteral("sub/lib-Lead.%1.prst").arg(id);
    }
    void foreignFilesWithAnIdAreFound()
    {
        QFETCH(const QString, file);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(file, patchBytes(m_lead));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::ForeignFile && !finding.rescued);
        QCOMPARE(finding.file, file);
        QCOMPARE(finding.id, m_lead.id());
    }

    void leftoversAreFoundAndSwept()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(LibraryFileNames::temporaryPrefix() + QStringLiteral("1"), "x");
        directory.write(LibraryFileNames::journalFile(), LibraryJournal().encode());
        directory.write(LibraryFileNames::libraryCopy(), "{");
        const LibraryHealth health = examine(directory);
        QCOMPARE(health.findings.size(), 3);
        QVERIFY(std::all_of(health.findings.begin(), health.findings.end(),
            [](const LibraryFinding &finding) { return finding.kind == Kind::Leftover; }));
        repair(directory);
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

    void keptFilesAreListedTheLatestFirst()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(QStringLiteral("velgorlibrary-20260101T100203-00.json"), LibraryJson::encode(m_three));
        directory.write(QStringLiteral("velgorlibrary-20260102T000000-00.json"), "garbled");
        directory.write(LibraryFileNames::damagedFile(42, 0), "damaged");
        const LibraryHealth health = examine(directory);
        QVERIFY(health.findings.isEmpty());
        QCOMPARE(health.keptLibraries.size(), 2);
        QVERIFY(!health.keptLibraries.first().content);
        QCOMPARE(health.keptLibraries.last().content->patches.size(), 3);
        QCOMPARE(health.keptLibraries.last().keptAt, QDateTime({2026, 1, 1}, {10, 2, 3}, Qt::UTC));
        QCOMPARE(health.keptPatchFiles, QStringList{LibraryFileNames::damagedFile(42, 0)});
    }

    void restoringIsPreviewedAndCanBeTakenBack()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        LibraryJson::Content then = m_three;
        then.patches.removeAt(2);
        then.patches.first().comment = QStringLiteral("former words");
        then.patches.append(imported(QStringLiteral("Gone"), 7));
        then.defaultPatch = m_lead.id();
        directory.write(former, LibraryJson::encode(then));

        LibraryStorageManager manager(directory.path());
        auto library = manager.decodeLibrary();
        const auto preview = KeptLibraries::preview(directory.path(), former, LibrarySnapshot::take(*library));
        QVERIFY(preview);
        QCOMPARE(preview->comingBack, QStringList());
        QCOMPARE(preview->changing, QStringList{QStringLiteral("Lead")});
        QCOMPARE(preview->leaving, QStringList{QStringLiteral("Clean")});
        QCOMPARE(preview->withoutFile, QStringList{QStringLiteral("Gone")});

        library->takeOver(VelgorLibrary(preview->patches, preview->defaultPatch));
        manager.keepLibraryFile();
        manager.save(*library);
        QCOMPARE(manager.keptFiles().size(), 1);
        QCOMPARE(loadedNames(directory), (QStringList{QStringLiteral("Lead"), QStringLiteral("A/B")}));
        QCOMPARE(load(directory).library->defaultPatch(), std::optional(m_lead.id()));

        const QString kept = QFileInfo(manager.keptFiles().constFirst()).fileName();
        const auto back = KeptLibraries::preview(directory.path(), kept, LibrarySnapshot::take(*library));
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

    void fileUnderAnIdThatNobodyHasIsExamined_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("isRescued");
        QTest::addColumn<QString>("reason");
        const VelgorPatch other = imported(QStringLiteral("Other"), 9);
        QTest::newRow("patch that is nowhere else")
            << patchBytes(other) << static_cast<int>(Kind::FileOfOtherContent) << true << QStringLiteral("\"Other\"");
        const QByteArray list =
            TestRecords::fileBytes({*m_lead.patchData, *other.patchData}, {*m_lead.userIRData, *other.userIRData});
        QTest::newRow("list") << list << static_cast<int>(Kind::UnreadableFile) << false
                              << QStringLiteral("a list of 2 patches");
        QTest::newRow("damaged") << QByteArray("damaged") << static_cast<int>(Kind::UnreadableFile) << false
                                 << QString();
    }
    void fileUnderAnIdThatNobodyHasIsExamined()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, reason);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(QStringLiteral("lib-X.77.prst"), bytes);
        const LibraryFinding finding = only(examine(directory));
        QCOMPARE(finding.file, QStringLiteral("lib-X.77.prst"));
        QTEST(static_cast<int>(finding.kind), "kind");
        QTEST(finding.rescued.has_value(), "isRescued");
        QVERIFY2(finding.reason.contains(reason), qPrintable(finding.reason));
    }

    void fileThatIsTooLargeIsFound()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        directory.write(QStringLiteral("lib-X.77.prst"), {});
        QVERIFY(QFile::resize(directory.filePath(QStringLiteral("lib-X.77.prst")), DiskFiles::largestFile + 1));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::UnreadableFile && !finding.reason.isEmpty());
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
        QCOMPARE(patches.first().patchData, m_lead.patchData);
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
        const QString stagedClean = LibraryFileNames::temporaryPrefix() + QStringLiteral("a");
        const QString stagedUnknown = LibraryFileNames::temporaryPrefix() + QStringLiteral("b");
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
        QCOMPARE(patches.last().patchData, unknown.patchData);
        QVERIFY(directory.has(fileOf(unknown)));
    }

    void stagedPatchOfASaveThatDidNotCountIsLeftOver()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        const VelgorPatch unknown = imported(QStringLiteral("Unknown"), 9);
        const QString staged = LibraryFileNames::temporaryPrefix() + QStringLiteral("b");
        directory.write(staged, patchBytes(unknown));
        LibraryJournal journal;
        journal.staged = {{unknown.id(), staged}};
        directory.write(LibraryFileNames::journalFile(), journal.encode());
        const LibraryHealth health = examine(directory);
        QCOMPARE(health.findings.size(), 2);
        QVERIFY(health.rescuedPatches().isEmpty());
    }

    void filesOfALiveProgramAreNotLeftOver()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        const QString host = QSysInfo::machineHostName();
        // The parent of this program lives, and a process number beyond all is nobody's.
        const QString theirs = LibraryFileNames::temporaryPrefix(host, getppid()) + QStringLiteral("a");
        const QString nobodys = LibraryFileNames::temporaryPrefix(host, 0x7ffffff0) + QStringLiteral("a");
        directory.write(theirs, "x");
        directory.write(nobodys, "x");
        QCOMPARE(only(examine(directory)).file, nobodys);
        directory.write(LibraryFileNames::journalFile(), LibraryJournal().encode());
        directory.write(LibraryFileNames::libraryCopy(), "{");
        QCOMPARE(examine(directory).findings.size(), 3);
        const auto lockOf = [&host](qint64 process) {
            return QStringLiteral("%1\nvelgor\n%2\n\n\n").arg(process).arg(host).toUtf8();
        };
        directory.write(LibraryFileNames::lockFile(), lockOf(getppid()));
        QCOMPARE(only(examine(directory)).file, nobodys);
        directory.write(LibraryFileNames::lockFile(), lockOf(0x7ffffff0));
        QCOMPARE(examine(directory).findings.size(), 3);
    }

    void whatStandsInAFilesPlaceIsSaid_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::addColumn<QString>("reason");
        QTest::newRow("link") << true << QStringLiteral("link");
        QTest::newRow("directory") << false << QStringLiteral("directory");
    }
    void whatStandsInAFilesPlaceIsSaid()
    {
        QFETCH(const bool, isLink);
        QFETCH(const QString, reason);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, m_three).hasError());
        const QString path = directory.filePath(fileOf(m_lead));
        QVERIFY(QFile::rename(path, directory.parentPath() + QStringLiteral("/elsewhere")));
        QVERIFY(isLink ? QFile::link(directory.parentPath() + QStringLiteral("/elsewhere"), path) : QDir().mkdir(path));
        const LibraryFinding finding = only(examine(directory));
        QVERIFY(finding.kind == Kind::PatchWithoutFile);
        QCOMPARE(finding.file, fileOf(m_lead));
        QVERIFY2(finding.reason.contains(reason), qPrintable(finding.reason));
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
        QVERIFY(areIdentical(load(directory).library->patches(), m_three.patches));
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
        QVERIFY(areIdentical(load(directory).library->patches(), m_three.patches));
    }

    void previewTellsOfTheDefaultPatchAndTheOrder()
    {
        const LibraryDirectory directory;
        LibraryJson::Content now = m_three;
        now.defaultPatch = m_lead.id();
        QVERIFY(!save(directory, now).hasError());
        const QString former = QStringLiteral("velgorlibrary-20260101T000000-00.json");
        const auto previewOf = [&](const LibraryJson::Content &then) {
            directory.write(former, LibraryJson::encode(then));
            return *KeptLibraries::preview(directory.path(), former, now);
        };
        LibraryJson::Content then = now;
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

    void directoryThatIsNotThereIsFound()
    {
        const LibraryDirectory directory;
        const LibraryFinding finding = only(LibraryDoctor(directory.filePath(QStringLiteral("missing"))).examine());
        QVERIFY(finding.kind == Kind::DamagedLibraryFile && !finding.reason.isEmpty());
    }
};

VELGOR_TEST(TestLibraryDoctor)
#include "tst_LibraryDoctor.moc"
