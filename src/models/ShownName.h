#pragma once

#include <QString>

/// The name of a patch or a file in a line of running text, whatever it holds and however long it is.
[[nodiscard]] QString shownName(const QString &name);
/// The name of the file at a path, in running text.
[[nodiscard]] QString shownFileName(const QString &path);
/// A path in running text. One that is very long lacks its middle, so that its end, the file, is seen.
[[nodiscard]] QString shownPath(const QString &path);
/// A text from elsewhere in running text: however it is written, what stands around it keeps its direction. What is
/// isolated within it stays so.
[[nodiscard]] QString isolated(const QString &text);
