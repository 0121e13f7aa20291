#pragma once

#include "FileStamp.h"
#include "OpenDirectory.h"
#include "Result.h"

#include <QCoreApplication>
#include <QList>
#include <QSet>
#include <QString>

#include <optional>

class DirectoryListing;

/// Writes many files of one directory with a single synchronisation: write() prepares each under a temporary name,
/// sync() brings all of them to the disk, finish() puts them in place. What was not finished is removed with the
/// object.
class BatchFiles {
    Q_DECLARE_TR_FUNCTIONS(BatchFiles)

public:
    struct Staged {
        QString temporary; ///< names in the directory
        QString name;
        FileStamp stamp; ///< which the file keeps in its place
    };
    struct Failure {
        std::optional<Problem> problem; ///< none where it was told to leave the file prepared
        QString temporary; ///< path of the file as it is still there
    };

    /// `directory` is a path without a slash at its end.
    explicit BatchFiles(const QString &directory);
    ~BatchFiles();
    Q_DISABLE_COPY_MOVE(BatchFiles)

    /// Names that are not in `listing` need not be looked at before they are given to a new file.
    void setListing(const DirectoryListing *listing) { m_listing = listing; }

    /// Prepares a file, and gives the name under which it stands. Where the problem is that something has taken the
    /// name, it lies with that file alone, and with the disk or the directory otherwise.
    [[nodiscard]] Result<QString> write(const QString &name, const QByteArray &bytes);

    /// The files that were prepared and are not in place yet.
    [[nodiscard]] const QList<Staged> &staged() const { return m_staged; }
    /// What stands under this name cannot be moved away: finish() leaves the file prepared, and counts it as failed.
    void leavePrepared(const QString &name);
    /// Brings the prepared files to the disk.
    [[nodiscard]] Result<> sync() const;
    /// The files that could not be put in place.
    [[nodiscard]] QList<Failure> finish();
    /// The files that are, after finish().
    [[nodiscard]] const QList<Staged> &placed() const { return m_placed; }

private:
    [[nodiscard]] QString pathOf(const QString &name) const { return m_path + u'/' + name; }

    QString m_path;
    const DirectoryListing *m_listing = nullptr;
    std::optional<OpenDirectory> m_directory; ///< from the first file on
    QList<Staged> m_staged;
    QList<Staged> m_placed;
    QSet<QString> m_leftPrepared; ///< names
};
