#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>

/// The file for what the program remembers from one run to the next and is none of the preferences.
class StateFile {
    Q_DECLARE_TR_FUNCTIONS(StateFile)

public:
    /// The user's own, in the program's directory where the platform keeps such files. It need not be there.
    [[nodiscard]] static QString usualPath();
    /// Where former versions kept it.
    [[nodiscard]] static QStringList formerPaths();

    /// Moves the latest of the former files to `path`, unless there is something already, and removes the directory
    /// that it leaves empty. What cannot be moved stays where it is, after a line that says why. The path of the file
    /// that holds what is remembered then, or would hold it.
    [[nodiscard]] static QString inherit(const QString &path, const QStringList &formerPaths);
};
