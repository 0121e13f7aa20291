#include "BatchFiles.h"

#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "DiskSync.h"

#include <utility>

BatchFiles::BatchFiles(const QString &directory)
    : m_path(directory)
{
}

BatchFiles::~BatchFiles()
{
    for (const Staged &file : std::as_const(m_staged)) {
        std::ignore = DiskFiles::remove(pathOf(file.temporary));
    }
}

FileReadResult BatchFiles::read(const QString &path)
{
    return DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
}

QString BatchFiles::write(const QString &path, const QByteArray &bytes)
{
    if (!m_directory) {
        m_directory.emplace(m_path);
    }
    const QString name = path.sliced(m_path.size() + 1);
    const DiskFiles::Staging staging{
        .isSynced = !DiskSync::canSyncFileSystem(), .isFree = m_listing && !m_listing->kindOf(name)};
    DiskFiles::Staged staged;
    QString error = DiskFiles::stage(*m_directory, name, bytes, staging, staged);
    if (error.isEmpty()) {
        m_staged.append({.temporary = staged.name, .name = name, .stamp = staged.stamp});
    } else if (DiskFiles::whyNotReplaceable(*m_directory, name).isEmpty()) {
        m_isBlocked = true;
    }
    return error;
}

void BatchFiles::leavePrepared(const QString &name)
{
    m_leftPrepared.insert(name);
}

QString BatchFiles::sync() const
{
    const bool isNeeded = !m_staged.isEmpty() && DiskSync::canSyncFileSystem();
    return isNeeded ? DiskSync::syncFileSystem(m_path) : QString();
}

QList<BatchFiles::Failure> BatchFiles::finish()
{
    QList<Failure> failures;
    const QList<Staged> staged = std::exchange(m_staged, {});
    // Another directory would get none of the files.
    const bool isInPlace = !m_directory || m_directory->isInPlace();
    for (const Staged &file : staged) {
        if (m_leftPrepared.contains(file.name)) {
            failures.append({.path = pathOf(file.name), .error = {}, .temporary = pathOf(file.temporary)});
            continue;
        }
        const QString error = isInPlace ? DiskFiles::commit(*m_directory, file.temporary, file.name)
                                        : tr("another directory has taken the place of the library's");
        if (!error.isEmpty()) {
            failures.append({.path = pathOf(file.name), .error = error, .temporary = pathOf(file.temporary)});
        } else {
            m_placed.append(file);
        }
    }
    return failures;
}
