#include "LibraryFileNames.h"
#include "StartsElsewhere.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;
using namespace StartsElsewhere;
using Outcome = SingleInstance::Outcome;

class TestSingleInstance : public QObject {
    Q_OBJECT

    OwnRuntime m_runtime;

private Q_SLOTS:
    void init() { m_runtime.begin(); }

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
};

VELGOR_TEST(TestSingleInstance)
#include "tst_SingleInstance.moc"
