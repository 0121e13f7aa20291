#pragma once

#include "VelgorPatch.h"

#include <QList>
#include <QString>
#include <QTemporaryDir>

/// A library of a given size, with names, comments and preset data of the usual kind; the same at every run.
class SampleLibrary {
public:
    /// Made at the first call for each size, and kept to the end of the program.
    static SampleLibrary &ofSize(qsizetype count);

    [[nodiscard]] const QList<VelgorPatch> &patches() const { return m_patches; }
    /// A directory that holds the library, written at the first call.
    [[nodiscard]] QString directory();
    /// A part of a name that a twentieth of the names hold, and words that comments of all kinds hold.
    [[nodiscard]] static QString nameFragment();
    [[nodiscard]] static QString threeCommentWords();

private:
    explicit SampleLibrary(qsizetype count);

    QList<VelgorPatch> m_patches;
    QTemporaryDir m_directory;
    bool m_isWritten = false;
};
