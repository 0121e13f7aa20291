#pragma once

#include "LibraryHealth.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// Former library files that were kept under dated names, and what restoring one of them would come to.
namespace KeptLibraries {

struct Found {
    QList<KeptLibrary> libraries; ///< the latest first
    QStringList patchFiles; ///< damaged preset files that were set aside, relative to the directory
};

/// What the directory holds.
[[nodiscard]] Found find(const QString &directory);

/// A former library, complete with the preset data that is still there, and how it differs from the present one.
struct Preview {
    QList<VelgorPatch> patches;
    std::optional<quint64> defaultPatch;
    QStringList comingBack; ///< names of patches that the present library does not have
    QStringList changing; ///< names of patches that the present library has with another name, comment or mark
    QStringList leaving; ///< names of patches that only the present library has; their files stay
    QStringList withoutFile; ///< names of patches whose preset files are gone, so that they cannot come back
};

/// What restoring `file` would make of `present`; nothing when it cannot be read as a library file.
[[nodiscard]] std::optional<Preview> preview(
    const QString &directory, const QString &file, const QList<VelgorPatch> &present);

} // namespace KeptLibraries
