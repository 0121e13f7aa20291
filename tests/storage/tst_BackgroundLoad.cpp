#include "StoreFixture.h"
#include "TestProgram.h"
#include "WorkerGate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

/// Three patches with files and, in front of them, others without, so that there are as many.
LibraryState threeBehind(int entries)
{
    LibraryState content = three();
    for (quint64 id = 1000; content.patches.size() < entries; ++id) {
        content.patches.prepend(TestPatches::stored(id, QStringLiteral("Missing")));
    }
    return content;
}

/// As threeBehind(), on disk.
struct Stored : StoreFixture {
    explicit Stored(int entries)
    {
        writeEntries(three());
        write(libraryFile, LibraryJson::encode(threeBehind(entries)));
    }
};

/// So many entries that loading them takes its time.
constexpr int manyEntries = 20000;

/// A program that has begun to load three patches behind one without a file, and takes over what is loaded. The load is
/// held up.
struct Loading : StoreFixture {
    explicit Loading(std::chrono::milliseconds period = never, std::chrono::milliseconds longest = 10s)
        : StoreFixture(period)
        , gate(storage.worker(), longest)
    {
        writeEntries(three());
        write(libraryFile, LibraryJson::encode(threeBehind(4)));
        QObject::connect(&storage, &LibraryStorageManager::loadFinished, &library, [this] {
            if (const auto loaded = storage.takeLoadedLibrary()) {
                library.adopt(*loaded);
            }
        });
        storage.startLoading();
    }

    WorkerGate gate;
};

} // namespace

