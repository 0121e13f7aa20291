#include "OneRefresh.h"
#include "TestProgram.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class TestOneRefresh : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void severalChangesAreFollowedByOneRefresh()
    {
        int refreshes = 0;
        OneRefresh refresh([&refreshes] { ++refreshes; }, nullptr);
        const QSignalSpy done(&refresh, &OneRefresh::done);
        refresh.catchUp();
        QCoreApplication::processEvents();
        QCOMPARE(refreshes, 0);
        for (int round = 1; round <= 2; ++round) {
            refresh.ask();
            refresh.ask();
            QCOMPARE(refreshes, round - 1);
            QCoreApplication::processEvents();
            QCOMPARE(refreshes, round);
            QCOMPARE(done.count(), round);
        }
        refresh.ask();
        refresh.catchUp();
        QCOMPARE(refreshes, 3);
        QCoreApplication::processEvents();
        QCOMPARE(refreshes, 3);
    }

    void aChangeDuringTheRefreshIsNotLost()
    {
        int refreshes = 0;
        OneRefresh *again = nullptr;
        OneRefresh refresh(
            [&] {
                if (++refreshes == 1) {
                    again->ask();
                }
            },
            nullptr);
        again = &refresh;
        refresh.ask();
        QCoreApplication::processEvents();
        QTRY_COMPARE(refreshes, 2);
    }

    void aKeyOrAClickFindsEverythingUpToDate_data()
    {
        QTest::addColumn<bool>("isKey");
        QTest::newRow("key") << true;
        QTest::newRow("click") << false;
    }

    void aKeyOrAClickFindsEverythingUpToDate()
    {
        QFETCH(const bool, isKey);
        QPushButton button;
        button.setEnabled(false);
        const QSignalSpy clicked(&button, &QPushButton::clicked);
        OneRefresh refresh([&button] { button.setEnabled(true); }, nullptr);
        refresh.ask();
        if (isKey) {
            QTest::keyClick(&button, Qt::Key_Space);
        } else {
            QTest::mouseClick(&button, Qt::LeftButton);
        }
        QCOMPARE(clicked.count(), 1);
    }

    void whatIsPaintedIsUpToDate()
    {
        QWidget window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        bool isRefreshed = false;
        OneRefresh refresh([&isRefreshed] { isRefreshed = true; }, nullptr);
        refresh.ask();
        QEvent update(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&window, &update);
        QVERIFY(isRefreshed);
    }
};

VELGOR_WIDGET_TEST(TestOneRefresh)
#include "tst_OneRefresh.moc"
