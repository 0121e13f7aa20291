#include "ShownWidgets.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>

using namespace ShownWidgets;

namespace {

QLineEdit *field(const WindowFixture &window, const char *name)
{
    return named<QLineEdit>(*window.window, QLatin1String(name));
}

QString ticks(const WindowFixture &window)
{
    return TestPatches::names(window.library.getMultiSelection()).join(u' ');
}

/// Presses the disc at the left of a row.
void clickTick(const WindowFixture &window, int row)
{
    LibraryListView *list = window.libraryList();
    const QRect rect = list->visualRect(list->model()->index(row, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(rect.left() + 20, rect.center().y()));
    WindowFixture::settle();
}

/// Opens the context menu of a row and chooses from it. False when the entry is missing or disabled.
bool chooseOf(const WindowFixture &window, int row, const QString &entry)
{
    LibraryListView *list = window.libraryList();
    const QPoint point = list->visualRect(list->model()->index(row, 0)).center();
    QTest::mouseClick(list->viewport(), Qt::RightButton, Qt::NoModifier, point);
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, list->viewport()->mapToGlobal(point));
    QCoreApplication::sendEvent(list->viewport(), &event);
    WindowFixture::settle();
    auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    const QList<QAction *> actions = menu ? menu->actions() : QList<QAction *>();
    for (QAction *action : actions) {
        if (QString(action->text()).remove(u'&') == entry && action->isEnabled()) {
            menu->close();
            action->trigger();
            WindowFixture::settle();
            return true;
        }
    }
    if (menu) {
        menu->close();
    }
    return false;
}

void press(const WindowFixture &window, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    WindowFixture::key(window.libraryList(), key, modifiers);
}

} // namespace

class TestTickingMode : public QObject {
    Q_OBJECT

private:
    /// Ticking, with "Ann" and "Cid" ticked of "Ann Bea Cid Dan" and the pointer last on "Bea".
    static std::unique_ptr<WindowFixture> ticking()
    {
        auto window = WindowFixture::shown(QStringLiteral("Ann Bea Cid Dan"), QStringLiteral("w x y z"));
        WindowFixture::click(window->libraryList(), 3);
        if (window->press(QStringLiteral("Select"))) {
            clickTick(*window, 0);
            clickTick(*window, 2);
            WindowFixture::click(window->libraryList(), 1);
        }
        return window;
    }
    static QString withFlag(const WindowFixture &window, bool VelgorPatch::*flag)
    {
        QStringList names;
        for (const VelgorPatch &patch : window.library.patches()) {
            if (patch.*flag) {
                names.append(patch.name);
            }
        }
        return names.join(u' ');
    }

private Q_SLOTS:
    void theRowThatWasClickedIsShownInTheDetails()
    {
        const auto window = ticking();
        QCOMPARE(ticks(*window), QStringLiteral("Ann Cid"));
        QCOMPARE(window->selectedRows(window->libraryList()), QStringLiteral("1"));
        QCOMPARE(field(*window, "Name")->text(), QStringLiteral("Bea"));
        press(*window, Qt::Key_Down);
        QCOMPARE(field(*window, "Name")->text(), QStringLiteral("Cid"));
        QCOMPARE(ticks(*window), QStringLiteral("Ann Cid"));
    }

