#include "DragOver.h"
#include "DragPicture.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QDrag>
#include <QLineEdit>

#include <cstdlib>
#include <memory>

using namespace ShownWidgets;

namespace {

QPoint middleOf(const PatchListView *list, int row)
{
    return list->visualRect(list->model()->index(row, 0)).center();
}

/// What a drag of this row carries.
QMimeData *row(const PatchListView *list, int row)
{
    return list->model()->mimeData({list->model()->index(row, 0)});
}

void tick(WindowFixture &window, const QList<qsizetype> &ticked)
{
    window.libraryEditor.flipMultiSelection();
    for (const qsizetype each : ticked) {
        window.libraryEditor.flipTick(window.library.patches().at(each).id());
    }
    WindowFixture::settle();
}

void filter(const WindowFixture &window, const QString &name)
{
    QTest::keyClicks(named<QLineEdit>(*window.window, QStringLiteral("Filter by name")), name);
    WindowFixture::settle();
}

/// The smallest rectangle that holds every pixel in which two pictures of one size differ.
QRect difference(const QPixmap &one, const QPixmap &other)
{
    const QImage first = one.toImage();
    const QImage second = other.toImage();
    QRect found;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            if (first.pixel(x, y) != second.pixel(x, y)) {
                found = found.united(QRect(x, y, 1, 1));
            }
        }
    }
    return found;
}

/// Beside smoothed text, in a translucent picture.
bool isAbout(const QColor &found, const QColor &expected)
{
    constexpr int tolerance = 40;
    return std::abs(found.red() - expected.red()) <= tolerance
        && std::abs(found.green() - expected.green()) <= tolerance
        && std::abs(found.blue() - expected.blue()) <= tolerance && found.alpha() > 200;
}

} // namespace

