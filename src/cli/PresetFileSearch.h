#pragma once

#include <QCoreApplication>
#include <QList>
#include <QString>

/// Finds the preset files in directories.
class PresetFileSearch {
    Q_DECLARE_TR_FUNCTIONS(PresetFileSearch)

public:
    struct Entry {
        QString path; ///< begins with the directory that was searched
        QString error; ///< why the directory or file at this path is left out; empty for a file to be read
    };

    /// Every ".prst" below the directory, in order of path. Links to directories are not followed, so that no loop of
    /// them is; links to files are found.
    [[nodiscard]] static QList<Entry> below(const QString &directory);
};
