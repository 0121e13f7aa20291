#pragma once

#include "Alert.h"

#include <QStringList>

class LibraryEditor;
class LibraryStorageManager;
class VelgorContent;
class VelgorLibrary;
struct Editors;

/// What the messages say about the present state.
namespace AlertTexts {

[[nodiscard]] Alert openError(const QString &problem);
/// The list was imported with names that are no text.
[[nodiscard]] Alert unreadableNames(const VelgorContent &content);
/// Preset files were dropped on the library that have such names. One line a file, with its name and the slots.
[[nodiscard]] Alert unreadableNamesKept(const QStringList &places);
[[nodiscard]] Alert saveError(const QString &problem);
[[nodiscard]] Alert selectDefault(const VelgorLibrary &library);
[[nodiscard]] Alert mixVersions(const VelgorContent &content, const Editors &editors);
[[nodiscard]] Alert readError(const LibraryStorageManager &storage);
[[nodiscard]] Alert writeError(const LibraryStorageManager &storage);
[[nodiscard]] Alert deleteConfirm(const VelgorLibrary &library, const LibraryEditor &editor);
[[nodiscard]] Alert confirmExport(const VelgorContent &content);
/// A file was dropped or handed over while the list was not exported, or, with no path, a new list was asked for.
[[nodiscard]] Alert replaceUnexported(const QString &path);
/// Several files were dropped on the list; only the first can take its place.
[[nodiscard]] Alert severalFiles(const QStringList &paths, bool isListModified);
/// Files were dropped on the library that hold no patches; `count` files were dropped in all.
[[nodiscard]] Alert filesNotKept(const QStringList &problems, qsizetype count);
/// The window closes while the list was not exported.
[[nodiscard]] Alert closeUnexported();
/// The window closes and the library could not be saved.
[[nodiscard]] Alert closeUnsaved(const LibraryStorageManager &storage);
/// The library directory belongs to another program.
[[nodiscard]] Alert directoryInUse(const QString &reason);
/// The desktop has nothing that shows a directory.
[[nodiscard]] Alert cannotShowDirectory(const QString &directory);
/// The desktop has nothing that shows a page of the web.
[[nodiscard]] Alert cannotOpenPage(const QString &address);
[[nodiscard]] Alert cannotMoveLibrary(const QString &problem);
/// A save has put the former library file aside.
[[nodiscard]] Alert keptFiles(const LibraryStorageManager &storage);
/// Loading left patches out; says which, and that nothing of the old library file is lost.
[[nodiscard]] Alert incompleteLibrary(const LibraryStorageManager &storage);

} // namespace AlertTexts
