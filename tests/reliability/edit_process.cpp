// A program to be killed: it edits a library without end, through the delayed and background save that the window has.
//
//   edit_process edit DIRECTORY SEED [EDITS]   prints, as each happens:
//       "edit N HASH"   the library as it is after edit N; where an edit saves at once, before that
//       "saved N"       everything up to edit N was reported as saved
//   edit_process state DIRECTORY               prints "HASH", the library as it is loaded

#include "Diagnostics.h"
#include "LibraryJson.h"
#include "LibraryLoader.h"
#include "LibraryLock.h"
#include "LibraryStorageManager.h"
#include "StoredEdits.h"
#include "TestPatches.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QTimer>

#include <cstdio>

using namespace std::chrono_literals;

namespace {

QByteArray hashOf(const LibraryState &content)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(LibraryJson::encode(content));
    for (const VelgorPatch &patch : content.patches) {
        hash.addData(patch.records->patchData.data);
        // The number in front of an impulse response is the place in a file.
        hash.addData(patch.records->userIRData.data.mid(SUserIR::numberSize));
    }
    return hash.result().toHex();
}

void print(const QByteArray &line)
{
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fflush(stdout);
}

class Editor : public LibraryStorage {
public:
    Editor(const QString &directory, quint32 seed, int edits)
        : m_storage(directory, 15ms)
        , m_random(seed)
        , m_editsLeft(edits)
    {
        if (const std::optional<LibraryState> loaded = m_storage.decodeLibrary()) {
            m_library.adopt(*loaded);
        }
        m_storage.sweepLeftovers();
        QObject::connect(&m_storage, &LibraryStorageManager::saveFinished, &m_timer, [this] { reportSaved(); });
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { step(); });
        m_timer.setSingleShot(true);
        announce();
        m_timer.start(0ms);
    }

    void remove(const QList<quint64> &patchIDs) override { m_storage.remove(patchIDs); }
    void startSave(const VelgorLibrary &library) override
    {
        announce();
        m_storage.startSave(library);
    }
    void delayedSave(const VelgorLibrary &library) override { m_storage.delayedSave(library); }

private:
    void announce() { print("edit " + QByteArray::number(m_edit) + ' ' + hashOf(m_library.state()) + '\n'); }

    void reportSaved()
    {
        if (!m_storage.hasUnsavedChanges() && m_storage.wasLastSaveWritten() && m_saved != m_edit) {
            m_saved = m_edit;
            print("saved " + QByteArray::number(m_saved) + '\n');
        }
    }

    void step()
    {
        if (m_editsLeft-- == 0) {
            m_storage.saveUnsaved();
            reportSaved();
            QCoreApplication::exit(m_storage.writeError() ? 1 : 0);
            return;
        }
        ++m_edit;
        editSomething();
        // Bursts, and pauses in which a save comes to its end.
        const quint32 wait = m_random.bounded(8U) == 0 ? m_random.bounded(120U) : m_random.bounded(8U);
        m_timer.start(std::chrono::milliseconds(wait));
    }

    void editSomething()
    {
        const quint32 kind = m_random.bounded(20U);
        const qsizetype count = m_library.count();
        if (count < 4 || (kind == 0 && count < 200)) {
            QList<VelgorPatch> patches;
            for (quint32 i = m_random.bounded(1U, 5U); i > 0; --i) {
                patches.append(TestPatches::imported(QStringLiteral("%1 New").arg(m_random.bounded(10'000U)),
                    static_cast<int>(m_random.bounded(1'000'000U))));
            }
            m_library.appendNew(patches);
        } else if (kind == 1 && count < 200) {
            StoredEdits::duplicate(m_library, randomPatch().id(), *this);
            announce();
            return;
        } else if (kind == 2) {
            StoredEdits::deletePatches(m_library, {randomPatch().id(), randomPatch().id()}, *this);
            reportSaved();
            return;
        } else if (kind == 3) {
            StoredEdits::setDefault(m_library, randomPatch().id(), *this);
        } else {
            VelgorPatch patch = randomPatch();
            patch.comment = QStringLiteral("edit %1").arg(m_edit);
            patch.solo = m_random.bounded(2U) == 0;
            if (kind == 4 || kind == 5) {
                patch.name = QStringLiteral("%1 Renamed").arg(m_random.bounded(10'000U));
            }
            m_library.update(patch);
        }
        announce();
        m_storage.delayedSave(m_library);
    }

    [[nodiscard]] VelgorPatch randomPatch()
    {
        return m_library.patches().at(m_random.bounded(static_cast<int>(m_library.count())));
    }

    VelgorLibrary m_library;
    LibraryStorageManager m_storage;
    QRandomGenerator m_random;
    QTimer m_timer;
    int m_edit = 0;
    int m_saved = 0;
    int m_editsLeft;
};

int printState(const QString &directory)
{
    const LibraryLoadResult loaded = LibraryLoader(directory).load();
    if (loaded.problem || !loaded.droppedPatches.isEmpty()) {
        std::fprintf(stderr, "%s\n%s\n", qPrintable(loaded.problem.value_or(Problem()).text()),
            qPrintable(loaded.droppedPatches.join(QStringLiteral(", "))));
        return 1;
    }
    print(hashOf(loaded.library.value_or(LibraryState())) + '\n');
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Diagnostics::setSink(Diagnostics::standardError());
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == QStringLiteral("state")) {
        return printState(arguments.at(2));
    }
    if (arguments.size() < 4 || arguments.at(1) != QStringLiteral("edit")) {
        std::fprintf(stderr, "usage: edit_process edit DIRECTORY SEED [EDITS] | state DIRECTORY\n");
        return 2;
    }
    LibraryLock lock(arguments.at(2));
    if (!lock.tryLock()) {
        std::fprintf(stderr, "the library is in use\n");
        return 2;
    }
    const Editor editor(arguments.at(2), arguments.at(3).toUInt(), arguments.value(4, QStringLiteral("-1")).toInt());
    return QCoreApplication::exec();
}
