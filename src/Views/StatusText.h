#pragma once

#include "Desk.h"

#include <QString>
#include <QStringList>

struct DropMark;

/// The line at the window's lower edge.
namespace StatusText {

/// How the library stands: saved, being saved, or where it is kept.
[[nodiscard]] QString ofLibrary(const Desk &desk);
/// What letting go of a drag over the slots does; empty when it would do nothing.
[[nodiscard]] QString ofDrop(const DropMark &mark);

/// What letting go of preset files does.
[[nodiscard]] QString ofFileDrop(const QStringList &paths, bool isForLibrary);
/// What was done last. A name or path may be anything.
[[nodiscard]] QString ofKept(qsizetype kept, qsizetype known);
[[nodiscard]] QString ofDuplicates(const QString &firstName, qsizetype count);
/// `row` counts from 0 in the whole library.
[[nodiscard]] QString ofPatchMove(const QString &name, qsizetype row, qsizetype count);
[[nodiscard]] QString ofSlotMove(qsizetype first, qsizetype count);
[[nodiscard]] QString ofImport(qsizetype count, const QString &path);
[[nodiscard]] QString ofExport(qsizetype count, const QString &path);
[[nodiscard]] QString ofPatchExport(const QString &name, const QString &path);
[[nodiscard]] QString ofLibraryMove(const QString &path);
[[nodiscard]] QString ofPage(const QString &address);
/// That the filter hides some of what was said before; empty when it hides none.
[[nodiscard]] QString ofHidden(qsizetype hidden, qsizetype count);

/// A directory as people write it, with "~" for their home.
[[nodiscard]] QString directory(const QString &path);

} // namespace StatusText
