#pragma once

#include "FileAccess.h"

#include <QList>
#include <QString>

/// Writes many files of one directory with a single synchronisation: write() prepares each, finish() puts all of
/// them in place. What was not finished is removed with the object.
class BatchFiles : public FileAccess {
public:
    struct Failure {
        QString path;
        QString error;
    };

    explicit BatchFiles(const QString &directory);
    ~BatchFiles() override;
    Q_DISABLE_COPY_MOVE(BatchFiles)

    [[nodiscard]] FileReadResult read(const QString &path) override;
    [[nodiscard]] QString write(const QString &path, const QByteArray &bytes) override;

    /// The files that could not be put in place.
    [[nodiscard]] QList<Failure> finish();

private:
    struct Staged {
        QString temporary;
        QString path;
    };

    QString m_directory;
    QList<Staged> m_staged;
};
