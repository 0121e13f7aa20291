#pragma once

#include "FileAccess.h"

#include <QList>
#include <QSet>
#include <QString>

/// Writes many files of one directory with a single synchronisation: write() prepares each under a temporary name,
/// sync() brings all of them to the disk, finish() puts them in place. What was not finished is removed with the
/// object.
class BatchFiles : public FileAccess {
public:
    struct Staged {
        QString temporary;
        QString path;
    };
    struct Failure {
        QString path;
        QString error;
        QString temporary; ///< where the file is still
    };

    explicit BatchFiles(const QString &directory);
    ~BatchFiles() override;
    Q_DISABLE_COPY_MOVE(BatchFiles)

    [[nodiscard]] FileReadResult read(const QString &path) override;
    [[nodiscard]] QString write(const QString &path, const QByteArray &bytes) override;
    /// A file could not be written for a reason that lies with the disk or the directory and not with that file.
    [[nodiscard]] bool isBlocked() const { return m_isBlocked; }

    /// The files that were prepared and are not in place yet, those that were given up included.
    [[nodiscard]] const QList<Staged> &staged() const { return m_staged; }
    /// Gives up the file that was to go to `path`.
    void discard(const QString &path);
    [[nodiscard]] qsizetype discarded() const { return m_discarded.size(); }
    /// The system's reason when the prepared files may not have reached the disk.
    [[nodiscard]] QString sync() const;
    /// The files that could not be put in place.
    [[nodiscard]] QList<Failure> finish();

private:
    QString m_directory;
    QList<Staged> m_staged;
    QSet<QString> m_discarded; ///< paths
    bool m_isBlocked = false;
};
