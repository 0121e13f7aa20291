#include "DirectoryReader.h"
#include "EditedStates.h"
#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

using namespace std::chrono_literals;
using namespace DirectoryReader;
using namespace EditedStates;

namespace {

constexpr auto savePeriod = 10ms;
constexpr std::chrono::milliseconds duration = 6s;
constexpr std::chrono::milliseconds longest = 60s;
constexpr int fewestSaves = 5;
/// Edits go on all the time; saves are asked for in every other stretch, so that they fall due in between.
constexpr std::chrono::milliseconds stretch = 40ms;
constexpr int mostEditsAtOnce = 20;
constexpr int fewestPatches = 12;
constexpr int mostPatches = 30;

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

LibraryState startLibrary()
{
    QList<VelgorPatch> patches;
    for (int i = 0; i < fewestPatches; ++i) {
        patches.append(
            TestLibraries::patch(QStringLiteral("Start %1").arg(i), countingId + static_cast<quint64>(i), i + 1));
    }
    return {patches, std::nullopt};
}

} // namespace

class TestEditsDuringSaves : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void everySaveHoldsAStateThatExisted()
    {
        StoreFixture store(savePeriod, startLibrary());
        WritingWatch writing;
        LibraryStorageManager &manager = store.storage;
        VelgorLibrary &library = store.library;
        States states;
        NotingStorage storage(manager, states);
        storage.startSave(library);
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
            const LibraryLoadResult onDisk = store.load();
            if (!onDisk.library || !onDisk.droppedPatches.isEmpty() || !states.has(*onDisk.library)
                || States::numberOf(onDisk.library->patches) < lastSaved) {
                problem = QStringLiteral("what a save left never existed, or is older than the one before");
            } else {
                lastSaved = States::numberOf(onDisk.library->patches);
            }
        });

        Edits edits(library, storage, writing);
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
                states.note(library);
            }
            if (clock.elapsed() / stretch.count() % 2 == 0) {
                storage.delayedSave(library);
            }
        });
        Reader reader(store.path(), states, writing);
        timer.start();
        // A busy machine gets more time to come to enough saves.
        const auto isEnough = [&] { return saves >= fewestSaves && editsDuringSaves > 0; };
        while (clock.elapsed() < (isEnough() ? duration : longest).count() && problem.isEmpty()) {
            QTest::qWait(50);
        }
        timer.stop();
        storage.delayedSave(library);
        QVERIFY(manager.saveUnsaved());
        writing.endAll();
        reader.stop();

        QCOMPARE(problem, QString());
        QCOMPARE(reader.problem(), QString());
        QVERIFY(!manager.writeError());
        const LibraryLoadResult atLast = store.load();
        QVERIFY(atLast.library && atLast.droppedPatches.isEmpty());
        QCOMPARE(hashOf(atLast.library->patches, atLast.library->defaultPatch),
            hashOf(library.patches(), library.defaultPatch()));
        qInfo("%d edits, %d of them during saves; %d background saves; %d whole loads, %d loads during saves",
            edits.count(), editsDuringSaves, saves, reader.wholeLoads(), reader.loadsDuringSaves());
        QVERIFY(edits.count() > 100 && isEnough());
        QVERIFY(reader.wholeLoads() > 10 && reader.loadsDuringSaves() > 0);
    }
};

VELGOR_TEST(TestEditsDuringSaves)
#include "tst_EditsDuringSaves.moc"
