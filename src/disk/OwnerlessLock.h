#pragma once

#include <QString>

/// Lock files that no program holds, because the one that made them died before it could write its name into them.
namespace OwnerlessLock {

/// Removes such a file, and those that Qt makes beside it while it takes over a lock. Waits a fifth of a second before
/// it believes that no name is coming; returns at once when there is no file or it names a program, and never opens
/// anything but a regular file. True when `lockFile` itself was removed.
bool remove(const QString &lockFile);

} // namespace OwnerlessLock
