#include "LibraryEntries.h"

#include "PatchIdentity.h"
#include "PatchName.h"

LibraryEntries::LibraryEntries(const QList<VelgorPatch> &patches)
    : m_patches(patches)
{
    m_rows.reserve(patches.size());
    QHash<quint64, quint64> lastFresh; // for each id that stands there again: the chain goes on from here
    for (qsizetype row = 0; row < patches.size(); ++row) {
        const quint64 stored = patches.at(row).id();
        quint64 id = stored;
        if (m_rows.contains(id)) {
            id = lastFresh.value(id, id);
            while (m_rows.contains(id)) {
                id = PatchIdentity::idBeside(id);
            }
            lastFresh.insert(stored, id);
            m_patches[row] = patches.at(row).withId(id);
            m_storedIds.insert(id, stored);
        }
        m_rows.insert(id, row);
    }
}

LibraryEntries::Owner LibraryEntries::ownerOf(const VelgorPatch &read, const VelgorPatch &entry) const
{
    const quint64 id = storedId(entry);
    if (read.id() == id) {
        return Owner::Entry;
    }
    const auto row = m_rows.constFind(read.id());
    // Names that differ in one letter hash alike, and so do renamed copies: that an entry has this id is not enough.
    const bool isNamedLikeOther = row != m_rows.cend() && read.name == PatchName::fitted(m_patches.at(*row).name)
        && read.name != PatchName::fitted(entry.name);
    if (!isNamedLikeOther) {
        return Owner::Unknown;
    }
    return PatchIdentity::mayHaveId(read, id, entry.name) ? Owner::Entry : Owner::OtherEntry;
}
