#include "LibraryEntries.h"

#include "PatchIdentity.h"

#include <limits>

namespace {

/// Spread over 63 bits like any other id.
quint64 freshId(quint64 id)
{
    // The finaliser of the SplitMix64 generator.
    id += 0x9e3779b97f4a7c15;
    id = (id ^ (id >> 30)) * 0xbf58476d1ce4e5b9;
    id = (id ^ (id >> 27)) * 0x94d049bb133111eb;
    return (id ^ (id >> 31)) & std::numeric_limits<qint64>::max();
}

} // namespace

LibraryEntries::LibraryEntries(const QList<VelgorPatch> &patches)
    : m_patches(patches)
{
    m_ids.reserve(patches.size());
    QHash<quint64, quint64> lastFresh; // for each id that stands there again: the chain goes on from here
    for (qsizetype row = 0; row < patches.size(); ++row) {
        const quint64 stored = patches.at(row).id();
        quint64 id = stored;
        if (m_ids.contains(id)) {
            id = lastFresh.value(id, id);
            while (m_ids.contains(id)) {
                id = freshId(id);
            }
            lastFresh.insert(stored, id);
            m_patches[row] = patches.at(row).withId(id);
            m_storedIds.insert(id, stored);
        }
        m_ids.insert(id);
    }
}

LibraryEntries::Owner LibraryEntries::ownerOf(const VelgorPatch &read, const VelgorPatch &entry) const
{
    const quint64 id = storedId(entry);
    if (read.id() == id || PatchIdentity::mayHaveId(read, id, entry.name)) {
        return Owner::Entry;
    }
    return m_ids.contains(read.id()) ? Owner::OtherEntry : Owner::Unknown;
}
