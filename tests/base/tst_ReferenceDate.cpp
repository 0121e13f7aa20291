#include "ReferenceDate.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimeZone>

#include <limits>

class TestReferenceDate : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void secondsCountFromTheReference_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("utc");
        QTest::newRow("the reference") << 0.0 << "2001-01-01T00:00:00.000Z";
        QTest::newRow("a fraction") << 0.25 << "2001-01-01T00:00:00.250Z";
        QTest::newRow("before the reference") << -1.5 << "2000-12-31T23:59:58.500Z";
        QTest::newRow("the Unix epoch") << -978307200.0 << "1970-01-01T00:00:00.000Z";
        QTest::newRow("rounds to the millisecond") << 0.0006 << "2001-01-01T00:00:00.001Z";
        QTest::newRow("today") << 785000000.0 << "2025-11-16T15:33:20.000Z";
    }

    void secondsCountFromTheReference()
    {
        QFETCH(const double, seconds);
        const QDateTime time = ReferenceDate{seconds}.toDateTime();
        QCOMPARE(time.timeSpec(), Qt::LocalTime);
        QTEST(time.toUTC().toString(Qt::ISODateWithMs), "utc");
    }

    void whatNoCalendarReachesIsInvalid_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::newRow("largest") << std::numeric_limits<double>::max();
        QTest::newRow("lowest") << std::numeric_limits<double>::lowest();
        QTest::newRow("beyond 64 bits") << 1e20;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
    }

    void whatNoCalendarReachesIsInvalid()
    {
        QFETCH(const double, seconds);
        QVERIFY(!ReferenceDate{seconds}.toDateTime().isValid());
    }

    void nowIsNow()
    {
        QVERIFY(std::abs(ReferenceDate::now().toDateTime().msecsTo(QDateTime::currentDateTime())) < 60'000);
    }

    void nowComesBackToTheMillisecond()
    {
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        for (qint64 time = now; time < now + 100'000; time += 7) {
            const ReferenceDate date{static_cast<double>(time) / 1000.0 - 978'307'200.0};
            QCOMPARE(date.toDateTime().toMSecsSinceEpoch(), time);
        }
    }
};

VELGOR_TEST(TestReferenceDate)
#include "tst_ReferenceDate.moc"
