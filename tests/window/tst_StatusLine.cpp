#include "LibraryViewFilterView.h"
#include "ShownWidgets.h"
#include "StatusLine.h"
#include "StatusText.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QUrl>

#include <memory>

namespace {

const QString disclaimed = QStringLiteral("OK");

void keepAll(const WindowFixture &window)
{
    window.contentList()->selectAll();
    WindowFixture::key(window.contentList(), Qt::Key_K, Qt::ControlModifier);
}

void filterByName(const WindowFixture &window, const QString &text)
{
    window.window->findChild<LibraryViewFilterView *>()->focusName();
    auto *const field = qobject_cast<QLineEdit *>(window.window->focusWidget());
    QVERIFY(field);
    field->selectAll();
    QTest::keyClicks(field, text);
    WindowFixture::settle();
}

} // namespace

/// What the line at the window's lower edge says was done.
class TestStatusLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepingSaysHowManyAreNew()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A Lead B"));
        keepAll(*window);
        QCOMPARE(window->status(), QStringLiteral("2 kept, 1 already there"));
        QCOMPARE(window->libraryStatus(), QStringLiteral("Saving changes"));
        keepAll(*window);
        QCOMPARE(window->status(), QStringLiteral("0 kept, 3 already there"));
    }

    void keepingIntoAnEmptyLibraryCountsAll()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("A B"));
        keepAll(*window);
        QCOMPARE(window->status(), QStringLiteral("2 kept, 0 already there"));
    }

    void theSentenceOfADragLosesItsEndWhereThereIsNoRoom()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A"));
        auto *const line = window->window->findChild<StatusLine *>();
        QVERIFY(line);
        const auto painted = [line](const QString &text) {
            line->setDrop(text);
            WindowFixture::settle();
            return line->grab().toImage();
        };
        const QString room(1000, u'i');
        const QImage picture = painted(QStringLiteral("Replaces 1 slot ") + room + QStringLiteral("first"));
        QCOMPARE(picture, painted(QStringLiteral("Replaces 1 slot ") + room + QStringLiteral("other end")));
        QVERIFY(picture != painted(QStringLiteral("Replaces 2 slots") + room + QStringLiteral("first")));
    }

    void whatWasDeletedIsSaid()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"));
        WindowFixture::click(window->libraryList(), 1);
        QVERIFY(window->choose(QStringLiteral("Delete patch")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" deleted"));
        QVERIFY(window->press(QStringLiteral("Select")));
        QVERIFY(window->choose(QStringLiteral("Select All")));
        QVERIFY(window->choose(QStringLiteral("Delete patches")));
        QVERIFY(window->answer(QStringLiteral("Yes")));
        QCOMPARE(window->status(), QStringLiteral("2 patches deleted"));
    }

    void whatTheFilterHidesIsSaid()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("Leaf Bells Choir"));
        filterByName(*window, QStringLiteral("lea"));
        keepAll(*window);
        QCOMPARE(window->status(), QStringLiteral("3 kept, 0 already there. The filter hides 2 of them"));
        keepAll(*window);
        QCOMPARE(window->status(), QStringLiteral("0 kept, 3 already there. The filter hides 2 of them"));
        filterByName(*window, QStringLiteral("drum"));
        // What was said before is not so any more.
        QVERIFY(!window->status().contains(QStringLiteral("filter")));
    }

    void aHiddenDuplicateIsSaid()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->choose(QStringLiteral("Duplicate Patch")));
        QCOMPARE(window->status(), QStringLiteral("Duplicated as \"Lead-1\""));
        filterByName(*window, QStringLiteral("bells"));
        window->library.setSelection(window->library.patches().first().id());
        window->libraryEditor.duplicateSelected();
        WindowFixture::settle();
        QCOMPARE(window->status(), QStringLiteral("Duplicated as \"Lead-2\". The filter hides it"));
    }

    void anExportSaysWhatWasWrittenWhere()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        window->dialogs.answer = window->parentPath() + QStringLiteral("/gig.prst");
        QVERIFY(window->choose(QStringLiteral("Export...")));
        QVERIFY(window->answer(disclaimed));
        QCOMPARE(window->status(), QStringLiteral("2 slots written to gig.prst"));
        WindowFixture::click(window->libraryList(), 0);
        window->dialogs.answer = window->parentPath() + QStringLiteral("/one.prst");
        QVERIFY(window->choose(QStringLiteral("Export One Patch")));
        QCOMPARE(window->status(), QStringLiteral("\"Lead\" written to one.prst"));
        // A file dialog that was left says nothing.
        window->dialogs.answer.reset();
        QVERIFY(window->choose(QStringLiteral("Export One Patch")));
        QCOMPARE(window->status(), QStringLiteral("\"Lead\" written to one.prst"));
    }

    void movesSayWhereTo()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Choir"), QStringLiteral("A B C D E"));
        WindowFixture::click(window->contentList(), 1);
        WindowFixture::key(window->contentList(), Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(window->status(), QStringLiteral("Slot moved to 1.3"));
        WindowFixture::click(window->contentList(), 3, Qt::ShiftModifier);
        WindowFixture::key(window->contentList(), Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(window->status(), QStringLiteral("2 slots moved, 2.1 to 2.2 now"));
        WindowFixture::click(window->libraryList(), 1);
        WindowFixture::key(window->libraryList(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" is row 1 of 3 now"));
    }

    void whatWasDoneIsSaidUntilSomethingElseIsDone()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
        QCOMPARE(window->status(), QStringLiteral("2 slots read from list.prst"));
        QCOMPARE(window->libraryStatus(), QStringLiteral("All changes saved"));
        WindowFixture::click(window->libraryList(), 0);
        QCOMPARE(window->status(), QStringLiteral("2 slots read from list.prst"));
        QVERIFY(window->press(QStringLiteral("Solo")));
        QCOMPARE(window->status(), QStringLiteral("Saving changes"));
    }

    void placingSaysWhatTheFilterHides()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Leaf"), QStringLiteral("A B C D"));
        QVERIFY(window->choose(QStringLiteral("Select All")));
        filterByName(*window, QStringLiteral("lea"));
        WindowFixture::click(window->contentList(), 1);
        WindowFixture::key(window->contentList(), Qt::Key_Return);
        QCOMPARE(window->slotNames(), QStringLiteral("A Lead Bells Leaf"));
        QCOMPARE(window->status(), QStringLiteral("3 patches placed in slots 1.2 to 2.1. The filter hides 1 of them"));
    }

    void replacingSlotsIsSaid()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B C D"));
        WindowFixture::click(window->libraryList(), 1);
        WindowFixture::click(window->contentList(), 1);
        WindowFixture::key(window->contentList(), Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" placed in slot 1.2"));
        WindowFixture::click(window->contentList(), 3, Qt::ControlModifier);
        WindowFixture::key(window->contentList(), Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(window->slotNames(), QStringLiteral("A Bells C Bells"));
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" placed in 2 slots"));
    }

    void classifyingSaysHowManyAndWhatTheFilterHides()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells Leaf"));
        WindowFixture::click(window->libraryList(), 1);
        WindowFixture::key(window->libraryList(), Qt::Key_5, Qt::ControlModifier);
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" is marked as Clean now"));
        QVERIFY(window->choose(QStringLiteral("Select All")));
        filterByName(*window, QStringLiteral("lea"));
        WindowFixture::key(window->libraryList(), Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(window->status(), QStringLiteral("3 patches are marked as Guitar now. The filter hides 1 of them"));
        WindowFixture::key(window->libraryList(), Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(window->status(),
            QStringLiteral("3 patches are not marked as Guitar any more. The filter hides 1 of them"));
    }

    void aSelectedPatchThatLeftTheFilterIsSaidToBeMeant()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Leaf"), QStringLiteral("A B"));
        filterByName(*window, QStringLiteral("lea"));
        WindowFixture::click(window->libraryList(), 0);
        QTest::keyClick(window->libraryList(), Qt::Key_F2);
        QTest::keyClicks(window->window->focusWidget(), QStringLiteral("Bells"));
        QTest::keyClick(window->window->focusWidget(), Qt::Key_Tab);
        WindowFixture::settle();
        QCOMPARE(window->libraryRows(), QStringLiteral("Leaf"));
        QCOMPARE(window->selectedName(), QStringLiteral("Bells"));
        WindowFixture::key(window->libraryList(), Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(window->status(), QStringLiteral("Duplicated as \"Bells-1\". The filter hides it"));
        WindowFixture::key(window->libraryList(), Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" is marked as Guitar now. The filter hides it"));
        WindowFixture::click(window->contentList(), 0);
        WindowFixture::key(window->contentList(), Qt::Key_Return);
        QCOMPARE(window->status(), QStringLiteral("\"Bells\" placed in slot 1.1. The filter hides it"));
        WindowFixture::key(window->libraryList(), Qt::Key_Delete);
        QCOMPARE(window->message(), QStringLiteral("Do you really want to delete 1 patch?"));
        QVERIFY(window->messageText().contains(QStringLiteral("\"Bells\"")));
        QVERIFY(window->messageText().contains(QStringLiteral("The filter hides it.")));
        QVERIFY(window->answer(QStringLiteral("No")));
    }

    void foldersAreToldApartByTheirEnds()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        const auto picture = [&window](const QString &folder) {
            window->window->statusLine().say(
                StatusText::ofLibraryMove(QStringLiteral("/library/%1/%2").arg(QString(400, u'w'), folder)));
            ShownWidgets::catchUp();
            return window->window->statusLine().grab().toImage();
        };
        const QImage first = picture(QStringLiteral("first"));
        QVERIFY(first != picture(QStringLiteral("other")));
        QCOMPARE(picture(QStringLiteral("first")), first);
    }

    void theLineNeverMakesTheWindowBroader()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        const int least = window->window->minimumSizeHint().width();
        window->window->statusLine().say(QString(2'000, u'w'));
        QCOMPARE(window->window->minimumSizeHint().width(), least);
    }

    void anUnknownBrowserIsSaid()
    {
        // The platform of the tests opens no pages.
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        QVERIFY(window->choose(QStringLiteral("Online help")));
        QCOMPARE(window->message(), QStringLiteral("Could not show the page"));
        QVERIFY(window->messageText().contains(QStringLiteral("https://velgorlibrary.example/help")));
        QVERIFY(window->answer(QStringLiteral("OK")));
    }
};

VELGOR_WIDGET_TEST(TestStatusLine)
#include "tst_StatusLine.moc"
