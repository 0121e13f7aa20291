#pragma once

#include <QFile>
#include <QString>

/// Bringing written bytes from the system's memory to the disk. Each returns false when the system reports an error.
namespace DiskSync {

[[nodiscard]] bool syncFile(QFile &file);
/// Makes new names and moves in the directory last. True where the system has no such thing.
bool syncDirectory(const QString &directory);
/// True when syncFileSystem() takes the place of syncing each file of a batch.
[[nodiscard]] bool canSyncFileSystem();
/// Everything that was written on the file system of `directory`.
[[nodiscard]] bool syncFileSystem(const QString &directory);

} // namespace DiskSync
