#include "InstanceMessage.h"
#include "LibraryFileNames.h"
#include "StartsElsewhere.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace std::chrono_literals;
using namespace StartsElsewhere;
using Outcome = SingleInstance::Outcome;

/// Starts that meet another program at work, or one that does not answer as it should.
class TestWaitingStarts : public QObject {
    Q_OBJECT

    OwnRuntime m_runtime;

private Q_SLOTS:
    void init() { m_runtime.begin(); }

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
        const AnsweringServer server(socketOf(directory), "certainly not");
        QCOMPARE(startElsewhere(directory.path(), {}, 300ms).outcome, Outcome::Refused);
    }

    static void firstOfAnotherVersionIsReportedAtOnce()
    {
        const LibraryDirectory directory;
        LibraryLock lock(directory.path());
        QVERIFY(lock.tryLock());
        const AnsweringServer server(socketOf(directory), InstanceMessage::notKnown.toByteArray());
        QElapsedTimer timer;
        timer.start();
        const Start second = startElsewhere(directory.path(), {}, 20s);
        QCOMPARE(second.outcome, Outcome::Refused);
        QVERIFY(second.reason.contains(QStringLiteral("another version")));
        QVERIFY(second.reason.contains(directory.path()));
        QVERIFY(timer.elapsed() < 10'000);
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
};

VELGOR_TEST(TestWaitingStarts)
#include "tst_WaitingStarts.moc"
