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
    /// What was read for an entry belongs to another one: it cannot have got this id, and the other has the one that it
    /// gives. An id that nothing explains proves nothing alone, as other programs may number patches as they like.
    [[nodiscard]] bool isOfAnother(const VelgorPatch &read, const VelgorPatch &entry) const;

private:
    QList<VelgorPatch> m_patches;
    QSet<quint64> m_ids;
    QHash<quint64, quint64> m_storedIds; ///< by the fresh id
};
