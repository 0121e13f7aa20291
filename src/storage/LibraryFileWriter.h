#pragma once

#include "LibraryPlace.h"
#include "LibraryWriteResult.h"
#include "Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <chrono>

/// Writes the library file, and keeps the one before under a dated name where it holds what would be lost.
/// Works on values only, so that it can run on any thread, one at a time.
class LibraryFileWriter {
    Q_DECLARE_TR_FUNCTIONS(LibraryFileWriter)

public:
    /// Old library files that stay, the oldest going first, and how old one of them is when it goes. A directory that
    /// several computers write into makes many in a day.
    static constexpr qsizetype keptFileLimit = 20;
    static constexpr std::chrono::days keptFileAge{30};

    /// What happens is noted in `result`. Both outlive the writer.
    LibraryFileWriter(const LibraryPlace &place, LibraryWriteResult &result);

    /// Keeps what has to be kept, and writes the text beside the library file, where loading finds it while that does
    /// not decode.
    [[nodiscard]] bool writeCopy(const QByteArray &text);
    /// Makes it the library file's, and the new state the one that counts.
    void writeFile(const QByteArray &text);

private:
    void noteForeignChange();
    [[nodiscard]] bool keepOldFiles();
    [[nodiscard]] bool keepOldFile(const QString &name);
    void pruneKeptFiles();
    void fail(const Problem &problem);

    const LibraryPlace &m_place;
    LibraryWriteResult &m_result;
};