class TestDragOfMany : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatDoesNotFitIsSaidBeforeAndAfter()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir Drum"), QStringLiteral("A B C D"));
        tick(*window, {3, 0, 1, 2});
        ContentListView *list = window->contentList();
        DragOver drag(list->viewport(), row(window->libraryList(), 1));
        QVERIFY(drag.moveTo(middleOf(list, 0)));
        QCOMPARE(window->status(), QStringLiteral("Replaces 4 slots, 1.1 to 2.1"));
        QVERIFY(drag.moveTo(middleOf(list, 2)));
        QCOMPARE(window->status(),
            QStringLiteral("Replaces 2 slots, 1.3 to 2.1. "
                           "2 of 4 patches fit, no slot is left for \"Choir\", \"Drum\""));
        QVERIFY(drag.dropAt(middleOf(list, 2)));
        WindowFixture::settle();
        QCOMPARE(window->slotNames(), QStringLiteral("A B Lead Bells"));
        QCOMPARE(window->status(),
            QStringLiteral("2 patches placed in slots 1.3 to 2.1. "
                           "2 of 4 patches fit, no slot is left for \"Choir\", \"Drum\""));
    }

    void theMessageOfMixedVersionsSaysItToo()
    {
        StoreFixture store(
            {{WindowFixture::patch(QStringLiteral("Old")), WindowFixture::patch(QStringLiteral("New"), "V1.30"),
                 WindowFixture::patch(QStringLiteral("Newer"), "V1.30")},
                {}});
        WindowFixture window(store);
        QVERIFY(window.open());
        window.importList(QStringLiteral("A B C"));
        tick(window, {0, 1, 2});
        QTest::keyClicks(
            ShownWidgets::named<QLineEdit>(*window.window, QStringLiteral("Filter by name")), QStringLiteral("new"));
        WindowFixture::settle();
        DragOver drag(window.contentList()->viewport(), row(window.libraryList(), 0));
        QVERIFY(drag.dropAt(middleOf(window.contentList(), 1)));
        QCOMPARE(window.message(),
            QStringLiteral("You should not mix various versions of Velgor firmware in a preset file"));
        QVERIFY2(window.messageText().contains(QStringLiteral("The filter hides 1 of them")),
            qPrintable(window.messageText()));
        QVERIFY2(window.messageText().contains(QStringLiteral("2 of 3 patches fit, no slot is left for \"Newer\"")),
            qPrintable(window.messageText()));
    }

    void keysPlaceLikeADropAndSayTheSame()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
        tick(*window, {0, 1});
        WindowFixture::click(window->contentList(), 1);
        WindowFixture::key(window->contentList(), Qt::Key_Return);
        QCOMPARE(window->slotNames(), QStringLiteral("A Lead"));
        QCOMPARE(window->status(),
            QStringLiteral("1 patch placed in slot 1.2. 1 of 2 patches fit, no slot is left for \"Bells\""));
        WindowFixture::click(window->libraryList(), 1);
        WindowFixture::key(window->contentList(), Qt::Key_Return);
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" placed in slot 1.2"));
    }

    void ticksThatTheFilterHidesComeAlongAndAreCounted()
    {
        const auto window = WindowFixture::shown(QStringLiteral("a1 b1 a2"), QStringLiteral("A B C"));
        tick(*window, {0, 1, 2});
        filter(*window, QStringLiteral("a"));
        ContentListView *list = window->contentList();
        DragOver drag(list->viewport(), row(window->libraryList(), 1));
        QVERIFY(drag.moveTo(middleOf(list, 0)));
        QCOMPARE(list->dropMark().names.join(u' '), QStringLiteral("a1 b1 a2"));
        QCOMPARE(window->status(), QStringLiteral("Replaces 3 slots, 1.1 to 1.3. The filter hides 1 of them"));
        QVERIFY(drag.dropAt(middleOf(list, 0)));
        QCOMPARE(window->slotNames(), QStringLiteral("a1 b1 a2"));
    }

    void aRowThatIsNotTickedTakesTheTickedOnesAlong()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("A B C"));
        tick(*window, {0, 2});
        const std::unique_ptr<QMimeData> data(row(window->libraryList(), 1));
        const QString carried = QString::fromUtf8(data->data(TransferablePatch::typeIdentifier()));
        QVERIFY2(
            carried.contains(QStringLiteral("Lead")) && carried.contains(QStringLiteral("Choir")), qPrintable(carried));
        QVERIFY2(!carried.contains(QStringLiteral("Bells")), qPrintable(carried));
    }

    void underAFilterAMoveSaysItsPlaceInTheWholeLibrary_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("dragged");
        QTest::addColumn<int>("target");
        QTest::addColumn<QString>("said");
        QTest::newRow("all are shown") << "" << 0 << 2 << QString();
        QTest::newRow("down") << "a" << 0 << 2
                              << QStringLiteral("Moves \"Ann\" to row 3 of 5 in the whole library, behind \"Ada\"");
        QTest::newRow("up") << "a" << 2 << 1
                            << QStringLiteral("Moves \"Art\" to row 3 of 5 in the whole library, behind \"Bo\"");
        QTest::newRow("to the top") << "a" << 2 << -1
                                    << QStringLiteral("Moves \"Art\" to row 1 of 5 in the whole library");
        QTest::newRow("nowhere") << "a" << 0 << -1
                                 << QStringLiteral("Leaves \"Ann\" in row 1 of 5 in the whole library");
    }

    void underAFilterAMoveSaysItsPlaceInTheWholeLibrary()
    {
        QFETCH(const QString, name);
        QFETCH(const int, dragged);
        QFETCH(const int, target);
        QFETCH(const QString, said);
        const auto window = WindowFixture::shown(QStringLiteral("Ann Bo Ada Cy Art"));
        filter(*window, name);
        LibraryListView *list = window->libraryList();
        const qsizetype libraryRow = name.isEmpty() ? dragged : 2 * dragged;
        const quint64 id = window->library.patches().at(libraryRow).id();
        const QRect rect = list->visualRect(list->model()->index(std::max(target, 0), 0));
        const QPoint point(rect.center().x(), target < 0 ? rect.top() + 2 : rect.bottom() - 2);
        DragOver drag(list->viewport(), row(list, dragged));
        const QString before = window->status();
        QVERIFY(drag.moveTo(point));
        QCOMPARE(window->status(), said.isEmpty() ? before : said);
        QVERIFY(drag.dropAt(point));
        const qsizetype index = window->library.getPatchFromId(id)->index;
        QVERIFY(said.isEmpty() || said.contains(QStringLiteral("row %1 of 5").arg(index + 1)));
    }

    void theCardShowsTheFirstTickedPatchAndTheNumber()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir Drum"));
        tick(*window, {3, 1, 2});
        LibraryListView *list = window->libraryList();
        const auto painted = [list](const QString &name, qsizetype count) {
            return DragPicture::paint(name, false, count, list->font(), list->devicePixelRatioF()).toImage();
        };
        QTest::mousePress(list->viewport(), Qt::LeftButton, {}, middleOf(list, 2));
        QTest::mouseMove(list->viewport(), middleOf(list, 0));
        // Only what waits for the list itself, as the drag is removed with what else waits.
        QCoreApplication::sendPostedEvents(list);
        const auto *drag = list->findChild<QDrag *>();
        QVERIFY(drag != nullptr);
        const QImage card = drag->pixmap().toImage();
        QCOMPARE(card, painted(QStringLiteral("Bells"), 3));
        for (const QString &other : {QStringLiteral("Choir"), QStringLiteral("Drum")}) {
            QVERIFY(card != painted(other, 3));
        }
        for (const qsizetype count : {1, 2, 4}) {
            QVERIFY(card != painted(QStringLiteral("Bells"), count));
        }
        QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, middleOf(list, 0));
    }

    void theCardGrowsWithTheText()
    {
        const QString name = QStringLiteral("Sixteen Letters.");
        for (const int points : {9, 20, 40}) {
            QFont font;
            font.setPointSize(points);
            const QPixmap picture = DragPicture::paint(name, false, 5, font, 1);
            QVERIFY(picture.width() > QFontMetrics(font).horizontalAdvance(name));
            // Only the digit of the badge differs, and stands on its colour.
            const QRect digit = difference(picture, DragPicture::paint(name, false, 8, font, 1));
            const QImage image = picture.toImage();
            for (const QPoint &beside : {QPoint(digit.left() - 2, digit.center().y()),
                     QPoint(digit.center().x(), digit.top() - 2), QPoint(digit.center().x(), digit.bottom() + 2)}) {
                QVERIFY2(isAbout(image.pixelColor(beside), LookTokens::current().accent),
                    qPrintable(QStringLiteral("%1 points, %2 %3: %4")
                                   .arg(points)
                                   .arg(beside.x())
                                   .arg(beside.y())
                                   .arg(image.pixelColor(beside).name(QColor::HexArgb))));
            }
        }
    }

    void theCardStandsClearOfTheRowUnderThePointer_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<qreal>("ratio");
        QTest::newRow("plain") << 10 << 1.0;
        QTest::newRow("large, dense") << 20 << 1.5;
    }

    void theCardStandsClearOfTheRowUnderThePointer()
    {
        QFETCH(const int, points);
        QFETCH(const qreal, ratio);
        QFont font;
        font.setPointSize(points);
        const QPixmap picture = DragPicture::paint(QStringLiteral("Lead"), false, 5, font, ratio);
        const int rowHeight = LookMeasures::rowHeight(QFontMetrics(font));
        // The pointer may stand at the lower edge of its row.
        const int rowTop = DragPicture::hotSpot(picture, font).y() - rowHeight + 1;
        QVERIFY(picture.deviceIndependentSize().height() <= rowTop);
        QVERIFY(picture.width() > 100 * ratio);
    }
};

VELGOR_WIDGET_TEST(TestDragOfMany)
#include "tst_DragOfMany.moc"
