#pragma once

#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "LibraryJournal.h"
#include "OpenDirectory.h"
#include "Result.h"
#include "VelgorPatch.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// The directory of a library: where it is, held open as long as the object lives, and what is in it.
class LibraryPlace {
public:
    /// True for a directory with a library in it, whole or as an interrupted save left it.
    [[nodiscard]] static bool holdsLibrary(const QString &directory);
    /// False when the path of a directory changes by percent-encoding. Such a directory is not listed.
    [[nodiscard]] static bool isListable(const QString &directory);

    /// Makes the directory where there is none, and tries to write there then.
    [[nodiscard]] static Result<> make(const QString &directory);

    /// `directory` is a path without a slash at its end.
    explicit LibraryPlace(const QString &directory);

    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] QString pathOf(const QString &name) const { return m_path + u'/' + name; }
    [[nodiscard]] const OpenDirectory &directory() const { return m_directory; }
    /// Everything in it and below; nothing when that cannot be told.
    [[nodiscard]] std::optional<DirectoryListing> list() const { return DirectoryListing::scan(m_path); }
    /// There is a file of this name.
    [[nodiscard]] bool has(const QString &name) const;

    /// Any file. Follows no link.
    [[nodiscard]] Result<QByteArray> read(const QString &name) const;
    /// The same for one of many.
    [[nodiscard]] Result<DiskFiles::ReadFile> readPatchFile(const QString &name, QByteArray room = {}) const;
    /// The patch of a file that holds exactly one, with the id and the name of its content.
    [[nodiscard]] Result<VelgorPatch> patch(const QString &name) const;
    /// What a save that has not ended is about to do.
    [[nodiscard]] std::optional<LibraryJournal> journal() const;
    /// Ends the journal of a library file that could not be decoded and may have held what it speaks of: what it
    /// prepared becomes files without an entry, which can be added, and what it wanted to remove stays.
    void settleOrphanedJournal() const;

    [[nodiscard]] Result<> remove(const QString &name) const;
    /// Never replaces another file.
    [[nodiscard]] Result<> move(const QString &from, const QString &to) const;
    /// Moves what is in the place of a patch's own file, and is not it, to a name of its own, which it gives.
    [[nodiscard]] Result<QString> setAside(const QString &name, quint64 patchID) const;

private:
    QString m_path;
    OpenDirectory m_directory;
};
