#include "Diagnostics.h"
#include "LibraryStorageManager.h"
#include "StoredEdits.h"
#include "TestLibraries.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr auto savePeriod = 10ms;
constexpr std::chrono::milliseconds duration = 6s;
constexpr std::chrono::milliseconds longest = 60s;
constexpr int fewestSaves = 5;
/// Edits go on all the time; saves are asked for in every other stretch, so that they fall due in between.
constexpr std::chrono::milliseconds stretch = 40ms;
constexpr int mostEditsAtOnce = 20;
/// Several turns of the timer that edits.
constexpr auto editTime = 3ms;
constexpr int fewestPatches = 12;
constexpr int mostPatches = 30;
/// The patch that tells in its comment how many edits there were. It is not edited otherwise, and stays.
constexpr quint64 countingId = 1;

std::string hashOf(const QList<VelgorPatch> &patches, std::optional<quint64> defaultPatch)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(LibraryJson::encode({patches, defaultPatch}));
    for (const VelgorPatch &patch : patches) {
        hash.addData(patch.records ? patch.records->patchData.data : QByteArray("none"));
    }
    return hash.result().toStdString();
}

/// The library after each edit, by the number of the edit. For all threads.
class States {
public:
    void note(const VelgorLibrary &library)
    {
        const std::string hash = hashOf(library.patches(), library.defaultPatch());
        const std::size_t number = numberOf(library.patches());
        const std::lock_guard lock(m_mutex);
        m_hashes.resize(std::max(m_hashes.size(), number + 1));
        m_hashes[number] = hash;
    }

    [[nodiscard]] bool has(const LibraryState &library) const
    {
        const std::string hash = hashOf(library.patches, library.defaultPatch);
        const std::size_t number = numberOf(library.patches);
        const std::lock_guard lock(m_mutex);
        return number < m_hashes.size() && m_hashes[number] == hash;
    }

    [[nodiscard]] static std::size_t numberOf(const QList<VelgorPatch> &patches)
    {
        const auto found = std::find_if(
            patches.begin(), patches.end(), [](const VelgorPatch &patch) { return patch.id() == countingId; });
        return found != patches.end() ? found->comment.toULong() : 0;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_hashes;
};

/// Notes the state of the library before it can come to disk.
class NotingStorage : public LibraryStorage {
public:
    NotingStorage(LibraryStorageManager &manager, States &states)
        : m_manager(manager)
        , m_states(states)
    {
    }

    void remove(const QList<quint64> &patchIDs) override { m_manager.remove(patchIDs); }
    void startSave(const VelgorLibrary &library) override
    {
        m_states.note(library);
        m_manager.startSave(library);
    }
    void delayedSave(const VelgorLibrary &library) override
    {
        m_states.note(library);
        m_manager.delayedSave(library);
    }

private:
    LibraryStorageManager &m_manager;
    States &m_states;
};

/// Counts the beginnings and ends of writing, so that a reader knows whether it was alone. The counts put no order
/// between the threads, which would hide a race from the thread sanitizer.
class WritingWatch {
public:
    WritingWatch()
        : m_previous(Diagnostics::setSink([this](const QString &line) {
            if (line == QStringLiteral("Saving library...") || line == QStringLiteral("Saving in progress...")) {
                m_begun.fetch_add(1, std::memory_order_relaxed);
                // Edits are made before the save goes on: one that reads the library on its own thread races with them.
                std::this_thread::sleep_for(editTime);
            }
        }))
    {
    }
    ~WritingWatch() { Diagnostics::setSink(std::move(m_previous)); }
    Q_DISABLE_COPY_MOVE(WritingWatch)

