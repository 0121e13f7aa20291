#include "LookTokens.h"
#include "PatchRoles.h"
#include "ShownWidgets.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QAction>
#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QToolTip>

using namespace ShownWidgets;

/// What the rows of the library show beside the name, and how a slot leads to its patch.
class TestLibraryRows : public QObject {
    Q_OBJECT

private:
    static void edit(WindowFixture &window, qsizetype row, const std::function<void(VelgorPatch &)> &change)
    {
        VelgorPatch patch = window.library.patches().at(row);
        change(patch);
        window.library.update(patch);
        WindowFixture::settle();
    }

    static QImage rowPicture(const WindowFixture &window, int row)
    {
        const LibraryListView *list = window.libraryList();
        return list->viewport()->grab(list->visualRect(list->model()->index(row, 0))).toImage();
    }

    static QList<int> columnsOf(const QImage &image, const QColor &colour)
    {
        QList<int> columns;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixelColor(x, y) == colour) {
                    columns.append(x);
                    break;
                }
            }
        }
        return columns;
    }

    static QString toolTipAt(const WindowFixture &window, int row, int x)
    {
        LibraryListView *list = window.libraryList();
        const QPoint place(x, list->visualRect(list->model()->index(row, 0)).center().y());
        QToolTip::hideText();
        QHelpEvent help(QEvent::ToolTip, place, list->viewport()->mapToGlobal(place));
        QApplication::sendEvent(list->viewport(), &help);
        return QToolTip::text();
    }

    /// A library of three, of which the second is called otherwise than the slot that holds it.
    static std::unique_ptr<WindowFixture> listed()
    {
        auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("Unknown Choir Bells"));
        return window;
    }

