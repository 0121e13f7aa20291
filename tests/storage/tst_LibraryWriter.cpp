#include "DiagnosticRecorder.h"
#include "StoredThree.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QElapsedTimer>
#include <QTest>

#include <sys/stat.h>

using namespace StoredThree;

class TestLibraryWriter : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void firstSaveWritesTheLibraryFileAndEveryPatch()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult result = save(directory, three());
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 3);
        QCOMPARE(directory.files(), threeFiles);
        QCOMPARE(directory.read(libraryFile), LibraryJson::encode(three()));
        QCOMPARE(directory.read(leadFile), patchBytes(three().patches.first()));
        QCOMPARE(m_lines->take(),
            (QStringList{QStringLiteral("Saving in progress..."), QStringLiteral("Saving done 3 patches")}));
    }

    void savingAgainRewritesTheLibraryFileOnly()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const auto before = directory.stamps();
        m_lines->take();
        QCOMPARE(save(directory, three()).written, 0);
        auto after = directory.stamps();
        QVERIFY(after.value(libraryFile) != before.value(libraryFile));
        QCOMPARE(after.take(libraryFile).section(u' ', 0, 0), before.value(libraryFile).section(u' ', 0, 0));
        for (const QString &name : after.keys()) {
            QCOMPARE(after.value(name), before.value(name));
        }
        QCOMPARE(directory.files(), threeFiles);
        QCOMPARE(m_lines->take().last(), QStringLiteral("Saving done 0 patches"));
    }

    void renamedPatchMovesItsFile()
    {
        const LibraryDirectory directory;
        LibraryState library = one(QStringLiteral("Old"));
        QVERIFY(!save(directory, library).hasError());
        const QString number = directory.stamps().value(QStringLiteral("lib-Old.42.prst")).section(u' ', 0, 0);
        library.patches.first().name = QStringLiteral("New");
        const LibraryWriteResult result = save(directory, library);
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 0);
        QCOMPARE(directory.files(), (QStringList{QStringLiteral("lib-New.42.prst"), libraryFile}));
        QCOMPARE(directory.stamps().value(QStringLiteral("lib-New.42.prst")).section(u' ', 0, 0), number);
        QVERIFY(directory.read(libraryFile).contains("\"New\""));
        // The record inside stays as it was hashed.
        QCOMPARE(loaded(directory).first().records->patchData.name, QStringLiteral("Old"));
    }

    void patchesCanSwapTheirNames()
    {
        const LibraryDirectory directory;
        LibraryState library = three();
        QVERIFY(!save(directory, library).hasError());
        std::swap(library.patches[0].name, library.patches[2].name);
        QVERIFY(!save(directory, library).hasError());
        QVERIFY(areIdentical(loaded(directory), library.patches));
    }

    void emptyLibraryIsAnEmptyList()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, {}).hasError());
        QCOMPARE(directory.files(), QStringList{libraryFile});
        QCOMPARE(directory.read(libraryFile), QByteArray(R"({"patches":[],"defaultPatch":null})"));
        QCOMPARE(m_lines->take(),
            (QStringList{QStringLiteral("Saving in progress..."), QStringLiteral("Nothing to save in library"),
                QStringLiteral("Saving done 0 patches")}));
    }

    void patchWithoutPresetDataFailsAloneWithALine()
    {
        const LibraryDirectory directory;
        LibraryState library = three();
        library.patches.insert(1, TestPatches::stored(50, QStringLiteral("Without")));
        const LibraryWriteResult result = save(directory, library);
        QVERIFY(result.hasError() && !result.arePatchesWritten && result.isLibraryFileWritten);
        QCOMPARE(result.written, 3);
        QCOMPARE(directory.files(), threeFiles);
        QCOMPARE(m_lines->take().last(), QStringLiteral("Error: 3 patches stored out of 4"));
        QVERIFY(result.problems.join(u'\n').contains(QStringLiteral("Without")));
    }

    void directoryInThePlaceOfAPatchFileFailsThatPatch()
    {
        const LibraryDirectory directory;
        QDir(directory.path()).mkdir(leadFile);
        const LibraryWriteResult result = save(directory, three());
        QVERIFY(!result.arePatchesWritten);
        QCOMPARE(result.written, 2);
        QVERIFY(QFileInfo(directory.filePath(leadFile)).isDir());
        QCOMPARE(m_lines->take().last(), QStringLiteral("Error: 2 patches stored out of 3"));
        QVERIFY(QDir(directory.path()).rmdir(leadFile));
        QCOMPARE(save(directory, three(), result.state).written, 1);
    }

    void pipeInThePlaceOfAPatchFileFailsAtOnce()
    {
        const LibraryDirectory directory;
        QVERIFY(mkfifo(QFile::encodeName(directory.filePath(leadFile)).constData(), 0600) == 0);
        QElapsedTimer timer;
        timer.start();
        const LibraryWriteResult result = save(directory, three());
        QVERIFY(timer.elapsed() < 2000);
        QVERIFY(!result.arePatchesWritten);
        QCOMPARE(result.written, 2);
    }

    void linkInThePlaceOfAPatchFileMakesRoomWithoutBeingFollowed()
    {
        const LibraryDirectory directory;
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        QVERIFY(QFile::link(outside, directory.filePath(leadFile)));
        QCOMPARE(save(directory, three()).written, 3);
        QVERIFY(!QFileInfo::exists(outside));
        QVERIFY(!QFileInfo(directory.filePath(leadFile)).isSymLink());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    void libraryFileThatIsNoFileIsNotWritten_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"directory", "pipe", "link"}) {
            QTest::newRow(kind) << QString::fromLatin1(kind);
        }
    }

    void libraryFileThatIsNoFileIsNotWritten()
    {
        QFETCH(const QString, kind);
        const LibraryDirectory directory;
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        const QString path = directory.filePath(libraryFile);
        if (kind == QStringLiteral("directory")) {
            QVERIFY(QDir().mkdir(path));
        } else if (kind == QStringLiteral("pipe")) {
            QVERIFY(mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        } else {
            QVERIFY(QFile::link(outside, path));
        }
        const LibraryWriteResult result = save(directory, three());
        QVERIFY(!result.isLibraryFileWritten && result.arePatchesWritten && result.hasError());
        QCOMPARE(result.written, 3);
        QVERIFY(m_lines->take().contains(QStringLiteral("cannot encode library")));
        QVERIFY(!QFileInfo::exists(outside));
        QVERIFY(!directory.has(libraryCopy));
    }

    void directoryWithASpaceCannotBeListed()
    {
        const LibraryDirectory directory(QStringLiteral("my library"));
        for (int i = 0; i < 2; ++i) {
            const LibraryWriteResult result = save(directory, three());
            QVERIFY(!result.isTidy && result.hasError());
            QVERIFY(result.isLibraryFileWritten && result.arePatchesWritten);
            QCOMPARE(result.written, i == 0 ? 3 : 0);
            QVERIFY(result.problems.join(u'\n').contains(directory.path()));
        }
        QVERIFY(areIdentical(loaded(directory), three().patches));
        QVERIFY(remove(directory, {42}).hasError());
        QVERIFY(directory.has(leadFile));
        QVERIFY(!directory.has(LibraryFileNames::journalFile()));
    }

    void missingDirectoryFailsEverything()
    {
        const LibraryDirectory directory;
        QVERIFY(QDir(directory.path()).removeRecursively());
        const LibraryWriteResult result = save(directory, three());
        QVERIFY(!result.isLibraryFileWritten && !result.arePatchesWritten && !result.isTidy);
        QCOMPARE(result.written, 0);
        QVERIFY(!QFileInfo::exists(directory.path()));
    }

    // Keeping what could not be loaded

    // Interruptions

    void saveAfterAnInterruptionLeavesNothingBehind_data()
    {
        QTest::addColumn<int>("libraryBytes");
        QTest::addColumn<int>("copyBytes");
        QTest::newRow("copy half written over") << -1 << 10;
        QTest::newRow("copy complete") << -1 << -1;
        QTest::newRow("library file cut") << 50 << -1;
        QTest::newRow("library file empty") << 0 << -1;
    }

    void saveAfterAnInterruptionLeavesNothingBehind()
    {
        QFETCH(const int, libraryBytes);
        QFETCH(const int, copyBytes);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray text = directory.read(libraryFile);
        directory.write(libraryFile, libraryBytes < 0 ? text : text.first(libraryBytes));
        directory.write(libraryCopy, copyBytes < 0 ? text : text.first(copyBytes));
        const LibraryLoadResult result = load(directory);
        QVERIFY(areIdentical(result.library->patches, three().patches));
        QVERIFY(!save(directory, three(), stateAfter(result)).hasError());
        QCOMPARE(directory.read(libraryFile), text);
        QCOMPARE(directory.files(), threeFiles);
    }

    void leftoversAreSweptAndNothingElse()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        QDir(directory.path()).mkdir(TemporaryFiles::prefix() + QStringLiteral("d"));
        directory.write(QStringLiteral("sub/") + TemporaryFiles::prefix() + QStringLiteral("x"), "x");
        const auto before = directory.stamps();
        directory.write(TemporaryFiles::prefix() + QStringLiteral("1"), "x");
        directory.write(TemporaryFiles::prefix() + QStringLiteral("2"), {});
        directory.write(LibraryFileNames::journalFile(), "remove 42\nremove 77\nend\n");
        sweep(directory);
        QCOMPARE(directory.stamps(), before);
        QVERIFY(QFileInfo(directory.filePath(TemporaryFiles::prefix() + QStringLiteral("d"))).isDir());
    }

    void libraryFileIsCompletedFromTheCopyThatServed_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("missing") << false << QByteArray();
        QTest::newRow("empty") << true << QByteArray();
        QTest::newRow("cut") << true << LibraryJson::encode(three()).first(50);
        QTest::newRow("whole") << true << LibraryJson::encode(three());
    }

    void libraryFileIsCompletedFromTheCopyThatServed()
    {
        QFETCH(const bool, isThere);
        QFETCH(const QByteArray, text);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        directory.write(libraryCopy, LibraryJson::encode(three()));
        QFile::remove(directory.filePath(libraryFile));
        if (isThere) {
            directory.write(libraryFile, text);
        }
        sweep(directory);
        QCOMPARE(directory.files(), threeFiles);
        QCOMPARE(directory.read(libraryFile), LibraryJson::encode(three()));
    }

    void damagedLibraryFileAndTheCopyThatServedStayUntilTheNextSave()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        directory.write(libraryCopy, LibraryJson::encode(three()));
        directory.write(libraryFile, "something else");
        const auto before = directory.stamps();
        sweep(directory);
        QCOMPARE(directory.stamps(), before);
    }

    void nothingIsSweptWhileTheLibraryCannotBeRead()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        directory.write(libraryFile, "garbled");
        directory.write(LibraryFileNames::journalFile(), "remove 42\nend\n");
        directory.write(TemporaryFiles::prefix() + QStringLiteral("1"), "x");
        const auto before = directory.stamps();
        sweep(directory);
        QCOMPARE(directory.stamps(), before);
    }

    void sweepingAMissingDirectoryDoesNothing()
    {
        LibraryLeftovers leftovers;
        leftovers.areKnown = true;
        leftovers.isCopySpare = true;
        LibrarySweeper(QStringLiteral("/no/such/directory"), leftovers).sweep();
        QVERIFY(!QFileInfo::exists(QStringLiteral("/no/such/directory")));
    }

    // What could not be read

    void entryThatCouldNotBeReadStaysInTheLibraryFile()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryWriteState state = stateOf(directory);
        VelgorPatch unread = three().patches.at(1);
        unread.records.reset();
        state.unread = {.patches = {{unread.id(), unread}}, .order = TestPatches::ids(three().patches)};
        LibraryState rest = three();
        rest.patches.removeAt(1);
        const LibraryWriteResult result = save(directory, rest, state);
        QVERIFY(!result.hasError() && result.keptFiles.isEmpty());
        QVERIFY(areIdentical(loaded(directory), three().patches));
        rest.patches.clear();
        QVERIFY(!save(directory, rest, result.state).hasError());
        QCOMPARE(loadedNames(directory), QStringList{QStringLiteral("A/B")});
    }

    void entryThatCouldNotBeReadGivesWayToTheImportedPatchAndIsKept()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray old = directory.read(libraryFile);
        LibraryWriteState state = stateOf(directory);
        const VelgorPatch unread = three().patches.at(1);
        state.unread = {.patches = {{unread.id(), unread}}, .order = TestPatches::ids(three().patches)};
        const LibraryWriteResult result = save(directory, three(), state);
        QVERIFY(!result.hasError() && result.state.unread.isEmpty());
        QVERIFY(areIdentical(loaded(directory), three().patches));
        QCOMPARE(directory.read(datedCopies(directory).value(0)), old);
    }

    // Another program at work
};

VELGOR_TEST(TestLibraryWriter)
#include "tst_LibraryWriter.moc"