class TestBackgroundLoad : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void loadGivesWhatDecodingGives_data()
    {
        QTest::addColumn<QString>("damage");
        for (const char *row : {"none", "new", "empty", "undecodable", "patch missing", "patch damaged", "copy only",
                 "every patch missing"}) {
            QTest::newRow(row) << QString::fromLatin1(row);
        }
    }
    static void loadGivesWhatDecodingGives()
    {
        QFETCH(const QString, damage);
        StoreFixture store;
        store.writeEntries(damage == QStringLiteral("empty") ? LibraryState() : three());
        if (damage == QStringLiteral("new")) {
            QVERIFY(QFile::remove(store.filePath(libraryFile)));
        } else if (damage == QStringLiteral("undecodable")) {
            store.write(libraryFile, "{");
        } else if (damage == QStringLiteral("patch missing")) {
            QVERIFY(QFile::remove(store.filePath(leadFile)));
        } else if (damage == QStringLiteral("patch damaged")) {
            store.write(leadFile, "no preset file");
        } else if (damage == QStringLiteral("copy only")) {
            QVERIFY(QFile::rename(store.filePath(libraryFile), store.filePath(libraryCopy)));
        } else if (damage == QStringLiteral("every patch missing")) {
            for (const VelgorPatch &stored : three().patches) {
                QVERIFY(QFile::remove(store.filePath(fileOf(stored))));
            }
        }
        LibraryStorageManager decoding(store.path());
        const auto expected = decoding.decodeLibrary();
        const QStringList expectedLines = store.lines.take();

        LibraryStorageManager &manager = store.storage;
        const QSignalSpy readErrors(&manager, &LibraryStorageManager::readErrorChanged);
        const QSignalSpy finished(&manager, &LibraryStorageManager::loadFinished);
        manager.startLoading();
        QVERIFY(manager.isLoading());
        QTRY_VERIFY(!manager.isLoading());
        QCOMPARE(finished.count(), 1);
        QCOMPARE(store.lines.take(), expectedLines);
        QCOMPARE(manager.readError(), decoding.readError());
        QCOMPARE(readErrors.count(), decoding.readError() ? 1 : 0);
        QCOMPARE(manager.readProblem().value_or(Problem()).text(), decoding.readProblem().value_or(Problem()).text());
        QCOMPARE(manager.droppedPatches(), decoding.droppedPatches());
        QCOMPARE(manager.writeError(), decoding.writeError());
        const auto loaded = manager.takeLoadedLibrary();
        QCOMPARE(loaded.has_value(), expected.has_value());
        if (loaded) {
            QVERIFY(areIdentical(loaded->patches, expected->patches));
            QCOMPARE(loaded->defaultPatch, expected->defaultPatch);
        }
        QVERIFY(!manager.takeLoadedLibrary());

        // What the next save has to keep is known, too.
        manager.save(VelgorLibrary(three().patches, std::nullopt));
        QCOMPARE(manager.keptFiles().isEmpty(), !decoding.readProblem() && decoding.droppedPatches().isEmpty());
    }

    static void eventsAreServedAndProgressIsReportedWhileLoading()
    {
        Stored store(manyEntries);
        const QSignalSpy progress(&store.storage, &LibraryStorageManager::loadProgress);
        int served = 0;
        QTimer heartbeat;
        connect(&heartbeat, &QTimer::timeout, &heartbeat, [&served] { ++served; });
        heartbeat.start(5ms);
        QElapsedTimer timer;
        timer.start();
        store.storage.startLoading();
        QTRY_VERIFY_WITH_TIMEOUT(!store.storage.isLoading(), 60000);
        const qint64 elapsed = timer.elapsed();
        QVERIFY2(elapsed > 40 && served >= elapsed / 50, qPrintable(QString::number(elapsed)));
        QVERIFY2(!progress.isEmpty() && progress.count() <= elapsed * 30 / 1000 + 1,
            qPrintable(QStringLiteral("%1 in %2 ms").arg(progress.count()).arg(elapsed)));
        qlonglong before = 0;
        for (const QList<QVariant> &report : progress) {
            QVERIFY(report.at(0).toLongLong() > before);
            QVERIFY(report.at(0).toLongLong() <= manyEntries);
            QCOMPARE(report.at(1).toLongLong(), manyEntries);
            before = report.at(0).toLongLong();
        }
        QCOMPARE(store.storage.takeLoadedLibrary()->patches.size(), 3);
    }

    static void secondStartWhileLoadingChangesNothing()
    {
        StoreFixture store(three());
        const QSignalSpy finished(&store.storage, &LibraryStorageManager::loadFinished);
        store.storage.startLoading();
        store.storage.startLoading();
        QTRY_VERIFY(!store.storage.isLoading());
        QTest::qWait(100);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(store.lines.take().size(), 1);
    }

    static void loadsCanFollowEachOther()
    {
        StoreFixture store(three());
        const QSignalSpy finished(&store.storage, &LibraryStorageManager::loadFinished);
        for (int i = 1; i <= 3; ++i) {
            store.storage.startLoading();
            // Decoding waits for the load, whose end is still on its way through the event loop afterwards.
            QVERIFY(store.storage.decodeLibrary());
            QCOMPARE(finished.count(), 2 * i - 1);
            store.storage.startLoading();
            QVERIFY(store.storage.isLoading());
            QTRY_VERIFY(!store.storage.isLoading());
            QCOMPARE(finished.count(), 2 * i);
            QCOMPARE(store.storage.takeLoadedLibrary()->patches.size(), 3);
        }
    }

    static void endOfAnEarlierLoadIsNotTakenForTheEndOfTheNext()
    {
        StoreFixture store(three());
        store.storage.startLoading();
        QVERIFY(store.storage.decodeLibrary());
        const WorkerGate gate(store.storage.worker());
        store.storage.startLoading();
        QCoreApplication::processEvents();
        QVERIFY(store.storage.isLoading());
    }

    static void saveDueDuringTheLoadComesAfterItWithWhatWasTakenOver()
    {
        Loading store(1ms);
        store.requestSave();
        while (!store.lines.lines().contains(QStringLiteral("Saving library..."))) {
            QCoreApplication::processEvents();
        }
        QVERIFY(store.storage.isLoading() && store.storage.waitingToSave() && store.storage.hasUnsavedChanges());
        store.gate.open();
        QTRY_VERIFY(!store.storage.isLoading());
        QTRY_VERIFY(!store.storage.waitingToSave());
        QVERIFY(!store.storage.hasUnsavedChanges());
        const QStringList printed = store.lines.take();
        const auto at = [&printed](const char *line) { return printed.indexOf(QLatin1String(line)); };
        QVERIFY(at("Saving library...") >= 0);
        QVERIFY(at("Saving library...") < at("Incomplete library loading: 3 out of 4"));
        QCOMPARE(at("Saving in progress..."), at("Incomplete library loading: 3 out of 4") + 1);
        QCOMPARE(printed.count(QStringLiteral("Saving in progress...")), 1);
        QCOMPARE(store.loaded().size(), 3);
    }

    static void saveStartedDuringTheLoadComesAfterItWithWhatWasTakenOver()
    {
        Loading store;
        store.storage.startSave(store.library);
        QVERIFY(store.storage.isLoading() && store.storage.hasUnsavedChanges() && !store.storage.isSaving());
        store.gate.open();
        QTRY_VERIFY(!store.storage.hasUnsavedChanges());
        QCOMPARE(store.loaded().size(), 3);
    }

    static void directCallsWaitForTheLoad_data()
    {
        using Call = std::function<void(LibraryStorageManager &, VelgorLibrary &)>;
        QTest::addColumn<Call>("call");
        QTest::newRow("save") << Call([](auto &manager, auto &library) { manager.save(library); });
        QTest::newRow("remove") << Call([](auto &manager, auto &) {
            manager.remove({42});
            manager.finish();
        });
        QTest::newRow("save at the end") << Call([](auto &manager, auto &library) {
            manager.delayedSave(library);
            QVERIFY(manager.saveUnsaved());
        });
        QTest::newRow("sweep") << Call([](auto &manager, auto &) { manager.sweepLeftovers(); });
    }
    static void directCallsWaitForTheLoad()
    {
        using Call = std::function<void(LibraryStorageManager &, VelgorLibrary &)>;
        QFETCH(const Call, call);
        Loading store(StoreFixture::never, 100ms);
        QVERIFY(store.storage.isLoading());
        call(store.storage, store.library);
        QVERIFY(!store.storage.isLoading() && !store.storage.hasUnsavedChanges());
        QCOMPARE(store.library.count(), 3);
        QCOMPARE(store.loaded().size(), 3);
    }

    static void destructionEndsTheLoad()
    {
        Stored store(manyEntries);
        {
            LibraryStorageManager manager(store.path());
            manager.startLoading();
            QVERIFY(manager.isLoading());
        }
        // That comes at the end of a whole load.
        QCOMPARE(store.lines.take().filter(QStringLiteral("Incomplete library loading")), QStringList());
        QCoreApplication::processEvents();
    }
};

VELGOR_TEST(TestBackgroundLoad)
#include "tst_BackgroundLoad.moc"
