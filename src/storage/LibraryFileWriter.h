#pragma once

#include "LibraryWriteResult.h"

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

    /// `directory` is a path without a slash at its end. What happens is noted in `result`, which outlives the writer.
    LibraryFileWriter(const QString &directory, LibraryWriteResult &result);

    void write(const QByteArray &text);

private:
    void noteForeignChange();
    [[nodiscard]] bool keepOldFiles();
    [[nodiscard]] bool keepOldFile(const QString &name);
    void pruneKeptFiles();
    void fail(const QString &name, const QString &reason);
    [[nodiscard]] QString pathOf(const QString &name) const;

    QString m_directory;
    LibraryWriteResult &m_result;
};
