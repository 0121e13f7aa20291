#include "LibraryViewFilterView.h"
#include "StatusLine.h"
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

    void whatTheFilterHidesIsSaid()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("Leaf Bells Choir"));
        filterByName(*window, QStringLiteral("lea"));
        keepAll(*window);
        QCOMPARE(window->status(), QStringLiteral("3 kept, 0 already there. The filter hides 2 of them"));
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
        window->dialogs.answer = window->ownDirectory->parentPath() + QStringLiteral("/gig.prst");
        QVERIFY(window->choose(QStringLiteral("Export...")));
        QVERIFY(window->answer(disclaimed));
        QCOMPARE(window->status(), QStringLiteral("2 slots written to gig.prst"));
        WindowFixture::click(window->libraryList(), 0);
        window->dialogs.answer = window->ownDirectory->parentPath() + QStringLiteral("/one.prst");
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
        QVERIFY(window->choose(QStringLiteral("Guitar")));
        QCOMPARE(window->status(), QStringLiteral("Saving changes"));
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
