#include "CheckedLibrary.h"
#include "LibraryCheckDialog.h"
#include "LibraryCheckList.h"
#include "ShownWidgets.h"
#include "TemporaryFiles.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "ThreadGate.h"
#include "WindowFixture.h"

#include <QApplication>

using namespace CheckedLibrary;
using namespace std::chrono_literals;

class TestLibraryCheckDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSoundLibraryHasNothingToMend()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        const auto before = store.stamps();
        Checked check(store);
        QVERIFY(check.open());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QVERIFY(check.isSaid(QStringLiteral("2 patches in ") + store.path()));
        QVERIFY(check.findings()->accessibleDescription().startsWith(QStringLiteral("Nothing to mend. ")));
        QVERIFY(check.kept()->accessibleDescription().startsWith(QStringLiteral("No former library. ")));
        QVERIFY(!check.button(QStringLiteral("Add Patches"))->isEnabled());
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
        QVERIFY(check.button(QStringLiteral("Close"))->hasFocus());
        QCOMPARE(store.stamps(), before);
    }

    void changesAreWrittenBeforeTheDirectoryIsLookedAt()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        Checked check(store);
        QVERIFY(check.window.open());
        WindowFixture::click(check.window.libraryList(), 0);
        QVERIFY(check.window.choose(QStringLiteral("Duplicate Patch")));
        QVERIFY(check.window.storage.hasUnsavedChanges());
        QVERIFY(check.check());
        QVERIFY(!check.window.storage.hasUnsavedChanges());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QCOMPARE(store.loaded().size(), 3);
    }

    void whatCanBeRescuedIsAdded()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        writePatch(store, QStringLiteral("Stray"), fileOf(QStringLiteral("Stray")));
        writePatch(store, QStringLiteral("Other"), fileOf(QStringLiteral("Other")));
        Checked check(store);
        QVERIFY(check.open());
        QVERIFY(check.isSaid(QStringLiteral("2 findings in the library folder")));
        QCOMPARE(check.rows(check.findings()).first(), QStringLiteral("Unknown files (2, 2 can be added)"));
        QVERIFY(check.findings()->hasFocus());
        QVERIFY2(check.aboutFinding().contains(fileOf(QStringLiteral("Other"))), qPrintable(check.aboutFinding()));
        QTest::keyClick(check.findings(), Qt::Key_Down);
        QVERIFY2(check.aboutFinding().contains(fileOf(QStringLiteral("Stray"))), qPrintable(check.aboutFinding()));

        check.press(QStringLiteral("Add 2 Patches"));
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QVERIFY(check.isSaid(QStringLiteral("2 patches were added to the library.")));
        QVERIFY(!check.button(QStringLiteral("Add Patches"))->isEnabled());
        QVERIFY(check.button(QStringLiteral("Close"))->hasFocus());
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B Other Stray"));
        QCOMPARE(store.loaded().size(), 4);
    }

    void aPatchWhoseFileWasPutBackIsAdded()
    {
        StoreFixture store;
        LibraryState content = contentOf(QStringLiteral("A B C"));
        content.patches[1].comment = QStringLiteral("my words");
        content.defaultPatch = content.patches.at(1).id();
        QVERIFY(!store.save(content).hasError());
        QVERIFY(QFile::remove(store.filePath(fileOf(QStringLiteral("B")))));
        Checked check(store);
        QVERIFY(check.window.open());
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A C"));
        writePatch(store, QStringLiteral("B"), fileOf(QStringLiteral("B")));
        QVERIFY(check.check());
        check.press(QStringLiteral("Add 1 Patch"));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B C"));
        QVERIFY(store.holds(content.patches));
        QCOMPARE(store.load().library->defaultPatch, content.defaultPatch);
    }

    void aFileThatIsNotNeededIsShownAndNoFinding()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        writePatch(store, QStringLiteral("A"), QStringLiteral("lib-x.7.prst"));
        Checked check(store);
        QVERIFY(check.open());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        QCOMPARE(check.rows(check.findings()).first(), QStringLiteral("Files that are not needed (1)"));
        QVERIFY(check.aboutFinding().contains(QStringLiteral("lib-x.7.prst")));
        QVERIFY(!check.button(QStringLiteral("Add Patches"))->isEnabled());
    }

    void defaultOrderAndUnreadableFilesArePreviewed()
    {
        StoreFixture store(contentOf(QStringLiteral("A B C")));
        LibraryState then = contentOf(QStringLiteral("B A Broken"));
        then.defaultPatch = patchOf(QStringLiteral("A")).id();
        store.write(former, LibraryJson::encode(then));
        store.write(fileOf(QStringLiteral("Broken")), "damaged");
        Checked check(store);
        QVERIFY(check.open());
        for (const char *expected :
            {"default patch will be \"A\".", "get their former order.", "files cannot be read (1):\nBroken: "}) {
            QVERIFY2(check.aboutKept().contains(QString::fromLatin1(expected)), qPrintable(check.aboutKept()));
        }
    }

    void aMixedUpFileThatIsRightIsSettledByDuplicating()
    {
        StoreFixture store;
        LibraryState content = contentOf(QStringLiteral("A"));
        content.patches[0].comment = QStringLiteral("my words");
        QVERIFY(!store.save(content).hasError());
        writePatch(store, QStringLiteral("Other"), fileOf(QStringLiteral("A")));
        Checked check(store);
        QVERIFY(check.open());
        QCOMPARE(check.rows(check.findings()).first(), QStringLiteral("Mixed-up files (1)"));
        QVERIFY2(check.aboutFinding().contains(QStringLiteral("duplicate it and delete the original")),
            qPrintable(check.aboutFinding()));
        check.press(QStringLiteral("Close"));
        WindowFixture::click(check.window.libraryList(), 0);
        QVERIFY(check.window.choose(QStringLiteral("Duplicate Patch")));
        WindowFixture::click(check.window.libraryList(), 0);
        QVERIFY(check.window.choose(QStringLiteral("Delete patch")));
        QVERIFY2(check.window.answer(QStringLiteral("Yes")), qPrintable(check.window.messageText()));
        QVERIFY(check.check());
        QVERIFY(check.isSaid(QStringLiteral("Everything in the library folder is as it should be")));
        const QList<VelgorPatch> patches = store.loaded();
        QCOMPARE(patches.size(), 1);
        QCOMPARE(patches.first().comment, QStringLiteral("my words"));
        QCOMPARE(patches.first().soundHash(), patchOf(QStringLiteral("Other")).soundHash());
    }

    void aDamagedLibraryIsPutTogetherFromItsFiles()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        store.write(LibraryFileNames::libraryFile(), "garbled");
        Checked check(store);
        QVERIFY(check.window.open());
        QCOMPARE(check.window.message(), QStringLiteral("Could not access to library directory."));
        QVERIFY(check.window.answer(entry));
        QTRY_VERIFY(check.dialog());
        QVERIFY(check.isExamined());
        QVERIFY(check.rows(check.findings()).contains(QStringLiteral("Library file not readable (1)")));
        check.press(QStringLiteral("Add 2 Patches"));
        QCOMPARE(store.loaded().size(), 2);
        QCOMPARE(check.window.library.count(), 2);
        const QStringList copies = store.datedCopies();
        QCOMPARE(copies.size(), 1);
        QCOMPARE(store.read(copies.first()), QByteArray("garbled"));
        QVERIFY(check.rows(check.kept()).last().endsWith(QStringLiteral("cannot be read")));
        QVERIFY(!check.button(QStringLiteral("Restore"))->isEnabled());
        // The dialog shows the file that was kept.
        QCOMPARE(check.window.message(), QString());
    }

    void anIncompleteLibraryLeadsToTheCheck()
    {
        StoreFixture store(contentOf(QStringLiteral("A B")));
        QVERIFY(QFile::remove(store.filePath(fileOf(QStringLiteral("B")))));
        Checked check(store);
        QVERIFY(check.window.open());
        QCOMPARE(check.window.message(), QStringLiteral("Some patches of the library could not be loaded"));
        QVERIFY(check.window.answer(entry));
        QTRY_VERIFY(check.dialog());
        QVERIFY(check.isExamined());
        QCOMPARE(check.rows(check.findings()),
            (QStringList{QStringLiteral("Patches without a file (1)"), QStringLiteral("B")}));
        QTest::keyClick(check.dialog(), Qt::Key_Escape);
        QTRY_VERIFY(!check.dialog());
        QCOMPARE(check.window.message(), QString());
    }

    void aFormerLibraryIsPreviewedRestoredAndTakenBack()
    {
        StoreFixture store(contentOf(QStringLiteral("A B C")));
        LibraryState then = contentOf(QStringLiteral("A B Gone"));
        then.patches.first().comment = QStringLiteral("former words");
        store.write(former, LibraryJson::encode(then));
        Checked check(store);
        QVERIFY(check.open());
        QCOMPARE(check.rows(check.kept()).first(), QStringLiteral("Library files (1)"));
        for (const char *expected : {"will hold 2 patches", "comment and marks (1):\nA\n", "files stay (1):\nC\n",
                 "files are gone (1):\nGone\n", "takes everything back"}) {
            QVERIFY2(check.aboutKept().contains(QString::fromLatin1(expected)), qPrintable(check.aboutKept()));
        }
        const QString stray = fileOf(QStringLiteral("C"));

        check.press(QStringLiteral("Restore"));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B"));
        QCOMPARE(store.loadedNames(), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
        QCOMPARE(store.loaded().first().comment, QStringLiteral("former words"));
        QVERIFY(store.has(stray));
        QCOMPARE(check.rows(check.kept()).first(), QStringLiteral("Library files (2)"));
        QVERIFY(!check.aboutKept().contains(former));
        QVERIFY2(check.aboutKept().contains(QStringLiteral("Come back (1):\nC\n")), qPrintable(check.aboutKept()));
        // The dialog shows the file that was kept.
        QCOMPARE(check.window.message(), QString());

        check.press(QStringLiteral("Restore"));
        QVERIFY(store.holds(contentOf(QStringLiteral("A B C")).patches));
        QCOMPARE(check.window.libraryRows(), QStringLiteral("A B C"));

        check.press(QStringLiteral("Close"));
        check.window.storage.delayedSave(check.window.library);
        QCOMPARE(check.window.message(), QString());
    }
};

VELGOR_WIDGET_TEST(TestLibraryCheckDialog)
#include "tst_LibraryCheckDialog.moc"
