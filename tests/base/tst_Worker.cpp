#include "TestProgram.h"
#include "Worker.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>

#include <atomic>
#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds longest = 10s;

/// Work that goes on until it is let go.
struct Held {
    QSemaphore letGo;

    bool operator()() { return letGo.tryAcquire(1, int(std::chrono::milliseconds(longest).count())); }
};

/// Work that is over at once.
int nothing()
{
    return 0;
}

} // namespace

class TestWorker : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workIsDoneOnAnotherThreadAndToldOnThisOne()
    {
        Worker worker;
        std::thread::id told;
        std::optional<std::thread::id> done;
        worker.start(
            this, [] { return std::this_thread::get_id(); },
            [&](std::thread::id id) {
                done = id;
                told = std::this_thread::get_id();
            });
        QVERIFY(worker.isBusy());
        QTRY_VERIFY(done);
        QVERIFY(!worker.isBusy());
        QVERIFY(*done != std::thread::id() && *done != told);
        QCOMPARE(told, std::this_thread::get_id());
    }

    void jobsAreDoneAndToldInTheirOrderAndNeverOverlap()
    {
        Worker worker;
        std::atomic<int> underWay = 0;
        std::atomic<bool> haveOverlapped = false;
        QList<int> done;
        QList<int> told;
        for (int i = 0; i < 200; ++i) {
            worker.start(
                this,
                [&, i] {
                    haveOverlapped = haveOverlapped || ++underWay > 1;
                    done.append(i);
                    --underWay;
                    return i;
                },
                [&](int number) { told.append(number); });
            if (i % 50 == 0) {
                // The thread may have ended by then, and is begun anew.
                QTRY_VERIFY(!worker.isBusy());
            }
        }
        worker.finish();
        QVERIFY(!haveOverlapped);
        QCOMPARE(told.size(), 200);
        QCOMPARE(told, done);
        QVERIFY(std::is_sorted(told.cbegin(), told.cend()));
    }

    void progressIsToldWhileAJobRunsAtMostThirtyTimesASecond()
    {
        std::atomic<bool> isSeen = false;
        Worker worker;
        QList<std::pair<qsizetype, qsizetype>> progress;
        QElapsedTimer clock;
        clock.start();
        worker.start(
            this,
            [&isSeen](const Worker::Report &report) {
                qsizetype done = 0;
                while (!isSeen && done < 1'000'000'000) {
                    report(++done, 7);
                }
                return done;
            },
            [](qsizetype) {},
            [&](qsizetype done, qsizetype total) {
                progress.append({done, total});
                isSeen = progress.size() == 5;
            });
        QTRY_VERIFY(!worker.isBusy());
        const auto elapsed = clock.elapsed();
        QCOMPARE(progress.size(), 5);
        QVERIFY2(progress.size() <= elapsed * 30 / 1000 + 1, qPrintable(QString::number(elapsed)));
        for (qsizetype i = 0; i < progress.size(); ++i) {
            QVERIFY(progress.at(i).second == 7 && progress.at(i).first > (i == 0 ? 0 : progress.at(i - 1).first));
        }
    }

    void finishingWaitsForWhatComesOfAJobToo()
    {
        Worker worker;
        int told = 0;
        worker.start(this, nothing, [&](int) {
            ++told;
            worker.start(this, nothing, [&](int) { ++told; });
        });
        worker.finish();
        QCOMPARE(told, 2);
        QCoreApplication::processEvents();
        worker.finish();
        QCOMPARE(told, 2);
    }

    void waitingForATimeGivesUpWhenItIsOver()
    {
        Held held;
        Worker worker;
        int told = 0;
        worker.start(this, std::ref(held), [&told](bool) { ++told; });
        QVERIFY(!worker.finishWithin(1ms));
        QVERIFY(worker.isBusy());
        QCOMPARE(told, 0);
        held.letGo.release();
        QVERIFY(worker.finishWithin(longest));
        QCOMPARE(told, 1);
        QVERIFY(worker.finishWithin(0ms));
        QCOMPARE(told, 1);
    }

    void whoWaitsForAJobMayWaitForTheRestInIt()
    {
        Worker worker;
        QStringList told;
        worker.start(this, nothing, [&](int) {
            worker.finish();
            told.append(QStringLiteral("first"));
        });
        worker.start(this, nothing, [&told](int) { told.append(QStringLiteral("second")); });
        worker.finish();
        QCOMPARE(told, (QStringList{QStringLiteral("second"), QStringLiteral("first")}));
    }

    void aJobThatNobodyWaitsForIsToldToEndAndTellsNothing()
    {
        Worker worker;
        bool isTold = false;
        std::atomic<bool> hasBegun = false;
        std::atomic<bool> isOver = false;
        auto asking = std::make_unique<QObject>();
        worker.start(
            asking.get(),
            [&](const Worker::Report &report) {
                for (qsizetype done = 0; report(done, 0); ++done) {
                    hasBegun = true;
                }
                isOver = true;
                return 0;
            },
            [&isTold](int) { isTold = true; });
        QTRY_VERIFY(hasBegun);
        asking.reset();
        worker.finish();
        QVERIFY(isOver && !isTold);
        // The next is told.
        worker.start(this, nothing, [&isTold](int) { isTold = true; });
        QTRY_VERIFY(isTold);
    }

    void destructionEndsAJobThatReports()
    {
        std::atomic<bool> hasBegun = false;
        bool isOver = false;
        {
            Worker worker;
            const auto work = [&](const Worker::Report &report) {
                while (report(0, 0)) {
                    hasBegun = true;
                }
                isOver = true;
                return 0;
            };
            worker.start(this, work, [](int) {});
            QTRY_VERIFY(hasBegun);
        }
        QVERIFY(isOver);
    }

    void destructionWaitsForEveryOtherJobAndTellsNothing()
    {
        int done = 0;
        bool isTold = false;
        {
            Worker worker(nullptr, 0ms);
            for (int i = 0; i < 3; ++i) {
                worker.start(
                    this,
                    [&done] {
                        std::this_thread::sleep_for(20ms);
                        return ++done;
                    },
                    [&isTold](int) { isTold = true; });
            }
        }
        QCoreApplication::processEvents();
        QCOMPARE(done, 3);
        QVERIFY(!isTold);
    }

    void aJobThatDoesNotEndIsLeftBehind()
    {
        const auto held = std::make_shared<Held>();
        QElapsedTimer clock;
        clock.start();
        {
            Worker worker(nullptr, 10ms);
            worker.start(
                this, [held](const Worker::Report &) { return (*held)(); }, [](bool) {});
            QVERIFY(!worker.finishWithin(1ms));
        }
        QVERIFY(clock.elapsed() < std::chrono::milliseconds(longest).count());
        QVERIFY(Worker::isAnyLeftBehind());
        held->letGo.release();
        QTRY_COMPARE(held.use_count(), 1);
    }

    void aWorkerMayAskItself()
    {
        auto worker = std::make_unique<Worker>();
        worker->start(worker.get(), nothing, [](int) { qFatal("told though nobody asks any more"); });
        worker.reset();
    }

    void aWorkerMayGoWhenItTellsSomething()
    {
        auto worker = std::make_unique<Worker>();
        worker->start(this, nothing, [&worker](int) { worker.reset(); });
        worker->start(this, nothing, [](int) { qFatal("told by nobody"); });
        worker->finish();
        QVERIFY(!worker);
    }
};

VELGOR_TEST(TestWorker)
#include "tst_Worker.moc"
