#include "LibraryContentMainView.h"
#include "TestProgram.h"
#include "VelgorLibraryView.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QMenu>

namespace {

/// Each key goes to whatever has the focus.
void type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QVERIFY(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    WindowFixture::settle();
}

/// As the platform asks for a context menu when its key is pressed.
void pressMenuKey(PatchListView *list)
{
    const QPoint pointer = list->mapFromGlobal(QCursor::pos());
    QContextMenuEvent event(QContextMenuEvent::Keyboard, pointer, QCursor::pos());
    QCoreApplication::sendEvent(list, &event);
    WindowFixture::settle();
}

} // namespace

/// Where the keyboard and what it opens are, once a command has run.
class TestFocusAfterCommands : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void afterDeleteByTheButtonTheKeysAreForTheList_data()
    {
        QTest::addColumn<QString>("patches");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("next");
        QTest::newRow("in the middle") << QStringLiteral("Lead Bells Choir") << 1 << QStringLiteral("Choir");
        QTest::newRow("the last row") << QStringLiteral("Lead Bells Choir") << 2 << QStringLiteral("Bells");
        QTest::newRow("the only one") << QStringLiteral("Lead") << 0 << QString();
    }

    void afterDeleteByTheButtonTheKeysAreForTheList()
    {
        QFETCH(const QString, patches);
        QFETCH(const int, row);
        QFETCH(const QString, next);
        const auto window = WindowFixture::shown(patches, QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), row);
        QVERIFY(window->press(QStringLiteral("Delete")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        window->window->activateWindow();
        WindowFixture::settle();
        QCOMPARE(QApplication::focusWidget(), window->libraryList());
        QCOMPARE(window->selectedName(), next);
        const QString left = window->libraryRows();
        type(Qt::Key_Delete);
        QCOMPARE(
            window->message(), next.isEmpty() ? QString() : QStringLiteral("Do you really want to delete 1 patch?"));
        QCOMPARE(window->libraryRows(), left);
        if (!next.isEmpty()) {
            QVERIFY(window->answer(QStringLiteral("Yes")));
            QVERIFY(!window->libraryRows().contains(next));
        }
    }

    void aButtonThatIsDisabledUnderTheKeyboardHandsItToItsList_data()
    {
        QTest::addColumn<QString>("button");
        for (const char *button : {"Sort", "Select", "Duplicate"}) {
            QTest::newRow(button) << QString::fromLatin1(button);
        }
    }

    void aButtonThatIsDisabledUnderTheKeyboardHandsItToItsList()
    {
        QFETCH(const QString, button);
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->choose(QStringLiteral("Select All")));
        QAbstractButton *pressed = nullptr;
        const QList<QAbstractButton *> buttons = window->window->columns().library()->findChildren<QAbstractButton *>();
        for (QAbstractButton *candidate : buttons) {
            pressed = candidate->text().startsWith(button) ? candidate : pressed;
        }
        QVERIFY(pressed);
        pressed->setFocus();
        type(Qt::Key_Delete, Qt::ControlModifier);
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->library.count(), 0);
        window->window->activateWindow();
        WindowFixture::settle();
        QVERIFY(!pressed->isEnabled());
        QCOMPARE(QApplication::focusWidget(), window->libraryList());
    }

    void deletingWhileAButtonOfTheDetailsHasTheKeyboardReachesNoField()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->press(QStringLiteral("Solo")));
        const QWidget *solo = QApplication::focusWidget();
        QVERIFY(qobject_cast<const QAbstractButton *>(solo));
        type(Qt::Key_Delete, Qt::ControlModifier);
        QVERIFY(window->answer(QStringLiteral("Yes")));
        window->window->activateWindow();
        WindowFixture::settle();
        QCOMPARE(window->selectedName(), QStringLiteral("Choir"));
        QCOMPARE(QApplication::focusWidget(), solo);
    }

    void theContextMenuOfAKeyComesUpAtTheRow_data()
    {
        QTest::addColumn<bool>("isForLibrary");
        QTest::addColumn<bool>("isMenuKey");
        QTest::newRow("menu key in the library") << true << true;
        QTest::newRow("Shift and F10 in the library") << true << false;
        QTest::newRow("menu key in the list") << false << true;
        QTest::newRow("Shift and F10 in the list") << false << false;
    }

    void theContextMenuOfAKeyComesUpAtTheRow()
    {
        QFETCH(const bool, isForLibrary);
        QFETCH(const bool, isMenuKey);
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("A B C"));
        PatchListView *list = isForLibrary ? static_cast<PatchListView *>(window->libraryList())
                                           : static_cast<PatchListView *>(window->contentList());
        WindowFixture::click(list, 1);
        // Far from the row.
        QCursor::setPos(window->window->mapToGlobal(QPoint(5, 5)));
        if (isMenuKey) {
            pressMenuKey(list);
        } else {
            WindowFixture::key(list, Qt::Key_F10, Qt::ShiftModifier);
        }
        auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        const QRect row = list->visualRect(list->model()->index(1, 0));
        const QRect place(list->viewport()->mapToGlobal(row.topLeft()), row.size());
        QVERIFY(menu->geometry().intersects(place));
        menu->close();
    }

    void theContextMenuOfAKeyBringsItsRowIntoSight()
    {
        QStringList names;
        for (int i = 0; i < 90; ++i) {
            names.append(QStringLiteral("P%1").arg(i));
        }
        const auto window = WindowFixture::shown(names.join(u' '));
        LibraryListView *list = window->libraryList();
        WindowFixture::click(list, 80);
        list->scrollToTop();
        WindowFixture::key(list, Qt::Key_F10, Qt::ShiftModifier);
        auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        menu->close();
        QVERIFY(list->viewport()->rect().contains(list->visualRect(list->model()->index(80, 0))));
    }
};

VELGOR_WIDGET_TEST(TestFocusAfterCommands)
#include "tst_FocusAfterCommands.moc"
