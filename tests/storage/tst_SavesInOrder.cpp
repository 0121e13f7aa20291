#include "StoreFixture.h"
#include "TestProgram.h"
#include "WorkerGate.h"

#include <QCoreApplication>
#include <QTest>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

constexpr auto shortPeriod = 50ms;

} // namespace

/// Saves that are asked for while another one is waited for or under way.
class TestSavesInOrder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void directSaveWaitsForTheBackgroundSaveAndWins()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker(), 200ms);
        store.requestSave();
        QTRY_VERIFY(store.storage.isSaving());
        store.rename(42, QStringLiteral("Changed"));
        store.storage.save(store.library);
        QVERIFY(!gate.isHolding());
        QVERIFY(!store.storage.waitingToSave() && !store.storage.hasUnsavedChanges());
        const auto before = store.contents();
        QTest::qWait(4 * shortPeriod.count());
        QCOMPARE(store.contents(), before);
        QVERIFY(store.holds(store.library.patches()));
        QCOMPARE(store.lines.lines().count(QStringLiteral("Saving in progress...")), 2);
    }

    static void deletionDuringABackgroundSaveLeavesNoFileBehind()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker());
        store.requestSave();
        QTRY_VERIFY(store.storage.isSaving());
        store.deletePatches({42});
        gate.open();
        QTRY_VERIFY(!store.storage.hasUnsavedChanges());
        QTest::qWait(4 * shortPeriod.count());
        QCOMPARE(store.files(),
            (QStringList{QStringLiteral("lib-A$B.43.prst"), QStringLiteral("lib-Clean.44.prst"), libraryFile}));
        QVERIFY(store.holds(store.library.patches()));
    }

    static void deletionWhileWaitingLeavesNoFileBehind()
    {
        StoreFixture store(shortPeriod, three());
        store.requestSave();
        store.deletePatches({42});
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(!store.has(leadFile));
        QVERIFY(store.holds(store.library.patches()));
    }

    static void startedSaveHoldsNothingUpAndIsTold()
    {
        StoreFixture store(60s, three());
        WorkerGate gate(store.storage.worker());
        int told = 0;
        connect(&store.storage, &LibraryStorageManager::saveFinished, &store.storage, [&] {
            ++told;
            QVERIFY(store.storage.wasLastSaveWritten() && !store.storage.isSaving());
        });
        store.storage.startSave(store.library);
        QVERIFY(store.storage.isSaving() && store.storage.hasUnsavedChanges() && !store.storage.waitingToSave());
        QCOMPARE(store.files(), QStringList());
        gate.open();
        QTRY_COMPARE(told, 1);
        QVERIFY(!store.storage.hasUnsavedChanges());
        QVERIFY(store.holds(three().patches));
    }

    static void startedSavesComeInTheirOrderEachWithItsRemovals()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker());
        store.storage.startSave(store.library);
        store.deletePatches({42});
        store.rename(44, QStringLiteral("Changed"));
        store.requestSave();
        QTest::qWait(4 * shortPeriod.count());
        store.deletePatches({43});
        QCOMPARE(store.storage.removalsDue(), QList<quint64>());
        gate.open();
        QTRY_VERIFY(!store.storage.hasUnsavedChanges());
        QCOMPARE(store.files(), (QStringList{QStringLiteral("lib-Changed.44.prst"), libraryFile}));
        QVERIFY(store.holds(store.library.patches()));
        QCOMPARE(store.lines.lines().filter(QStringLiteral("Saving done")).size(), 4);
    }

    static void whatIsWrittenForACheckEndsTheWaitingButLosesNoLaterRequest()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker());
        store.requestSave();
        store.storage.startSavingUnsaved();
        QVERIFY(!store.storage.waitingToSave() && store.storage.isSaving());
        // That is all there is to write.
        store.storage.startSavingUnsaved();
        store.rename(42, QStringLiteral("Changed"));
        store.requestSave();
        gate.open();
        QTRY_VERIFY(!store.storage.hasUnsavedChanges());
        QVERIFY(store.holds(store.library.patches()));
        QCOMPARE(store.lines.lines().count(QStringLiteral("Saving in progress...")), 2);
    }

    static void manySavesInARowNeverOverlap()
    {
        StoreFixture store(1ms, three());
        for (int i = 0; i < 60; ++i) {
            store.rename(42, QString::number(i));
            store.requestSave();
            QTest::qWait(i % 5);
            if (i % 7 == 0) {
                store.storage.save(store.library);
            }
        }
        QVERIFY(store.storage.saveUnsaved());
        QVERIFY(store.holds(store.library.patches()));
        QCOMPARE(store.files().size(), 4);
        bool isSaving = false;
        for (const QString &line : store.lines.take()) {
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

VELGOR_TEST(TestSavesInOrder)
#include "tst_SavesInOrder.moc"
