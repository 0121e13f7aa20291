#pragma once

#include <QString>

namespace FishCompletion {

/// The completion of `velgor` for fish, made from the table of commands.
[[nodiscard]] QString text();

} // namespace FishCompletion
