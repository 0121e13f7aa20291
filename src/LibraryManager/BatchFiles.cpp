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
    QString error = DiskFiles::whyNotReplaceable(path);
    if (!error.isEmpty()) {
        return error;
    }
    Staged file{.temporary = {}, .path = path};
    error = DiskFiles::stage(path, bytes, !DiskSync::canSyncFileSystem(), file.temporary);
    if (error.isEmpty()) {
        m_staged.append(file);
    } else {
        m_isBlocked = true;
    }
    return error;
}

void BatchFiles::discard(const QString &path)
{
    m_discarded.insert(path);
}

QString BatchFiles::sync() const
{
    const bool isNeeded = !m_staged.isEmpty() && DiskSync::canSyncFileSystem();
    return isNeeded ? DiskSync::syncFileSystem(m_directory) : QString();
}

QList<BatchFiles::Failure> BatchFiles::finish()
{
    QList<Failure> failures;
    const QList<Staged> staged = std::exchange(m_staged, {});
    for (const Staged &file : staged) {
        if (m_discarded.contains(file.path)) {
            std::ignore = DiskFiles::remove(file.temporary);
            continue;
        }
        const QString error = DiskFiles::commit(file.temporary, file.path);
        if (!error.isEmpty()) {
            failures.append({.path = file.path, .error = error, .temporary = file.temporary});
        }
    }
    return failures;
}
