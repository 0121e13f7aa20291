#pragma once

#include "LibraryHealth.h"
#include "LibraryLoader.h"

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

/// A patch whose preset file is there and gives no patch.
struct Unreadable {
    QString name;
    QString reason; ///< translated
};

/// A former library, complete with the preset data that is still there, and how it differs from the present one.
struct Preview {
    QList<VelgorPatch> patches;
    std::optional<quint64> defaultPatch;
    QStringList comingBack; ///< names of patches that the present library does not have
    QStringList changing; ///< names of patches that the present library has with another name, comment or mark
    QStringList leaving; ///< names of patches that only the present library has; their files stay
    QStringList withoutFile; ///< names of patches whose preset files are gone, so that they cannot come back
    QList<Unreadable> unreadable; ///< the other patches that cannot come back
    bool isDefaultChanging = false; ///< another patch becomes the default, or none does
    QString defaultName; ///< of the patch that will be the default; empty where none will
    bool isOrderChanging = false; ///< patches that both libraries have stand in another order
};

/// What restoring `file` would make of `present`; nothing when it cannot be read as a library file. `report` is called
/// as in loading.
[[nodiscard]] std::optional<Preview> preview(const QString &directory, const QString &file, const LibraryState &present,
    const LibraryLoader::Report &report = {});

} // namespace KeptLibraries
