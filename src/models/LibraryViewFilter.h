#pragma once

#include "PatchFields.h"

#include <QList>

#include <vector>

class VelgorLibrary;

/// Decides which library patches are shown. The criteria are held as a template patch.
class LibraryViewFilter {
public:
    /// Shows every patch.
    LibraryViewFilter();

    /// Name fragment, comment words and flags to ask for; nothing else of the template counts.
    VelgorPatch filterPatch;

    /// True when `patch` meets every criterion that is set. Flags can only be asked to be present.
    [[nodiscard]] bool show(const VelgorPatch &patch, PatchFields::Rows rows = PatchFields::all()) const;
    /// The patches that are shown, in their order.
    [[nodiscard]] QList<VelgorPatch> filter(
        const QList<VelgorPatch> &patches, PatchFields::Rows rows = PatchFields::all()) const;
    /// The rows of the patches that are shown, upwards. Reads the texts that the library keeps in lower case.
    [[nodiscard]] std::vector<qsizetype> shownRows(
        const VelgorLibrary &library, PatchFields::Rows fields = PatchFields::all()) const;
    /// True when every word of `comment`, split at spaces, occurs somewhere in `searchin`, whatever the case.
    [[nodiscard]] static bool containsComment(const QString &searchin, const QString &comment);

    bool operator==(const LibraryViewFilter &) const = default;
};
