#pragma once

#include "Alert.h"
#include "Desk.h"

#include <QStringList>

/// What the messages say about the present state.
namespace AlertTexts {

[[nodiscard]] Alert openError(const Desk &desk);
/// The list was imported with names that are no text.
[[nodiscard]] Alert unreadableNames(const Desk &desk);
/// Preset files were dropped on the library that have such names. One line a file, with its name and the slots.
[[nodiscard]] Alert unreadableNamesKept(const QStringList &places);
[[nodiscard]] Alert saveError(const Desk &desk);
[[nodiscard]] Alert selectDefault(const Desk &desk);
[[nodiscard]] Alert mixVersions(const Desk &desk);
[[nodiscard]] Alert readError(const Desk &desk);
[[nodiscard]] Alert writeError(const Desk &desk);
[[nodiscard]] Alert deleteConfirm(const Desk &desk);
[[nodiscard]] Alert confirmExport(const Desk &desk);
/// A file was dropped or handed over while the list was not exported, or, with no path, a new list was asked for.
[[nodiscard]] Alert replaceUnexported(const QString &path);
/// Several files were dropped on the list; only the first can take its place.
[[nodiscard]] Alert severalFiles(const QStringList &paths, bool isListModified);
/// Files were dropped on the library that hold no patches; `count` files were dropped in all.
[[nodiscard]] Alert filesNotKept(const QStringList &problems, qsizetype count);
/// The window closes while the list was not exported.
[[nodiscard]] Alert closeUnexported(const Desk &desk);
/// The window closes and the library could not be saved.
[[nodiscard]] Alert closeUnsaved(const Desk &desk);
/// The library directory belongs to another program.
[[nodiscard]] Alert directoryInUse(const QString &reason);
/// The desktop has nothing that shows a directory.
[[nodiscard]] Alert cannotShowDirectory(const QString &directory);
/// The desktop has nothing that shows a page of the web.
[[nodiscard]] Alert cannotOpenPage(const QString &address);
[[nodiscard]] Alert cannotMoveLibrary(const QString &problem);
/// A save has put the former library file aside.
[[nodiscard]] Alert keptFiles(const Desk &desk);
/// Loading left patches out; says which, and that nothing of the old library file is lost.
[[nodiscard]] Alert incompleteLibrary(const Desk &desk);

} // namespace AlertTexts
