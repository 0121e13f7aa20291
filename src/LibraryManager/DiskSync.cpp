#include "DiskSync.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace DiskSync {

#ifdef Q_OS_WIN

bool syncFile(QFile &file)
{
    return _commit(file.handle()) == 0;
}

bool syncDirectory(const QString &directory)
{
    Q_UNUSED(directory)
    return true;
}

#else

namespace {

template <typename Sync>
bool withOpenDirectory(const QString &directory, Sync sync)
{
    const int handle = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) {
        return false;
    }
    const bool isSynced = sync(handle) == 0;
    ::close(handle);
    return isSynced;
}

} // namespace

bool syncFile(QFile &file)
{
#ifdef Q_OS_DARWIN
    // fsync leaves the bytes in the drive's own memory there.
    if (::fcntl(file.handle(), F_FULLFSYNC) == 0) {
        return true;
    }
#endif
    return ::fsync(file.handle()) == 0;
}

bool syncDirectory(const QString &directory)
{
    return withOpenDirectory(directory, [](int handle) { return ::fsync(handle); });
}

#endif

#ifdef Q_OS_LINUX

bool canSyncFileSystem()
{
    return true;
}

bool syncFileSystem(const QString &directory)
{
    return withOpenDirectory(directory, [](int handle) { return ::syncfs(handle); });
}

#else

bool canSyncFileSystem()
{
    return false;
}

bool syncFileSystem(const QString &directory)
{
    Q_UNUSED(directory)
    return true;
}

#endif

} // namespace DiskSync
