#include "StoreFixture.h"
#include "TestProgram.h"
#include "WorkerGate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

constexpr auto shortPeriod = 50ms;

const QStringList saveLines{QStringLiteral("Waiting to save library..."), QStringLiteral("Saving library..."),
    QStringLiteral("Saving in progress..."), QStringLiteral("Saving done 3 patches")};

} // namespace

class TestBackgroundSave : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void oneRequestIsSavedAfterThePeriod()
    {
        StoreFixture store(shortPeriod, three());
        store.requestSave();
        QVERIFY(store.storage.waitingToSave() && !store.storage.waitMore() && store.storage.hasUnsavedChanges());
        QCOMPARE(store.storage.libraryToSave(), &store.library);
        QCOMPARE(store.files(), QStringList());
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(!store.storage.hasUnsavedChanges() && !store.storage.libraryToSave() && !store.storage.writeError());
        QCOMPARE(store.lines.take(), saveLines);
        QVERIFY(store.holds(three().patches));
    }

    static void tenRequestsAreOneSave()
    {
        StoreFixture store(shortPeriod, three());
        for (int i = 0; i < 10; ++i) {
            store.rename(42, QString::number(i));
            store.requestSave();
        }
        QTRY_VERIFY(!store.storage.waitingToSave());
        QTest::qWait(3 * shortPeriod.count());
        QCOMPARE(store.lines.take(), saveLines);
        QVERIFY(store.has(QStringLiteral("lib-9.42.prst")));
    }

    static void usualPeriodPutsTenRequestsTogetherForTwoSeconds()
    {
        StoreFixture store(DelayedSave::usualPeriod, three());
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 10; ++i) {
            store.requestSave();
            QTest::qWait(40);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!store.storage.waitingToSave(), 10000);
        const qint64 elapsed = timer.elapsed();
        QVERIFY2(elapsed >= 1990 && elapsed < 5000, qPrintable(QString::number(elapsed)));
        QCOMPARE(store.lines.take(), saveLines);
    }

    static void usualPeriodPutsTheSaveOffWhileRequestsGoOn()
    {
        StoreFixture store(DelayedSave::usualPeriod, three());
        QElapsedTimer last;
        for (int i = 0; i < 5; ++i) {
            store.requestSave();
            last.start();
            QTest::qWait(500);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!store.storage.waitingToSave(), 10000);
        QVERIFY2(last.elapsed() >= 990 && last.elapsed() < 5000, qPrintable(QString::number(last.elapsed())));
        QCOMPARE(store.lines.take(), saveLines);
    }

    static void latestLibraryIsSaved()
    {
        StoreFixture store(shortPeriod, three());
        const VelgorLibrary second(one(QStringLiteral("Other")).patches, std::nullopt);
        store.requestSave();
        store.storage.delayedSave(second);
        QCOMPARE(store.storage.libraryToSave(), &second);
        QTRY_VERIFY(!store.storage.waitingToSave());
        QCOMPARE(store.loadedNames(), QStringList{QStringLiteral("Other")});
    }

    static void libraryGoneBeforeThePeriodEndsIsNotSaved()
    {
        StoreFixture store(shortPeriod);
        store.storage.delayedSave(VelgorLibrary(three().patches, three().defaultPatch));
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(!store.storage.hasUnsavedChanges());
        QVERIFY(store.storage.saveUnsaved());
        QCOMPARE(store.files(), QStringList());
    }

    static void changesDuringTheSaveAreNotInIt()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker());
        store.requestSave();
        QTRY_VERIFY(store.storage.isSaving());
        store.rename(42, QStringLiteral("Changed"));
        store.library.sort();
        gate.open();
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(store.holds(three().patches));
    }

    static void requestDuringTheSaveWaitsForTheNextRequest()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker());
        store.requestSave();
        QTRY_VERIFY(store.storage.isSaving());
        store.rename(42, QStringLiteral("Changed"));
        store.requestSave();
        QVERIFY(store.storage.waitingToSave() && store.storage.waitMore());
        gate.open();
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(!store.storage.libraryToSave());
        QTest::qWait(4 * shortPeriod.count());
        QCOMPARE(store.lines.lines(), saveLines);
        QVERIFY(store.storage.hasUnsavedChanges());
        QVERIFY(store.has(leadFile));

        store.requestSave();
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(!store.storage.hasUnsavedChanges());
        QVERIFY(store.holds(store.library.patches()));
    }

    static void requestDuringTheSaveIsWrittenBeforeTheEnd()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker(), 200ms);
        store.requestSave();
        QTRY_VERIFY(store.storage.isSaving());
        store.rename(42, QStringLiteral("Changed"));
        store.requestSave();
        QVERIFY(store.storage.saveUnsaved());
        QVERIFY(!store.storage.waitingToSave() && !store.storage.hasUnsavedChanges());
        QVERIFY(store.holds(store.library.patches()));
    }

    static void changesBeingWrittenCountAsUnsaved()
    {
        StoreFixture store(shortPeriod, three());
        WorkerGate gate(store.storage.worker());
        store.requestSave();
        QTRY_VERIFY(store.storage.isSaving());
        const bool hadUnsavedChanges = store.storage.hasUnsavedChanges();
        gate.open();
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(hadUnsavedChanges);
    }

    static void endingTheWaitingWritesAtOnce()
    {
        StoreFixture store(60s, three());
        store.requestSave();
        QVERIFY(store.storage.saveUnsaved());
        QVERIFY(!store.storage.waitingToSave() && !store.storage.hasUnsavedChanges());
        QVERIFY(store.holds(three().patches));
        const auto before = store.stamps();
        QVERIFY(store.storage.saveUnsaved());
        QCOMPARE(store.stamps(), before);
    }

    static void destructionWaitsForTheSave()
    {
        const StoreFixture other;
        std::optional<WorkerGate> gate;
        {
            StoreFixture store(other, shortPeriod);
            store.library.adopt(three());
            gate.emplace(store.storage.worker(), 200ms);
            store.requestSave();
            QTRY_VERIFY(store.storage.isSaving());
        }
        QCoreApplication::processEvents();
        QVERIFY(other.holds(three().patches));
    }

    static void libraryMayGoDuringItsSave()
    {
        StoreFixture store(shortPeriod);
        WorkerGate gate(store.storage.worker());
        auto library = std::make_unique<VelgorLibrary>(three().patches, three().defaultPatch);
        store.storage.delayedSave(*library);
        QTRY_VERIFY(store.storage.isSaving());
        library.reset();
        gate.open();
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(store.holds(three().patches));
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
        StoreFixture store(shortPeriod);
        const QString blocked = cause == QStringLiteral("file") ? store.path()
            : cause == QStringLiteral("patch")                  ? store.filePath(leadFile)
                                                                : store.filePath(libraryFile);
        store.library.adopt(three());
        if (cause == QStringLiteral("file")) {
            QVERIFY(QDir().rmdir(blocked));
            QFile file(blocked);
            QVERIFY(file.open(QIODevice::WriteOnly));
        } else {
            QVERIFY(QDir().mkdir(blocked));
        }
        store.requestSave();
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(store.storage.hasUnsavedChanges() && store.storage.writeError() && !store.storage.wasLastSaveWritten());
        QVERIFY(store.storage.writeProblems().join(u'\n').contains(blocked));
        QVERIFY(!store.storage.saveUnsaved());
        QVERIFY(store.storage.hasUnsavedChanges());

        if (cause == QStringLiteral("file")) {
            QVERIFY(QFile::remove(blocked) && QDir().mkdir(blocked));
        } else {
            QVERIFY(QDir().rmdir(blocked));
        }
        store.storage.setWriteError(false);
        QVERIFY(store.storage.saveUnsaved());
        QVERIFY(!store.storage.hasUnsavedChanges() && !store.storage.writeError());
        QVERIFY(store.holds(three().patches));
        QCOMPARE(store.files().size(), 4);
    }
};

VELGOR_TEST(TestBackgroundSave)
#include "tst_BackgroundSave.moc"
