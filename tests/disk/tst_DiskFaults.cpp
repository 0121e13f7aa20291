#include "DiskFiles.h"
#include "DiskSync.h"
#include "FailingCall.h"
#include "LibraryDirectory.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <cstring>

using Call = FailingCall::Call;

namespace {

const QString file = QStringLiteral("file");

} // namespace

/// Single files when the system fails a call once.
class TestDiskFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void fileThatCannotBeReadForTheMomentIsToldFromADamagedOne()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Read, EIO);
        const Result<QByteArray> result = DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse);
        QVERIFY(!result && result.problem().mayPass);
        QCOMPARE(result.problem().why, QString::fromLocal8Bit(strerror(EIO)));
    }

    static void interruptedReadingGoesOn()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Read, EINTR);
        const Result<QByteArray> result = DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse);
        QVERIFY(failing.wasMade());
        QCOMPARE(*result, QByteArray("bytes"));
    }

    static void fileThatShrinksMeanwhileIsReadToItsEnd()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Read, FailingCall::endOfFile);
        const Result<QByteArray> result = DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse);
        QCOMPARE(*result, QByteArray());
    }

    static void fileOfUnknownKindIsNotRead()
    {
        const LibraryDirectory directory;
        directory.write(file, "bytes");
        const FailingCall failing(Call::Stat, EIO);
        QVERIFY(!DiskFiles::readRegular(directory.filePath(file), DiskFiles::Links::Refuse));
    }

    static void failedReplacementLeavesTheOldFileAndNothingElse_data()
    {
        QTest::addColumn<Call>("call");
        QTest::newRow("making") << Call::Open;
        QTest::newRow("writing") << Call::Write;
        QTest::newRow("synchronising") << Call::Sync;
        QTest::newRow("renaming") << Call::Rename;
    }
    static void failedReplacementLeavesTheOldFileAndNothingElse()
    {
        QFETCH(const Call, call);
        const LibraryDirectory directory;
        directory.write(file, "old");
        const FailingCall failing(call, EIO);
        QCOMPARE(
            DiskFiles::replace(directory.filePath(file), "new").problem().why, QString::fromLocal8Bit(strerror(EIO)));
        QCOMPARE(directory.read(file), QByteArray("old"));
        QCOMPARE(directory.files(), QStringList{file});
    }

    static void interruptedWritingGoesOn()
    {
        const LibraryDirectory directory;
        const FailingCall failing(Call::Write, EINTR);
        QVERIFY(DiskFiles::replace(directory.filePath(file), "new"));
        QVERIFY(failing.wasMade());
        QCOMPARE(directory.read(file), QByteArray("new"));
    }

    static void fileThatCannotBeMeasuredIsNotTakenForWritten()
    {
        const LibraryDirectory directory;
        directory.write(file, "old");
        const FailingCall failing(Call::Stat, EIO);
        QVERIFY(!DiskFiles::replace(directory.filePath(file), "new"));
        QVERIFY(failing.wasMade());
        QCOMPARE(directory.read(file), QByteArray("old"));
        QCOMPARE(directory.files(), QStringList{file});
    }

    static void temporaryNameThatIsTakenIsPassedOver()
    {
        const LibraryDirectory directory;
        const FailingCall failing(Call::Open, EEXIST);
        QVERIFY(DiskFiles::replace(directory.filePath(file), "new"));
        QVERIFY(failing.wasMade());
        QCOMPARE(directory.files(), QStringList{file});
    }

    static void directoryThatKnowsNoSynchronisingIsNoFailure_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("isFailure");
        QTest::newRow("no such thing") << EINVAL << false;
        QTest::newRow("failing disk") << EIO << true;
    }
    static void directoryThatKnowsNoSynchronisingIsNoFailure()
    {
        QFETCH(const int, error);
        const LibraryDirectory directory;
        const FailingCall failing(Call::Sync, error);
        QTEST(!DiskSync::syncDirectory(directory.path()), "isFailure");
    }

    static void movingNeverReplacesWhereTheSystemHasNoSuchMove_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("file system") << EINVAL;
        QTest::newRow("kernel") << ENOSYS;
    }
    static void movingNeverReplacesWhereTheSystemHasNoSuchMove()
    {
        QFETCH(const int, error);
        const LibraryDirectory directory;
        directory.write(QStringLiteral("a"), "a");
        directory.write(QStringLiteral("b"), "b");
        const QString a = directory.filePath(QStringLiteral("a"));
        {
            const FailingCall failing(Call::MoveOnly, error);
            QVERIFY(!DiskFiles::move(a, directory.filePath(QStringLiteral("b"))));
            QVERIFY(failing.wasMade());
        }
        QCOMPARE(directory.read(QStringLiteral("b")), QByteArray("b"));
        const FailingCall failing(Call::MoveOnly, error);
        QVERIFY(DiskFiles::move(a, directory.filePath(QStringLiteral("c"))));
        QCOMPARE(directory.read(QStringLiteral("c")), QByteArray("a"));
        QVERIFY(!directory.has(QStringLiteral("a")));
    }
};

VELGOR_TEST(TestDiskFaults)
#include "tst_DiskFaults.moc"
