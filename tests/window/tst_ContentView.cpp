#include "LookTokens.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>

using namespace ShownWidgets;

namespace {

const QString unexported = QStringLiteral("The list has changes that were not exported");

const QString notSaved = QStringLiteral("Could not save one or more library files");

/// A file in the place of the library directory, so that nothing can be written there.
void blockDirectory(const LibraryDirectory &directory)
{
    QDir(directory.path()).removeRecursively();
    QFile file(directory.path());
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("cannot block the directory");
    }
}

void unblockDirectory(const LibraryDirectory &directory)
{
    QFile::remove(directory.path());
    QDir().mkpath(directory.path());
}

/// Puts the first library patch into the first slot.
void changeList(WindowFixture &window)
{
    WindowFixture::click(window.contentList(), 0);
    WindowFixture::click(window.libraryList(), 0);
    WindowFixture::key(window.libraryList(), Qt::Key_Return);
}

} // namespace

class TestContentView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTitleNamesTheFileAndMarksChanges()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        QCOMPARE(window->window->windowTitle(), QStringLiteral("velgor"));
        QVERIFY(!window->window->isWindowModified());
        window->importList(QStringLiteral("A B"));
        QCOMPARE(window->window->windowTitle(), QStringLiteral("list.prst[*] - velgor"));
        QVERIFY(!window->window->isWindowModified());
        changeList(*window);
        QVERIFY(window->window->isWindowModified());
        window->dialogs.answer = window->parentPath() + QStringLiteral("/out.prst");
        QVERIFY(window->press(QStringLiteral("Export")));
        QVERIFY(window->answer(QStringLiteral("OK")));
        QCOMPARE(window->window->windowTitle(), QStringLiteral("out.prst[*] - velgor"));
        QVERIFY(!window->window->isWindowModified());
        const QString rightToLeft = QStringLiteral("\u05d0\u05d1.prst");
        window->window->importFile(window->presetFile(rightToLeft, QStringLiteral("C D")));
        WindowFixture::settle();
        QCOMPARE(window->window->windowTitle(), QStringLiteral("\u2068%1\u2069[*] - velgor").arg(rightToLeft));
        QVERIFY(window->press(QStringLiteral("Default")));
        QVERIFY(window->press(QStringLiteral("Reset")));
        QCOMPARE(window->window->windowTitle(), QStringLiteral("New list[*] - velgor"));
        QVERIFY(window->window->isWindowModified());
    }

    void theTailBitIsChosenInTheMenuAndModifiesTheList()
    {
        const auto window = WindowFixture::shown({}, QStringLiteral("A B"));
        QVERIFY(window->menuEntry(QStringLiteral("Normal tail bit"))->isChecked());
        QVERIFY(window->choose(QStringLiteral("Inverted tail bit")));
        QVERIFY(window->content.inverseTailBit() && window->window->isWindowModified());
        QVERIFY(!window->menuEntry(QStringLiteral("Normal tail bit"))->isChecked());
        QVERIFY(window->choose(QStringLiteral("Normal tail bit")));
        QVERIFY(!window->window->isWindowModified());
    }

    void closingAsksAboutAListThatWasNotExported_data()
    {
        QTest::addColumn<bool>("byShortcut");
        QTest::newRow("by the window manager") << false;
        QTest::newRow("by shortcut") << true;
    }

    void closingAsksAboutAListThatWasNotExported()
    {
        QFETCH(const bool, byShortcut);
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        const auto close = [&] {
            if (byShortcut) {
                // There is no desktop that would do so after a message.
                window->window->activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(window->window.get()));
                WindowFixture::key(window->libraryList(), Qt::Key_Q, Qt::ControlModifier);
            } else {
                window->window->close();
            }
        };
        changeList(*window);
        close();
        QCOMPARE(window->message(), unexported);
        QVERIFY(window->answer(QStringLiteral("Cancel")));
        QVERIFY(window->window->isVisible());
        QCOMPARE(window->slotNames(), QStringLiteral("Lead B"));
        close();
        QCOMPARE(window->message(), unexported);
        QVERIFY(window->answer(QStringLiteral("Close without Exporting")));
        QVERIFY(!window->window->isVisible());
    }

    void closingAListThatWasExportedOrOnlyImportedAsksNothing_data()
    {
        QTest::addColumn<bool>("isExported");
        QTest::newRow("imported") << false;
        QTest::newRow("exported") << true;
    }

    void closingAListThatWasExportedOrOnlyImportedAsksNothing()
    {
        QFETCH(const bool, isExported);
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        if (isExported) {
            changeList(*window);
            window->dialogs.answer = window->parentPath() + QStringLiteral("/out.prst");
            QVERIFY(window->press(QStringLiteral("Export")));
            QVERIFY(window->answer(QStringLiteral("OK")));
        }
        QVERIFY(window->window->close());
        QCOMPARE(window->message(), QString());
    }

    void closingSavesWhatIsNotOnDiskYet_data()
    {
        QTest::addColumn<bool>("isAsked");
        QTest::newRow("at once") << false;
        QTest::newRow("after the question about the list") << true;
    }

    void closingSavesWhatIsNotOnDiskYet()
    {
        QFETCH(const bool, isAsked);
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), 1);
        auto *name = named<QLineEdit>(*window->window, QStringLiteral("Name"));
        name->selectAll();
        QTest::keyClicks(name, QStringLiteral("Chimes"));
        QCOMPARE(window->loadedNames().join(u' '), QStringLiteral("Lead Bells"));
        if (isAsked) {
            changeList(*window);
            QVERIFY(!window->window->close());
            QVERIFY(window->answer(QStringLiteral("Close without Exporting")));
        } else {
            QVERIFY(window->window->close());
        }
        QVERIFY(!window->window->isVisible());
        QVERIFY(!window->storage.hasUnsavedChanges());
        QCOMPARE(window->loadedNames().join(u' '), QStringLiteral("Lead Chimes"));
    }

    void closingTellsWhatItKeptOfAnotherProgram()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"));
        window->write(
            LibraryFileNames::libraryFile(), LibraryJson::encode(TestLibraries::one(QStringLiteral("Other"))));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->choose(QStringLiteral("Duplicate Patch")));
        QVERIFY(!window->window->close());
        QCOMPARE(window->message(), QStringLiteral("The former files of the library are kept"));
        QVERIFY(window->messageText().contains(window->datedCopies().value(0)));
        QVERIFY(window->answer(QStringLiteral("Not Now")));
        QVERIFY(!window->window->isVisible());
    }

    void closingUnaskedSavesAllTheSame()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        changeList(*window);
        QVERIFY(window->choose(QStringLiteral("Duplicate Patch")));
        window->window->closeUnasked();
        QVERIFY(!window->window->isVisible());
        QVERIFY(window->storage.saveUnsaved());
        QCOMPARE(window->loaded().size(), 2);
    }

    void aLibraryThatCannotBeSavedKeepsTheWindowOpen()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->choose(QStringLiteral("Duplicate Patch")));
        blockDirectory(*window);
        QVERIFY(!window->window->close());
        QCOMPARE(window->message(), notSaved);
        QVERIFY(!window->messageText().isEmpty());
        QVERIFY(window->answer(QStringLiteral("Cancel")));
        while (!window->message().isEmpty()) {
            QVERIFY(window->answer(QStringLiteral("OK")));
        }
        QVERIFY(window->window->isVisible());
        QCOMPARE(window->libraryStatus(), QStringLiteral("Changes not saved"));
        unblockDirectory(*window);
        QVERIFY(window->window->close());
        QCOMPARE(window->loaded().size(), 2);
    }

    void theWindowCanBeClosedWithoutSaving()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->choose(QStringLiteral("Duplicate Patch")));
        blockDirectory(*window);
        QVERIFY(!window->window->close());
        QVERIFY(window->answer(QStringLiteral("Close without Saving")));
        QVERIFY(!window->window->isVisible());
    }

    void aSaveThatFailsIsToldAndOver()
    {
        StoreFixture store(TestLibraries::three());
        WindowFixture window(store, std::chrono::milliseconds(20));
        QVERIFY(window.open());
        WindowFixture::click(window.libraryList(), 0);
        blockDirectory(store);
        QVERIFY(window.choose(QStringLiteral("Duplicate Patch")));
        QTRY_COMPARE(window.message(), notSaved);
        QVERIFY(window.answer(QStringLiteral("Not Now")));
        QCOMPARE(window.message(), QString());
        QVERIFY(!window.storage.writeError());
        QCOMPARE(window.library.count(), 4);
        unblockDirectory(store);
        QVERIFY(window.choose(QStringLiteral("Duplicate Patch")));
        QTRY_COMPARE(window.libraryStatus(), QStringLiteral("All changes saved"));
        QCOMPARE(store.loaded().size(), 5);
    }

    void theWindowComesBackAsItWas()
    {
        const LibraryDirectory directory;
        QSize size;
        {
            WindowFixture window(directory);
            QVERIFY(window.open());
            size = window.window->minimumSize() + QSize(30, 40);
            window.window->resize(size);
            WindowFixture::settle();
            QVERIFY(window.window->close());
        }
        WindowFixture window(directory);
        QVERIFY(window.open());
        QCOMPARE(window.window->size(), size);
    }

    void aFileFromOutsideIsImportedAndToldWhenItCannotBe()
    {
        const auto window = WindowFixture::shown({});
        window->importList(QStringLiteral("A B"));
        QCOMPARE(window->slotNames(), QStringLiteral("A B"));
        window->window->importFile(window->filePath(QStringLiteral("none.prst")));
        QCOMPARE(window->message(), QStringLiteral("Could not import file"));
    }

    void aNewListFromOutsideAsksAboutChanges()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Default")));
        changeList(*window);
        window->window->startNewList();
        QCOMPARE(window->message(), unexported);
        QVERIFY(window->answer(QStringLiteral("Cancel")));
        QCOMPARE(window->slotNames(), QStringLiteral("Lead B"));
        window->window->startNewList();
        QVERIFY(window->answer(QStringLiteral("New List")));
        QCOMPARE(window->content.velgorContentPatchList().size(), VelgorContent::newListSize);
    }

    void aNewListFromOutsideReplacesAnUnchangedOne()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("A B"));
        WindowFixture::click(window->libraryList(), 0);
        QVERIFY(window->press(QStringLiteral("Default")));
        window->window->startNewList();
        QCOMPARE(window->message(), QString());
        QCOMPARE(window->content.velgorContentPatchList().size(), VelgorContent::newListSize);
    }

    void theLibraryFolderIsShown()
    {
        const auto window = WindowFixture::shown({});
        QUrl shown;
        window->storage.setShowDirectory([&shown](const QUrl &directory) { shown = directory; });
        QVERIFY(window->choose(QStringLiteral("Show library folder")));
        QCOMPARE(shown.toLocalFile(), window->path());
    }
};

VELGOR_WIDGET_TEST(TestContentView)
#include "tst_ContentView.moc"
