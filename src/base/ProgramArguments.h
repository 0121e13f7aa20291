#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

/// The words that a program was started with, each kept to the character.
///
/// QCoreApplication::arguments() leaves out a U+FEFF at the start of a word, and puts U+FFFD for what is no UTF-8.
namespace ProgramArguments {

/// Without the program's name. Nothing when one is not valid UTF-8; `bad` then holds its bytes.
[[nodiscard]] std::optional<QStringList> decode(int argc, const char *const *argv, QByteArray &bad);

/// What the user is told of such an argument.
[[nodiscard]] QString refusalOf(const QByteArray &bad);

/// The words that are left once an application object was made of `argc` and `argv` and has taken its own. All are
/// valid UTF-8.
[[nodiscard]] QStringList remaining(int argc, const char *const *argv);

} // namespace ProgramArguments
