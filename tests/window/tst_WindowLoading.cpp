#include "LibraryContentMainView.h"
#include "LoadingView.h"
#include "OrdinaryUser.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "VelgorLibraryView.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QProgressBar>
#include <QSignalSpy>

#include <utility>

using namespace ShownWidgets;

namespace {

void copySample(const QString &name, const LibraryDirectory &directory)
{
    const QDir sample(QStringLiteral(VELGOR_TEST_DATA "/libraries/") + name);
    const QStringList files = sample.entryList(QDir::Files);
    for (const QString &file : files) {
        QFile::copy(sample.filePath(file), directory.filePath(file));
    }
}

const QString emptyText = QStringLiteral("Empty library. Import a preset file (.prst) into the left section of the "
                                         "window, then drag patches into the library in the center of the window.");

} // namespace

class TestWindowLoading : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFirstStartMakesTheDirectoryAndSaysThatTheLibraryIsEmpty()
    {
        const LibraryDirectory directory;
        QVERIFY(QDir(directory.path()).removeRecursively());
        WindowFixture window(directory);
        QVERIFY(window.open());
        QVERIFY(QDir(directory.path()).exists());
        QVERIFY(window.isSaid(QStringLiteral("Showing: 0 element out of 0")));
        QVERIFY(window.isSaid(emptyText));
        QCOMPARE(window.library.count(), 0);
        QCOMPARE(window.message(), QString());
        QVERIFY(window.status().startsWith(QStringLiteral("Library folder: ")));
    }

    void aStoredLibraryIsShownAsSoonAsTheWindowOpens()
    {
        StoreFixture store(TestLibraries::three());
        WindowFixture window(store);
        QVERIFY(window.open());
        QCOMPARE(window.libraryRows(), QStringLiteral("Lead A/B, user IR Clean"));
        QCOMPARE(window.library.defaultPatch(), std::optional<quint64>(43));
        QVERIFY(window.isSaid(QStringLiteral("Showing: 3 elements out of 3")));
        QVERIFY(window.isSaid(QStringLiteral("Select item in library to see details")));
        QCOMPARE(window.message(), QString());
        QCOMPARE(window.status(), QStringLiteral("All changes saved"));
        QVERIFY(window.calls.calls.isEmpty());
    }

    void aPatchFromElsewhereInAPatchFileIsTold()
    {
        StoreFixture store;
        const VelgorPatch lead = TestLibraries::imported(QStringLiteral("Lead"), 1);
        const VelgorPatch other = TestLibraries::imported(QStringLiteral("Other"), 2);
        QVERIFY(!store.save({{lead}, std::nullopt}).hasError());
        store.write(LibraryFileNames::patchFile(lead.name, lead.id()), TestLibraries::patchBytes(other));
        WindowFixture window(store);
        QVERIFY(window.open());
        QCOMPARE(window.libraryRows(), QStringLiteral("Lead"));
        QCOMPARE(window.status(),
            QStringLiteral(
                "The file of a patch may hold another one than the library says; \"Check Library...\" names it"));
    }

    void aPatchThatCannotBeReadNowLosesNothingToOneWithItsId()
    {
        StoreFixture store;
        const VelgorPatch first = TestLibraries::imported(QStringLiteral("Preset 01"), 1);
        QVERIFY(!store.save({{first}, std::nullopt}).hasError());
        const QString file = store.filePath(LibraryFileNames::patchFile(first.name, first.id()));
        const QString elsewhere = store.parentPath() + QStringLiteral("/elsewhere.prst");
        QVERIFY(QFile::rename(file, elsewhere) && QFile::link(elsewhere, file));
        {
            WindowFixture window(store);
            QVERIFY(window.open());
            QCOMPARE(window.message(), QStringLiteral("Some patches of the library could not be loaded"));
            const VelgorPatch second = TestLibraries::imported(QStringLiteral("Preset 02"), 1);
            QCOMPARE(second.id(), first.id());
            window.library.append(second, false, false);
            window.storage.save(window.library);
            QVERIFY(!window.storage.writeError());
        }
        QVERIFY(QFile::remove(file) && QFile::rename(elsewhere, file));
        const QList<VelgorPatch> now = store.loaded();
        QCOMPARE(TestPatches::names(now), (QStringList{QStringLiteral("Preset 01"), QStringLiteral("Preset 02")}));
        QVERIFY(TestPatches::isIdentical(now.first(), first));
    }

    void loadingTakesNoInputInTheLibraryAndLeavesTheListUsable()
    {
        StoreFixture store(TestLibraries::three());
        WindowFixture window(store);
        const QSignalSpy loaded(window.window.get(), &ContentView::libraryLoaded);
        window.window->show();
        QVERIFY(window.storage.isLoading());
        QCOMPARE(window.status(), QStringLiteral("Loading the library"));
        for (const char *label :
            {"Sort", "Select", "Delete", "Duplicate", "Reset", "Filter: Guitar", "Filter: User IR"}) {
            const auto *button = named<QAbstractButton>(*window.window, QLatin1String(label));
            QVERIFY2(button != nullptr && !button->isEnabled(), label);
        }
        QVERIFY(!named<QLineEdit>(*window.window, QStringLiteral("Filter by name"))->isEnabled());
        QVERIFY(!window.libraryList()->isVisible() && !window.libraryList()->isEnabled());
        for (const char *entry : {"New Velgor file", "Set as Default Patch", "Select All", "Delete patch"}) {
            QVERIFY2(!window.menuEntry(QLatin1String(entry))->isEnabled(), entry);
        }
        QVERIFY(window.isEnabled(QStringLiteral("Import")));
        QVERIFY(window.contentList()->isEnabled());
        QVERIFY(!window.isSaid(emptyText));
        QVERIFY(QTest::qWaitFor([&loaded] { return loaded.count() == 1; }));
        QVERIFY(window.isEnabled(QStringLiteral("Sort")));
        QVERIFY(window.libraryList()->isVisible() && window.libraryList()->isEnabled());
        QVERIFY(named<QLineEdit>(*window.window, QStringLiteral("Filter by name"))->isEnabled());
    }

    void slotsCannotBeKeptWhileTheLibraryIsBeingLoaded()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"), QStringLiteral("Bells"));
        window->window->columns().setLoading(true);
        WindowFixture::click(window->contentList(), 0);
        QVERIFY(!window->menuEntry(QStringLiteral("Keep Selected Slots in Library"))->isEnabled());
        WindowFixture::key(window->contentList(), Qt::Key_K, Qt::ControlModifier);
        window->window->columns().setLoading(false);
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead"));
        WindowFixture::key(window->contentList(), Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(window->libraryRows(), QStringLiteral("Lead Bells"));
    }

    void aFileCanBeImportedMeanwhile()
    {
        StoreFixture store(TestLibraries::three());
        WindowFixture window(store);
        const QSignalSpy loaded(window.window.get(), &ContentView::libraryLoaded);
        window.window->show();
        window.window->importFile(window.presetFile(QStringLiteral("a.prst"), QStringLiteral("Bells Choir")));
        QVERIFY(window.storage.isLoading());
        QVERIFY(QTest::qWaitFor([&loaded] { return loaded.count() == 1; }));
        QCOMPARE(window.slotNames(), QStringLiteral("Bells Choir"));
        QCOMPARE(window.library.count(), 3);
    }

    void aLongLoadSaysHowFarItIs()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        const auto *bar = window->window->findChild<LoadingView *>()->findChild<QProgressBar *>();
        window->window->columns().setLoading(true);
        Q_EMIT window->storage.loadProgress(812, 1248);
        QVERIFY(!bar->isVisible());
        QVERIFY(QTest::qWaitFor([bar] { return bar->isVisible(); }));
        QCOMPARE(std::pair(bar->value(), bar->maximum()), std::pair(812, 1248));
        QVERIFY(window->isSaid(QStringLiteral("812 of 1248 patches")));
        QVERIFY(window->isSaid(QStringLiteral("The patches appear once all of them have been read and checked")));
        window->window->columns().setLoading(false);
        QVERIFY(!bar->isVisible());
        QVERIFY(!window->isSaid(QStringLiteral("812 of 1248 patches")));
    }

    void whatCannotBeLoadedIsTold_data()
    {
        QTest::addColumn<QString>("sample");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("mentioned");
        const QString placeholder = VelgorLibrary().patches().first().name;
        QTest::newRow("nothing wrong") << "ok" << QStringLiteral("Lead A/B, user IR Größe") << QString() << QString();
        QTest::newRow("no patches") << "empty_list" << placeholder << QString() << QString();
        QTest::newRow("unreadable") << "garbled_json" << placeholder << "Could not access to library directory."
                                    << "velgorlibrary.json";
        QTest::newRow("incomplete") << "one_missing_file" << QStringLiteral("Lead Größe")
                                    << "Some patches of the library could not be loaded"
                                    << "A/B";
    }

    void whatCannotBeLoadedIsTold()
    {
        QFETCH(const QString, sample);
        QFETCH(const QString, message);
        QFETCH(const QString, mentioned);
        const LibraryDirectory directory;
        copySample(sample, directory);
        const auto before = directory.contents();
        WindowFixture window(directory);
        QVERIFY(window.open());
        QTEST(window.libraryRows(), "rows");
        QCOMPARE(window.message(), message);
        QVERIFY2(window.messageText().contains(mentioned), qPrintable(window.messageText()));
        QCOMPARE(window.answer(QStringLiteral("Not Now")), !message.isEmpty());
        QCOMPARE(window.message(), QString());
        QVERIFY(!window.storage.readError());
        QCOMPARE(directory.contents(), before);
    }

    void showingTheWindowAgainKeepsWhatIsNotSaved()
    {
        StoreFixture store(TestLibraries::three());
        WindowFixture window(store);
        QVERIFY(window.open());
        WindowFixture::click(window.libraryList(), 0);
        QVERIFY(window.choose(QStringLiteral("Duplicate Patch")));
        QVERIFY(window.storage.hasUnsavedChanges());
        window.window->hide();
        window.window->show();
        QVERIFY(!window.storage.isLoading());
        QCOMPARE(window.library.count(), 4);
        QVERIFY(window.storage.saveUnsaved());
        window.window->hide();
        store.save(TestLibraries::one(QStringLiteral("Other")));
        QVERIFY(window.open());
        QCOMPARE(window.libraryRows(), QStringLiteral("Other"));
    }

    void aFileInThePlaceOfTheDirectoryIsOneMessage()
    {
        const LibraryDirectory directory;
        QDir().rmdir(directory.path());
        QFile file(directory.path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
        file.close();
        WindowFixture window(directory);
        QVERIFY(window.open());
        QVERIFY(!window.message().isEmpty());
        QVERIFY2(window.messageText().contains(directory.path()), qPrintable(window.messageText()));
        QVERIFY2(window.messageText().contains(QStringLiteral("nothing can be saved there")),
            qPrintable(window.messageText()));
        QVERIFY(window.answer(QStringLiteral("Not Now")));
        QCOMPARE(window.message(), QString());
        QVERIFY(!window.storage.writeError());
        QVERIFY(!window.storage.readError());
    }

    void aDirectoryWithoutRightsIsOneMessage()
    {
        StoreFixture store(TestLibraries::three());
        WindowFixture window(store);
        {
            const OrdinaryUser user(store, 0);
            QVERIFY(window.open());
            QVERIFY(!window.message().isEmpty());
            QVERIFY2(window.messageText().contains(store.path()), qPrintable(window.messageText()));
            QVERIFY(window.answer(QStringLiteral("OK")) || window.answer(QStringLiteral("Not Now")));
            QCOMPARE(window.message(), QString());
        }
        QVERIFY(!window.storage.writeError());
        QVERIFY(!window.storage.readError());
        QCOMPARE(store.loaded().size(), 3);
    }
};

VELGOR_WIDGET_TEST(TestWindowLoading)
#include "tst_WindowLoading.moc"
