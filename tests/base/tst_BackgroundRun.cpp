#include "BackgroundRun.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <future>
#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds longest = 10s;

/// Work that goes on until it is let go.
struct Held {
    std::promise<void> letGo;
    std::shared_future<void> isLetGo = letGo.get_future().share();
};

} // namespace

class TestBackgroundRun : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void workIsDoneOnAnotherThreadAndItsEndIsTold()
    {
        BackgroundRun run;
        const QSignalSpy finished(&run, &BackgroundRun::finished);
        std::thread::id worker;
        run.start([&worker](const BackgroundRun::Report &) { worker = std::this_thread::get_id(); });
        QVERIFY(run.isRunning());
        QTRY_COMPARE(finished.count(), 1);
        QVERIFY(!run.isRunning());
        QVERIFY(worker != std::thread::id() && worker != std::this_thread::get_id());
    }

    static void progressIsToldWhileItRuns()
    {
        Held held;
        BackgroundRun run;
        const QSignalSpy progress(&run, &BackgroundRun::progress);
        run.start([&held](const BackgroundRun::Report &report) {
            report(3, 7);
            held.isLetGo.wait_for(longest);
        });
        QTRY_COMPARE(progress.count(), 1);
        QCOMPARE(progress.first(), (QVariantList{qsizetype(3), qsizetype(7)}));
        held.letGo.set_value();
        run.finish();
        QCOMPARE(progress.count(), 1);
    }

    static void finishingWaitsAndTellsTheEndOnce()
    {
        BackgroundRun run;
        const QSignalSpy finished(&run, &BackgroundRun::finished);
        bool isDone = false;
        run.start([&isDone](const BackgroundRun::Report &) {
            std::this_thread::sleep_for(50ms);
            isDone = true;
        });
        run.finish();
        QVERIFY(isDone);
        QCOMPARE(finished.count(), 1);
        QCoreApplication::processEvents();
        run.finish();
        QCOMPARE(finished.count(), 1);
    }

    static void waitingForATimeGivesUpWhenItIsOver()
    {
        Held held;
        BackgroundRun run;
        const QSignalSpy finished(&run, &BackgroundRun::finished);
        run.start([&held](const BackgroundRun::Report &) { held.isLetGo.wait_for(longest); });
        QVERIFY(!run.finishWithin(1ms));
        QVERIFY(run.isRunning());
        QCOMPARE(finished.count(), 0);
        held.letGo.set_value();
        QVERIFY(run.finishWithin(10s));
        QCOMPARE(finished.count(), 1);
        QVERIFY(run.finishWithin(0ms));
        QCOMPARE(finished.count(), 1);
    }

    // The end of the first run is still on its way when the second begins.
    static void theEndOfOneRunIsNotTakenForThatOfTheNext()
    {
        Held held;
        BackgroundRun run;
        run.start([](const BackgroundRun::Report &) {});
        run.finish();
        run.start([&held](const BackgroundRun::Report &) { held.isLetGo.wait_for(longest); });
        QTest::qWait(20);
        QVERIFY(run.isRunning());
        held.letGo.set_value();
        QTRY_VERIFY(!run.isRunning());
    }

    static void destructionEndsTheWorkWithItsNextReport()
    {
        std::atomic<bool> hasBegun = false;
        bool isOver = false;
        {
            BackgroundRun run;
            run.start([&](const BackgroundRun::Report &report) {
                const auto noteEnd = qScopeGuard([&isOver] { isOver = true; });
                for (qsizetype done = 0;; ++done) {
                    report(done, 0);
                    hasBegun = true;
                }
            });
            QTRY_VERIFY(hasBegun);
        }
        QVERIFY(isOver);
    }
};

VELGOR_TEST(TestBackgroundRun)
#include "tst_BackgroundRun.moc"
