#include "LibraryLock.h"
#include "StoreFixture.h"
#include "TestProgram.h"
#include "UserFiles.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

/// Nothing of the user's is lost when files of a library directory are damaged, missing or not what they seem.
class TestLibraryRescue : public QObject {
    Q_OBJECT

    const QString m_libraryFile = libraryFile;
    const QString m_copy = libraryCopy;
    const QString m_leadFile = QStringLiteral("lib-Lead.42.prst");

    /// Loads, lets `change` work on the patches, and saves, as one run of a program does.
    template <typename Change>
    static LibraryWriteResult run(const StoreFixture &store, Change change)
    {
        const LibraryLoadResult result = store.load();
        LibraryState content{result.library ? result.library->patches : QList<VelgorPatch>(), std::nullopt};
        change(content.patches);
        return store.save(content, result.writeState);
    }

    static void nothing(const QList<VelgorPatch> &) { }

private Q_SLOTS:
    void copyOfAMissingLibraryFileIsKeptWhenAPatchWasDropped()
    {
        StoreFixture store(three());
        const QByteArray old = store.read(m_libraryFile);
        QFile::rename(store.filePath(m_libraryFile), store.filePath(m_copy));
        QFile::remove(store.filePath(m_leadFile));
        const LibraryWriteResult result = run(store, nothing);
        QVERIFY(!result.hasError());
        QCOMPARE(store.datedCopies().size(), 1);
        QCOMPARE(store.read(store.datedCopies().first()), old);
        QVERIFY(!run(store, nothing).hasError());
    }

    void damagedLibraryFileAndItsCopyAreBothKeptWhenAPatchWasDropped_data()
    {
        QTest::addColumn<QByteArray>("damaged");
        QTest::addColumn<int>("keptCount");
        QTest::newRow("cut") << LibraryJson::encode(three()).first(300) << 1;
        QTest::newRow("something else") << QByteArray("{garbled") << 2;
    }
    void damagedLibraryFileAndItsCopyAreBothKeptWhenAPatchWasDropped()
    {
        QFETCH(const QByteArray, damaged);
        QFETCH(const int, keptCount);
        StoreFixture store(three());
        const QByteArray old = store.read(m_libraryFile);
        store.write(m_copy, old);
        store.write(m_libraryFile, damaged);
        QFile::remove(store.filePath(m_leadFile));
        QVERIFY(!run(store, nothing).hasError());
        QByteArrayList kept;
        for (const QString &name : store.datedCopies()) {
            kept.append(store.read(name));
        }
        // A part of the copy holds nothing that the copy does not.
        QCOMPARE(kept.size(), keptCount);
        QVERIFY(kept.contains(old) && (keptCount == 1 || kept.contains(damaged)));
    }

    void patchDroppedFromACutLibraryIsKeptAfterSweeping()
    {
        StoreFixture store(three());
        const QByteArray old = store.read(m_libraryFile);
        store.write(m_copy, old);
        store.write(m_libraryFile, old.first(10));
        QFile::remove(store.filePath(m_leadFile));
        QVERIFY(store.start());
        store.storage.sweepLeftovers();
        store.storage.save(store.library);
        QCOMPARE(store.datedCopies().size(), 1);
        QCOMPARE(store.read(store.datedCopies().first()), old);
        QVERIFY(!store.has(m_copy));
    }

    void renamedPatchTakesItsOwnFileAndNotAnotherSoundUnderItsId()
    {
        StoreFixture store(three());
        const QString foreign = QStringLiteral("lib-backup.42.prst");
        store.write(foreign, patchBytes(three().patches.at(2)));
        std::ignore = run(store, [](QList<VelgorPatch> &patches) { patches[0].name = QStringLiteral("New"); });
        QVERIFY(store.has(QStringLiteral("lib-New.42.prst")) && store.has(foreign));
        QCOMPARE(store.loaded().first().records->patchData.data, three().patches.first().records->patchData.data);
        QCOMPARE(store.read(foreign), patchBytes(three().patches.at(2)));
    }

