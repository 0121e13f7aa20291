#include "Alerts.h"
#include "CommentEdit.h"
#include "LibraryCheckDialog.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QApplication>

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds soon = 20ms;
const QString saved = QStringLiteral("All changes saved");
const QString notSaved = QStringLiteral("Could not save one or more library files");
const QString notInOrder = QStringLiteral("The library is saved, but not every file in its folder is in order");

void typeIntoComment(const WindowFixture &window)
{
    auto *const comment = window.window->findChild<CommentEdit *>();
    QVERIFY(comment);
    QTest::keyClick(comment, Qt::Key_X);
}

} // namespace

/// What a user reads when a save could not do everything.
class TestSaveMessages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aMessageLeadsToTheMoveOfTheLibrary()
    {
        const auto window = WindowFixture::shown(QStringLiteral("Lead"));
        int moves = 0;
        window->desk.moveLibrary = [&moves] { ++moves; };
        Q_EMIT window->window->alerts().libraryMoveWanted();
        QCOMPARE(moves, 1);
    }

    void aFileThatIsNotTheLibrarysIsNamedAndTheLibraryIsSaidToBeSaved()
    {
        StoreFixture store;
        const LibraryState stored = TestLibraries::one(QStringLiteral("Lead"));
        store.save(stored);
        const QString extra = QStringLiteral("Backup of Lead.42.prst");
        store.write(extra, TestLibraries::patchBytes(stored.patches.first()));
        WindowFixture window(store, soon);
        QVERIFY(window.open());
        QCOMPARE(window.message(), QString());
        WindowFixture::click(window.libraryList(), 0);
        typeIntoComment(window);
        QTRY_COMPARE(window.message(), notInOrder);
        QVERIFY(window.messageText().startsWith(store.filePath(extra) + QStringLiteral(": ")));
        QVERIFY(window.messageText().contains(QStringLiteral("Every patch is saved.")));
        QCOMPARE(window.libraryStatus(), saved);
        QVERIFY(window.storage.writeError());
        QCOMPARE(store.loaded().first().comment, QStringLiteral("x"));
        QVERIFY(window.answer(QStringLiteral("Check Library...")));
        QVERIFY(!window.storage.writeError());
        auto *const dialog = window.window->findChild<LibraryCheckDialog *>();
        QVERIFY(dialog && dialog->isVisible());
        dialog->close();
        WindowFixture::settle();

        // It is told of once.
        typeIntoComment(window);
        QTRY_COMPARE(store.loaded().first().comment.size(), 2);
        QTRY_COMPARE(window.libraryStatus(), saved);
        QCOMPARE(window.message(), QString());
        QVERIFY(store.has(extra));
    }

    void aFailedSaveIsNotSaidToBeDoneWhereTheFolderCannotBeListed()
    {
        const LibraryDirectory directory(QStringLiteral("my library"));
        WindowFixture window(directory);
        QVERIFY(window.open());
        window.library.append(WindowFixture::patch(QStringLiteral("Lead")), false, false);
        QDir(directory.path()).removeRecursively();
        QFile block(directory.path());
        QVERIFY(block.open(QIODevice::WriteOnly));
        window.libraryEditor.changed();
        QVERIFY(!window.storage.saveUnsaved());
        QCOMPARE(window.message(), notSaved);
        QVERIFY2(
            window.messageText().endsWith(QStringLiteral("once the cause is gone.")), qPrintable(window.messageText()));
        QVERIFY(!window.messageText().contains(QStringLiteral("Patches are saved")));
        QVERIFY(window.answer(QStringLiteral("Not Now")));
        block.close();
        QVERIFY(block.remove() && QDir().mkpath(directory.path()));

        // Saved, and only what needs the list of files is left out.
        QVERIFY(window.storage.saveUnsaved());
        QCOMPARE(window.message(), notSaved);
        QVERIFY(window.messageText().contains(QStringLiteral("Patches are saved there")));
        QVERIFY(window.answer(QStringLiteral("Not Now")));
    }
};

VELGOR_WIDGET_TEST(TestSaveMessages)
#include "tst_SaveMessages.moc"
