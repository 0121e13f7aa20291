#include "LibraryJournal.h"
#include "StoreFixture.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

const QString temporary = TemporaryFiles::prefix() + QStringLiteral("x");

/// The library of three patches, as a save was interrupted that was to add the first and had its file prepared.
void interruptAddition(const StoreFixture &store, bool isLibraryFileWritten)
{
    LibraryState before = three();
    before.patches.removeFirst();
    QVERIFY(!store.save(isLibraryFileWritten ? three() : before).hasError());
    if (isLibraryFileWritten) {
        QVERIFY(QFile::rename(store.filePath(leadFile), store.filePath(temporary)));
    } else {
        store.write(temporary, patchBytes(three().patches.first()));
    }
    store.write(journalFile, LibraryJournal{.staged = {{42, temporary}}, .removed = {}}.encode());
}

/// The same for a save that was to remove the first.
void interruptRemoval(const StoreFixture &store, bool isLibraryFileWritten)
{
    QVERIFY(!store.save(three()).hasError());
    if (isLibraryFileWritten) {
        LibraryState after = three();
        after.patches.removeFirst();
        store.write(libraryFile, LibraryJson::encode(after));
    }
    store.write(journalFile, LibraryJournal{.staged = {}, .removed = {42}}.encode());
}

} // namespace

class TestLibrarySweeper : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void interruptedAdditionIsFinished()
    {
        StoreFixture store;
        interruptAddition(store, true);
        QVERIFY(store.load().droppedPatches.isEmpty());
        QVERIFY(store.holds(three().patches));
        store.sweep();
        QVERIFY(store.has(leadFile) && !store.has(temporary));
        QVERIFY(!store.has(journalFile));
        QVERIFY(store.holds(three().patches));
    }

    void additionThatWasNotWrittenLeavesNothing()
    {
        StoreFixture store;
        interruptAddition(store, false);
        store.sweep();
        QCOMPARE(store.files().size(), 3);
        QCOMPARE(store.loadedNames().size(), 2);
    }

    void interruptedAdditionIsFinishedByTheNextSave()
    {
        StoreFixture store;
        interruptAddition(store, true);
        const LibraryLoadResult result = store.load();
        QVERIFY(!store.save({result.library->patches, std::nullopt}, result.writeState).hasError());
        QVERIFY(store.has(leadFile));
        QVERIFY(store.holds(three().patches));
    }

    void fileThatTheJournalNamesComesBeforeOthersOfItsId()
    {
        StoreFixture store;
        interruptAddition(store, true);
        store.write(QStringLiteral("lib-Other.42.prst"), patchBytes(three().patches.last()));
        QVERIFY(store.holds(three().patches));
    }

    void cutFileThatTheJournalNamesIsNotTaken()
    {
        StoreFixture store;
        interruptAddition(store, true);
        store.write(temporary, store.read(temporary).chopped(1).first(100));
        QCOMPARE(store.load().droppedPatches, QStringList{QStringLiteral("Lead")});
    }

    void preparedFileStaysWhereItsPlaceIsTaken()
    {
        StoreFixture store;
        interruptAddition(store, true);
        store.write(leadFile + QStringLiteral("/notes.txt"), "mine");
        store.sweep();
        QVERIFY(store.has(temporary) && store.has(journalFile));
        QVERIFY(store.holds(three().patches));
    }

    void whatAJournalOfAnUnreadableLibraryPreparedBecomesAFile()
    {
        StoreFixture store;
        interruptAddition(store, false);
        store.write(journalFile, LibraryJournal{.staged = {{42, temporary}}, .removed = {44}}.encode());
        store.write(libraryFile, "cut");
        LibraryLoadResult result = store.load();
        QVERIFY(result.readError);
        store.sweep();
        QVERIFY(store.has(temporary) && store.has(journalFile));
        QVERIFY(!store.save({{patch(QStringLiteral("New"), 50)}, std::nullopt}, result.writeState).hasError());
        store.sweep();
        QVERIFY(store.has(leadFile) && store.has(QStringLiteral("lib-Clean.44.prst")));
        QVERIFY(!store.has(temporary) && !store.has(journalFile));
    }

    void interruptedRemovalIsFinished()
    {
        StoreFixture store;
        interruptRemoval(store, true);
        store.sweep();
        QVERIFY(!store.has(leadFile) && !store.has(journalFile));
        QCOMPARE(store.loadedNames().size(), 2);
    }

    void removalThatWasNotWrittenRemovesNothing()
    {
        StoreFixture store;
        interruptRemoval(store, false);
        store.sweep();
        QVERIFY(store.holds(three().patches));
        QVERIFY(!store.has(journalFile));
    }

    void writeTestFileIsSweptAndNoFileOfTheUser()
    {
        StoreFixture store;
        const QString path = LibraryFileNames::writeTestFile(store.path());
        for (const QByteArray &text : {LibraryFileNames::writeTestText(), QByteArray("mine")}) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
            file.close();
            store.sweep();
            QCOMPARE(QFileInfo::exists(path), text == "mine");
        }
    }
};

VELGOR_TEST(TestLibrarySweeper)
#include "tst_LibrarySweeper.moc"