    [[nodiscard]] int begun() const { return m_begun.load(std::memory_order_relaxed); }
    [[nodiscard]] int ended() const { return m_ended.load(std::memory_order_relaxed); }
    /// Several steps follow that belong together.
    void hold()
    {
        m_isHeld = true;
        m_begun.fetch_add(1, std::memory_order_relaxed);
    }
    void release() { m_isHeld = false; }
    /// Everything that has begun has ended.
    void endAll()
    {
        if (!m_isHeld) {
            m_ended.store(begun(), std::memory_order_relaxed);
        }
    }

private:
    std::atomic<int> m_begun = 0;
    std::atomic<int> m_ended = 0;
    bool m_isHeld = false;
    Diagnostics::Sink m_previous;
};

/// Loads the directory again and again, as another program would that looks at any moment.
class Reader {
public:
    Reader(const QString &directory, const States &states, const WritingWatch &writing)
        : m_directory(directory)
        , m_states(states)
        , m_writing(writing)
        , m_thread([this] { read(); })
    {
    }
    ~Reader() { stop(); }
    Q_DISABLE_COPY_MOVE(Reader)

    void stop()
    {
        m_isStopped = true;
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }
    /// After stop().
    [[nodiscard]] QString problem() const { return m_problem; }
    [[nodiscard]] int wholeLoads() const { return m_wholeLoads; }
    [[nodiscard]] int loadsDuringSaves() const { return m_loadsDuringSaves; }

private:
    void read()
    {
        std::size_t last = 0;
        while (!m_isStopped && m_problem.isEmpty()) {
            const int begun = m_writing.begun();
            const bool wasQuiet = m_writing.ended() == begun;
            const LibraryLoadResult result = LibraryLoader(m_directory).load();
            const bool isWhole = result.library && result.droppedPatches.isEmpty() && !result.problem;
            const bool wasAlone = wasQuiet && m_writing.begun() == begun;
            m_loadsDuringSaves += wasAlone ? 0 : 1;
            if (!isWhole) {
                // A file may have moved on under its reader, but only while somebody writes.
                if (wasAlone) {
                    m_problem = QStringLiteral("a load that no save disturbed leaves out: %1 %2")
                                    .arg(result.droppedPatches.join(u' '), result.problem.value_or(Problem()).text());
                }
                continue;
            }
            const std::size_t number = States::numberOf(result.library->patches);
            if (!m_states.has(*result.library)) {
                m_problem = QStringLiteral("what was loaded after edit %1 never existed").arg(number);
            } else if (number < last) {
                m_problem = QStringLiteral("edit %1 was on disk, and then edit %2").arg(last).arg(number);
            }
            last = number;
            ++m_wholeLoads;
        }
    }

    QString m_directory;
    const States &m_states;
    const WritingWatch &m_writing;
    std::atomic<bool> m_isStopped = false;
    QString m_problem;
    int m_wholeLoads = 0;
    int m_loadsDuringSaves = 0;
    std::thread m_thread; ///< last, because it uses the rest
};

/// One edit after the other, of every kind.
class Edits {
public:
    Edits(VelgorLibrary &library, NotingStorage &storage, WritingWatch &writing)
        : m_library(library)
        , m_storage(storage)
        , m_writing(writing)
    {
    }

    [[nodiscard]] int count() const { return m_count; }

    void makeOne()
    {
        VelgorPatch counting = *m_library.getPatchFromId(countingId)->patch;
        counting.comment = QString::number(++m_count);
        std::ignore = m_library.update(counting);
        const qsizetype row = m_random.bounded(qsizetype(1), m_library.patches().size());
        VelgorPatch patch = m_library.patches().at(row);
        switch (m_random.bounded(40)) {
        case 0:
            if (m_library.patches().size() > fewestPatches && m_random.bounded(4) == 0) {
                m_writing.hold();
                StoredEdits::deletePatches(m_library, {patch.id()}, m_storage);
                m_writing.release();
                return;
            }
            [[fallthrough]];
        case 1:
        case 2:
            if (m_library.patches().size() < mostPatches) {
                const auto id = static_cast<quint64>(100 + m_count);
                m_library.append(
                    TestLibraries::patch(QStringLiteral("New %1").arg(m_count), id, m_count), false, false);
            }
            return;
        case 3:
            StoredEdits::setDefault(m_library, patch.id(), m_storage);
            return;
        case 4:
            m_library.move(row, 1);
            return;
        case 5:
        case 6:
        case 7:
        case 8:
            patch.name = QStringLiteral("Name %1/%2").arg(m_random.bounded(5)).arg(m_count);
            break;
        case 9:
        case 10:
        case 11:
        case 12:
            patch.guitar = !patch.guitar;
            break;
        default:
            patch.comment = QString(static_cast<int>(m_random.bounded(200)), u'c') + QString::number(m_count);
        }
        std::ignore = m_library.update(patch);
    }

private:
    VelgorLibrary &m_library;
    NotingStorage &m_storage;
    WritingWatch &m_writing;
    QRandomGenerator m_random{20};
    int m_count = 0;
};

std::unique_ptr<VelgorLibrary> startLibrary()
{
    QList<VelgorPatch> patches;
    for (int i = 0; i < fewestPatches; ++i) {
        patches.append(
            TestLibraries::patch(QStringLiteral("Start %1").arg(i), countingId + static_cast<quint64>(i), i + 1));
    }
    return std::make_unique<VelgorLibrary>(patches, std::nullopt);
}

} // namespace

