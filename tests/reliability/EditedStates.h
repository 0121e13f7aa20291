#pragma once

#include "LibraryJson.h"
#include "LibraryStorageManager.h"
#include "VelgorLibrary.h"

#include <QCryptographicHash>

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

/// What a library was after each of its edits.
namespace EditedStates {

/// The patch that tells in its comment how many edits there were. It is not edited otherwise, and stays.
inline constexpr quint64 countingId = 1;

inline std::string hashOf(const QList<VelgorPatch> &patches, std::optional<quint64> defaultPatch)
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

} // namespace EditedStates
