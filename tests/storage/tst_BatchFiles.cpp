#include "BatchFiles.h"
#include "LibraryDirectory.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestBatchFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void filesAreInPlaceWhenTheBatchIsFinished()
    {
        const LibraryDirectory directory;
        BatchFiles files(directory.path());
        for (int i = 0; i < 20; ++i) {
            QVERIFY(files.write(QString::number(i), QByteArray::number(i)));
        }
        QVERIFY(!directory.has(QStringLiteral("0")));
        QVERIFY(files.finish().isEmpty());
        QCOMPARE(directory.files().size(), 20);
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(directory.read(QString::number(i)), QByteArray::number(i));
        }
    }

    static void emptyBatchTouchesNothing()
    {
        BatchFiles files(QStringLiteral("/no/such/directory"));
        QVERIFY(files.finish().isEmpty());
    }

    static void unfinishedBatchLeavesNothing()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("a"), "old");
        {
            BatchFiles files(directory.path());
            QVERIFY(files.write(QStringLiteral("a"), "new"));
            QVERIFY(files.write(QStringLiteral("b"), "new"));
            QCOMPARE(directory.files().size(), 3);
        }
        QCOMPARE(directory.files(), QStringList{QStringLiteral("a")});
        QCOMPARE(directory.read(QStringLiteral("a")), QByteArray("old"));
    }

    static void oneFailureDoesNotStopTheOthers()
    {
        const LibraryDirectory directory;
        BatchFiles files(directory.path());
        for (const char *name : {"a", "b", "c"}) {
            QVERIFY(files.write(QString::fromLatin1(name), name));
        }
        directory.write(QStringLiteral("b/inside"), "x");
        const QList<BatchFiles::Failure> failures = files.finish();
        QCOMPARE(failures.size(), 1);
        QVERIFY(failures.first().problem);
        QCOMPARE(failures.first().problem->where, directory.filePath(QStringLiteral("b")));
        QVERIFY(!failures.first().problem->why.isEmpty());
        QVERIFY(QFile::remove(failures.first().temporary));
        QCOMPARE(
            directory.files(), (QStringList{QStringLiteral("a"), QStringLiteral("b/inside"), QStringLiteral("c")}));
    }

    static void directoryInThePlaceOfAFileIsRefused()
    {
        const LibraryDirectory directory;
        QDir(directory.path()).mkdir(QStringLiteral("a"));
        BatchFiles files(directory.path());
        QVERIFY(!files.write(QStringLiteral("a"), "x"));
        QVERIFY(files.finish().isEmpty());
        QCOMPARE(directory.files(), QStringList());
    }

    static void vanishedDirectoryFailsEveryFile()
    {
        const LibraryDirectory directory;
        BatchFiles files(directory.path());
        QVERIFY(files.write(QStringLiteral("a"), "x"));
        QVERIFY(files.write(QStringLiteral("b"), "x"));
        QVERIFY(QDir(directory.path()).removeRecursively());
        QCOMPARE(files.finish().size(), 2);
        QVERIFY(!files.write(QStringLiteral("c"), "x"));
    }

    static void nothingIsSaidToBeInAnotherDirectoryThatTookThePlace()
    {
        const LibraryDirectory directory;
        const LibraryDirectory elsewhere;
        BatchFiles files(directory.path());
        QVERIFY(files.write(QStringLiteral("a"), "x"));
        const QString moved = elsewhere.filePath(QStringLiteral("moved"));
        QVERIFY(QDir().rename(directory.path(), moved));
        QVERIFY(QDir().mkdir(directory.path()));
        QCOMPARE(files.finish().size(), 1);
        QVERIFY(!QFile::exists(moved + QStringLiteral("/a")));
        QCOMPARE(directory.files(), QStringList());
    }

    static void fileThatIsToBeLeftStaysPreparedAndTheOthersArePutInPlace()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("b"), "old");
        BatchFiles files(directory.path());
        for (const char *name : {"a", "b", "c"}) {
            QVERIFY(files.write(QString::fromLatin1(name), name));
        }
        files.leavePrepared(QStringLiteral("b"));
        files.leavePrepared(QStringLiteral("another"));
        const QList<BatchFiles::Failure> failures = files.finish();
        QCOMPARE(failures.size(), 1);
        QVERIFY(!failures.first().problem);
        QCOMPARE(directory.read(QFileInfo(failures.first().temporary).fileName()), QByteArray("b"));
        QCOMPARE(directory.read(QStringLiteral("b")), QByteArray("old"));
        QVERIFY(directory.has(QStringLiteral("a")) && directory.has(QStringLiteral("c")));
    }
};

VELGOR_TEST(TestBatchFiles)
#include "tst_BatchFiles.moc"
