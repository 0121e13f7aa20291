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

} // namespace ProgramArguments
