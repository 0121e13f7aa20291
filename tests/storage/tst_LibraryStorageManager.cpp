#include "DiagnosticRecorder.h"
#include "DirectoryWatch.h"
#include "FileExistence.h"
#include "LibraryManagerPreferences.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "StoredEdits.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace TestLibraries;

namespace {

const QString libraryFile = LibraryFileNames::libraryFile();
const QString leadFile = QStringLiteral("lib-Lead.42.prst");
const QString directoryKey = QStringLiteral("libraryDirectory");

std::unique_ptr<VelgorLibrary> threePatches()
{
    return std::make_unique<VelgorLibrary>(three().patches, three().defaultPatch);
}

std::unique_ptr<QSettings> storeOf(const QTemporaryDir &directory)
{
    return std::make_unique<QSettings>(directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
}

} // namespace

class TestLibraryStorageManager : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The directory

    static void missingDirectoryIsMadeTestedAndRecorded()
    {
        const QTemporaryDir parent;
        const QString path = parent.filePath(QStringLiteral("a/b/Presets"));
        LibraryManagerPreferences preferences(storeOf(parent));
        QVERIFY(preferences.setLibraryDirectory(path + u'/'));
        const LibraryStorageManager manager(preferences);
        QVERIFY(!manager.writeError());
        QCOMPARE(manager.libDirectory(), path);
        QVERIFY(QFileInfo(path).isDir());
        QCOMPARE(QDir(parent.filePath(QStringLiteral("a/b"))).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
            QStringList{QStringLiteral("Presets")});
        QCOMPARE(preferences.libraryDirectory(), path);
    }

    static void plainFileInThePlaceOfTheDirectoryIsOneWriteError()
    {
        const QTemporaryDir parent;
        const LibraryDirectory directory;
        directory.write(QStringLiteral("file"), "mine");
        const QString path = directory.filePath(QStringLiteral("file"));
        // What a usable directory would be recorded as is another text.
        storeOf(parent)->setValue(directoryKey, QString(path + u'/'));
        LibraryManagerPreferences preferences(storeOf(parent));
        const QSignalSpy changes(&preferences, &LibraryManagerPreferences::libraryDirectoryChanged);
        DiagnosticRecorder lines;
        LibraryStorageManager manager(preferences);
        QVERIFY(manager.writeError());
        QCOMPARE(lines.take(), QStringList{QStringLiteral("Cannot create library directory")});
        QCOMPARE(manager.writeProblems().size(), 1);
        QVERIFY(manager.writeProblems().first().contains(path));
        QVERIFY(!manager.decodeLibrary());
        QVERIFY(!manager.readError() && !manager.readProblem());
        QCOMPARE(manager.writeProblems().size(), 1);
        QCOMPARE(changes.size(), 0);
        QCOMPARE(storeOf(parent)->value(directoryKey).toString(), path + u'/');
        QCOMPARE(directory.read(QStringLiteral("file")), QByteArray("mine"));
    }

    static void failedWriteTestKeepsThePreferences()
    {
        const QTemporaryDir parent;
        const LibraryDirectory directory;
        QDir(directory.path()).mkdir(QStringLiteral("new.testfile.txt"));
        const QString stored = directory.filePath(QStringLiteral("new/"));
        storeOf(parent)->setValue(directoryKey, stored);
        LibraryManagerPreferences preferences(storeOf(parent));
        DiagnosticRecorder lines;
        {
            const LibraryStorageManager manager(preferences);
            QVERIFY(manager.writeError());
            QCOMPARE(lines.take(), QStringList());
            QCOMPARE(storeOf(parent)->value(directoryKey).toString(), stored);
        }
        // With nothing in the way of the test, the directory is recorded.
        QVERIFY(QDir(directory.path()).rmdir(QStringLiteral("new.testfile.txt")));
        QVERIFY(QDir(directory.path()).rmdir(QStringLiteral("new")));
        const LibraryStorageManager manager(preferences);
        QVERIFY(!manager.writeError());
        QCOMPARE(storeOf(parent)->value(directoryKey).toString(), directory.filePath(QStringLiteral("new")));
    }

    static void writeTestSparesAFileOfItsName()
    {
        const QTemporaryDir parent;
        const LibraryDirectory directory;
        const QString other = QStringLiteral("new.testfile.txt");
        directory.write(other, "mine");
        LibraryManagerPreferences preferences(storeOf(parent));
        QVERIFY(preferences.setLibraryDirectory(directory.filePath(QStringLiteral("new"))));
        const LibraryStorageManager manager(preferences);
        QVERIFY(!manager.writeError());
        QVERIFY(QFileInfo(manager.libDirectory()).isDir());
        QCOMPARE(directory.read(other), QByteArray("mine"));
    }

