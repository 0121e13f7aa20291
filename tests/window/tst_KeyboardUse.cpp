#include "KeysInWindow.h"
#include "ShownWidgets.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QMenuBar>
#include <QRegularExpression>

using namespace KeysInWindow;
using namespace ShownWidgets;
using Flag = bool VelgorPatch::*;

namespace {

QString ticks(const WindowFixture &window)
{
    return TestPatches::names(window.library.getMultiSelection()).join(u' ');
}

} // namespace

class TestKeyboardUse : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void returnPutsThePatchIntoTheSlotAndGoesOn_data()
    {
        QTest::addColumn<bool>("inLibrary");
        QTest::addColumn<int>("key");
        QTest::newRow("Return in the library") << true << int(Qt::Key_Return);
        QTest::newRow("Return in the content") << false << int(Qt::Key_Return);
        QTest::newRow("Enter in the library") << true << int(Qt::Key_Enter);
    }

    void returnPutsThePatchIntoTheSlotAndGoesOn()
    {
        QFETCH(const bool, inLibrary);
        QFETCH(const int, key);
        const auto window = chosen();
        PatchListView *list = window->contentList();
        if (inLibrary) {
            list = window->libraryList();
        }
        list->setFocus();
        type(key);
        QCOMPARE(window->slotNames(), QStringLiteral("A Bells C D"));
        QCOMPARE(window->selectedRows(window->contentList()), QStringLiteral("2"));
        QVERIFY(list->hasFocus());
        type(key);
        type(key);
        type(key);
        QCOMPARE(window->slotNames(), QStringLiteral("A Bells Bells Bells"));
        QCOMPARE(window->selectedRows(window->contentList()), QStringLiteral("3"));
        QCOMPARE(window->selectedName(), QStringLiteral("Bells"));
    }

    void returnPutsTheTickedPatchesOneAfterTheOther()
    {
        const auto window = chosen();
        QVERIFY(window->choose(QStringLiteral("Select All")));
        window->libraryList()->setFocus();
        type(Qt::Key_Return);
        QCOMPARE(window->slotNames(), QStringLiteral("A Lead Bells Choir"));
        QVERIFY(!window->library.isMultiSel());
    }

    void shiftReturnReplacesEverySelectedSlot()
    {
        const auto window = chosen();
        WindowFixture::click(window->contentList(), 3, Qt::ControlModifier);
        window->libraryList()->setFocus();
        type(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(window->slotNames(), QStringLiteral("A Bells C Bells"));
        QCOMPARE(window->selectedRows(window->contentList()), QStringLiteral("1 3"));
        window->contentList()->setFocus();
        WindowFixture::click(window->contentList(), 0);
        type(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(window->slotNames(), QStringLiteral("Bells Bells C Bells"));
    }

    void returnDoesNothingWithoutASelection()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        window->libraryList()->setFocus();
        type(Qt::Key_Return);
        window->contentList()->setFocus();
        type(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
    }

    void controlKKeepsTheSelectedSlots()
    {
        const auto window = chosen();
        WindowFixture::click(window->contentList(), 3, Qt::ControlModifier);
        type(Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells Choir B D"));
        QCOMPARE(window->selectedName(), QStringLiteral("B"));
        window->libraryList()->setFocus();
        type(Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(window->library.count(), 5);
    }

    void altAndArrowsMoveSlots()
    {
        const auto window = chosen();
        WindowFixture::click(window->contentList(), 2, Qt::ShiftModifier);
        window->contentList()->setFocus();
        type(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(window->slotNames(), QStringLiteral("B C A D"));
        type(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(window->slotNames(), QStringLiteral("B C A D"));
        type(Qt::Key_Down, Qt::AltModifier);
        type(Qt::Key_Down, Qt::AltModifier);
        type(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(window->slotNames(), QStringLiteral("A D B C"));
        QCOMPARE(window->selectedRows(window->contentList()), QStringLiteral("2 3"));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells Choir"));
    }

    void movedSlotsStayInSight()
    {
        QStringList names;
        for (int slot = 0; slot < 99; ++slot) {
            names.append(QString::number(slot));
        }
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), names.join(u' '));
        ContentListView *list = window->contentList();
        WindowFixture::click(list, 1);
        WindowFixture::click(list, 2, Qt::ShiftModifier);
        list->setFocus();
        for (int step = 0; step < 60; ++step) {
            type(Qt::Key_Down, Qt::AltModifier);
        }
        QCOMPARE(window->selectedRows(list), QStringLiteral("61 62"));
        // At once: later on, the view scrolls to what was clicked, whatever happened since.
        WindowFixture::settle();
        QVERIFY(list->viewport()->rect().contains(list->visualRect(list->currentIndex())));
    }

    void altAndArrowsMoveALibraryPatch()
    {
        const auto window = chosen();
        window->libraryList()->setFocus();
        type(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(window->libraryRows(), QStringLiteral("Bells Lead Choir"));
        type(Qt::Key_Up, Qt::AltModifier);
        type(Qt::Key_Down, Qt::AltModifier);
        type(Qt::Key_Down, Qt::AltModifier);
        type(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Choir Bells"));
        QCOMPARE(window->selectedRows(window->libraryList()), QStringLiteral("2"));
        QCOMPARE(window->calls.calls.size(), 3);
        QCOMPARE(window->slotNames(), QStringLiteral("A B C D"));
    }

    void altAndArrowsPassTheNeighbourThatIsShown()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Ann Bo Cy Ada"));
        QTest::keyClicks(window->field("Filter by name"), QStringLiteral("a"));
        WindowFixture::click(window->libraryList(), 0);
        type(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(window->libraryRows(), QStringLiteral("Ada Ann"));
        QCOMPARE(window->selectedName(), QStringLiteral("Ann"));
        type(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(window->libraryRows(), QStringLiteral("Ann Ada"));
    }

    void spaceAndControlTTick()
    {
        const auto window = chosen();
        window->libraryList()->setFocus();
        type(Qt::Key_Space);
        QVERIFY(!window->library.isMultiSel());
        type(Qt::Key_T, Qt::ControlModifier);
        QVERIFY(window->library.isMultiSel());
        QCOMPARE(ticks(*window), QStringLiteral("Bells"));
        type(Qt::Key_Down);
        type(Qt::Key_Space);
        QCOMPARE(ticks(*window), QStringLiteral("Bells Choir"));
        type(Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(ticks(*window), QStringLiteral("Bells"));
        type(Qt::Key_Up);
        type(Qt::Key_Space);
        QCOMPARE(ticks(*window), QString());
    }

    void controlAndADigitFlipsAFlag_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Flag>("flag");
        QTest::newRow("Guitar") << int(Qt::Key_1) << &VelgorPatch::guitar;
        QTest::newRow("Bass") << int(Qt::Key_2) << &VelgorPatch::bass;
        QTest::newRow("Rythm") << int(Qt::Key_3) << &VelgorPatch::rythm;
        QTest::newRow("Solo") << int(Qt::Key_4) << &VelgorPatch::solo;
        QTest::newRow("Clean") << int(Qt::Key_5) << &VelgorPatch::clean;
        QTest::newRow("Crunch") << int(Qt::Key_6) << &VelgorPatch::crunch;
        QTest::newRow("Drive") << int(Qt::Key_7) << &VelgorPatch::drive;
        QTest::newRow("Higain") << int(Qt::Key_8) << &VelgorPatch::higain;
    }

    void controlAndADigitFlipsAFlag()
    {
        QFETCH(const int, key);
        QFETCH(const Flag, flag);
        const auto window = chosen();
        VelgorPatch expected = window->library.patches().at(1);
        type(key, Qt::ControlModifier);
        expected.*flag = true;
        QCOMPARE(window->library.patches().at(1), expected);
        QVERIFY(named<QAbstractButton>(*window->window, QLatin1String(QTest::currentDataTag()))->isChecked());
        type(key, Qt::ControlModifier);
        QVERIFY(!(window->library.patches().at(1).*flag));
        QVERIFY(!(window->library.patches().at(0).*flag));
    }

    void keysInTheMenuBarAreTheMenus()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("Ambiguous")));
        const auto window = chosen();
        auto *const bar = window->window->menuBar();
        bar->setFocus(Qt::MenuBarFocusReason);
        QVERIFY(bar->hasFocus());
        for (const int key : {int(Qt::Key_Up), int(Qt::Key_Down)}) {
            type(key, Qt::AltModifier);
        }
        bar->setFocus(Qt::MenuBarFocusReason);
        QTest::keyClick(bar, Qt::Key_Return);
        WindowFixture::settle();
        QCOMPARE(window->slotNames(), QStringLiteral("A B C D"));
    }

    void shortcutsOfTheMenus()
    {
        const auto window = chosen();
        type(Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(window->library.count(), 4);
        type(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(window->library.defaultPatch(), window->library.selection());
        QCOMPARE(window->slotNames(), QStringLiteral("A B C D"));
        type(Qt::Key_O, Qt::ControlModifier);
        type(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(window->dialogs.asked.size(), 2);
        type(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(window->library.multiSelections().count(true), 2);
        type(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(window->library.multiSelections().count(true), 4);
        type(Qt::Key_L, Qt::ControlModifier);
        QVERIFY(window->field("Filter by name")->hasFocus());
        window->libraryList()->setFocus();
        type(Qt::Key_S, Qt::ControlModifier);
        QVERIFY(window->message().startsWith(QStringLiteral("I know that")));
    }

    void deletingByShortcutCanBeTakenBackByEscape()
    {
        const auto window = chosen();
        type(Qt::Key_Delete, Qt::ControlModifier);
        QCOMPARE(window->message(), QStringLiteral("Do you really want to delete 1 patch?"));
        type(Qt::Key_Escape);
        QCOMPARE(window->message(), QString());
        QCOMPARE(window->library.count(), 3);
        QVERIFY(!window->library.deleteConfirm());
        // There is no desktop that would do so.
        window->window->activateWindow();
        type(Qt::Key_Delete, Qt::ControlModifier);
        QVERIFY(!window->message().isEmpty());
        type(Qt::Key_Return);
        QCOMPARE(window->library.count(), 3);
    }

    void controlAInTheContentSelectsEverySlot()
    {
        const auto window = chosen();
        window->contentList()->setFocus();
        type(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(window->contentEditor.selectedRows().size(), 4);
    }

    void tabGoesThroughContentLibraryAndDetails()
    {
        const auto window = chosen();
        window->contentList()->setFocus();
        QList<int> columns;
        QStringList names;
        const int libraryLeft = window->libraryList()->mapTo(window->window.get(), QPoint(0, 0)).x();
        const int detailsLeft = libraryLeft + window->libraryList()->width();
        constexpr int most = 60;
        do {
            const QWidget *now = QApplication::focusWidget();
            const int left = now->mapTo(window->window.get(), now->rect().center()).x();
            columns.append(left < libraryLeft ? 0 : (left < detailsLeft ? 1 : 2));
            names.append(now->accessibleName());
            type(Qt::Key_Tab);
        } while (!window->contentList()->hasFocus() && columns.size() < most);
        QVERIFY(columns.size() < most);
        QVERIFY2(std::is_sorted(columns.begin(), columns.end()), qPrintable(names.join(u'/')));
        QCOMPARE(columns.last(), 2);
        QVERIFY(names.contains(QStringLiteral("Library")) && names.contains(QStringLiteral("Comment")));
    }
};

VELGOR_WIDGET_TEST(TestKeyboardUse)
#include "tst_KeyboardUse.moc"
