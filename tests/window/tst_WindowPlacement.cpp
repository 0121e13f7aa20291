#include "LibraryContentMainView.h"
#include "TestProgram.h"
#include "WindowFixture.h"
#include "WindowPlacement.h"

#include <QApplication>
#include <QScreen>

#include <numeric>

namespace {

/// What saveGeometry() gives for a window with this frame, on a screen of this width.
QByteArray savedGeometry(const QRect &inner, int screenWidth, bool isMaximized = false)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_0);
    const QRect frame = inner + QMargins(2, 2, 2, 2);
    stream << quint32(0x1d9d0cb) << quint16(3) << quint16(0) << frame << inner << qint32(0) << quint8(isMaximized)
           << quint8(0) << qint32(screenWidth) << inner;
    return bytes;
}

QRect screenRoom()
{
    return QApplication::primaryScreen()->availableGeometry();
}

QString textOf(const QRect &rect)
{
    return QStringLiteral("%1,%2 %3x%4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

} // namespace

class TestWindowPlacement : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void frameFitsAScreen_data()
    {
        QTest::addColumn<QList<QRect>>("screens");
        QTest::addColumn<QRect>("frame");
        QTest::addColumn<QRect>("expected");
        const QRect left(0, 0, 1920, 1040);
        const QRect right(1920, 0, 1280, 984);
        const QRect below(0, 1080, 1366, 728);
        const auto row = [](const char *name, const QList<QRect> &screens, const QRect &frame, const QRect &expected) {
            QTest::newRow(name) << screens << frame << expected;
        };
        row("on the screen", {left}, {100, 50, 1280, 800}, {100, 50, 1280, 800});
        row("as large as the screen", {left}, left, left);
        row("on the second screen", {left, right}, {2000, 10, 1000, 900}, {2000, 10, 1000, 900});
        row("the second screen is gone", {left}, {2000, 10, 1000, 900}, {920, 10, 1000, 900});
        row("the screen at the left is gone", {left}, {-1500, 10, 1000, 900}, {0, 10, 1000, 900});
        row("the screen above is gone", {left}, {10, -900, 1000, 800}, {10, 0, 1000, 800});
        row("the title bar above the screen", {left}, {10, -30, 1000, 800}, {10, 0, 1000, 800});
        row("beyond the lower edge", {left}, {10, 900, 1000, 800}, {10, 240, 1000, 800});
        row("larger than the screen", {below}, {0, 1080, 1920, 1040}, below);
        row("broader than the screen", {below}, {300, 1100, 1920, 600}, {0, 1100, 1366, 600});
        row("over two screens", {left, right}, {1000, 0, 1280, 800}, {640, 0, 1280, 800});
        row("more of it on the second", {left, right}, {1700, 0, 1280, 800}, {1920, 0, 1280, 800});
        row("on none, nearer to the second", {left, right}, {3300, 0, 800, 600}, {2400, 0, 800, 600});
        row("on none, nearer to the third", {left, right, below}, {100, 2000, 800, 600}, {100, 1208, 800, 600});
        row("under a panel", {QRect(0, 30, 1920, 1010)}, {0, 0, 1000, 1080}, {0, 30, 1000, 1010});
        row("without a screen", {}, {5, 6, 7, 8}, {5, 6, 7, 8});
    }
    static void frameFitsAScreen()
    {
        QFETCH(const QList<QRect>, screens);
        QFETCH(const QRect, frame);
        QFETCH(const QRect, expected);
        QCOMPARE(WindowPlacement::fitted(frame, screens), expected);
        QCOMPARE(WindowPlacement::fitted(expected, screens), expected);
    }

    static void whatIsNoGeometryChangesNothing()
    {
        QWidget window;
        window.setGeometry(10, 20, 300, 200);
        for (const QByteArray &bytes :
            {QByteArray(), QByteArray("no geometry"), savedGeometry({0, 0, 2000, 1000}, 8 * screenRoom().width())}) {
            QVERIFY(!WindowPlacement::restore(window, bytes));
            QCOMPARE(window.geometry(), QRect(10, 20, 300, 200));
        }
    }

    static void windowComesBackWhereItWas()
    {
        QWidget window;
        const QRect inner(120, 90, 400, 300);
        QVERIFY(WindowPlacement::restore(window, savedGeometry(inner, screenRoom().width())));
        QCOMPARE(window.geometry(), inner);
        window.show();
        WindowPlacement::keepOnScreen(window);
        QCOMPARE(window.geometry(), inner);
    }

    static void restoredWindowIsWhollyOnTheScreen_data()
    {
        QTest::addColumn<QRect>("inner");
        QTest::newRow("far away") << QRect(5000, 3000, 400, 300);
        QTest::newRow("left and above") << QRect(-900, -700, 400, 300);
        QTest::newRow("over the edge") << QRect(600, 650, 400, 300);
        QTest::newRow("too large") << QRect(2, 2, 4000, 3000);
        QTest::newRow("too high") << QRect(100, 2, 400, 900);
        QTest::newRow("without room for the frame") << screenRoom();
    }
    static void restoredWindowIsWhollyOnTheScreen()
    {
        QFETCH(const QRect, inner);
        QWidget window;
        QVERIFY(WindowPlacement::restore(window, savedGeometry(inner, screenRoom().width())));
        window.show();
        WindowPlacement::keepOnScreen(window);
        QVERIFY(window.frameGeometry() != window.geometry());
        QVERIFY2(screenRoom().contains(window.frameGeometry()), qPrintable(textOf(window.frameGeometry())));
        QVERIFY(window.width() >= 400);
    }

    static void maximizedWindowGoesBackToASizeThatFits()
    {
        QWidget window;
        QVERIFY(WindowPlacement::restore(window, savedGeometry({3000, 2000, 4000, 3000}, screenRoom().width(), true)));
        QVERIFY(window.isMaximized());
        window.show();
        QTRY_VERIFY(window.isMaximized());
        WindowPlacement::keepOnScreen(window);
        QVERIFY(window.isMaximized());
        QVERIFY2(screenRoom().contains(window.normalGeometry()), qPrintable(textOf(window.normalGeometry())));
        window.showNormal();
        WindowPlacement::keepOnScreen(window);
        QVERIFY(screenRoom().contains(window.frameGeometry()));
    }

    static void mainWindowIsPlacedByItsFrame()
    {
        const LibraryDirectory directory;
        WindowFixture fixture(directory);
        // It needs more than the screen of this platform has.
        const QSize smallest = fixture.window->minimumSizeHint();
        fixture.window->setGeometry(QRect(QPoint(500, -60), smallest));
        QVERIFY(fixture.open());
        const QRect frame = fixture.window->frameGeometry();
        QCOMPARE(frame.top(), screenRoom().top());
        QCOMPARE(frame.left(), std::max(screenRoom().right() - frame.width() + 1, screenRoom().left()));
        // Where the user puts it later, it stays.
        fixture.window->move(600, 700);
        fixture.window->hide();
        fixture.window->show();
        QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
        QCOMPARE(fixture.window->pos(), QPoint(600, 700));
    }

    static void columnsOfALargerScreenGetNarrower_data()
    {
        QTest::addColumn<QList<int>>("saved");
        QTest::addColumn<bool>("isKept");
        QTest::newRow("of this window") << QList<int>{320, 538, 340} << true;
        QTest::newRow("of a wider one") << QList<int>{900, 1000, 658} << false;
        QTest::newRow("all of it the first") << QList<int>{5000, 0, 0} << false;
        QTest::newRow("nonsense") << QList<int>{2'147'483'647, 2'147'483'647, 2'147'483'647} << false;
    }
    static void columnsOfALargerScreenGetNarrower()
    {
        QFETCH(const QList<int>, saved);
        QFETCH(const bool, isKept);
        constexpr int width = 1200;
        const auto fixture = WindowFixture::shown({});
        LibraryContentMainView &columns = fixture->window->columns();
        fixture->window->resize(width, 700);
        WindowFixture::settle();
        columns.restoreWidths(saved, width);
        WindowFixture::settle();
        const QList<int> widths = columns.columnWidths();
        QCOMPARE(std::accumulate(widths.begin(), widths.end(), 2), width);
        QCOMPARE(widths == saved, isKept);
        if (!isKept) {
            // None but the last, which has a widest, got more than its share.
            QVERIFY2(
                widths.at(0) <= std::max(
                    qint64(saved.at(0)) * width / (qint64(saved.at(0)) + saved.at(1) + saved.at(2)), qint64(width / 2)),
                qPrintable(QString::number(widths.at(0))));
        }
    }
};

VELGOR_WIDGET_TEST(TestWindowPlacement)
#include "tst_WindowPlacement.moc"