    static void existingDirectoryIsNotWrittenTo()
    {
        const QTemporaryDir parent;
        const LibraryDirectory directory;
        directory.write(QStringLiteral("file"), "mine");
        const auto before = directory.stamps();
        LibraryManagerPreferences preferences(storeOf(parent));
        QVERIFY(preferences.setLibraryDirectory(directory.path()));
        const LibraryStorageManager manager(preferences);
        QVERIFY(!manager.writeError());
        QCOMPARE(directory.stamps(), before);
    }

    static void directoryIsShownAsAnAddress()
    {
        const LibraryDirectory directory(QStringLiteral("my library"));
        LibraryStorageManager manager(directory.path());
        manager.openLibraryInFinder();
        QUrl shown;
        manager.setShowDirectory([&shown](const QUrl &address) { shown = address; });
        manager.openLibraryInFinder();
        QCOMPARE(shown, QUrl::fromLocalFile(directory.path()));
    }

    static void existenceTellsDirectoriesFromTheRest()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("file"), "x");
        QVERIFY(QFile::link(directory.path(), directory.filePath(QStringLiteral("link"))));
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("x")), directory.filePath(QStringLiteral("dangling"))));
        QCOMPARE(existence(directory.path()), FileExistence::directory);
        QCOMPARE(existence(directory.filePath(QStringLiteral("file"))), FileExistence::file);
        QCOMPARE(existence(directory.filePath(QStringLiteral("missing"))), FileExistence::none);
        QCOMPARE(existence(directory.filePath(QStringLiteral("link"))), FileExistence::directory);
        QCOMPARE(existence(directory.filePath(QStringLiteral("dangling"))), FileExistence::none);
        QCOMPARE(existence(QStringLiteral("/dev/null")), FileExistence::file);
    }

    static void pathsOfAPatchAreFoundByItsId()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        directory.write(QStringLiteral("sub/notes.42.txt"), "x");
        directory.write(leadFile, "x");
        LibraryStorageManager manager(directory.path());
        QStringList paths = manager.getPathsForPatchID(42);
        paths.sort();
        QCOMPARE(paths, (QStringList{leadFile, QStringLiteral("sub/notes.42.txt")}));
        QVERIFY(!manager.writeError());
    }

    static void directoryWithASpaceIsAWriteErrorAtEachSave()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory(QStringLiteral("my library"));
        LibraryStorageManager manager(directory.path());
        for (int i = 0; i < 3; ++i) {
            manager.save(*threePatches());
            QVERIFY(manager.writeError() && manager.wasLastSaveWritten());
            manager.setWriteError(false);
            QCOMPARE(manager.writeProblems(), QStringList());
        }
        QCOMPARE(manager.getPathsForPatchID(42), QStringList());
        QVERIFY(manager.writeError());
        QVERIFY(areIdentical(manager.decodeLibrary()->patches, three().patches));
    }

    // Flags

    static void readErrorStaysUntilItIsCleared()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        directory.write(libraryFile, "{");
        LibraryStorageManager manager(directory.path());
        const QSignalSpy changes(&manager, &LibraryStorageManager::readErrorChanged);
        QVERIFY(!manager.decodeLibrary());
        QVERIFY(!manager.decodeLibrary());
        QVERIFY(manager.readError() && !manager.writeError());
        QCOMPARE(changes.size(), 1);
        QVERIFY(manager.readProblem().value_or(Problem()).where.endsWith(libraryFile));
        QFile::remove(directory.filePath(libraryFile));
        QVERIFY(!manager.decodeLibrary());
        QVERIFY(manager.readError());
        QVERIFY(!manager.readProblem());
        manager.setReadError(false);
        QVERIFY(!manager.readError());
    }

    static void writeErrorStaysUntilItIsCleared()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QDir(directory.path()).mkdir(libraryFile);
        LibraryStorageManager manager(directory.path());
        const QSignalSpy changes(&manager, &LibraryStorageManager::writeErrorChanged);
        manager.save(*threePatches());
        QVERIFY(manager.writeError() && !manager.wasLastSaveWritten());
        QVERIFY(QDir(directory.path()).rmdir(libraryFile));
        manager.save(*threePatches());
        QVERIFY(manager.writeError() && manager.wasLastSaveWritten());
        QCOMPARE(changes.size(), 1);
        manager.setWriteError(false);
        manager.save(*threePatches());
        QVERIFY(!manager.writeError());
    }

    static void firstSaveAfterADroppedPatchKeepsTheOldFileAndSaysWhere()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        QFile::remove(directory.filePath(leadFile));
        const QByteArray old = directory.read(libraryFile);
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        QVERIFY(library);
        QCOMPARE(manager.droppedPatches(), QStringList{QStringLiteral("Lead")});
        QCOMPARE(manager.keptFiles(), QStringList());
        manager.save(*library);
        QCOMPARE(datedCopies(directory).size(), 1);
        QCOMPARE(manager.keptFiles(), QStringList{directory.filePath(datedCopies(directory).first())});
        QCOMPARE(directory.read(datedCopies(directory).first()), old);
        manager.save(*library);
        QCOMPARE(datedCopies(directory).size(), 1);
    }

    static void savingGoesOnAfterADamagedFileWasTakenAway()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        directory.write(libraryFile, "{");
        LibraryStorageManager manager(directory.path());
        QVERIFY(!manager.decodeLibrary());
        QFile::remove(directory.filePath(libraryFile));
        manager.save(*threePatches());
        QVERIFY(manager.wasLastSaveWritten());
    }

    static void leftoversOfACrashAreSwept()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QStringList files = directory.files();
        directory.write(TemporaryFiles::prefix() + QStringLiteral("x"), "half");
        directory.write(LibraryFileNames::libraryCopy(), "half");
        LibraryStorageManager manager(directory.path());
        QVERIFY(manager.decodeLibrary());
        manager.sweepLeftovers();
        QCOMPARE(directory.files(), files);
    }

    static void sortingAloneStoresNoOrder()
    {
        const LibraryDirectory directory;
        LibraryStorageManager storage(directory.path());
        VelgorLibrary library;
        for (const char *name : {"c", "a", "b"}) {
            library.append(TestLibraries::imported(QString::fromLatin1(name), 1), false, false);
        }
        library.saveOrder();
        const QStringList own = TestPatches::names(library.patches());
        library.sort();
        const QStringList sorted = TestPatches::names(library.patches());
        QVERIFY(sorted != own);
        StoredEdits::setDefault(library, library.patches().first().id(), storage);
        storage.save(library);
        QCOMPARE(TestLibraries::loadedNames(directory), own);
        QCOMPARE(TestPatches::names(library.patches()), sorted);
        library.saveOrder();
        storage.save(library);
        QCOMPARE(TestLibraries::loadedNames(directory), sorted);
    }

    static void placeholderNeverReachesTheDisk()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path());
        manager.save(VelgorLibrary());
        QVERIFY(!manager.writeError());
        QCOMPARE(directory.files(), QStringList{libraryFile});
        QCOMPARE(directory.read(libraryFile), QByteArray(R"({"patches":[],"defaultPatch":null})"));
        QVERIFY(lines.take().contains(QStringLiteral("Nothing to save in library")));
        QVERIFY(!manager.decodeLibrary());
        QVERIFY(!manager.readError());
    }

    // Deleting

    static void deletedPatchIsGoneFromTheDiskAtOnce()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path());
        const auto library = threePatches();
        manager.save(*library);
        directory.write(QStringLiteral("notes.42.txt"), "x");
        StoredEdits::deletePatches(*library, {42}, manager);
        manager.finish();
        QCOMPARE(directory.files(),
            (QStringList{QStringLiteral("lib-A$B.43.prst"), QStringLiteral("lib-Clean.44.prst"), libraryFile}));
        QCOMPARE(loadedNames(directory), TestPatches::names(library->patches()));
        QVERIFY(!manager.writeError() && manager.wereFilesRemoved());
    }

    static void deletingManyListsOnce()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path());
        const auto library = threePatches();
        manager.save(*library);
        DirectoryWatch watch(directory.path());
        StoredEdits::deletePatches(*library, {42, 44}, manager);
        manager.finish();
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
        QCOMPARE(directory.files().size(), 2);
    }

    static void deletingTheLastPatchLeavesAnEmptyLibrary()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path());
        VelgorLibrary library(one(QStringLiteral("Lead")).patches, 42);
        manager.save(library);
        StoredEdits::deletePatches(library, {42}, manager);
        manager.finish();
        QCOMPARE(directory.files(), QStringList{libraryFile});
        QCOMPARE(directory.read(libraryFile), QByteArray(R"({"patches":[],"defaultPatch":null})"));
    }
};

VELGOR_TEST(TestLibraryStorageManager)
#include "tst_LibraryStorageManager.moc"
