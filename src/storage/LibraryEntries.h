#pragma once

#include "VelgorPatch.h"

#include <QHash>
#include <QList>

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
    /// -1 for an id that no patch has.
    [[nodiscard]] qsizetype rowOf(quint64 id) const { return m_rows.value(id, -1); }
    /// Whose patch was read for an entry.
    enum class Owner {
        Entry, ///< its id is the hash of what was read, or one of another kind that the patch may have got
        Unknown, ///< its id is not the hash, for whatever reason
        OtherEntry, ///< it cannot have got this id; another entry has the id that it gives, and its name
    };
    [[nodiscard]] Owner ownerOf(const VelgorPatch &read, const VelgorPatch &entry) const;

private:
    QList<VelgorPatch> m_patches;
    QHash<quint64, qsizetype> m_rows; ///< by id
    QHash<quint64, quint64> m_storedIds; ///< by the fresh id
};
