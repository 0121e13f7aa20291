#pragma once

#include "LibraryCheckRow.h"
#include "LibraryHealth.h"

#include <QList>

/// What the library check says about its findings.
namespace LibraryFindingText {

/// The findings under a title for each kind, in a fixed order.
[[nodiscard]] QList<LibraryCheckRow> rows(const QList<LibraryFinding> &findings);
/// "12 findings in the library folder".
[[nodiscard]] QString summary(qsizetype findings);

} // namespace LibraryFindingText
