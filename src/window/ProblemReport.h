#pragma once

#include <QString>
#include <QStringList>

class LibraryStorageManager;
class QWidget;
class VelgorLibrary;

/// What a report about a problem needs to say of the program, the desktop and the library. In a text the user's home
/// directory is "~", as reports are often public.
struct ProblemReport {
    QString version; ///< with the commit
    QString qt;
    QString system;
    QString desktop; ///< with the platform that Qt uses
    QString style;
    QString screen;
    QString library; ///< the directory
    qsizetype patches = 0;
    QStringList messages; ///< the last lines of this run, the oldest first, each in one line

    /// `window` stands for the screen and the look.
    [[nodiscard]] static ProblemReport of(
        const VelgorLibrary &library, const LibraryStorageManager &storage, const QWidget &window);

    [[nodiscard]] QString text() const;
};
