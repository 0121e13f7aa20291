#include "DelayedSave.h"
#include "DiagnosticRecorder.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace {

const QString waiting = QStringLiteral("Waiting to save library...");
const QString saving = QStringLiteral("Saving library...");

} // namespace

class TestDelayedSave : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DiagnosticRecorder> m_lines;

private Q_SLOTS:
    void init() { m_lines = std::make_unique<DiagnosticRecorder>(); }
    void cleanup() { m_lines.reset(); }

    void nothingHappensWithoutARequest()
    {
        const DelayedSave delay(10ms);
        const QSignalSpy due(&delay, &DelayedSave::due);
        QTest::qWait(50);
        QCOMPARE(due.size(), 0);
        QVERIFY(!delay.waitingToSave() && !delay.waitMore());
        QCOMPARE(m_lines->take(), QStringList());
    }

    void oneRequestIsDueAfterOnePeriod()
    {
        DelayedSave delay(100ms);
        QSignalSpy due(&delay, &DelayedSave::due);
        QSignalSpy changes(&delay, &DelayedSave::waitingToSaveChanged);
        QElapsedTimer timer;
        timer.start();
        delay.request();
        QVERIFY(delay.waitingToSave() && !delay.waitMore());
        QCOMPARE(m_lines->take(), QStringList{waiting});
        QVERIFY(due.wait(5000));
        QVERIFY(timer.elapsed() >= 99);
        QVERIFY(delay.waitingToSave());
        QCOMPARE(m_lines->take(), QStringList{saving});
        delay.saveFinished();
        QVERIFY(!delay.waitingToSave());
        QCOMPARE(changes.size(), 2);
        QTest::qWait(250);
        QCOMPARE(due.size(), 1);
    }

    void tenRequestsInOnePeriodAddOnePeriod()
    {
        DelayedSave delay(200ms);
        QSignalSpy due(&delay, &DelayedSave::due);
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 10; ++i) {
            delay.request();
        }
        QVERIFY(delay.waitMore());
        QVERIFY(due.wait(5000));
        QVERIFY(timer.elapsed() >= 399);
        delay.saveFinished();
        QTest::qWait(500);
        QCOMPARE(due.size(), 1);
        QCOMPARE(m_lines->take(), (QStringList{waiting, saving}));
    }

    void steadyRequestsPutTheSaveOff()
    {
        DelayedSave delay(200ms);
        QSignalSpy due(&delay, &DelayedSave::due);
        QElapsedTimer last;
        for (int i = 0; i < 10; ++i) {
            delay.request();
            last.start();
            QTest::qWait(50);
        }
        if (due.isEmpty()) {
            QVERIFY(due.wait(5000));
        }
        // Each period but the last held a request, so that the save comes a whole period after the last of them.
        QVERIFY(last.elapsed() >= 199);
        QCOMPARE(due.size(), 1);
    }

    void requestDuringTheSaveIsDroppedWithIt()
    {
        DelayedSave delay(30ms);
        QSignalSpy due(&delay, &DelayedSave::due);
        delay.request();
        QVERIFY(due.wait(5000));
        delay.request();
        QVERIFY(delay.waitMore() && delay.waitingToSave());
        delay.saveFinished();
        QVERIFY(!delay.waitingToSave());
        QTest::qWait(150);
        QCOMPARE(due.size(), 1);
        delay.request();
        QVERIFY(!delay.waitMore());
        QVERIFY(due.wait(5000));
    }

    void cancelledWaitingIsNeverDue()
    {
        DelayedSave delay(30ms);
        QSignalSpy due(&delay, &DelayedSave::due);
        delay.request();
        delay.cancel();
        QVERIFY(!delay.waitingToSave());
        QTest::qWait(150);
        QCOMPARE(due.size(), 0);
        delay.request();
        QVERIFY(due.wait(5000));
    }

    void changesAreAnnounced()
    {
        DelayedSave delay(30ms);
        QSignalSpy due(&delay, &DelayedSave::due);
        const QSignalSpy more(&delay, &DelayedSave::waitMoreChanged);
        delay.request();
        QCOMPARE(more.size(), 0);
        delay.request();
        delay.request();
        QCOMPARE(more.size(), 1);
        QVERIFY(due.wait(5000));
        QCOMPARE(more.size(), 2);
    }

    void usualPeriodIsASecond()
    {
        DelayedSave delay;
        QSignalSpy due(&delay, &DelayedSave::due);
        QElapsedTimer timer;
        timer.start();
        delay.request();
        QVERIFY(due.wait(10000));
        QVERIFY2(timer.elapsed() >= 990 && timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    }
};

VELGOR_TEST(TestDelayedSave)
#include "tst_DelayedSave.moc"
