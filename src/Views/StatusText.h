#pragma once

#include "Desk.h"

#include <QString>

struct DropMark;

/// The line at the window's lower edge.
namespace StatusText {

/// How the library stands: saved, being saved, or where it is kept.
[[nodiscard]] QString ofLibrary(const Desk &desk);
/// What letting go of a drag over the slots does; empty when it would do nothing.
[[nodiscard]] QString ofDrop(const DropMark &mark);

/// A directory as people write it, with "~" for their home.
[[nodiscard]] QString directory(const QString &path);

} // namespace StatusText
