#include "DiagnosticRecorder.h"
#include "StoredThree.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QTest>

#include <sys/stat.h>

using namespace StoredThree;

class TestWriterKeepsFiles : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void undecodableLibraryFileIsKeptBeforeItIsOverwritten()
    {
        const LibraryDirectory directory;
        directory.write(libraryFile, "{\"patches\":[garbled");
        const LibraryWriteResult result = save(directory, three(), stateAfter(load(directory)));
        QVERIFY(!result.hasError());
        const QStringList kept = datedCopies(directory);
        QCOMPARE(kept.size(), 1);
        QCOMPARE(result.keptFiles, QStringList{directory.filePath(kept.first())});
        QCOMPARE(directory.read(kept.first()), QByteArray("{\"patches\":[garbled"));
        QVERIFY(areIdentical(loaded(directory), three().patches));
        const LibraryWriteResult second = save(directory, three(), result.state);
        QCOMPARE(second.keptFiles, QStringList());
        QCOMPARE(datedCopies(directory), kept);
    }

    void droppedPatchKeepsTheOldLibraryFile()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        QFile::remove(directory.filePath(leadFile));
        const QByteArray old = directory.read(libraryFile);
        const LibraryLoadResult result = load(directory);
        QVERIFY(!save(directory, {result.library->patches, std::nullopt}, stateAfter(result)).hasError());
        QCOMPARE(datedCopies(directory).size(), 1);
        QCOMPARE(directory.read(datedCopies(directory).first()), old);
    }

    void sameSecondKeepsBoth()
    {
        const LibraryDirectory directory;
        for (const char *text : {"first", "second", "third"}) {
            directory.write(libraryFile, text);
            QVERIFY(!save(directory, three(), mustKeep).hasError());
        }
        QList<QByteArray> kept;
        for (const QString &name : datedCopies(directory)) {
            kept.append(directory.read(name));
        }
        QCOMPARE(kept, (QList<QByteArray>{"first", "second", "third"}));
    }

    void twentyKeptFilesStayAndNoneOfTheUsers()
    {
        const LibraryDirectory directory;
        const QString users = QStringLiteral("velgorlibrary-backup.json");
        directory.write(users, "mine");
        QStringList old;
        for (int i = 10; i < 32; ++i) {
            old.append(QStringLiteral("velgorlibrary-202001%1T000000-00.json").arg(i));
            directory.write(old.last(), "old");
        }
        directory.write(libraryFile, "garbled");
        QVERIFY(!save(directory, three(), mustKeep).hasError());
        const QStringList kept = datedCopies(directory);
        QCOMPARE(kept.size(), 20);
        QCOMPARE(kept.first(19), old.last(19));
        QCOMPARE(directory.read(kept.last()), QByteArray("garbled"));
        QCOMPARE(directory.read(users), QByteArray("mine"));
    }

    void keptFileThatCannotBeWrittenStopsTheOverwriting()
    {
        const LibraryDirectory directory;
        QVERIFY(QDir(directory.path()).mkdir(libraryFile));
        const LibraryWriteResult result = save(directory, three(), mustKeep);
        QVERIFY(!result.isLibraryFileWritten && !result.state.filesToKeep.isEmpty());
        QCOMPARE(result.written, 3);
    }

    void nothingToKeepIsNoObstacle()
    {
        // The user took the damaged file away after it could not be loaded.
        const LibraryDirectory directory;
        const LibraryWriteResult result = save(directory, three(), mustKeep);
        QVERIFY(!result.hasError());
    }

    void libraryFileChangedByAnotherProgramIsKept()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult first = save(directory, three());
        LibraryState others = three();
        others.patches.first().comment = QStringLiteral("theirs");
        const QByteArray text = LibraryJson::encode(others);
        directory.write(libraryFile, text);
        const LibraryWriteResult second = save(directory, three(), first.state);
        QVERIFY(!second.hasError() && second.wasChangedByOthers);
        QCOMPARE(datedCopies(directory).size(), 1);
        QCOMPARE(second.keptFiles, QStringList{directory.filePath(datedCopies(directory).first())});
        QCOMPARE(directory.read(datedCopies(directory).first()), text);
        const LibraryWriteResult third = save(directory, three(), second.state);
        QVERIFY(!third.wasChangedByOthers && third.keptFiles.isEmpty());
    }

    void libraryFileThatAppearedSinceLoadingIsKept()
    {
        const LibraryDirectory directory;
        const LibraryLoadResult result = load(directory);
        const QByteArray text = LibraryJson::encode(one(QStringLiteral("Theirs")));
        directory.write(libraryFile, text);
        QVERIFY(save(directory, three(), stateAfter(result)).wasChangedByOthers);
        QCOMPARE(directory.read(datedCopies(directory).first()), text);
    }

    void touchedLibraryFileIsNotKept()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult first = save(directory, three());
        directory.write(libraryFile, directory.read(libraryFile));
        QVERIFY(!save(directory, three(), first.state).wasChangedByOthers);
        QCOMPARE(directory.files(), threeFiles);
    }
};

VELGOR_TEST(TestWriterKeepsFiles)
#include "tst_WriterKeepsFiles.moc"
