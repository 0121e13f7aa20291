#pragma once

#include <QString>

namespace ZshCompletion {

/// The completion of `velgor` for zsh, made from the table of commands; for a file `_velgor` in its path of functions.
[[nodiscard]] QString text();

} // namespace ZshCompletion
