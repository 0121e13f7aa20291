#pragma once

#include "VelgorPatch.h"

#include <QHash>
#include <QList>
#include <QSet>

/// The patches of a library file, each with an id of its own. Where an id stands there again, the later patch gets a
/// fresh one, the same at every reading of a library that nothing has saved since.
class LibraryEntries {
public:
    LibraryEntries() = default;
    explicit LibraryEntries(const QList<VelgorPatch> &patches);

    [[nodiscard]] const QList<VelgorPatch> &patches() const { return m_patches; }
    [[nodiscard]] bool hasFreshId(const VelgorPatch &patch) const { return m_storedIds.contains(patch.id()); }
    /// The id in the name of the patch's file.
    [[nodiscard]] quint64 storedId(const VelgorPatch &patch) const { return m_storedIds.value(patch.id(), patch.id()); }
    /// Whose patch was read for an entry.
    enum class Owner {
        Entry, ///< its id is one that this patch may have got
        Unknown, ///< it is not; but other programs may number patches as they like
        OtherEntry, ///< it is not, and another entry has the id that the patch gives
    };
    [[nodiscard]] Owner ownerOf(const VelgorPatch &read, const VelgorPatch &entry) const;

private:
    QList<VelgorPatch> m_patches;
    QSet<quint64> m_ids;
    QHash<quint64, quint64> m_storedIds; ///< by the fresh id
};
