#include "LibraryDirectory.h"
#include "LibraryFileNames.h"
#include "LibraryLock.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool isHeldElsewhere(const Result<> &locked)
{
    return !locked && locked.problem().what == Problem::What::Taken;
}

} // namespace

class TestLibraryLock : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void directoryBelongsToOne()
    {
        const LibraryDirectory directory;
        LibraryLock first(directory.path());
        QVERIFY(first.tryLock());
        LibraryLock second(directory.path());
        const Result<> refused = second.tryLock();
        QVERIFY(isHeldElsewhere(refused));
        QCOMPARE(refused.problem().where, directory.path());
    }

    static void lockGoesWithItsHolder()
    {
        const LibraryDirectory directory;
        {
            LibraryLock lock(directory.path());
            QVERIFY(lock.tryLock());
            QCOMPARE(directory.files(), QStringList{LibraryFileNames::lockFile()});
        }
        QCOMPARE(directory.files(), QStringList());
    }

    static void directoriesAreLockedApart()
    {
        const LibraryDirectory one;
        const LibraryDirectory other;
        LibraryLock first(one.path());
        LibraryLock second(other.path());
        QVERIFY(first.tryLock());
        QVERIFY(second.tryLock());
    }

    static void lockOfACrashedHolderIsTakenOver()
    {
        const LibraryDirectory directory;
        const pid_t child = fork();
        if (child == 0) {
            LibraryLock lock(directory.path());
            _exit(lock.tryLock() ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        QCOMPARE(WEXITSTATUS(status), 0);
        QCOMPARE(directory.files(), QStringList{LibraryFileNames::lockFile()});
        LibraryLock lock(directory.path());
        QVERIFY(lock.tryLock());
    }

    /// In sandboxes process numbers begin anew, so that the next program often has the number of the last.
    static void lockOfACrashedHolderWithOurNumberIsTakenOver()
    {
        const LibraryDirectory directory;
        const pid_t child = fork();
        if (child == 0) {
            LibraryLock lock(directory.path());
            _exit(lock.tryLock() ? 0 : 1);
        }
        waitpid(child, nullptr, 0);
        QByteArray text = directory.read(LibraryFileNames::lockFile());
        text.replace(0, text.indexOf('\n'), QByteArray::number(getpid()));
        directory.write(LibraryFileNames::lockFile(), text);
        LibraryLock lock(directory.path());
        QVERIFY(lock.tryLock());
    }

    static void oldLockOfALivingHolderStands()
    {
        const LibraryDirectory directory;
        LibraryLock first(directory.path());
        QVERIFY(first.tryLock());
        QFile file(directory.filePath(LibraryFileNames::lockFile()));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addDays(-30), QFileDevice::FileModificationTime));
        file.close();
        LibraryLock second(directory.path());
        QVERIFY(!second.tryLock());
    }

    static void missingDirectoryIsNotTakenForAnotherHolder()
    {
        const LibraryDirectory directory;
        LibraryLock lock(directory.filePath(QStringLiteral("missing")));
        const Result<> refused = lock.tryLock();
        QVERIFY(!refused && !isHeldElsewhere(refused));
        QVERIFY(refused.problem().why.contains(QString::fromLatin1(strerror(ENOENT))));
    }

    static void takingOverThatWasInterruptedIsFinished_data()
    {
        QTest::addColumn<bool>("isNamed");
        QTest::addColumn<int>("depth");
        QTest::newRow("lock without a name") << false << 0;
        QTest::newRow("removal of a lock without a name") << false << 1;
        QTest::newRow("removal of the lock of a dead program") << true << 1;
        QTest::newRow("removal of a removal") << true << 2;
    }
    static void takingOverThatWasInterruptedIsFinished()
    {
        QFETCH(const bool, isNamed);
        QFETCH(const int, depth);
        const LibraryDirectory directory;
        const pid_t child = fork();
        if (child == 0) {
            LibraryLock lock(directory.path());
            _exit(lock.tryLock() ? 0 : 1);
        }
        waitpid(child, nullptr, 0);
        const QByteArray dead = directory.read(LibraryFileNames::lockFile());
        directory.write(LibraryFileNames::lockFile(), isNamed ? dead : QByteArray());
        if (depth > 0) {
            directory.write(LibraryFileNames::lockRemovalFile(), depth > 1 ? dead : QByteArray());
        }
        if (depth > 1) {
            directory.write(LibraryFileNames::lockRemovalFile() + QStringLiteral(".rmlock"), {});
        }
        QElapsedTimer timer;
        timer.start();
        LibraryLock lock(directory.path());
        QVERIFY(lock.tryLock());
        QVERIFY(timer.elapsed() < 10'000);
        QCOMPARE(directory.files(), QStringList{LibraryFileNames::lockFile()});
        LibraryLock second(directory.path());
        QVERIFY(isHeldElsewhere(second.tryLock()));
    }

    static void manyTakingOverAtOnceLeaveOneHolder()
    {
        for (int round = 0; round < 20; ++round) {
            const LibraryDirectory directory;
            const pid_t dead = fork();
            if (dead == 0) {
                LibraryLock lock(directory.path());
                _exit(lock.tryLock() ? 0 : 1);
            }
            waitpid(dead, nullptr, 0);
            QList<pid_t> children;
            for (int i = 0; i < 6; ++i) {
                const pid_t child = fork();
                if (child == 0) {
                    LibraryLock lock(directory.path());
                    const bool isLocked(lock.tryLock());
                    usleep(200'000);
                    _exit(isLocked ? 1 : 0);
                }
                children.append(child);
            }
            int holders = 0;
            for (const pid_t child : std::as_const(children)) {
                int status = 0;
                waitpid(child, &status, 0);
                holders += WEXITSTATUS(status);
            }
            QCOMPARE(holders, 1);
        }
    }

    static void pipeInThePlaceOfTheLockIsNotWaitedFor_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("lock") << LibraryFileNames::lockFile();
        QTest::newRow("its removal") << LibraryFileNames::lockRemovalFile();
    }
    static void pipeInThePlaceOfTheLockIsNotWaitedFor()
    {
        QFETCH(const QString, name);
        const LibraryDirectory directory;
        QCOMPARE(mkfifo(QFile::encodeName(directory.filePath(name)).constData(), 0600), 0);
        LibraryLock lock(directory.path());
        const Result<> refused = lock.tryLock();
        QVERIFY(!refused && !isHeldElsewhere(refused));
        QCOMPARE(refused.problem().where, directory.path());
        QVERIFY(directory.has(name));
    }

    static void lockOfAnotherComputerStandsAndIsTold()
    {
        const LibraryDirectory directory;
        const QByteArray lock("2147483647\nvelgor\nanother host\n\n\n");
        directory.write(LibraryFileNames::lockFile(), lock);
        LibraryLock own(directory.path());
        const Result<> refused = own.tryLock();
        QVERIFY(isHeldElsewhere(refused));
        QCOMPARE(refused.problem().where, directory.path());
        QVERIFY(refused.problem().why.contains(LibraryFileNames::lockFile()));
        QCOMPARE(directory.read(LibraryFileNames::lockFile()), lock);
    }
};

VELGOR_TEST(TestLibraryLock)
#include "tst_LibraryLock.moc"
