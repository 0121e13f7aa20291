#include "DiagnosticRecorder.h"
#include "DirectoryWatch.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>

#include <cstring>

using namespace TestLibraries;

namespace {

const QString libraryFile = LibraryFileNames::libraryFile();

/// What this process has given to the system to be written, in bytes.
qint64 bytesWritten()
{
    QFile counts(QStringLiteral("/proc/self/io"));
    if (!counts.open(QIODevice::ReadOnly)) {
        return -1;
    }
    const QByteArray text = counts.readAll();
    const qsizetype start = text.indexOf("wchar: ") + qsizetype(strlen("wchar: "));
    return text.sliced(start, text.indexOf('\n', start) - start).toLongLong();
}

LibraryState many(int count)
{
    LibraryState library;
    for (int i = 0; i < count; ++i) {
        library.patches.append(TestLibraries::patch(QString::number(i), static_cast<quint64>(i + 1), i));
    }
    return library;
}

} // namespace

/// How much a save reads, lists and writes: what does not depend on the machine.
class TestSaveCost : public QObject {
    Q_OBJECT

    const DiagnosticRecorder m_silence;

private Q_SLOTS:
    static void savingWithoutChangesListsOnceAndOpensNoPatchFile()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult first = save(directory, three());
        DirectoryWatch watch(directory.path());
        QVERIFY(watch.isWatching());
        QVERIFY(!save(directory, three(), first.state).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
    }

    static void savingWhatWasLoadedOpensNoPatchFile()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const LibraryLoadResult result = load(directory);
        DirectoryWatch watch(directory.path());
        QVERIFY(!save(directory, three(), stateAfter(result)).hasError());
        watch.look();
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
    }

    static void fileThatIsLookedIntoOnceIsNotAgain()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        DirectoryWatch watch(directory.path());
        const LibraryWriteResult first = save(directory, three());
        watch.look();
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")).size(), 3);
        QVERIFY(!save(directory, three(), first.state).hasError());
        watch.look();
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
    }

    static void listingsDoNotDependOnTheNumberOfPatches_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("ten") << 10;
        QTest::newRow("a thousand") << 1000;
    }
    static void listingsDoNotDependOnTheNumberOfPatches()
    {
        QFETCH(const int, count);
        const LibraryDirectory directory;
        const LibraryState library = many(count);
        DirectoryWatch watch(directory.path());
        const LibraryWriteResult first = save(directory, library);
        QCOMPARE(first.written, count);
        watch.look();
        QCOMPARE(watch.scans, 1);
        QVERIFY(!save(directory, library, first.state).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
    }

    static void renamingAndAddingListsOnce()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        LibraryState library = three();
        for (VelgorPatch &patch : library.patches) {
            patch.name += QStringLiteral(" new");
        }
        library.patches.append(TestLibraries::patch(QStringLiteral("Added"), 45, 9));
        DirectoryWatch watch(directory.path());
        QVERIFY(!save(directory, library).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        // Each file is looked into once before it is moved.
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")).size(), 3);
    }

    static void removingManyListsOnce()
    {
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        DirectoryWatch watch(directory.path());
        LibraryWriteState state = stateOf(directory);
        state.idsToRemove = {42, 43, 44};
        QVERIFY(!save(directory, {}, state).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
        QCOMPARE(directory.files(), QStringList{libraryFile});
    }

    // Once into the copy beside the library file, once into the library file.
    static void savingWithoutChangesWritesTheLibraryFilesTextTwice()
    {
        const LibraryDirectory directory;
        const LibraryWriteResult first = save(directory, many(100));
        const qint64 before = bytesWritten();
        if (before < 0) {
            QSKIP("this system does not count what a process writes");
        }
        QVERIFY(!save(directory, many(100), first.state).hasError());
        QCOMPARE(bytesWritten() - before, 2 * directory.read(libraryFile).size());
    }

    static void patchFilesAreWrittenOnce()
    {
        const LibraryDirectory directory;
        const qint64 before = bytesWritten();
        if (before < 0) {
            QSKIP("this system does not count what a process writes");
        }
        QVERIFY(!save(directory, many(100)).hasError());
        const qint64 written = bytesWritten() - before;
        qint64 fewest = 2 * directory.read(libraryFile).size();
        for (const QString &name : directory.files().filter(QStringLiteral(".prst"))) {
            fewest += directory.read(name).size();
        }
        // The rest is the journal: a line for each patch.
        constexpr qint64 longestLine = 80;
        QVERIFY(written >= fewest);
        QVERIFY(written - fewest <= 100 * longestLine);
    }
};

VELGOR_TEST(TestSaveCost)
#include "tst_SaveCost.moc"
