#include "BatchFiles.h"

#include "DiskFiles.h"
#include "DiskSync.h"

#include <utility>

BatchFiles::BatchFiles(const QString &directory)
    : m_directory(directory)
{
}

BatchFiles::~BatchFiles()
{
    for (const Staged &file : std::as_const(m_staged)) {
        std::ignore = DiskFiles::remove(file.temporary);
    }
}

FileReadResult BatchFiles::read(const QString &path)
{
    return DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
}

QString BatchFiles::write(const QString &path, const QByteArray &bytes)
{
    Staged file{.temporary = {}, .path = path};
    QString error = DiskFiles::stage(path, bytes, !DiskSync::canSyncFileSystem(), file.temporary);
    if (error.isEmpty()) {
        m_staged.append(file);
    }
    return error;
}

QList<BatchFiles::Failure> BatchFiles::finish()
{
    const QList<Staged> staged = std::exchange(m_staged, {});
    QList<Failure> failures;
    if (staged.isEmpty()) {
        return failures;
    }
    if (DiskSync::canSyncFileSystem() && !DiskSync::syncFileSystem(m_directory)) {
        for (const Staged &file : staged) {
            std::ignore = DiskFiles::remove(file.temporary);
            failures.append({file.path, DiskFiles::tr("the file system reported an error")});
        }
        return failures;
    }
    for (const Staged &file : staged) {
        const QString error = DiskFiles::commit(file.temporary, file.path);
        if (!error.isEmpty()) {
            failures.append({file.path, error});
        }
    }
    DiskSync::syncDirectory(m_directory);
    return failures;
}
