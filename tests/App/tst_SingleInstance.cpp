#include "DiagnosticRecorder.h"
#include "LibraryDirectory.h"
#include "LibraryFileNames.h"
#include "SingleInstance.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;
using Outcome = SingleInstance::Outcome;

namespace {

struct Start {
    Outcome outcome = Outcome::Refused;
    QString reason;
};

/// Starts the program again while this thread's event loop goes on, as another process would.
Start startElsewhere(const QString &directory, const QString &file, std::chrono::milliseconds patience = 5s)
{
    Start result;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        SingleInstance instance(directory, patience);
        result.outcome = instance.start(file);
        result.reason = instance.reason();
    }));
    thread->start();
    if (!QTest::qWaitFor([&] { return thread->isFinished(); }, 20000)) {
        qFatal("the start does not end");
    }
    thread->wait();
    return result;
}

} // namespace

class TestSingleInstance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_runtime = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime->path()));
    }

    static void firstStartHasTheDirectory()
    {
        const LibraryDirectory directory;
        SingleInstance first(directory.path());
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(first.reason(), QString());
        QCOMPARE(directory.files(), QStringList{LibraryFileNames::lockFile()});
    }

    static void secondStartHandsItsFileOver_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("received");
        QTest::newRow("no file") << QString() << QString();
        QTest::newRow("absolute") << QStringLiteral("/lists/a b.prst") << QStringLiteral("/lists/a b.prst");
        QTest::newRow("relative") << QStringLiteral("list.prst")
                                  << QDir::current().filePath(QStringLiteral("list.prst"));
    }
    static void secondStartHandsItsFileOver()
    {
        QFETCH(const QString, file);
        QFETCH(const QString, received);
        const LibraryDirectory directory;
        SingleInstance first(directory.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        for (int i = 1; i <= 2; ++i) {
            const Start second = startElsewhere(directory.path(), file);
            QCOMPARE(second.outcome, Outcome::HandedOver);
            QCOMPARE(second.reason, QString());
            QTRY_COMPARE(activated.count(), i);
            QCOMPARE(activated.last().first().toString(), received);
        }
    }

    static void directoryUnderAnotherNameIsTheSame()
    {
        const LibraryDirectory directory;
        const QString link = directory.parentPath() + QStringLiteral("/link");
        QVERIFY(QFile::link(directory.path(), link));
        SingleInstance first(directory.path());
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(startElsewhere(link, {}).outcome, Outcome::HandedOver);
    }

    static void directoriesDoNotMeet()
    {
        const LibraryDirectory one;
        const LibraryDirectory other;
        SingleInstance first(one.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(startElsewhere(other.path(), {}).outcome, Outcome::First);
        QCOMPARE(activated.count(), 0);
    }

    static void usersDoNotMeet()
    {
        const LibraryDirectory directory;
        SingleInstance first(directory.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        const QTemporaryDir otherRuntime;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(otherRuntime.path()));
        const Start second = startElsewhere(directory.path(), {}, 200ms);
        QCOMPARE(second.outcome, Outcome::Refused);
        QVERIFY(second.reason.contains(directory.path()));
        QCOMPARE(activated.count(), 0);
    }

    static void endOfTheFirstFreesTheDirectory()
    {
        const LibraryDirectory directory;
        {
            SingleInstance first(directory.path());
            QCOMPARE(first.start({}), Outcome::First);
        }
        QCOMPARE(directory.files(), QStringList());
        QVERIFY(!QFile::exists(SingleInstance::socketName(directory.path())));
        SingleInstance next(directory.path(), 0ms);
        QCOMPARE(next.start({}), Outcome::First);
    }

    static void whatACrashLeftIsTakenOver()
    {
        const LibraryDirectory directory;
        const pid_t child = fork();
        if (child == 0) {
            SingleInstance instance(directory.path());
            _exit(instance.start({}) == Outcome::First ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        QCOMPARE(WEXITSTATUS(status), 0);
        QVERIFY(QFile::exists(SingleInstance::socketName(directory.path())));
        QVERIFY(directory.has(LibraryFileNames::lockFile()));

        SingleInstance first(directory.path(), 0ms);
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(startElsewhere(directory.path(), {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
    }

    static void commandAtWorkIsWaitedFor()
    {
        const LibraryDirectory directory;
        auto command = std::make_unique<LibraryLock>(directory.path());
        QVERIFY(command->tryLock());
        QTimer end;
        end.setSingleShot(true);
        connect(&end, &QTimer::timeout, &end, [&command] { command.reset(); });
        end.start(300ms);
        QCOMPARE(startElsewhere(directory.path(), {}).outcome, Outcome::First);
        QVERIFY(!command);
    }

    static void commandThatDoesNotEndIsReported()
    {
        const LibraryDirectory directory;
        LibraryLock command(directory.path());
        QVERIFY(command.tryLock());
        SingleInstance instance(directory.path(), 200ms);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(instance.start({}), Outcome::Refused);
        QVERIFY(timer.elapsed() >= 200 && timer.elapsed() < 2000);
        QVERIFY(instance.reason().contains(directory.path()));
        QVERIFY(instance.reason().contains(LibraryFileNames::lockFile()));
    }

    static void firstThatDoesNotAnswerIsReported()
    {
        const LibraryDirectory directory;
        SingleInstance first(directory.path());
        QCOMPARE(first.start({}), Outcome::First);
        // This thread waits here, and so does the event loop of the first.
        SingleInstance second(directory.path(), 300ms);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(second.start({}), Outcome::Refused);
        QVERIFY(timer.elapsed() >= 290 && timer.elapsed() < 2000);
        QVERIFY(second.reason().contains(QStringLiteral("does not answer")));
    }

    static void firstThatEndsWithoutAnAnswerIsFollowed()
    {
        const LibraryDirectory directory;
        auto first = std::make_unique<SingleInstance>(directory.path());
        QCOMPARE(first->start({}), Outcome::First);
        Outcome outcome = Outcome::Refused;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            SingleInstance second(directory.path());
            outcome = second.start({});
        }));
        thread->start();
        QThread::msleep(300);
        first.reset();
        QVERIFY(thread->wait(10000));
        QCOMPARE(outcome, Outcome::First);
    }

    static void wrongAnswersAreNone()
    {
        const LibraryDirectory directory;
        LibraryLock lock(directory.path());
        QVERIFY(lock.tryLock());
        QLocalServer server;
        QVERIFY(server.listen(SingleInstance::socketName(directory.path())));
        connect(&server, &QLocalServer::newConnection, &server, [&server] {
            QLocalSocket *socket = server.nextPendingConnection();
            socket->write("certainly not");
            socket->flush();
            socket->deleteLater();
        });
        QCOMPARE(startElsewhere(directory.path(), {}, 300ms).outcome, Outcome::Refused);
    }

    static void directoryThatCannotBeLockedIsToldOf()
    {
        const LibraryDirectory directory;
        const QString missing = directory.filePath(QStringLiteral("missing"));
        SingleInstance first(missing);
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QVERIFY(first.reason().contains(missing));
        QCOMPARE(startElsewhere(missing, {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
    }

    static void startWithoutAPlaceForSocketsHasTheLock()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        const QByteArray tooLong = QFile::encodeName(directory.parentPath()) + '/' + QByteArray(100, 'x');
        QVERIFY(QDir().mkpath(QFile::decodeName(tooLong)));
        QVERIFY(
            QFile::setPermissions(QFile::decodeName(tooLong), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        qputenv("XDG_RUNTIME_DIR", tooLong);
        SingleInstance first(directory.path());
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(silence.lines().size(), 1);
        QCOMPARE(startElsewhere(directory.path(), {}, 100ms).outcome, Outcome::Refused);
    }

private:
    std::unique_ptr<QTemporaryDir> m_runtime;
};

VELGOR_TEST(TestSingleInstance)
#include "tst_SingleInstance.moc"
