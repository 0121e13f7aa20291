#pragma once

#include "KeptLibraries.h"
#include "LibraryCheckRow.h"

#include <QList>
#include <QString>

#include <optional>

/// What the library check says about former libraries and about files that were set aside.
namespace KeptLibraryText {

/// Under a title each: the former libraries, the latest first, and the damaged patch files.
[[nodiscard]] QList<LibraryCheckRow> rows(const LibraryHealth &health, const QString &directory);
/// What restoring a former library would come to.
[[nodiscard]] QString preview(const std::optional<KeptLibraries::Preview> &preview);

} // namespace KeptLibraryText
