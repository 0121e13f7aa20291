#include "DiagnosticRecorder.h"
#include "LibraryJournal.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

const QString leadFile = QStringLiteral("lib-Lead.42.prst");
const QString temporary = TemporaryFiles::prefix() + QStringLiteral("x");

/// The library of three patches, as a save was interrupted that was to add the first and had its file prepared.
void interruptAddition(const LibraryDirectory &directory, bool isLibraryFileWritten)
{
    LibraryState before = three();
    before.patches.removeFirst();
    QVERIFY(!save(directory, isLibraryFileWritten ? three() : before).hasError());
    if (isLibraryFileWritten) {
        QVERIFY(QFile::rename(directory.filePath(leadFile), directory.filePath(temporary)));
    } else {
        directory.write(temporary, patchBytes(three().patches.first()));
    }
    directory.write(
        LibraryFileNames::journalFile(), LibraryJournal{.staged = {{42, temporary}}, .removed = {}}.encode());
}

/// The same for a save that was to remove the first.
void interruptRemoval(const LibraryDirectory &directory, bool isLibraryFileWritten)
{
    QVERIFY(!save(directory, three()).hasError());
    if (isLibraryFileWritten) {
        LibraryState after = three();
        after.patches.removeFirst();
        directory.write(LibraryFileNames::libraryFile(), LibraryJson::encode(after));
    }
    directory.write(LibraryFileNames::journalFile(), LibraryJournal{.staged = {}, .removed = {42}}.encode());
}

} // namespace

class TestLibrarySweeper : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void interruptedAdditionIsFinished()
    {
        const LibraryDirectory directory;
        interruptAddition(directory, true);
        QVERIFY(load(directory).droppedPatches.isEmpty());
        QVERIFY(areIdentical(loaded(directory), three().patches));
        sweep(directory);
        QVERIFY(directory.has(leadFile) && !directory.has(temporary));
        QVERIFY(!directory.has(LibraryFileNames::journalFile()));
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    void additionThatWasNotWrittenLeavesNothing()
    {
        const LibraryDirectory directory;
        interruptAddition(directory, false);
        sweep(directory);
        QCOMPARE(directory.files().size(), 3);
        QCOMPARE(loadedNames(directory).size(), 2);
    }

    void interruptedAdditionIsFinishedByTheNextSave()
    {
        const LibraryDirectory directory;
        interruptAddition(directory, true);
        const LibraryLoadResult result = load(directory);
        QVERIFY(!save(directory, {result.library->patches, std::nullopt}, stateAfter(result)).hasError());
        QVERIFY(directory.has(leadFile));
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    void fileThatTheJournalNamesComesBeforeOthersOfItsId()
    {
        const LibraryDirectory directory;
        interruptAddition(directory, true);
        directory.write(QStringLiteral("lib-Other.42.prst"), patchBytes(three().patches.last()));
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    void cutFileThatTheJournalNamesIsNotTaken()
    {
        const LibraryDirectory directory;
        interruptAddition(directory, true);
        directory.write(temporary, directory.read(temporary).chopped(1).first(100));
        QCOMPARE(load(directory).droppedPatches, QStringList{QStringLiteral("Lead")});
    }

    void preparedFileStaysWhereItsPlaceIsTaken()
    {
        const LibraryDirectory directory;
        interruptAddition(directory, true);
        directory.write(leadFile + QStringLiteral("/notes.txt"), "mine");
        sweep(directory);
        QVERIFY(directory.has(temporary) && directory.has(LibraryFileNames::journalFile()));
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    void whatAJournalOfAnUnreadableLibraryPreparedBecomesAFile()
    {
        const LibraryDirectory directory;
        interruptAddition(directory, false);
        directory.write(
            LibraryFileNames::journalFile(), LibraryJournal{.staged = {{42, temporary}}, .removed = {44}}.encode());
        directory.write(LibraryFileNames::libraryFile(), "cut");
        LibraryLoadResult result = load(directory);
        QVERIFY(result.readError);
        sweep(directory);
        QVERIFY(directory.has(temporary) && directory.has(LibraryFileNames::journalFile()));
        QVERIFY(!save(directory, {{patch(QStringLiteral("New"), 50)}, std::nullopt}, stateAfter(result)).hasError());
        sweep(directory);
        QVERIFY(directory.has(leadFile) && directory.has(QStringLiteral("lib-Clean.44.prst")));
        QVERIFY(!directory.has(temporary) && !directory.has(LibraryFileNames::journalFile()));
    }

    void interruptedRemovalIsFinished()
    {
        const LibraryDirectory directory;
        interruptRemoval(directory, true);
        sweep(directory);
        QVERIFY(!directory.has(leadFile) && !directory.has(LibraryFileNames::journalFile()));
        QCOMPARE(loadedNames(directory).size(), 2);
    }

    void removalThatWasNotWrittenRemovesNothing()
    {
        const LibraryDirectory directory;
        interruptRemoval(directory, false);
        sweep(directory);
        QVERIFY(areIdentical(loaded(directory), three().patches));
        QVERIFY(!directory.has(LibraryFileNames::journalFile()));
    }

    void writeTestFileIsSweptAndNoFileOfTheUser()
    {
        const LibraryDirectory directory;
        const QString path = LibraryFileNames::writeTestFile(directory.path());
        for (const QByteArray &text : {LibraryFileNames::writeTestText(), QByteArray("mine")}) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
            file.close();
            sweep(directory);
            QCOMPARE(QFileInfo::exists(path), text == "mine");
        }
    }
};

VELGOR_TEST(TestLibrarySweeper)
#include "tst_LibrarySweeper.moc"
