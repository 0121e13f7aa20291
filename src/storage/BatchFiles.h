#pragma once

#include "FileAccess.h"
#include "FileStamp.h"
#include "OpenDirectory.h"

#include <QCoreApplication>
#include <QList>
#include <QSet>
#include <QString>

#include <optional>

class DirectoryListing;

/// Writes many files of one directory with a single synchronisation: write() prepares each under a temporary name,
/// sync() brings all of them to the disk, finish() puts them in place. What was not finished is removed with the
/// object.
class BatchFiles : public FileAccess {
    Q_DECLARE_TR_FUNCTIONS(BatchFiles)

public:
    struct Staged {
        QString temporary; ///< names in the directory
        QString name;
        FileStamp stamp; ///< which the file keeps in its place
    };
    struct Failure {
        QString path;
        QString error; ///< empty where it was told to leave the file prepared
        QString temporary; ///< path of the file as it is still there
    };

    /// `directory` is a path without a slash at its end.
    explicit BatchFiles(const QString &directory);
    ~BatchFiles() override;
    Q_DISABLE_COPY_MOVE(BatchFiles)

    /// Names that are not in `listing` need not be looked at before they are given to a new file.
    void setListing(const DirectoryListing *listing) { m_listing = listing; }

    [[nodiscard]] FileReadResult read(const QString &path) override;
    /// `path` is directly in the directory.
    [[nodiscard]] QString write(const QString &path, const QByteArray &bytes) override;
    /// A file could not be written for a reason that lies with the disk or the directory and not with that file.
    [[nodiscard]] bool isBlocked() const { return m_isBlocked; }

    /// The files that were prepared and are not in place yet.
    [[nodiscard]] const QList<Staged> &staged() const { return m_staged; }
    /// What stands under this name cannot be moved away: finish() leaves the file prepared, and counts it as failed.
    void leavePrepared(const QString &name);
    /// The system's reason when the prepared files may not have reached the disk.
    [[nodiscard]] QString sync() const;
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
    bool m_isBlocked = false;
};
