#pragma once

#include <QString>

namespace ManPage {

/// The man page of `velgor` as roff, made from the table of commands.
[[nodiscard]] QString text();

} // namespace ManPage
