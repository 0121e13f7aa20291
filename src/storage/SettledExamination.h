#pragma once

#include "LibraryHealth.h"

#include <QString>

/// Examines a library directory beside programs that may change it.
namespace SettledExamination {

/// Examines again, for a second or so, while another program changes the directory, and finds only what stays.
/// `directory` is a path without a slash at its end.
[[nodiscard]] LibraryHealth examine(const QString &directory);

} // namespace SettledExamination
