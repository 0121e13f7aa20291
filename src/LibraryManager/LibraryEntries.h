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

private:
    QList<VelgorPatch> m_patches;
    QHash<quint64, quint64> m_storedIds; ///< by the fresh id
};
