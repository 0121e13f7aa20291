#include "DiagnosticRecorder.h"
#include "LibraryStorageManager.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

const QString libraryFile = LibraryFileNames::libraryFile();
const QString leadFile = QStringLiteral("lib-Lead.42.prst");

void store(const LibraryDirectory &directory, const LibraryState &content)
{
    for (const VelgorPatch &stored : content.patches) {
        directory.write(LibraryFileNames::patchFile(stored.name, stored.id()), patchBytes(stored));
    }
    directory.write(libraryFile, LibraryJson::encode(content));
}

/// So many entries that loading them takes longer than what a test does meanwhile.
constexpr int manyEntries = 20000;

/// Three patches with files and, in front of them, as many entries without as it takes.
void storeMany(const LibraryDirectory &directory)
{
    LibraryState content = three();
    QList<VelgorPatch> patches;
    for (quint64 id = 1000; patches.size() < manyEntries - 3; ++id) {
        patches.append(TestPatches::stored(id, QStringLiteral("Missing")));
    }
    store(directory, content);
    content.patches = patches + content.patches;
    directory.write(libraryFile, LibraryJson::encode(content));
}

/// What an application does: its library takes over what was loaded.
void takeOverWhenLoaded(LibraryStorageManager &manager, VelgorLibrary &library)
{
    QObject::connect(&manager, &LibraryStorageManager::loadFinished, &library, [&manager, &library] {
        if (const auto loaded = manager.takeLoadedLibrary()) {
            library.adopt(*loaded);
        }
    });
}

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
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        store(directory, damage == QStringLiteral("empty") ? LibraryState() : three());
        if (damage == QStringLiteral("new")) {
            QVERIFY(QFile::remove(directory.filePath(libraryFile)));
        } else if (damage == QStringLiteral("undecodable")) {
            directory.write(libraryFile, "{");
        } else if (damage == QStringLiteral("patch missing")) {
            QVERIFY(QFile::remove(directory.filePath(leadFile)));
        } else if (damage == QStringLiteral("patch damaged")) {
            directory.write(leadFile, "no preset file");
        } else if (damage == QStringLiteral("copy only")) {
            QVERIFY(
                QFile::rename(directory.filePath(libraryFile), directory.filePath(LibraryFileNames::libraryCopy())));
        } else if (damage == QStringLiteral("every patch missing")) {
            for (const VelgorPatch &stored : three().patches) {
                QVERIFY(QFile::remove(directory.filePath(LibraryFileNames::patchFile(stored.name, stored.id()))));
            }
        }
        LibraryStorageManager decoding(directory.path());
        const auto expected = decoding.decodeLibrary();
        const QStringList expectedLines = lines.take();

        LibraryStorageManager manager(directory.path());
        const QSignalSpy readErrors(&manager, &LibraryStorageManager::readErrorChanged);
        const QSignalSpy finished(&manager, &LibraryStorageManager::loadFinished);
        manager.startLoading();
        QVERIFY(manager.isLoading());
        QTRY_VERIFY(!manager.isLoading());
        QCOMPARE(finished.count(), 1);
        QCOMPARE(lines.take(), expectedLines);
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
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        storeMany(directory);
        LibraryStorageManager manager(directory.path());
        const QSignalSpy progress(&manager, &LibraryStorageManager::loadProgress);
        int served = 0;
        QTimer heartbeat;
        connect(&heartbeat, &QTimer::timeout, &heartbeat, [&served] { ++served; });
        heartbeat.start(5ms);
        QElapsedTimer timer;
        timer.start();
        manager.startLoading();
        QTRY_VERIFY_WITH_TIMEOUT(!manager.isLoading(), 60000);
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
        QCOMPARE(manager.takeLoadedLibrary()->patches.size(), 3);
    }

    static void secondStartWhileLoadingChangesNothing()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        store(directory, three());
        LibraryStorageManager manager(directory.path());
        const QSignalSpy finished(&manager, &LibraryStorageManager::loadFinished);
        manager.startLoading();
        manager.startLoading();
        QTRY_VERIFY(!manager.isLoading());
        QTest::qWait(100);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(lines.take().size(), 1);
    }

    static void loadsCanFollowEachOther()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        store(directory, three());
        LibraryStorageManager manager(directory.path());
        const QSignalSpy finished(&manager, &LibraryStorageManager::loadFinished);
        for (int i = 1; i <= 3; ++i) {
            manager.startLoading();
            // Decoding waits for the load, whose end is still on its way through the event loop afterwards.
            QVERIFY(manager.decodeLibrary());
            QCOMPARE(finished.count(), 2 * i - 1);
            manager.startLoading();
            QVERIFY(manager.isLoading());
            QTRY_VERIFY(!manager.isLoading());
            QCOMPARE(finished.count(), 2 * i);
            QCOMPARE(manager.takeLoadedLibrary()->patches.size(), 3);
        }
    }

    static void endOfAnEarlierLoadIsNotTakenForTheEndOfTheNext()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        storeMany(directory);
        LibraryStorageManager manager(directory.path());
        manager.startLoading();
        QVERIFY(manager.decodeLibrary());
        manager.startLoading();
        QCoreApplication::processEvents();
        QVERIFY(manager.isLoading());
    }

    static void saveDueDuringTheLoadComesAfterItWithWhatWasTakenOver()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        storeMany(directory);
        LibraryStorageManager manager(directory.path(), 1ms);
        VelgorLibrary library;
        takeOverWhenLoaded(manager, library);
        manager.startLoading();
        manager.delayedSave(library);
        while (!lines.lines().contains(QStringLiteral("Saving library..."))) {
            QCoreApplication::processEvents();
        }
        QVERIFY(manager.isLoading() && manager.waitingToSave() && manager.hasUnsavedChanges());
        QTRY_VERIFY_WITH_TIMEOUT(!manager.isLoading(), 60'000);
        QTRY_VERIFY(!manager.waitingToSave());
        QVERIFY(!manager.hasUnsavedChanges());
        const QStringList printed = lines.take();
        const auto at = [&printed](const char *line) { return printed.indexOf(QLatin1String(line)); };
        QVERIFY(at("Saving library...") >= 0);
        QVERIFY(at("Saving library...") < at("Incomplete library loading: 3 out of 20000"));
        QCOMPARE(at("Saving in progress..."), at("Incomplete library loading: 3 out of 20000") + 1);
        QCOMPARE(printed.count(QStringLiteral("Saving in progress...")), 1);
        QCOMPARE(loaded(directory).size(), 3);
    }

    static void saveStartedDuringTheLoadComesAfterItWithWhatWasTakenOver()
    {
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        storeMany(directory);
        LibraryStorageManager manager(directory.path(), 60s);
        VelgorLibrary library;
        takeOverWhenLoaded(manager, library);
        manager.startLoading();
        manager.startSave(library);
        QVERIFY(manager.isLoading() && manager.hasUnsavedChanges() && !manager.isSaving());
        QTRY_VERIFY_WITH_TIMEOUT(!manager.hasUnsavedChanges(), 60'000);
        QCOMPARE(loaded(directory).size(), 3);
    }

    static void directCallsWaitForTheLoad_data()
    {
        using Call = std::function<void(LibraryStorageManager &, VelgorLibrary &)>;
        QTest::addColumn<Call>("call");
        QTest::addColumn<int>("stored");
        QTest::newRow("save") << Call([](auto &manager, auto &library) { manager.save(library); }) << 3;
        QTest::newRow("remove") << Call([](auto &manager, auto &) {
            manager.remove({42});
            manager.finish();
        }) << 3;
        QTest::newRow("save at the end") << Call([](auto &manager, auto &library) {
            manager.delayedSave(library);
            QVERIFY(manager.saveUnsaved());
        }) << 3;
        QTest::newRow("sweep") << Call([](auto &manager, auto &) { manager.sweepLeftovers(); }) << 3;
    }
    static void directCallsWaitForTheLoad()
    {
        using Call = std::function<void(LibraryStorageManager &, VelgorLibrary &)>;
        QFETCH(const Call, call);
        QFETCH(const int, stored);
        const DiagnosticRecorder silence;
        const LibraryDirectory directory;
        storeMany(directory);
        LibraryStorageManager manager(directory.path(), 60s);
        VelgorLibrary library;
        takeOverWhenLoaded(manager, library);
        manager.startLoading();
        QVERIFY(manager.isLoading());
        call(manager, library);
        QVERIFY(!manager.isLoading() && !manager.hasUnsavedChanges());
        QCOMPARE(library.count(), 3);
        QCOMPARE(loaded(directory).size(), stored);
    }

    static void destructionEndsTheLoad()
    {
        DiagnosticRecorder lines;
        const LibraryDirectory directory;
        storeMany(directory);
        {
            LibraryStorageManager manager(directory.path());
            manager.startLoading();
            QVERIFY(manager.isLoading());
        }
        // That comes at the end of a whole load.
        QCOMPARE(lines.take().filter(QStringLiteral("Incomplete library loading")), QStringList());
        QCoreApplication::processEvents();
    }
};

VELGOR_TEST(TestBackgroundLoad)
#include "tst_BackgroundLoad.moc"
