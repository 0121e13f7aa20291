#pragma once

#include "Result.h"

#include <QStringList>

/// The words that a program was started with, each kept to the character.
///
/// QCoreApplication::arguments() leaves out a U+FEFF at the start of a word, and puts U+FFFD for what is no UTF-8.
namespace ProgramArguments {

/// Without the program's name. Every one has to be valid UTF-8.
[[nodiscard]] Result<QStringList> decode(int argc, const char *const *argv);

/// The words that are left once an application object was made of `argc` and `argv` and has taken its own. All are
/// valid UTF-8.
[[nodiscard]] QStringList remaining(int argc, const char *const *argv);

} // namespace ProgramArguments
