#include "DirectoryWatch.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QFile>
#include <QTest>

#include <cstring>

using namespace TestLibraries;

namespace {

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

private Q_SLOTS:
    static void savingWithoutChangesListsOnceAndOpensNoPatchFile()
    {
        StoreFixture store;
        const LibraryWriteResult first = store.save(three());
        DirectoryWatch watch(store.path());
        QVERIFY(watch.isWatching());
        QVERIFY(!store.save(three(), first.state).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
    }

    static void savingWhatWasLoadedOpensNoPatchFile()
    {
        StoreFixture store(three());
        const LibraryLoadResult result = store.load();
        DirectoryWatch watch(store.path());
        QVERIFY(!store.save(three(), result.writeState).hasError());
        watch.look();
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
    }

    static void fileThatIsLookedIntoOnceIsNotAgain()
    {
        StoreFixture store(three());
        DirectoryWatch watch(store.path());
        const LibraryWriteResult first = store.save(three());
        watch.look();
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")).size(), 3);
        QVERIFY(!store.save(three(), first.state).hasError());
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
        StoreFixture store;
        const LibraryState library = many(count);
        DirectoryWatch watch(store.path());
        const LibraryWriteResult first = store.save(library);
        QCOMPARE(first.written, count);
        watch.look();
        QCOMPARE(watch.scans, 1);
        QVERIFY(!store.save(library, first.state).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
    }

    static void renamingAndAddingListsOnce()
    {
        StoreFixture store(three());
        LibraryState library = three();
        for (VelgorPatch &patch : library.patches) {
            patch.name += QStringLiteral(" new");
        }
        library.patches.append(TestLibraries::patch(QStringLiteral("Added"), 45, 9));
        DirectoryWatch watch(store.path());
        QVERIFY(!store.save(library).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        // Each file is looked into once before it is moved.
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")).size(), 3);
    }

    static void removingManyListsOnce()
    {
        StoreFixture store(three());
        DirectoryWatch watch(store.path());
        LibraryWriteState state = store.state();
        state.idsToRemove = {42, 43, 44};
        QVERIFY(!store.save({}, state).hasError());
        watch.look();
        QCOMPARE(watch.scans, 1);
        QCOMPARE(watch.opened.filter(QStringLiteral(".prst")), QStringList());
        QCOMPARE(store.files(), QStringList{libraryFile});
    }

    // Once into the copy beside the library file, once into the library file.
    static void savingWithoutChangesWritesTheLibraryFilesTextTwice()
    {
        StoreFixture store;
        const LibraryWriteResult first = store.save(many(100));
        const qint64 before = bytesWritten();
        if (before < 0) {
            QSKIP("this system does not count what a process writes");
        }
        QVERIFY(!store.save(many(100), first.state).hasError());
        QCOMPARE(bytesWritten() - before, 2 * store.read(libraryFile).size());
    }

    static void patchFilesAreWrittenOnce()
    {
        StoreFixture store;
        const qint64 before = bytesWritten();
        if (before < 0) {
            QSKIP("this system does not count what a process writes");
        }
        QVERIFY(!store.save(many(100)).hasError());
        const qint64 written = bytesWritten() - before;
        qint64 fewest = 2 * store.read(libraryFile).size();
        for (const QString &name : store.files().filter(QStringLiteral(".prst"))) {
            fewest += store.read(name).size();
        }
        // The rest is the journal: a line for each patch.
        constexpr qint64 longestLine = 80;
        QVERIFY(written >= fewest);
        QVERIFY(written - fewest <= 100 * longestLine);
    }
};

VELGOR_TEST(TestSaveCost)
#include "tst_SaveCost.moc"