    void damagedPatchFileMakesRoomForTheImportedPatch()
    {
        StoreFixture store(three());
        store.write(m_leadFile, "damaged");
        const LibraryWriteResult result =
            run(store, [](QList<VelgorPatch> &patches) { patches.append(three().patches.first()); });
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 1);
        QVERIFY(store.loadedNames().contains(QStringLiteral("Lead")));
        QCOMPARE(store.read(LibraryFileNames::damagedFile(42, 0)), QByteArray("damaged"));
    }

    void damagedFileUnderThePresentNameIsReplacedFromTheFileThatServed()
    {
        StoreFixture store(three());
        store.write(QStringLiteral("lib-Former.42.prst"), store.read(m_leadFile));
        store.write(m_leadFile, {});
        std::ignore = run(store, nothing);
        QCOMPARE(store.read(m_leadFile), patchBytes(three().patches.first()));
    }

    void entryMarkedEmptyAmongOthersIsKeptWithTheOldFile()
    {
        StoreFixture store;
        LibraryState content = three();
        content.patches[0].empty = true;
        content.patches[0].comment = QStringLiteral("precious");
        QVERIFY(!store.save(content).hasError());
        QCOMPARE(store.load().droppedPatches, QStringList{QStringLiteral("Lead")});
        QVERIFY(!run(store, nothing).hasError());
        QCOMPARE(store.datedCopies().size(), 1);
        QVERIFY(store.read(store.datedCopies().first()).contains("precious"));
    }

    void fileKeptJustNowStaysEvenIfTheClockWentBack()
    {
        StoreFixture store(three());
        QFile::remove(store.filePath(m_leadFile));
        constexpr int others = 25;
        for (int number = 10; number < 10 + others; ++number) {
            store.write(QStringLiteral("velgorlibrary-29990101T000000-%1.json").arg(number), "future");
        }
        const LibraryWriteResult result = run(store, nothing);
        QCOMPARE(result.keptFiles.size(), 1);
        QVERIFY(QFile::exists(result.keptFiles.first()));
        // None of them is thirty days old.
        QCOMPARE(store.datedCopies().size(), others + 1);
    }

    void removingOnePatchTwiceOrAFileOfTwoPatchesIsNoError()
    {
        StoreFixture store(three());
        store.write(QStringLiteral("both.42.43.txt"), "x");
        QVERIFY(!store.remove({42, 43, 42}).hasError());
        QCOMPARE(store.files().filter(QStringLiteral(".prst")).size(), 1);
    }

    void lockWithoutAnOwnerIsTakenOver()
    {
        StoreFixture store;
        store.write(LibraryFileNames::lockFile(), {});
        QVERIFY(LibraryLock(store.path()).tryLock());
    }

    void exportNeverReplacesAFileOfALibrary_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : {m_libraryFile, m_leadFile, m_copy, LibraryFileNames::lockFile()}) {
            QTest::newRow(qPrintable(name)) << name;
        }
    }
    void exportNeverReplacesAFileOfALibrary()
    {
        QFETCH(const QString, name);
        StoreFixture store(three());
        const auto before = store.contents();
        QVERIFY(!UserFiles().write(store.filePath(name), "export"));
        QCOMPARE(store.contents(), before);
        QVERIFY(UserFiles().write(store.filePath(QStringLiteral("gig.prst")), "export"));
    }

    void chainOfLinksIsWrittenAtItsEnd()
    {
        StoreFixture store;
        store.write(QStringLiteral("real"), "old");
        QFile::link(store.filePath(QStringLiteral("real")), store.filePath(QStringLiteral("middle")));
        QFile::link(store.filePath(QStringLiteral("middle")), store.filePath(QStringLiteral("top")));
        QVERIFY(UserFiles().write(store.filePath(QStringLiteral("top")), "new"));
        QCOMPARE(store.read(QStringLiteral("real")), QByteArray("new"));
        QVERIFY(QFileInfo(store.filePath(QStringLiteral("middle"))).isSymLink());
    }
};

VELGOR_TEST(TestLibraryRescue)
#include "tst_LibraryRescue.moc"
