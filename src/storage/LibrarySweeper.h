#pragma once

#include "FileStamp.h"
#include "LibraryPlace.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QString>

/// What a program that was interrupted left in a library directory, as loading found it.
struct LibraryLeftovers {
    bool areKnown = false; ///< false when the library could not be read: anything may still be needed then
    bool isCopySpare = false; ///< the library file itself was good; a copy beside it serves nothing
    QByteArray completeText; ///< of the library file, where that one is missing or was cut while it was written
    QHash<QString, QString> unfinished; ///< temporary file that holds a patch, to the name that it is to have
    QList<quint64> removed; ///< ids whose files were to go, and that the library file does not hold
};

/// Finishes what an interrupted program began, and removes what is left of it. Only for the one program that uses the
/// directory, after it has loaded the library.
class LibrarySweeper {
    Q_DECLARE_TR_FUNCTIONS(LibrarySweeper)

public:
    /// `directory` is a path without a slash at its end.
    LibrarySweeper(const QString &directory, const LibraryLeftovers &leftovers);

    void sweep();
    /// The library file was completed from its copy by sweep().
    [[nodiscard]] bool isLibraryFileCompleted() const { return m_isLibraryFileCompleted; }
    /// The removed patches of which a file is still there; it is for the next save to remove.
    [[nodiscard]] QList<quint64> notRemoved() const { return m_notRemoved; }
    /// Of the library file that was completed.
    [[nodiscard]] std::optional<FileContentStamp> stamp() const { return m_stamp; }

private:
    void completeLibraryFile();
    void putInPlace();
    /// Another file in this place makes room.
    [[nodiscard]] bool putInPlace(const QString &prepared, const QString &name);
    void removePatchFiles();
    void removeTemporaryFiles();
    void removeWriteTestFile();
    bool remove(const QString &name) const;

    LibraryPlace m_place;
    LibraryLeftovers m_leftovers;
    bool m_isLibraryFileCompleted = false;
    std::optional<FileContentStamp> m_stamp;
    QList<quint64> m_notRemoved;
};
