#pragma once

#include "ContentEditor.h"

#include <QList>
#include <QString>
#include <QStringList>

struct DropMark;
class LibraryStorageManager;
class VelgorContent;
class VelgorLibrary;

/// The line at the window's lower edge.
namespace StatusText {

/// How the library stands: saved, being saved, or where it is kept.
[[nodiscard]] QString ofLibrary(const VelgorLibrary &library, const LibraryStorageManager &storage);
/// What letting go of a drag does; empty when it would do nothing, or what is marked says it all.
[[nodiscard]] QString ofDrop(const DropMark &mark);
/// Where a patch goes in the whole library when only a part of it is shown. Rows count from 0; `before` is the name of
/// the patch that it will follow, empty for none.
[[nodiscard]] QString ofMove(const QString &name, qsizetype row, qsizetype count, const QString &before);
[[nodiscard]] QString ofMoveNowhere(const QString &name, qsizetype row, qsizetype count);
/// What the last placing of patches did.
[[nodiscard]] QString ofPlacement(const ContentEditor::Placement &placement);
/// What replacing the selected slots did.
[[nodiscard]] QString ofReplacement(const QString &name, const QList<qsizetype> &rows);
/// That patches got a classification, or lost it.
[[nodiscard]] QString ofClassification(const QString &firstName, qsizetype count, bool VelgorPatch::*flag, bool isSet);
/// That a change has made the sorted order the one that stays.
[[nodiscard]] QString ofSortedOrder();
/// What is missing before a patch can be put into a slot, or into every selected one; empty for nothing.
[[nodiscard]] QString ofMissingForPut(
    const VelgorLibrary &library, const VelgorContent &content, const ContentEditor &editor);

/// That the files of some patches may hold other ones than the library says; empty for none.
[[nodiscard]] QString ofDoubtfulPatches(qsizetype count);

/// What letting go of preset files does.
[[nodiscard]] QString ofFileDrop(const QStringList &paths, bool isForLibrary);
/// What was done last. A name or path may be anything.
[[nodiscard]] QString ofKept(qsizetype kept, qsizetype known);
[[nodiscard]] QString ofDeletion(const QString &firstName, qsizetype count);
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
