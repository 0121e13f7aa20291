#include "DiagnosticRecorder.h"
#include "LibraryStorageManager.h"
#include "StoredEdits.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "ThreadGate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

constexpr auto shortPeriod = 50ms;
/// How long a save is held at most, so that nothing hangs when a test fails.
constexpr auto longest = 10s;

const QString libraryFile = LibraryFileNames::libraryFile();
const QString leadFile = QStringLiteral("lib-Lead.42.prst");

std::unique_ptr<VelgorLibrary> threePatches()
{
    return std::make_unique<VelgorLibrary>(three().patches, three().defaultPatch);
}

void rename(VelgorLibrary &library, quint64 id, const QString &name)
{
    VelgorPatch changed = *library.getPatchFromId(id)->patch;
    changed.name = name;
    if (!library.update(changed)) {
        qFatal("no such patch");
    }
}

const QStringList saveLines{QStringLiteral("Waiting to save library..."), QStringLiteral("Saving library..."),
    QStringLiteral("Saving in progress..."), QStringLiteral("Saving done 3 patches")};

} // namespace

class TestBackgroundSave : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void oneRequestIsSavedAfterThePeriod()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QVERIFY(manager.waitingToSave() && !manager.waitMore() && manager.hasUnsavedChanges());
        QCOMPARE(manager.libraryToSave(), library.get());
        QCOMPARE(directory.files(), QStringList());
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(!manager.hasUnsavedChanges() && !manager.libraryToSave() && !manager.writeError());
        QCOMPARE(lines.take(), saveLines);
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void tenRequestsAreOneSave()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        for (int i = 0; i < 10; ++i) {
            rename(*library, 42, QString::number(i));
            manager.delayedSave(*library);
        }
        QTRY_VERIFY(!manager.waitingToSave());
        QTest::qWait(3 * shortPeriod.count());
        QCOMPARE(lines.take(), saveLines);
        QVERIFY(directory.has(QStringLiteral("lib-9.42.prst")));
    }

    static void usualPeriodPutsTenRequestsTogetherForTwoSeconds()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path());
        const auto library = threePatches();
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 10; ++i) {
            manager.delayedSave(*library);
            QTest::qWait(40);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!manager.waitingToSave(), 10000);
        const qint64 elapsed = timer.elapsed();
        QVERIFY2(elapsed >= 1990 && elapsed < 5000, qPrintable(QString::number(elapsed)));
        QCOMPARE(lines.take(), saveLines);
    }

    static void usualPeriodPutsTheSaveOffWhileRequestsGoOn()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path());
        const auto library = threePatches();
        QElapsedTimer last;
        for (int i = 0; i < 10; ++i) {
            manager.delayedSave(*library);
            last.start();
            QTest::qWait(500);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!manager.waitingToSave(), 10000);
        QVERIFY2(last.elapsed() >= 990 && last.elapsed() < 5000, qPrintable(QString::number(last.elapsed())));
        QCOMPARE(lines.take(), saveLines);
    }

    static void latestLibraryIsSaved()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto first = threePatches();
        const VelgorLibrary second(one(QStringLiteral("Other")).patches, std::nullopt);
        manager.delayedSave(*first);
        manager.delayedSave(second);
        QCOMPARE(manager.libraryToSave(), &second);
        QTRY_VERIFY(!manager.waitingToSave());
        QCOMPARE(loadedNames(directory), QStringList{QStringLiteral("Other")});
    }

    static void libraryGoneBeforeThePeriodEndsIsNotSaved()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        manager.delayedSave(*threePatches());
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(!manager.hasUnsavedChanges());
        QVERIFY(manager.saveUnsaved());
        QCOMPARE(directory.files(), QStringList());
    }

    static void changesDuringTheSaveAreNotInIt()
    {
        ThreadGate gate(longest);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QTRY_VERIFY(gate.isHolding());
        rename(*library, 42, QStringLiteral("Changed"));
        library->sort();
        gate.open();
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void requestDuringTheSaveWaitsForTheNextRequest()
    {
        ThreadGate gate(longest);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QTRY_VERIFY(gate.isHolding());
        rename(*library, 42, QStringLiteral("Changed"));
        manager.delayedSave(*library);
        QVERIFY(manager.waitingToSave() && manager.waitMore());
        gate.open();
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(!manager.libraryToSave());
        QTest::qWait(4 * shortPeriod.count());
        QCOMPARE(gate.lines(), saveLines);
        QVERIFY(manager.hasUnsavedChanges());
        QVERIFY(directory.has(leadFile));

        manager.delayedSave(*library);
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(!manager.hasUnsavedChanges());
        QVERIFY(areIdentical(loaded(directory), library->patches()));
    }

    static void requestDuringTheSaveIsWrittenBeforeTheEnd()
    {
        ThreadGate gate(200ms);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QTRY_VERIFY(gate.isHolding());
        rename(*library, 42, QStringLiteral("Changed"));
        manager.delayedSave(*library);
        QVERIFY(manager.saveUnsaved());
        QVERIFY(!manager.waitingToSave() && !manager.hasUnsavedChanges());
        QVERIFY(areIdentical(loaded(directory), library->patches()));
    }

    static void changesBeingWrittenCountAsUnsaved()
    {
        ThreadGate gate(longest);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QTRY_VERIFY(gate.isHolding());
        const bool hadUnsavedChanges = manager.hasUnsavedChanges();
        gate.open();
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(hadUnsavedChanges);
    }

    static void endingTheWaitingWritesAtOnce()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), 60s);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QVERIFY(manager.saveUnsaved());
        QVERIFY(!manager.waitingToSave() && !manager.hasUnsavedChanges());
        QVERIFY(areIdentical(loaded(directory), three().patches));
        const auto before = directory.stamps();
        QVERIFY(manager.saveUnsaved());
        QCOMPARE(directory.stamps(), before);
    }

    static void directSaveWaitsForTheBackgroundSaveAndWins()
    {
        ThreadGate gate(200ms);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QTRY_VERIFY(gate.isHolding());
        rename(*library, 42, QStringLiteral("Changed"));
        manager.save(*library);
        QVERIFY(!gate.isHolding());
        QVERIFY(!manager.waitingToSave() && !manager.hasUnsavedChanges());
        const auto before = directory.contents();
        QTest::qWait(4 * shortPeriod.count());
        QCOMPARE(directory.contents(), before);
        QVERIFY(areIdentical(loaded(directory), library->patches()));
        QCOMPARE(gate.lines().count(QStringLiteral("Saving in progress...")), 2);
    }

    static void deletionDuringABackgroundSaveLeavesNoFileBehind()
    {
        ThreadGate gate(200ms);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        QTRY_VERIFY(gate.isHolding());
        StoredEdits::deletePatches(*library, {42}, manager);
        QTRY_VERIFY(!manager.hasUnsavedChanges());
        QTest::qWait(4 * shortPeriod.count());
        QCOMPARE(directory.files(),
            (QStringList{QStringLiteral("lib-A$B.43.prst"), QStringLiteral("lib-Clean.44.prst"), libraryFile}));
        QVERIFY(areIdentical(loaded(directory), library->patches()));
    }

    static void deletionWhileWaitingLeavesNoFileBehind()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        StoredEdits::deletePatches(*library, {42}, manager);
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(!directory.has(leadFile));
        QVERIFY(areIdentical(loaded(directory), library->patches()));
    }

    static void startedSaveHoldsNothingUpAndIsTold()
    {
        ThreadGate gate(longest);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), 60s);
        const auto library = threePatches();
        int told = 0;
        connect(&manager, &LibraryStorageManager::saveFinished, &manager, [&] {
            ++told;
            QVERIFY(manager.wasLastSaveWritten() && !manager.isSaving());
        });
        manager.startSave(*library);
        QVERIFY(manager.isSaving() && manager.hasUnsavedChanges() && !manager.waitingToSave());
        QTRY_VERIFY(gate.isHolding());
        QCOMPARE(directory.files(), QStringList());
        gate.open();
        QTRY_COMPARE(told, 1);
        QVERIFY(!manager.hasUnsavedChanges());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void startedSavesComeInTheirOrderEachWithItsRemovals()
    {
        ThreadGate gate(longest);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.startSave(*library);
        QTRY_VERIFY(gate.isHolding());
        StoredEdits::deletePatches(*library, {42}, manager);
        rename(*library, 44, QStringLiteral("Changed"));
        manager.delayedSave(*library);
        QTest::qWait(4 * shortPeriod.count());
        StoredEdits::deletePatches(*library, {43}, manager);
        QCOMPARE(manager.removalsDue(), QList<quint64>());
        gate.open();
        QTRY_VERIFY(!manager.hasUnsavedChanges());
        QCOMPARE(directory.files(), (QStringList{QStringLiteral("lib-Changed.44.prst"), libraryFile}));
        QVERIFY(areIdentical(loaded(directory), library->patches()));
        QCOMPARE(gate.lines().filter(QStringLiteral("Saving done")).size(), 4);
    }

    static void whatIsWrittenForACheckEndsTheWaitingButLosesNoLaterRequest()
    {
        ThreadGate gate(longest);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        manager.delayedSave(*library);
        manager.startSavingUnsaved();
        QVERIFY(!manager.waitingToSave() && manager.isSaving());
        QTRY_VERIFY(gate.isHolding());
        // That is all there is to write.
        manager.startSavingUnsaved();
        rename(*library, 42, QStringLiteral("Changed"));
        manager.delayedSave(*library);
        gate.open();
        QTRY_VERIFY(!manager.hasUnsavedChanges());
        QVERIFY(areIdentical(loaded(directory), library->patches()));
        QCOMPARE(gate.lines().count(QStringLiteral("Saving in progress...")), 2);
    }

    static void destructionWaitsForTheSave()
    {
        ThreadGate gate(200ms);
        const LibraryDirectory directory;
        const auto library = threePatches();
        {
            LibraryStorageManager manager(directory.path(), shortPeriod);
            manager.delayedSave(*library);
            QTRY_VERIFY(gate.isHolding());
        }
        QCoreApplication::processEvents();
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void libraryMayGoDuringItsSave()
    {
        ThreadGate gate(longest);
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), shortPeriod);
        auto library = threePatches();
        manager.delayedSave(*library);
        QTRY_VERIFY(gate.isHolding());
        library.reset();
        gate.open();
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(areIdentical(loaded(directory), three().patches));
    }

    static void failedSaveStaysUnsavedUntilTheCauseIsGone_data()
    {
        QTest::addColumn<QString>("cause");
        QTest::newRow("directory replaced by a file") << QStringLiteral("file");
        QTest::newRow("library file replaced by a directory") << QStringLiteral("directory");
        QTest::newRow("patch file replaced by a directory") << QStringLiteral("patch");
    }
    static void failedSaveStaysUnsavedUntilTheCauseIsGone()
    {
        QFETCH(const QString, cause);
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        const QString blocked = cause == QStringLiteral("file") ? directory.path()
            : cause == QStringLiteral("patch")                  ? directory.filePath(leadFile)
                                                                : directory.filePath(libraryFile);
        LibraryStorageManager manager(directory.path(), shortPeriod);
        const auto library = threePatches();
        if (cause == QStringLiteral("file")) {
            QVERIFY(QDir().rmdir(blocked));
            QFile file(blocked);
            QVERIFY(file.open(QIODevice::WriteOnly));
        } else {
            QVERIFY(QDir().mkdir(blocked));
        }
        manager.delayedSave(*library);
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(manager.hasUnsavedChanges() && manager.writeError() && !manager.wasLastSaveWritten());
        QVERIFY(manager.writeProblems().join(u'\n').contains(blocked));
        QVERIFY(!manager.saveUnsaved());
        QVERIFY(manager.hasUnsavedChanges());

        if (cause == QStringLiteral("file")) {
            QVERIFY(QFile::remove(blocked) && QDir().mkdir(blocked));
        } else {
            QVERIFY(QDir().rmdir(blocked));
        }
        manager.setWriteError(false);
        QVERIFY(manager.saveUnsaved());
        QVERIFY(!manager.hasUnsavedChanges() && !manager.writeError());
        QVERIFY(areIdentical(loaded(directory), three().patches));
        QCOMPARE(directory.files().size(), 4);
    }

    static void manySavesInARowNeverOverlap()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), 1ms);
        const auto library = threePatches();
        for (int i = 0; i < 60; ++i) {
            rename(*library, 42, QString::number(i));
            manager.delayedSave(*library);
            QTest::qWait(i % 5);
            if (i % 7 == 0) {
                manager.save(*library);
            }
        }
        QVERIFY(manager.saveUnsaved());
        QVERIFY(areIdentical(loaded(directory), library->patches()));
        QCOMPARE(directory.files().size(), 4);
        bool isSaving = false;
        for (const QString &line : lines.take()) {
            if (line == QStringLiteral("Saving in progress...")) {
                QVERIFY(!isSaving);
                isSaving = true;
            } else if (line.startsWith(QStringLiteral("Saving done"))) {
                QVERIFY(isSaving);
                isSaving = false;
            }
        }
    }
};

VELGOR_TEST(TestBackgroundSave)
#include "tst_BackgroundSave.moc"
