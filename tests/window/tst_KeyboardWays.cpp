#include "LibraryContentMainView.h"
#include "ShownWidgets.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContentView.h"
#include "VelgorLibraryView.h"
#include "VelgorPatchDetailView.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QLineEdit>

#include <functional>

using namespace ShownWidgets;

namespace {

QLineEdit *field(const WindowFixture &window, const QString &name)
{
    return named<QLineEdit>(*window.window, name);
}

/// Each key goes to whatever has the focus.
void type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QVERIFY(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    WindowFixture::settle();
}

QString currentName(const PatchListView *list)
{
    return list->currentIndex().data().toString();
}

} // namespace

class TestKeyboardWays : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFilterFieldLeadsToTheList_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("key");
        QTest::newRow("Down in the name") << QStringLiteral("Filter by name") << int(Qt::Key_Down);
        QTest::newRow("Return in the name") << QStringLiteral("Filter by name") << int(Qt::Key_Return);
        QTest::newRow("Enter in the comment") << QStringLiteral("Filter by comment") << int(Qt::Key_Enter);
    }

    void aFilterFieldLeadsToTheList()
    {
        QFETCH(const QString, name);
        QFETCH(const int, key);
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Lean"), QStringLiteral("A B"));
        WindowFixture::click(window->contentList(), 0);
        QTest::keyClicks(field(*window, QStringLiteral("Filter by name")), QStringLiteral("le"));
        field(*window, name)->setFocus();
        type(key);
        QVERIFY(window->libraryList()->hasFocus());
        QCOMPARE(window->selectedName(), QStringLiteral("Lead"));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
        type(Qt::Key_Down);
        QCOMPARE(window->selectedName(), QStringLiteral("Lean"));
        field(*window, name)->setFocus();
        type(key);
        QCOMPARE(window->selectedName(), QStringLiteral("Lean"));
    }

    void aFilterWithoutAMatchKeepsTheKeyboard()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        QLineEdit *name = field(*window, QStringLiteral("Filter by name"));
        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("zz"));
        type(Qt::Key_Down);
        QVERIFY(name->hasFocus());
    }

    void deleteInTheLibraryListDeletesAndGoesOn()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), 1);
        type(Qt::Key_Delete);
        QCOMPARE(window->message(), QStringLiteral("Do you really want to delete 1 patch?"));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Choir"));
        QCOMPARE(window->selectedName(), QStringLiteral("Choir"));
        QCOMPARE(currentName(window->libraryList()), QStringLiteral("Choir"));
        // There is no desktop that would do so.
        window->window->activateWindow();
        window->libraryList()->setFocus();
        type(Qt::Key_Delete);
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->selectedName(), QStringLiteral("Lead"));
        window->window->activateWindow();
        window->contentList()->setFocus();
        type(Qt::Key_Delete);
        QCOMPARE(window->message(), QString());
    }

    void typingFindsNames_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("found");
        QTest::newRow("a letter") << QStringLiteral("b") << QStringLiteral("Bells");
        QTest::newRow("the same letter goes on") << QStringLiteral("bb") << QStringLiteral("Brass");
        QTest::newRow("and around") << QStringLiteral("bbb") << QStringLiteral("Bells");
        QTest::newRow("a beginning") << QStringLiteral("BR") << QStringLiteral("Brass");
        QTest::newRow("nothing begins so") << QStringLiteral("x") << QStringLiteral("Lead");
    }

    void typingFindsNames()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, found);
        const QString names = QStringLiteral("Lead Bells Choir Brass");
        const auto window = WindowFixture::shown(names, names);
        // What is typed slowly is a name of its own.
        QApplication::setKeyboardInputInterval(60'000);
        WindowFixture::click(window->libraryList(), 0);
        QTest::keyClicks(window->libraryList(), typed);
        QCOMPARE(window->selectedName(), found);
        WindowFixture::click(window->contentList(), 0);
        QTest::keyClicks(window->contentList(), typed);
        const QList<qsizetype> rows = window->contentEditor.selectedRows();
        QCOMPARE(rows.size(), 1);
        QCOMPARE(window->content.velgorContentPatchList().at(rows.first()).patch.name, found);
        QCOMPARE(window->slotNames(), names);
        QApplication::setKeyboardInputInterval(400);
    }

    void typingAPlaceFindsTheSlot()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("A B C D E F G"));
        QApplication::setKeyboardInputInterval(60'000);
        WindowFixture::click(window->contentList(), 0);
        QTest::keyClicks(window->contentList(), QStringLiteral("2.3"));
        QApplication::setKeyboardInputInterval(400);
        QCOMPARE(window->contentEditor.selectedRows(), QList<qsizetype>{5});
    }

    void f6GoesFromColumnToColumn()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
        const auto column = [&window] {
            const QWidget *focus = QApplication::focusWidget();
            const LibraryContentMainView &columns = window->window->columns();
            const QList<const QWidget *> all{columns.content(), columns.library(), columns.details()};
            for (int i = 0; i < all.size(); ++i) {
                if (all.at(i)->isAncestorOf(focus)) {
                    return i;
                }
            }
            return -1;
        };
        window->contentList()->setFocus();
        type(Qt::Key_F6);
        QVERIFY(window->libraryList()->hasFocus());
        // There are no details to go to.
        type(Qt::Key_F6);
        QVERIFY(window->contentList()->hasFocus());
        WindowFixture::click(window->libraryList(), 0);
        type(Qt::Key_F6);
        QCOMPARE(column(), 2);
        type(Qt::Key_F6);
        QVERIFY(window->contentList()->hasFocus());
        type(Qt::Key_F6, Qt::ShiftModifier);
        QCOMPARE(column(), 2);
        type(Qt::Key_F6, Qt::ShiftModifier);
        QVERIFY(window->libraryList()->hasFocus());
        type(Qt::Key_F6, Qt::ShiftModifier);
        QVERIFY(window->contentList()->hasFocus());
        field(*window, QStringLiteral("Filter by name"))->setFocus();
        type(Qt::Key_F6);
        QCOMPARE(column(), 2);
    }

    void returnSaysWhatIsMissing()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        WindowFixture::click(window->libraryList(), 0);
        type(Qt::Key_Return);
        QCOMPARE(window->status(), QStringLiteral("Import or make a list first"));
        window->importList(QStringLiteral("A B"));
        window->libraryList()->setFocus();
        type(Qt::Key_Enter);
        QCOMPARE(window->status(), QStringLiteral("Select a slot first, in the list on the left"));
        QVERIFY(window->press(QStringLiteral("Sort")));
        WindowFixture::click(window->contentList(), 1);
        type(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(window->status(), QStringLiteral("Select a patch in the library first"));
        WindowFixture::click(window->libraryList(), 0);
        type(Qt::Key_Return);
        QCOMPARE(window->slotNames(), QStringLiteral("A Bells"));
        // Ticked patches go into slots one after the other, which is another key.
        QVERIFY(window->press(QStringLiteral("Sort")));
        QVERIFY(window->choose(QStringLiteral("Select All")));
        window->contentList()->setFocus();
        type(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(
            window->status(), QStringLiteral("Select one patch in the library first, its tick does not count here"));
        QCOMPARE(window->slotNames(), QStringLiteral("A Bells"));
    }

    void withoutTheFocusOnTheWindowTheFileCommandsDoNothing_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("import") << int(Qt::Key_O);
        QTest::newRow("export") << int(Qt::Key_S);
        QTest::newRow("quit") << int(Qt::Key_Q);
    }

    void withoutTheFocusOnTheWindowTheFileCommandsDoNothing()
    {
        QFETCH(const int, key);
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        QWidget other;
        QLineEdit inOther(&other);
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        inOther.setFocus();
        QTest::keyClick(&inOther, static_cast<Qt::Key>(key), Qt::ControlModifier);
        WindowFixture::settle();
        QCOMPARE(window->dialogs.asked, QStringList());
        QCOMPARE(window->message(), QString());
        QVERIFY(window->window->isVisible());
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
    }

    void behindAMessageTheFileCommandsDoNothing()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), 0);
        type(Qt::Key_Delete, Qt::ControlModifier);
        const QString title = window->message();
        QVERIFY(!title.isEmpty());
        for (const Qt::Key key : {Qt::Key_O, Qt::Key_S, Qt::Key_Q}) {
            type(key, Qt::ControlModifier);
        }
        QCOMPARE(window->dialogs.asked, QStringList());
        QCOMPARE(window->message(), title);
        QVERIFY(window->window->isVisible());
        QVERIFY(window->answer(QStringLiteral("No")));
        QCOMPARE(window->message(), QString());
    }

    void aChangeWhileSortedIsToldInTheStatusLine_data()
    {
        using Change = std::function<void(WindowFixture &)>;
        QTest::addColumn<Change>("change");
        const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
        row("edit", [](WindowFixture &window) {
            WindowFixture::click(window.libraryList(), 0);
            QVERIFY(window.press(QStringLiteral("Solo")));
        });
        row("move", [](WindowFixture &window) {
            WindowFixture::click(window.libraryList(), 0);
            WindowFixture::key(window.libraryList(), Qt::Key_Down, Qt::AltModifier);
        });
        row("keep", [](WindowFixture &window) {
            WindowFixture::click(window.contentList(), 0);
            WindowFixture::key(window.contentList(), Qt::Key_K, Qt::ControlModifier);
        });
        row("duplicate", [](WindowFixture &window) {
            WindowFixture::click(window.libraryList(), 0);
            QVERIFY(window.press(QStringLiteral("Duplicate")));
        });
        row("duplicate several", [](WindowFixture &window) {
            WindowFixture::click(window.libraryList(), 0);
            WindowFixture::click(window.libraryList(), 2, Qt::ControlModifier);
            QCOMPARE(window.library.tickedCount(), 2);
            QVERIFY(window.press(QStringLiteral("Duplicate")));
            QVERIFY(window.status().startsWith(QStringLiteral("2 patches duplicated")));
        });
        row("delete", [](WindowFixture &window) {
            WindowFixture::click(window.libraryList(), 0);
            QVERIFY(window.press(QStringLiteral("Delete")));
            QVERIFY(window.answer(QStringLiteral("Yes")));
        });
    }

    void aChangeWhileSortedIsToldInTheStatusLine()
    {
        using Change = std::function<void(WindowFixture &)>;
        QFETCH(const Change, change);
        const QString said = QStringLiteral("The sorted order is the library's own now");
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("A B"));
        QVERIFY(window->press(QStringLiteral("Sort")));
        QVERIFY(!window->status().contains(said));
        change(*window);
        WindowFixture::settle();
        QVERIFY2(window->status().endsWith(said), qPrintable(window->status()));
        QVERIFY(window->press(QStringLiteral("Sort")));
        QVERIFY2(!window->status().contains(said), qPrintable(window->status()));
    }
};

VELGOR_WIDGET_TEST(TestKeyboardWays)
#include "tst_KeyboardWays.moc"
