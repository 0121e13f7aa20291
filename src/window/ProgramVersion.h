#pragma once

#include <QString>

/// Which program this is, for people and for reports about problems.
namespace ProgramVersion {

[[nodiscard]] QString number();
/// What the sources were that the program was built from, as Git names it; empty when nobody knew.
[[nodiscard]] QString commit();
/// Both.
[[nodiscard]] QString text();

} // namespace ProgramVersion