class TestEditsDuringSaves : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void everySaveHoldsAStateThatExisted()
    {
        WritingWatch writing;
        const LibraryDirectory directory;
        LibraryStorageManager manager(directory.path(), savePeriod);
        States states;
        NotingStorage storage(manager, states);
        const auto library = startLibrary();
        storage.startSave(*library);
        manager.finish();
        writing.endAll();

        int saves = 0;
        int editsDuringSaves = 0;
        std::size_t lastSaved = 0;
        QString problem;
        QObject::connect(&manager, &LibraryStorageManager::saveFinished, [&] {
            // The next one may be writing already.
            if (manager.isSaving()) {
                return;
            }
            writing.endAll();
            ++saves;
            const LibraryLoadResult onDisk = TestLibraries::load(directory);
            if (!onDisk.library || !onDisk.droppedPatches.isEmpty() || !states.has(*onDisk.library)
                || States::numberOf(onDisk.library->patches) < lastSaved) {
                problem = QStringLiteral("what a save left never existed, or is older than the one before");
            } else {
                lastSaved = States::numberOf(onDisk.library->patches);
            }
        });

        Edits edits(*library, storage, writing);
        QElapsedTimer clock;
        clock.start();
        QTimer timer;
        timer.setTimerType(Qt::PreciseTimer);
        timer.setInterval(1ms);
        QObject::connect(&timer, &QTimer::timeout, [&] {
            // A deletion waits for the disk; what it held up is caught up with.
            for (int i = 0; i < mostEditsAtOnce && edits.count() < clock.elapsed(); ++i) {
                editsDuringSaves += writing.begun() != writing.ended() ? 1 : 0;
                edits.makeOne();
                states.note(*library);
            }
            if (clock.elapsed() / stretch.count() % 2 == 0) {
                storage.delayedSave(*library);
            }
        });
        Reader reader(directory.path(), states, writing);
        timer.start();
        // A busy machine gets more time to come to enough saves.
        const auto isEnough = [&] { return saves >= fewestSaves && editsDuringSaves > 0; };
        while (clock.elapsed() < (isEnough() ? duration : longest).count() && problem.isEmpty()) {
            QTest::qWait(50);
        }
        timer.stop();
        storage.delayedSave(*library);
        QVERIFY(manager.saveUnsaved());
        writing.endAll();
        reader.stop();

        QCOMPARE(problem, QString());
        QCOMPARE(reader.problem(), QString());
        QVERIFY(!manager.writeError());
        const LibraryLoadResult atLast = TestLibraries::load(directory);
        QVERIFY(atLast.library && atLast.droppedPatches.isEmpty());
        QCOMPARE(hashOf(atLast.library->patches, atLast.library->defaultPatch),
            hashOf(library->patches(), library->defaultPatch()));
        qInfo("%d edits, %d of them during saves; %d background saves; %d whole loads, %d loads during saves",
            edits.count(), editsDuringSaves, saves, reader.wholeLoads(), reader.loadsDuringSaves());
        QVERIFY(edits.count() > 100 && isEnough());
        QVERIFY(reader.wholeLoads() > 10 && reader.loadsDuringSaves() > 0);
    }
};

VELGOR_TEST(TestEditsDuringSaves)
#include "tst_EditsDuringSaves.moc"
