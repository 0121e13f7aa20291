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
            QCOMPARE(files.write(directory.filePath(QString::number(i)), QByteArray::number(i)), QString());
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
            QCOMPARE(files.write(directory.filePath(QStringLiteral("a")), "new"), QString());
            QCOMPARE(files.write(directory.filePath(QStringLiteral("b")), "new"), QString());
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
            QCOMPARE(files.write(directory.filePath(QString::fromLatin1(name)), name), QString());
        }
        directory.write(QStringLiteral("b/inside"), "x");
        const QList<BatchFiles::Failure> failures = files.finish();
        QCOMPARE(failures.size(), 1);
        QCOMPARE(failures.first().path, directory.filePath(QStringLiteral("b")));
        QVERIFY(!failures.first().error.isEmpty());
        QVERIFY(QFile::remove(failures.first().temporary));
        QCOMPARE(
            directory.files(), (QStringList{QStringLiteral("a"), QStringLiteral("b/inside"), QStringLiteral("c")}));
    }

    static void directoryInThePlaceOfAFileIsRefused()
    {
        const LibraryDirectory directory;
        QDir(directory.path()).mkdir(QStringLiteral("a"));
        BatchFiles files(directory.path());
        QVERIFY(!files.write(directory.filePath(QStringLiteral("a")), "x").isEmpty());
        QVERIFY(files.finish().isEmpty());
        QCOMPARE(directory.files(), QStringList());
    }

    static void vanishedDirectoryFailsEveryFile()
    {
        const LibraryDirectory directory;
        BatchFiles files(directory.path());
        QCOMPARE(files.write(directory.filePath(QStringLiteral("a")), "x"), QString());
        QCOMPARE(files.write(directory.filePath(QStringLiteral("b")), "x"), QString());
        QVERIFY(QDir(directory.path()).removeRecursively());
        QCOMPARE(files.finish().size(), 2);
        QVERIFY(!files.write(directory.filePath(QStringLiteral("c")), "x").isEmpty());
    }

    static void nothingIsSaidToBeInAnotherDirectoryThatTookThePlace()
    {
        const LibraryDirectory directory;
        const LibraryDirectory elsewhere;
        BatchFiles files(directory.path());
        QCOMPARE(files.write(directory.filePath(QStringLiteral("a")), "x"), QString());
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
            QCOMPARE(files.write(directory.filePath(QString::fromLatin1(name)), name), QString());
        }
        files.leavePrepared(QStringLiteral("b"));
        files.leavePrepared(QStringLiteral("another"));
        const QList<BatchFiles::Failure> failures = files.finish();
        QCOMPARE(failures.size(), 1);
        QCOMPARE(failures.first().path, directory.filePath(QStringLiteral("b")));
        QCOMPARE(directory.read(QFileInfo(failures.first().temporary).fileName()), QByteArray("b"));
        QCOMPARE(directory.read(QStringLiteral("b")), QByteArray("old"));
        QVERIFY(directory.has(QStringLiteral("a")) && directory.has(QStringLiteral("c")));
    }

    static void linksAreNotReadThrough()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("a"), "x");
        QVERIFY(QFile::link(directory.filePath(QStringLiteral("a")), directory.filePath(QStringLiteral("link"))));
        BatchFiles files(directory.path());
        QVERIFY(files.read(directory.filePath(QStringLiteral("a"))).bytes);
        QVERIFY(!files.read(directory.filePath(QStringLiteral("link"))).bytes);
    }
};

VELGOR_TEST(TestBatchFiles)
#include "tst_BatchFiles.moc"
