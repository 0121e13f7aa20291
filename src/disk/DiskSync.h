#pragma once

#include "Result.h"

#include <QFile>
#include <QString>

/// Brings written bytes from the system's memory to the disk.
namespace DiskSync {

[[nodiscard]] Result<> syncFile(int handle);
/// Makes new names and moves in the directory last. Does nothing where the system or the file system has no such
/// thing.
[[nodiscard]] Result<> syncDirectory(const QString &directory);
/// True when syncFileSystem() takes the place of syncing each file of a batch.
[[nodiscard]] bool canSyncFileSystem();
/// Everything that was written on the file system of `directory`.
[[nodiscard]] Result<> syncFileSystem(const QString &directory);

} // namespace DiskSync
