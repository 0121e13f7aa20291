#pragma once

#include "LibraryJson.h"
#include "Result.h"

#include <QCoreApplication>
#include <QString>

#include <optional>

class LibraryPlace;
struct LibraryLoadResult;

/// Reads the library file of a directory, or the copy of it that a save had written, where only that is whole.
class LibraryFileReader {
    Q_DECLARE_TR_FUNCTIONS(LibraryFileReader)

public:
    /// `place` must outlive the reader.
    explicit LibraryFileReader(const LibraryPlace &place)
        : m_place(place)
    {
    }

    /// Nothing when neither can be read. What happened, and what the next save has to keep or to complete because of
    /// it, goes into `result`.
    [[nodiscard]] std::optional<LibraryState> read(LibraryLoadResult &result) const;

private:
    /// What follows from there being neither a library file nor a copy that can be read. `file` is the last attempt.
    void noteWithoutContent(const Result<QByteArray> &file, bool isThere, LibraryLoadResult &result) const;

    const LibraryPlace &m_place;
};
