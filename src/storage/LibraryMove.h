#pragma once

#include "LibraryJson.h"
#include "LibraryWriteResult.h"
#include "Result.h"
#include "Worker.h"

#include <QCoreApplication>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

/// Writes a library to a directory that is to be its new place, and can take back everything that it did there.
class LibraryMove {
    Q_DECLARE_TR_FUNCTIONS(LibraryMove)

public:
    /// What is done on the thread of the worker's owner while the files move.
    struct Steps {
        /// Keeps other programs from the directory once it is there, and undoes that where the move failed.
        std::function<Result<>(const QString &directory)> acquire = {};
        std::function<void()> release = {};
        /// What is to be written.
        std::function<LibraryState()> library = {};
        /// Records the new place once everything is written.
        std::function<Result<>()> record = {};
        /// Where the move failed, the directory is as it was.
        std::function<void(const Result<> &moved, const LibraryWriteResult &result)> ended = {};
    };

    /// `directory` is an absolute path without a slash at its end; it is made where there is none. One that holds a
    /// library or cannot be listed is refused. Files there that are in the way of a patch's are set aside. An obstacle
    /// is known before. Nothing more is told once `asking` is gone.
    static void start(
        Worker &worker, QObject *asking, const QString &directory, const Result<> &obstacle, const Steps &steps);

private:
    explicit LibraryMove(const QString &directory)
        : m_directory(directory)
    {
    }

    [[nodiscard]] Result<> makeDirectory();
    /// Writes the whole library.
    [[nodiscard]] Result<> write(const LibraryState &library);
    /// Removes what was written, and gives files of others their names back.
    [[nodiscard]] Result<> revertFiles();
    /// Removes the directories that were made, where nothing is in them.
    void removeDirectories();

    QString m_directory;
    QStringList m_madeDirectories; ///< the innermost first
    bool m_isBegun = false; ///< something may have been written
    QSet<QString> m_former; ///< names that were there before
    LibraryWriteResult m_result;
};
