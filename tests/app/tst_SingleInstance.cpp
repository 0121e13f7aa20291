#include "DiagnosticRecorder.h"
#include "InstanceMessage.h"
#include "InstancePlace.h"
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
Start startElsewhere(const QString &directory, const StartRequest &request, std::chrono::milliseconds patience = 5s)
{
    Start result;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        SingleInstance instance(directory, patience);
        result.outcome = instance.start(request);
        result.reason = instance.reason();
    }));
    thread->start();
    if (!QTest::qWaitFor([&] { return thread->isFinished(); }, 20000)) {
        qFatal("the start does not end");
    }
    thread->wait();
    return result;
}

/// The socket on which the one listens that has the directory.
QString socketOf(const LibraryDirectory &directory)
{
    return InstancePlace::sockets(directory.path()).first();
}

/// Stands where the first listens, and answers every start with the same bytes.
class AnsweringServer {
public:
    AnsweringServer(const QString &socket, const QByteArray &answer)
    {
        if (!InstancePlace::prepare(socket) || !m_server.listen(socket)) {
            qFatal("no socket");
        }
        QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this, answer] {
            QLocalSocket *connection = m_server.nextPendingConnection();
            connection->write(answer);
            connection->flush();
            QObject::connect(connection, &QLocalSocket::disconnected, connection, &QObject::deleteLater);
            connection->disconnectFromServer();
        });
    }

private:
    QLocalServer m_server;
};

/// Has the runtime directory stand at a path of so many bytes.
void useLongRuntime(const LibraryDirectory &directory, qsizetype length)
{
    const QByteArray parent = QFile::encodeName(directory.parentPath()) + '/';
    const QString path = QFile::decodeName(parent.leftJustified(length, 'x'));
    if (!QDir().mkpath(path) || !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        qFatal("no runtime directory");
    }
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path));
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

    static void secondStartHandsItsRequestOver_data()
    {
        QTest::addColumn<StartRequest>("request");
        QTest::newRow("window") << StartRequest();
        QTest::newRow("new list") << StartRequest{.action = StartRequest::Action::NewList};
        QTest::newRow("file and activation") << StartRequest{.action = StartRequest::Action::Open,
            .file = QStringLiteral("/lists/a b.prst"),
            .activation = {.token = "token", .startupId = "id_TIME1"}};
    }
    static void secondStartHandsItsRequestOver()
    {
        QFETCH(const StartRequest, request);
        const LibraryDirectory directory;
        SingleInstance first(directory.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        for (int i = 1; i <= 2; ++i) {
            const Start second = startElsewhere(directory.path(), request);
            QCOMPARE(second.outcome, Outcome::HandedOver);
            QCOMPARE(second.reason, QString());
            QTRY_COMPARE(activated.count(), i);
            QVERIFY(activated.last().first().value<StartRequest>() == request);
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
        QVERIFY(!QFile::exists(socketOf(directory)));
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
        QVERIFY(QFile::exists(socketOf(directory)));
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

    /// As between two sandboxes of the application.
    void runtimeDirectoriesMayShareTheApplicationsAlone()
    {
        const LibraryDirectory directory;
        const QTemporaryDir other;
        SingleInstance first(directory.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QVERIFY(QDir(other.path()).mkdir(QStringLiteral("app")));
        const QString shared = QStringLiteral("/app/org.example.VelgorLibraryManager");
        QVERIFY(QFile::link(m_runtime->path() + shared, other.path() + shared));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(other.path()));
        QCOMPARE(startElsewhere(directory.path(), {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
    }

    static void directoryThatIsNotTheUsersIsNeitherUsedNorAsked()
    {
        if (geteuid() != 0) {
            QSKIP("only root can give a directory away");
        }
        DiagnosticRecorder recorder;
        const LibraryDirectory directory;
        const QString socket = socketOf(directory);
        const AnsweringServer server(socket, InstanceMessage::yes.toByteArray());
        QCOMPARE(chown(QFile::encodeName(QFileInfo(socket).path()).constData(), 65534, 65534), 0);
        SingleInstance first(directory.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(recorder.lines().size(), 1);
        QVERIFY(recorder.lines().first().contains(socket));
        QCOMPARE(startElsewhere(directory.path(), {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
    }

    static void longRuntimePathStillLetsStartsMeet()
    {
        DiagnosticRecorder recorder;
        const LibraryDirectory directory;
        useLongRuntime(directory, 70);
        SingleInstance first(directory.path());
        const QSignalSpy activated(&first, &SingleInstance::activated);
        QCOMPARE(first.start({}), Outcome::First);
        QCOMPARE(recorder.lines().size(), 1);
        QVERIFY(recorder.lines().first().contains(QStringLiteral("sandboxes")));
        QCOMPARE(startElsewhere(directory.path(), {}).outcome, Outcome::HandedOver);
        QTRY_COMPARE(activated.count(), 1);
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
        useLongRuntime(directory, 110);
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
