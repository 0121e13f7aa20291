#include "TerminationSignals.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <csignal>
#include <thread>

namespace {

struct sigaction actionOf(int number)
{
    struct sigaction action { };
    sigaction(number, nullptr, &action);
    return action;
}

} // namespace

class TestTerminationSignals : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void signalReachesTheEventLoop_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    static void signalReachesTheEventLoop()
    {
        QFETCH(const int, number);
        std::signal(number, SIG_DFL);
        const TerminationSignals signalling;
        const QSignalSpy terminated(&signalling, &TerminationSignals::terminated);
        std::raise(number);
        QCOMPARE(terminated.count(), 0);
        QTRY_COMPARE(terminated.count(), 1);
        std::raise(number);
        QTRY_COMPARE(terminated.count(), 2);
    }

    static void signalToAnotherThreadReachesTheEventLoop()
    {
        const TerminationSignals signalling;
        const QSignalSpy terminated(&signalling, &TerminationSignals::terminated);
        std::thread([] { std::raise(SIGTERM); }).join();
        QTRY_COMPARE(terminated.count(), 1);
    }

    static void manySignalsAreOneAndHoldNothingUp()
    {
        const TerminationSignals signalling;
        const QSignalSpy terminated(&signalling, &TerminationSignals::terminated);
        // More than a pipe has room for.
        for (int i = 0; i < 200'000; ++i) {
            std::raise(SIGTERM);
        }
        QTRY_COMPARE(terminated.count(), 1);
        QTest::qWait(50);
        QCOMPARE(terminated.count(), 1);
    }

    static void ignoredSignalStaysIgnored()
    {
        std::signal(SIGHUP, SIG_IGN);
        {
            const TerminationSignals signalling;
            const QSignalSpy terminated(&signalling, &TerminationSignals::terminated);
            std::raise(SIGHUP);
            QTest::qWait(50);
            QCOMPARE(terminated.count(), 0);
        }
        QVERIFY(actionOf(SIGHUP).sa_handler == SIG_IGN);
        std::signal(SIGHUP, SIG_DFL);
    }

    static void handlersAreGivenBack()
    {
        std::signal(SIGINT, SIG_DFL);
        const auto before = actionOf(SIGTERM);
        {
            const TerminationSignals signalling;
            QVERIFY(actionOf(SIGTERM).sa_handler != before.sa_handler);
            QVERIFY(actionOf(SIGINT).sa_handler != SIG_DFL);
        }
        QVERIFY(actionOf(SIGTERM).sa_handler == before.sa_handler);
        QVERIFY(actionOf(SIGINT).sa_handler == SIG_DFL);
    }
};

VELGOR_TEST(TestTerminationSignals)
#include "tst_TerminationSignals.moc"
