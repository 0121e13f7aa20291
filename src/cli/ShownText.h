#pragma once

#include <QString>

/// Text of patches on its way to a terminal.
namespace ShownText {

/// Control characters become escapes, so that no name can play with the terminal or break a table.
[[nodiscard]] QString escaped(const QString &text);
/// Columns that a terminal gives to the text: 0 for combining characters, 2 for wide ones.
[[nodiscard]] int width(const QString &text);
/// `text` with spaces up to `columns`.
[[nodiscard]] QString padded(const QString &text, int columns);
/// The longest beginning that fits `columns`, ended by an ellipsis where something was cut.
[[nodiscard]] QString shortened(const QString &text, int columns);

} // namespace ShownText
