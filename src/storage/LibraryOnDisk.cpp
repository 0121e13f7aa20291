#include "LibraryOnDisk.h"

#include "LibraryFileNames.h"
#include "LibrarySweeper.h"
#include "LibraryWriter.h"

#include <utility>

LibraryOnDisk::LibraryOnDisk(const QString &directory, const LibraryWriteState &state)
    : m_directory(directory)
    , m_state(state)
{
}

LibraryLoadResult LibraryOnDisk::load(const LibraryLoader::Report &report, LibraryLoader::Sounds sounds)
{
    LibraryLoadResult result = LibraryLoader(m_directory, report, sounds).load();
    m_leftovers = std::exchange(result.leftovers, {});
    keepState(result.writeState);
    return result;
}

LibraryWriteResult LibraryOnDisk::save(const LibraryState &library, const QList<quint64> &removed, bool isFileToKeep)
{
    m_state.idsToRemove.append(removed);
    if (isFileToKeep && !m_state.filesToKeep.contains(LibraryFileNames::libraryFile())) {
        m_state.filesToKeep.append(LibraryFileNames::libraryFile());
    }
    LibraryWriteResult result = LibraryWriter(m_directory, m_state).save(library);
    keepState(result.state);
    return result;
}

void LibraryOnDisk::keepState(LibraryWriteState &state)
{
    m_state = std::exchange(state, {});
    state.idsToRemove = m_state.idsToRemove;
    state.unread = m_state.unread;
}

QList<quint64> LibraryOnDisk::sweep()
{
    LibrarySweeper sweeper(m_directory, std::exchange(m_leftovers, {}));
    sweeper.sweep();
    m_state.idsToRemove.append(sweeper.notRemoved());
    if (sweeper.isLibraryFileCompleted()) {
        m_state.libraryFile = sweeper.stamp();
        // What the copy held that could not be loaded is in the library file now.
        if (m_state.filesToKeep.removeAll(LibraryFileNames::libraryCopy()) > 0) {
            m_state.filesToKeep.append(LibraryFileNames::libraryFile());
        }
    }
    return m_state.idsToRemove;
}
