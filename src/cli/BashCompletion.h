#pragma once

#include <QString>

namespace BashCompletion {

/// The completion of `velgor` for bash, made from the table of commands. It uses the package bash-completion, which is
/// what loads it.
[[nodiscard]] QString text();

} // namespace BashCompletion
