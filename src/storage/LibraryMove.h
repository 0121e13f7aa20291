#pragma once

#include "LibraryJson.h"
#include "LibraryWriteResult.h"
#include "Result.h"

#include <QCoreApplication>
#include <QSet>
#include <QString>
#include <QStringList>

/// Writes a library to a directory that is to be its new place, and can take back everything that it did there.
class LibraryMove {
    Q_DECLARE_TR_FUNCTIONS(LibraryMove)

public:
    /// `directory` is an absolute path without a slash at its end.
    explicit LibraryMove(const QString &directory);

    /// Makes the directory where there is none. Refuses one that holds a library or cannot be listed.
    [[nodiscard]] Result<> makeDirectory();
    /// Writes the whole library. Files there that are in the way of a patch's are set aside.
    [[nodiscard]] Result<> write(const LibraryState &library);
    /// What write() came to.
    [[nodiscard]] const LibraryWriteResult &result() const { return m_result; }

    /// Removes what was written, and gives files of others their names back.
    [[nodiscard]] Result<> takeBackFiles();
    /// Removes the directories that were made, where nothing is in them.
    void removeDirectories();

private:
    QString m_directory;
    QStringList m_madeDirectories; ///< the innermost first
    bool m_isBegun = false; ///< something may have been written
    QSet<QString> m_former; ///< names that were there before
    LibraryWriteResult m_result;
};