private Q_SLOTS:
    void theClassificationIsPaintedInItsTones()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        const LookTokens tokens = LookTokens::current();
        QCOMPARE(columnsOf(rowPicture(*window, 0), tokens.instrument).size(), 0);
        edit(*window, 0, [](VelgorPatch &patch) { patch.guitar = patch.solo = patch.drive = true; });
        const QImage row = rowPicture(*window, 0);
        const QList<int> instrument = columnsOf(row, tokens.instrument);
        const QList<int> usage = columnsOf(row, tokens.usage);
        const QList<int> style = columnsOf(row, tokens.style);
        QVERIFY(instrument.size() >= 10 && usage.size() >= 10 && style.size() >= 10);
        QVERIFY(instrument.last() < usage.first());
        QVERIFY(usage.last() < style.first());
        const int nameEnd = 12 + window->libraryList()->fontMetrics().horizontalAdvance(QStringLiteral("Lead"));
        QVERIFY(instrument.first() >= nameEnd + 12);
        QCOMPARE(toolTipAt(*window, 0, usage.first() + 2), QStringLiteral("Guitar, Solo, Drive"));
        QCOMPARE(columnsOf(rowPicture(*window, 1), tokens.instrument).size(), 0);
    }

    void flagsOfOneToneCanBeToldApart()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        edit(*window, 0, [](VelgorPatch &patch) { patch.clean = true; });
        const QImage clean = rowPicture(*window, 0);
        edit(*window, 0, [](VelgorPatch &patch) {
            patch.clean = false;
            patch.crunch = true;
        });
        QVERIFY(rowPicture(*window, 0) != clean);
    }

    void theCommentsFirstLineStandsInTheRowWhereThereIsRoom()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        window->window->resize(1280, 800);
        WindowFixture::settle();
        const QImage without = rowPicture(*window, 0);
        edit(*window, 0, [](VelgorPatch &patch) { patch.comment = QStringLiteral("Neck pickup\nvolume at 8"); });
        const QImage with = rowPicture(*window, 0);
        QVERIFY(with != without);
        const int nameEnd = 12 + window->libraryList()->fontMetrics().horizontalAdvance(QStringLiteral("Lead"));
        QCOMPARE(with.copy(0, 0, nameEnd, with.height()), without.copy(0, 0, nameEnd, with.height()));
        QCOMPARE(toolTipAt(*window, 0, nameEnd + 20), QStringLiteral("Neck pickup\nvolume at 8"));
        edit(*window, 0, [](VelgorPatch &patch) { patch.comment = QStringLiteral("Neck pickup\nanother line"); });
        QCOMPARE(rowPicture(*window, 0), with);
    }

    void aNameBesideACommentIsWhole()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Dub Will Jimi Wave Fjord"));
        window->window->resize(1280, 800);
        WindowFixture::settle();
        for (int row = 0; row < 5; ++row) {
            const QImage without = rowPicture(*window, row);
            edit(*window, row, [](VelgorPatch &patch) { patch.comment = QStringLiteral("Neck pickup"); });
            const QString name = window->library.patches().at(row).name;
            const int nameEnd = 12 + window->libraryList()->fontMetrics().horizontalAdvance(name) + 2;
            const QImage with = rowPicture(*window, row);
            QCOMPARE(with.copy(0, 0, nameEnd, with.height()), without.copy(0, 0, nameEnd, with.height()));
        }
    }

    void aLongNameLeavesNoRoomForTheComment()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        edit(*window, 0, [](VelgorPatch &patch) { patch.name = QString(80, u'W'); });
        const QImage without = rowPicture(*window, 0);
        edit(*window, 0, [](VelgorPatch &patch) { patch.comment = QStringLiteral("Neck pickup"); });
        QCOMPARE(rowPicture(*window, 0), without);
        edit(*window, 0, [](VelgorPatch &patch) { patch.guitar = true; });
        QVERIFY(columnsOf(rowPicture(*window, 0), LookTokens::current().instrument).size() >= 10);
        QCOMPARE(toolTipAt(*window, 0, 30), QString(80, u'W'));
    }

    void theRowUnderThePointerIsNotTakenForASelectedOne_data()
    {
        QTest::addColumn<bool>("isDark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    void theRowUnderThePointerIsNotTakenForASelectedOne()
    {
        QFETCH(const bool, isDark);
        const auto window = listed();
        window->preferences.setColorScheme(isDark ? PrefColors::prefdark : PrefColors::preflight);
        LibraryListView *list = window->libraryList();
        WindowFixture::click(list, 0);
        window->contentList()->setFocus();
        const QPoint place = list->visualRect(list->model()->index(2, 0)).center();
        QTest::mouseMove(list->viewport(), place);
        QHoverEvent hover(QEvent::HoverMove, place, list->viewport()->mapToGlobal(place), QPoint(0, 0));
        QApplication::sendEvent(list->viewport(), &hover);
        WindowFixture::settle();
        const QImage selected = rowPicture(*window, 0);
        const QImage hovered = rowPicture(*window, 2);
        const LookTokens tokens = LookTokens::current();
        // By shape: the selected one alone has a pill, the other one alone an edge.
        QVERIFY(!columnsOf(selected, tokens.selectionInactivePill).isEmpty());
        QVERIFY(columnsOf(hovered, tokens.selectionInactivePill).isEmpty());
        QVERIFY(!columnsOf(hovered, tokens.rowHover).isEmpty());
        const int middle = hovered.width() / 2;
        QVERIFY(hovered.pixelColor(middle, 0) != hovered.pixelColor(middle, 2));
        QCOMPARE(selected.pixelColor(middle, 0), selected.pixelColor(middle, 2));
    }

    void aSlotLeadsToItsPatch_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"menu bar", "context menu", "double-click", "key"}) {
            QTest::newRow(way) << QString::fromLatin1(way);
        }
    }

    void aSlotLeadsToItsPatch()
    {
        QFETCH(const QString, way);
        const auto window = listed();
        ContentListView *slots_ = window->contentList();
        WindowFixture::click(slots_, 1);
        if (way == QStringLiteral("menu bar")) {
            QVERIFY(window->choose(QStringLiteral("Show in Library")));
        } else if (way == QStringLiteral("double-click")) {
            QTest::mouseDClick(
                slots_->viewport(), Qt::LeftButton, {}, slots_->visualRect(slots_->model()->index(1, 0)).center());
        } else if (way == QStringLiteral("key")) {
            QTest::keyClick(slots_, Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
        } else {
            Q_EMIT slots_->customContextMenuRequested(slots_->visualRect(slots_->model()->index(1, 0)).center());
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            QVERIFY(menu);
            const QList<QAction *> actions = menu->actions();
            const auto entry = std::find_if(actions.begin(), actions.end(), [](const QAction *action) {
                return QString(action->text()).remove(u'&') == QStringLiteral("Show in Library");
            });
            QVERIFY(entry != actions.end());
            menu->setActiveAction(*entry);
            QTest::keyClick(menu, Qt::Key_Return);
        }
        WindowFixture::settle();
        QCOMPARE(window->selectedName(), QStringLiteral("Choir"));
        QCOMPARE(window->selectedRows(window->libraryList()), QStringLiteral("2"));
        QCOMPARE(window->window->focusWidget(), window->libraryList());
    }

    void aPatchThatTheFilterHidesIsShownAllTheSame()
    {
        const auto window = listed();
        QTest::keyClicks(named<QLineEdit>(*window->window, QStringLiteral("Filter by name")), QStringLiteral("Lead"));
        WindowFixture::click(window->contentList(), 1);
        QVERIFY(window->choose(QStringLiteral("Show in Library")));
        QCOMPARE(window->selectedName(), QStringLiteral("Choir"));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells Choir"));
        QCOMPARE(window->status(), QStringLiteral("The filter is cleared, as it hid this patch"));
    }

    void aPatchUnderAnotherNameIsFoundByItsSound()
    {
        const auto window = listed();
        VelgorPatch other = VelgorPatch::copyNamed(window->library.patches().at(1), QStringLiteral("Chimes"));
        window->library.append(other, false, false);
        window->library.deletePatch(window->library.patches().at(1).id());
        WindowFixture::click(window->contentList(), 2);
        QVERIFY(window->choose(QStringLiteral("Show in Library")));
        QCOMPARE(window->selectedName(), QStringLiteral("Chimes"));
    }

    void aSlotWithoutItsPatchInTheLibraryIsSaidToBe()
    {
        const auto window = listed();
        WindowFixture::click(window->libraryList(), 0);
        WindowFixture::click(window->contentList(), 0);
        QVERIFY(window->choose(QStringLiteral("Show in Library")));
        QCOMPARE(window->selectedName(), QStringLiteral("Lead"));
        QVERIFY(window->isSaid(QStringLiteral("The library does not have the patch of this slot")));
    }
};

VELGOR_WIDGET_TEST(TestLibraryRows)
#include "tst_LibraryRows.moc"
