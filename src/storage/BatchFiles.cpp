#include "BatchFiles.h"

#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "FaultPoint.h"

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

Result<QString> BatchFiles::write(const QString &name, const QByteArray &bytes)
{
    if (!m_directory) {
        m_directory.emplace(m_path);
    }
    const DiskFiles::Staging staging{
        .isSynced = !DiskSync::canSyncFileSystem(), .isFree = m_listing && !m_listing->kindOf(name)};
    const Result<DiskFiles::Staged> staged = DiskFiles::stage(*m_directory, name, bytes, staging);
    if (!staged) {
        return staged.problem();
    }
    m_staged.append({.temporary = staged->name, .name = name, .stamp = staged->stamp});
    return staged->name;
}

void BatchFiles::leavePrepared(const QString &name)
{
    m_leftPrepared.insert(name);
}

Result<> BatchFiles::sync() const
{
    const bool isNeeded =
        !m_staged.isEmpty() && DiskSync::canSyncFileSystem() && !FaultPoint::isSet("patch-files-unsynchronised");
    return isNeeded ? DiskSync::syncFileSystem(m_path) : Success();
}

QList<BatchFiles::Failure> BatchFiles::finish()
{
    QList<Failure> failures;
    const QList<Staged> staged = std::exchange(m_staged, {});
    // Another directory would get none of the files.
    const bool isInPlace = !m_directory || m_directory->isInPlace();
    for (const Staged &file : staged) {
        if (m_leftPrepared.contains(file.name)) {
            failures.append({.problem = {}, .temporary = pathOf(file.temporary)});
            continue;
        }
        const Result<> committed = isInPlace
            ? DiskFiles::commit(*m_directory, file.temporary, file.name)
            : Problem{.where = pathOf(file.name), .why = tr("another directory has taken the place of the library's")};
        if (committed) {
            m_placed.append(file);
        } else {
            failures.append({.problem = committed.problem(), .temporary = pathOf(file.temporary)});
        }
    }
    return failures;
}