    void commandsAboutOneMeanTheRow()
    {
        const auto window = ticking();
        press(*window, Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(window->library.defaultPatch(), std::optional(window->library.patches().at(1).id()));
        window->dialogs.answer.reset();
        QVERIFY(window->choose(QStringLiteral("Export One Patch")));
        QCOMPARE(window->dialogs.asked.size(), 1);
        QVERIFY(window->dialogs.asked.first().contains(QStringLiteral("Bea")));
        press(*window, Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Bee"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(window->libraryRows(), QStringLiteral("Ann Bee Cid Dan"));
        press(*window, Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(ticks(*window), QStringLiteral("Bee"));
    }

    void commandsAboutSeveralMeanTheTicks()
    {
        const auto window = ticking();
        press(*window, Qt::Key_4, Qt::ControlModifier);
        QCOMPARE(withFlag(*window, &VelgorPatch::solo), QStringLiteral("Ann Cid"));
        QVERIFY(window->press(QStringLiteral("Duplicate")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Ann Bea Cid Dan Ann-1 Cid-1"));
        press(*window, Qt::Key_Delete);
        QCOMPARE(window->message(), QStringLiteral("Do you really want to delete 2 patches?"));
        QVERIFY(window->messageText().startsWith(QStringLiteral("Ann\nCid\n\n")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Bea Dan Ann-1 Cid-1"));
        QCOMPARE(window->selectedName(), QStringLiteral("Bea"));
        // There is no desktop that would do so.
        window->window->activateWindow();
        WindowFixture::click(window->contentList(), 1);
        clickTick(*window, 2);
        clickTick(*window, 3);
        press(*window, Qt::Key_Return);
        QCOMPARE(window->slotNames(), QStringLiteral("w Ann-1 Cid-1 z"));
    }

    void withoutATickTheyMeanTheRow()
    {
        const auto window = ticking();
        clickTick(*window, 0);
        clickTick(*window, 2);
        WindowFixture::click(window->libraryList(), 1);
        QCOMPARE(ticks(*window), QString());
        press(*window, Qt::Key_4, Qt::ControlModifier);
        QCOMPARE(withFlag(*window, &VelgorPatch::solo), QStringLiteral("Bea"));
        press(*window, Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(window->libraryRows(), QStringLiteral("Ann Bea Cid Dan Bea-1"));
        QVERIFY(window->press(QStringLiteral("Delete")));
        QCOMPARE(window->message(), QStringLiteral("Do you really want to delete 1 patch?"));
        QVERIFY(window->messageText().contains(QStringLiteral("Bea")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Ann Cid Dan Bea-1"));
    }

    void theContextMenuMeansTheRowUnderThePointer()
    {
        const auto window = ticking();
        QVERIFY(chooseOf(*window, 3, QStringLiteral("Set as Default Patch")));
        QCOMPARE(window->library.defaultPatch(), std::optional(window->library.patches().at(3).id()));
        QVERIFY(chooseOf(*window, 3, QStringLiteral("Tick Library Patch")));
        QCOMPARE(ticks(*window), QStringLiteral("Ann Cid Dan"));
        QVERIFY(chooseOf(*window, 1, QStringLiteral("Find Similar Patches")));
        QCOMPARE(ticks(*window), QStringLiteral("Bea"));
        QVERIFY(chooseOf(*window, 3, QStringLiteral("Duplicate Patch")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Ann Bea Cid Dan Bea-1"));
        QVERIFY(chooseOf(*window, 3, QStringLiteral("Delete patches")));
        QVERIFY(window->messageText().startsWith(QStringLiteral("Bea\n\n")));
    }

    void theDeletionSaysWhatTheFilterHides()
    {
        const auto window = WindowFixture::shown(QStringLiteral("a1 b1 a2 b2 a3 a4"));
        QVERIFY(window->choose(QStringLiteral("Select All")));
        QTest::keyClicks(field(*window, "Filter by name"), QStringLiteral("a"));
        QCOMPARE(ticks(*window), QStringLiteral("a1 b1 a2 b2 a3 a4"));
        QVERIFY(window->press(QStringLiteral("Delete")));
        QCOMPARE(window->message(), QStringLiteral("Do you really want to delete 6 patches?"));
        QVERIFY(window->messageText().startsWith(QStringLiteral("a1\nb1\na2\nand 3 more\n\n")));
        QVERIFY(window->messageText().contains(QStringLiteral("The filter hides 2 of these 6.")));
        QVERIFY(window->answer(QStringLiteral("No")));
        QTest::keyClicks(field(*window, "Filter by name"), QStringLiteral("zz"));
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY2(window->messageText().contains(QStringLiteral("The filter hides all of them.")),
            qPrintable(window->messageText()));
        QVERIFY(window->answer(QStringLiteral("No")));
        for (int i = 0; i < 2; ++i) {
            QTest::keyClick(field(*window, "Filter by name"), Qt::Key_Backspace);
        }
        QVERIFY(window->choose(QStringLiteral("Select All")));
        QCOMPARE(ticks(*window), QStringLiteral("a1 a2 a3 a4"));
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY(!window->messageText().contains(QStringLiteral("filter")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QVERIFY(window->press(QStringLiteral("Clear")));
        QCOMPARE(window->libraryRows(), QStringLiteral("b1 b2"));
    }

    void whatTheFilterEmptiesCannotBeTicked()
    {
        const auto window = WindowFixture::shown(QStringLiteral("a1 b1"));
        QTest::keyClicks(field(*window, "Filter by name"), QStringLiteral("zz"));
        QVERIFY(!window->menuEntry(QStringLiteral("Select All"))->isEnabled());
        QVERIFY(window->press(QStringLiteral("Clear")));
        QVERIFY(window->menuEntry(QStringLiteral("Select All"))->isEnabled());
    }

    void nothingIsDeletableAfterTickingEndedWithADrop()
    {
        const auto window = ticking();
        WindowFixture::click(window->contentList(), 0);
        QVERIFY(window->choose(QStringLiteral("Put Library Patch into Slot")));
        QVERIFY(!window->library.isMultiSel());
        QVERIFY(window->press(QStringLiteral("Sort")));
        QVERIFY(!window->library.selection());
        QVERIFY(!window->isEnabled(QStringLiteral("Delete")));
        press(*window, Qt::Key_Delete, Qt::ControlModifier);
        press(*window, Qt::Key_Delete);
        QCOMPARE(window->message(), QString());
    }

    void aClickAndAClickWithControlTickBoth()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Ann Bea Cid Dan"));
        LibraryListView *list = window->libraryList();
        WindowFixture::click(list, 1);
        WindowFixture::click(list, 3, Qt::ControlModifier);
        QVERIFY(window->library.isMultiSel());
        QCOMPARE(ticks(*window), QStringLiteral("Bea Dan"));
        QCOMPARE(window->selectedName(), QStringLiteral("Dan"));
        WindowFixture::click(list, 1, Qt::ControlModifier);
        QCOMPARE(ticks(*window), QStringLiteral("Dan"));
        WindowFixture::click(list, 1, Qt::ShiftModifier);
        QCOMPARE(ticks(*window), QStringLiteral("Bea Dan"));
        WindowFixture::click(list, 3, Qt::ShiftModifier);
        QCOMPARE(ticks(*window), QStringLiteral("Bea Cid Dan"));
        // The tick itself takes such a click once, like the rest of the row.
        const QRect rect = list->visualRect(list->model()->index(0, 0));
        QTest::mouseClick(
            list->viewport(), Qt::LeftButton, Qt::ControlModifier, QPoint(rect.left() + 20, rect.center().y()));
        QCOMPARE(ticks(*window), QStringLiteral("Ann Bea Cid Dan"));
    }

    void theKeyboardTicksTheRowThatJustGotTheFocus()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Ann Bea"));
        QVERIFY(window->press(QStringLiteral("Select")));
        window->libraryList()->setFocus();
        WindowFixture::settle();
        QCOMPARE(window->selectedName(), QStringLiteral("Ann"));
        press(*window, Qt::Key_Space);
        QCOMPARE(ticks(*window), QStringLiteral("Ann"));
    }
};

VELGOR_WIDGET_TEST(TestTickingMode)
#include "tst_TickingMode.moc"
