#include "DirectoryWatch.h"
#include "FileExistence.h"
#include "LibraryManagerPreferences.h"
#include "StoreFixture.h"
#include "StoredEdits.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace TestLibraries;

namespace {

const QString directoryKey = QStringLiteral("libraryDirectory");

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
        StoreFixture store;
        store.write(QStringLiteral("file"), "mine");
        const QString path = store.filePath(QStringLiteral("file"));
        // What a usable directory would be recorded as is another text.
        storeOf(parent)->setValue(directoryKey, QString(path + u'/'));
        LibraryManagerPreferences preferences(storeOf(parent));
        const QSignalSpy changes(&preferences, &LibraryManagerPreferences::libraryDirectoryChanged);
        LibraryStorageManager manager(preferences);
        QVERIFY(manager.writeError());
        QCOMPARE(store.lines.take(), QStringList{QStringLiteral("Cannot create library directory")});
        QCOMPARE(manager.writeProblems().size(), 1);
        QVERIFY(manager.writeProblems().first().contains(path));
        QVERIFY(!manager.decodeLibrary());
        QVERIFY(!manager.readError() && !manager.readProblem());
        QCOMPARE(manager.writeProblems().size(), 1);
        QCOMPARE(changes.size(), 0);
        QCOMPARE(storeOf(parent)->value(directoryKey).toString(), path + u'/');
        QCOMPARE(store.read(QStringLiteral("file")), QByteArray("mine"));
    }

    static void failedWriteTestKeepsThePreferences()
    {
        const QTemporaryDir parent;
        StoreFixture store;
        QDir(store.path()).mkdir(QStringLiteral("new.testfile.txt"));
        const QString stored = store.filePath(QStringLiteral("new/"));
        storeOf(parent)->setValue(directoryKey, stored);
        LibraryManagerPreferences preferences(storeOf(parent));
        {
            const LibraryStorageManager manager(preferences);
            QVERIFY(manager.writeError());
            QCOMPARE(store.lines.take(), QStringList());
            QCOMPARE(storeOf(parent)->value(directoryKey).toString(), stored);
        }
        // With nothing in the way of the test, the directory is recorded.
        QVERIFY(QDir(store.path()).rmdir(QStringLiteral("new.testfile.txt")));
        QVERIFY(QDir(store.path()).rmdir(QStringLiteral("new")));
        const LibraryStorageManager manager(preferences);
        QVERIFY(!manager.writeError());
        QCOMPARE(storeOf(parent)->value(directoryKey).toString(), store.filePath(QStringLiteral("new")));
    }

    static void writeTestSparesAFileOfItsName()
    {
        const QTemporaryDir parent;
        StoreFixture store;
        const QString other = QStringLiteral("new.testfile.txt");
        store.write(other, "mine");
        LibraryManagerPreferences preferences(storeOf(parent));
        QVERIFY(preferences.setLibraryDirectory(store.filePath(QStringLiteral("new"))));
        const LibraryStorageManager manager(preferences);
        QVERIFY(!manager.writeError());
        QVERIFY(QFileInfo(manager.libDirectory()).isDir());
        QCOMPARE(store.read(other), QByteArray("mine"));
    }

    static void existingDirectoryIsNotWrittenTo()
    {
        const QTemporaryDir parent;
        StoreFixture store;
        store.write(QStringLiteral("file"), "mine");
        const auto before = store.stamps();
        LibraryManagerPreferences preferences(storeOf(parent));
        QVERIFY(preferences.setLibraryDirectory(store.path()));
        const LibraryStorageManager manager(preferences);
        QVERIFY(!manager.writeError());
        QCOMPARE(store.stamps(), before);
    }

    static void directoryIsShownAsAnAddress()
    {
        StoreFixture store(LibraryDirectory(QStringLiteral("my library")));
        store.storage.openLibraryInFinder();
        QUrl shown;
        store.storage.setShowDirectory([&shown](const QUrl &address) { shown = address; });
        store.storage.openLibraryInFinder();
        QCOMPARE(shown, QUrl::fromLocalFile(store.path()));
    }

    static void existenceTellsDirectoriesFromTheRest()
    {
        StoreFixture store;
        store.write(QStringLiteral("file"), "x");
        QVERIFY(QFile::link(store.path(), store.filePath(QStringLiteral("link"))));
        QVERIFY(QFile::link(store.filePath(QStringLiteral("x")), store.filePath(QStringLiteral("dangling"))));
        QCOMPARE(existence(store.path()), FileExistence::directory);
        QCOMPARE(existence(store.filePath(QStringLiteral("file"))), FileExistence::file);
        QCOMPARE(existence(store.filePath(QStringLiteral("missing"))), FileExistence::none);
        QCOMPARE(existence(store.filePath(QStringLiteral("link"))), FileExistence::directory);
        QCOMPARE(existence(store.filePath(QStringLiteral("dangling"))), FileExistence::none);
        QCOMPARE(existence(QStringLiteral("/dev/null")), FileExistence::file);
    }

    static void pathsOfAPatchAreFoundByItsId()
    {
        StoreFixture store;
        store.write(QStringLiteral("sub/notes.42.txt"), "x");
        store.write(leadFile, "x");
        QStringList paths = store.storage.getPathsForPatchID(42);
        paths.sort();
        QCOMPARE(paths, (QStringList{leadFile, QStringLiteral("sub/notes.42.txt")}));
        QVERIFY(!store.storage.writeError());
    }

    static void directoryWithASpaceIsAWriteErrorAtEachSave()
    {
        StoreFixture store(LibraryDirectory(QStringLiteral("my library")));
        store.library.adopt(three());
        for (int i = 0; i < 3; ++i) {
            store.storage.save(store.library);
            QVERIFY(store.storage.writeError() && store.storage.wasLastSaveWritten());
            store.storage.setWriteError(false);
            QCOMPARE(store.storage.writeProblems(), QStringList());
        }
        QCOMPARE(store.storage.getPathsForPatchID(42), QStringList());
        QVERIFY(store.storage.writeError());
        QVERIFY(areIdentical(store.storage.decodeLibrary()->patches, three().patches));
    }

    // Flags

    static void readErrorStaysUntilItIsCleared()
    {
        StoreFixture store;
        store.write(libraryFile, "{");
        const QSignalSpy changes(&store.storage, &LibraryStorageManager::readErrorChanged);
        QVERIFY(!store.storage.decodeLibrary());
        QVERIFY(!store.storage.decodeLibrary());
        QVERIFY(store.storage.readError() && !store.storage.writeError());
        QCOMPARE(changes.size(), 1);
        QVERIFY(store.storage.readProblem().value_or(Problem()).where.endsWith(libraryFile));
        QFile::remove(store.filePath(libraryFile));
        QVERIFY(!store.storage.decodeLibrary());
        QVERIFY(store.storage.readError());
        QVERIFY(!store.storage.readProblem());
        store.storage.setReadError(false);
        QVERIFY(!store.storage.readError());
    }

    static void writeErrorStaysUntilItIsCleared()
    {
        StoreFixture store(StoreFixture::never, three());
        QDir(store.path()).mkdir(libraryFile);
        const QSignalSpy changes(&store.storage, &LibraryStorageManager::writeErrorChanged);
        store.storage.save(store.library);
        QVERIFY(store.storage.writeError() && !store.storage.wasLastSaveWritten());
        QVERIFY(QDir(store.path()).rmdir(libraryFile));
        store.storage.save(store.library);
        QVERIFY(store.storage.writeError() && store.storage.wasLastSaveWritten());
        QCOMPARE(changes.size(), 1);
        store.storage.setWriteError(false);
        store.storage.save(store.library);
        QVERIFY(!store.storage.writeError());
    }

    static void firstSaveAfterADroppedPatchKeepsTheOldFileAndSaysWhere()
    {
        StoreFixture store(three());
        QFile::remove(store.filePath(leadFile));
        const QByteArray old = store.read(libraryFile);
        QVERIFY(store.start());
        QCOMPARE(store.storage.droppedPatches(), QStringList{QStringLiteral("Lead")});
        QCOMPARE(store.storage.keptFiles(), QStringList());
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies().size(), 1);
        QCOMPARE(store.storage.keptFiles(), QStringList{store.filePath(store.datedCopies().first())});
        QCOMPARE(store.read(store.datedCopies().first()), old);
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies().size(), 1);
    }

    static void savingGoesOnAfterADamagedFileWasTakenAway()
    {
        StoreFixture store(StoreFixture::never, three());
        store.write(libraryFile, "{");
        QVERIFY(!store.storage.decodeLibrary());
        QFile::remove(store.filePath(libraryFile));
        store.storage.save(store.library);
        QVERIFY(store.storage.wasLastSaveWritten());
    }

    static void leftoversOfACrashAreSwept()
    {
        StoreFixture store(three());
        const QStringList files = store.files();
        store.write(TemporaryFiles::prefix() + QStringLiteral("x"), "half");
        store.write(libraryCopy, "half");
        QVERIFY(store.storage.decodeLibrary());
        store.storage.sweepLeftovers();
        QCOMPARE(store.files(), files);
    }

    static void sortingAloneStoresNoOrder()
    {
        StoreFixture store;
        VelgorLibrary library;
        for (const char *name : {"c", "a", "b"}) {
            library.append(TestLibraries::imported(QString::fromLatin1(name), 1), false, false);
        }
        library.saveOrder();
        const QStringList own = TestPatches::names(library.patches());
        library.sort();
        const QStringList sorted = TestPatches::names(library.patches());
        QVERIFY(sorted != own);
        StoredEdits::setDefault(library, library.patches().first().id(), store.storage);
        store.storage.save(library);
        QCOMPARE(store.loadedNames(), own);
        QCOMPARE(TestPatches::names(library.patches()), sorted);
        library.saveOrder();
        store.storage.save(library);
        QCOMPARE(store.loadedNames(), sorted);
    }

    static void placeholderNeverReachesTheDisk()
    {
        StoreFixture store;
        store.storage.save(VelgorLibrary());
        QVERIFY(!store.storage.writeError());
        QCOMPARE(store.files(), QStringList{libraryFile});
        QCOMPARE(store.read(libraryFile), QByteArray(R"({"patches":[],"defaultPatch":null})"));
        QVERIFY(store.lines.take().contains(QStringLiteral("Nothing to save in library")));
        QVERIFY(!store.storage.decodeLibrary());
        QVERIFY(!store.storage.readError());
    }

    // Deleting

    static void deletedPatchIsGoneFromTheDiskAtOnce()
    {
        StoreFixture store(StoreFixture::never, three());
        store.storage.save(store.library);
        store.write(QStringLiteral("notes.42.txt"), "x");
        store.deletePatches({42});
        store.storage.finish();
        QCOMPARE(store.files(),
            (QStringList{QStringLiteral("lib-A$B.43.prst"), QStringLiteral("lib-Clean.44.prst"), libraryFile}));
        QCOMPARE(store.loadedNames(), TestPatches::names(store.library.patches()));
        QVERIFY(!store.storage.writeError() && store.storage.wereFilesRemoved());
    }

    static void deletingManyListsOnce()
    {
        StoreFixture store(StoreFixture::never, three());
        store.storage.save(store.library);
        DirectoryWatch watch(store.path());
        store.deletePatches({42, 44});
        store.storage.finish();
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
        QCOMPARE(store.files().size(), 2);
    }

    static void deletingTheLastPatchLeavesAnEmptyLibrary()
    {
        StoreFixture store;
        VelgorLibrary library(one(QStringLiteral("Lead")).patches, 42);
        store.storage.save(library);
        StoredEdits::deletePatches(library, {42}, store.storage);
        store.storage.finish();
        QCOMPARE(store.files(), QStringList{libraryFile});
        QCOMPARE(store.read(libraryFile), QByteArray(R"({"patches":[],"defaultPatch":null})"));
    }
};

VELGOR_TEST(TestLibraryStorageManager)
#include "tst_LibraryStorageManager.moc"
