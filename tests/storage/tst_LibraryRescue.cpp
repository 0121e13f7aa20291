#include "DiagnosticRecorder.h"
#include "LibraryLock.h"
#include "LibraryStorageManager.h"
#include "LoadedLibrary.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "UserFiles.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

/// Nothing of the user's is lost when files of a library directory are damaged, missing or not what they seem.
class TestLibraryRescue : public QObject {
    Q_OBJECT

    const QString m_libraryFile = LibraryFileNames::libraryFile();
    const QString m_copy = LibraryFileNames::libraryCopy();
    const QString m_leadFile = QStringLiteral("lib-Lead.42.prst");

    /// Loads, lets `change` work on the patches, and saves, as one run of a program does.
    template <typename Change>
    static LibraryWriteResult run(const LibraryDirectory &directory, Change change)
    {
        const LibraryLoadResult result = load(directory);
        LibraryState content{result.library ? result.library->patches : QList<VelgorPatch>(), std::nullopt};
        change(content.patches);
        return save(directory, content, stateAfter(result));
    }

    static void nothing(const QList<VelgorPatch> &) { }

private Q_SLOTS:
    void copyOfAMissingLibraryFileIsKeptWhenAPatchWasDropped()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray old = directory.read(m_libraryFile);
        QFile::rename(directory.filePath(m_libraryFile), directory.filePath(m_copy));
        QFile::remove(directory.filePath(m_leadFile));
        const LibraryWriteResult result = run(directory, nothing);
        QVERIFY(!result.hasError());
        QCOMPARE(datedCopies(directory).size(), 1);
        QCOMPARE(directory.read(datedCopies(directory).first()), old);
        QVERIFY(!run(directory, nothing).hasError());
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
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray old = directory.read(m_libraryFile);
        directory.write(m_copy, old);
        directory.write(m_libraryFile, damaged);
        QFile::remove(directory.filePath(m_leadFile));
        QVERIFY(!run(directory, nothing).hasError());
        QByteArrayList kept;
        for (const QString &name : datedCopies(directory)) {
            kept.append(directory.read(name));
        }
        // A part of the copy holds nothing that the copy does not.
        QCOMPARE(kept.size(), keptCount);
        QVERIFY(kept.contains(old) && (keptCount == 1 || kept.contains(damaged)));
    }

    void patchDroppedFromACutLibraryIsKeptAfterSweeping()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QByteArray old = directory.read(m_libraryFile);
        directory.write(m_copy, old);
        directory.write(m_libraryFile, old.first(10));
        QFile::remove(directory.filePath(m_leadFile));
        LibraryStorageManager manager(directory.path());
        const auto library = libraryOf(manager.decodeLibrary());
        manager.sweepLeftovers();
        manager.save(*library);
        QCOMPARE(datedCopies(directory).size(), 1);
        QCOMPARE(directory.read(datedCopies(directory).first()), old);
        QVERIFY(!directory.has(m_copy));
    }

    void renamedPatchTakesItsOwnFileAndNotAnotherSoundUnderItsId()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const QString foreign = QStringLiteral("lib-backup.42.prst");
        directory.write(foreign, patchBytes(three().patches.at(2)));
        std::ignore = run(directory, [](QList<VelgorPatch> &patches) { patches[0].name = QStringLiteral("New"); });
        QVERIFY(directory.has(QStringLiteral("lib-New.42.prst")) && directory.has(foreign));
        QCOMPARE(loaded(directory).first().records->patchData.data, three().patches.first().records->patchData.data);
        QCOMPARE(directory.read(foreign), patchBytes(three().patches.at(2)));
    }

    void damagedPatchFileMakesRoomForTheImportedPatch()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        directory.write(m_leadFile, "damaged");
        const LibraryWriteResult result =
            run(directory, [](QList<VelgorPatch> &patches) { patches.append(three().patches.first()); });
        QVERIFY(!result.hasError());
        QCOMPARE(result.written, 1);
        QVERIFY(loadedNames(directory).contains(QStringLiteral("Lead")));
        QCOMPARE(directory.read(LibraryFileNames::damagedFile(42, 0)), QByteArray("damaged"));
    }

    void damagedFileUnderThePresentNameIsReplacedFromTheFileThatServed()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        directory.write(QStringLiteral("lib-Former.42.prst"), directory.read(m_leadFile));
        directory.write(m_leadFile, {});
        std::ignore = run(directory, nothing);
        QCOMPARE(directory.read(m_leadFile), patchBytes(three().patches.first()));
    }

    void entryMarkedEmptyAmongOthersIsKeptWithTheOldFile()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryState content = three();
        content.patches[0].empty = true;
        content.patches[0].comment = QStringLiteral("precious");
        QVERIFY(!save(directory, content).hasError());
        QCOMPARE(load(directory).droppedPatches, QStringList{QStringLiteral("Lead")});
        QVERIFY(!run(directory, nothing).hasError());
        QCOMPARE(datedCopies(directory).size(), 1);
        QVERIFY(directory.read(datedCopies(directory).first()).contains("precious"));
    }

    void fileKeptJustNowStaysEvenIfTheClockWentBack()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        QFile::remove(directory.filePath(m_leadFile));
        constexpr int others = 25;
        for (int number = 10; number < 10 + others; ++number) {
            directory.write(QStringLiteral("velgorlibrary-29990101T000000-%1.json").arg(number), "future");
        }
        const LibraryWriteResult result = run(directory, nothing);
        QCOMPARE(result.keptFiles.size(), 1);
        QVERIFY(QFile::exists(result.keptFiles.first()));
        // None of them is thirty days old.
        QCOMPARE(datedCopies(directory).size(), others + 1);
    }

    void removingOnePatchTwiceOrAFileOfTwoPatchesIsNoError()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        directory.write(QStringLiteral("both.42.43.txt"), "x");
        QVERIFY(!remove(directory, {42, 43, 42}).hasError());
        QCOMPARE(directory.files().filter(QStringLiteral(".prst")).size(), 1);
    }

    void lockWithoutAnOwnerIsTakenOver()
    {
        const LibraryDirectory directory;
        directory.write(LibraryFileNames::lockFile(), {});
        QVERIFY(LibraryLock(directory.path()).tryLock());
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
        const DiagnosticRecorder silence;
        QFETCH(const QString, name);
        const LibraryDirectory directory;
        QVERIFY(!save(directory, three()).hasError());
        const auto before = directory.contents();
        QVERIFY(!UserFiles().write(directory.filePath(name), "export"));
        QCOMPARE(directory.contents(), before);
        QVERIFY(UserFiles().write(directory.filePath(QStringLiteral("gig.prst")), "export"));
    }

    void chainOfLinksIsWrittenAtItsEnd()
    {
        const LibraryDirectory directory;
        directory.write(QStringLiteral("real"), "old");
        QFile::link(directory.filePath(QStringLiteral("real")), directory.filePath(QStringLiteral("middle")));
        QFile::link(directory.filePath(QStringLiteral("middle")), directory.filePath(QStringLiteral("top")));
        QVERIFY(UserFiles().write(directory.filePath(QStringLiteral("top")), "new"));
        QCOMPARE(directory.read(QStringLiteral("real")), QByteArray("new"));
        QVERIFY(QFileInfo(directory.filePath(QStringLiteral("middle"))).isSymLink());
    }
};

VELGOR_TEST(TestLibraryRescue)
#include "tst_LibraryRescue.moc"
