#include "DiskSync.h"

#include "SystemError.h"

#include <cerrno>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace DiskSync {

namespace {

QString reasonUnless(bool isSuccess)
{
    return isSuccess ? QString() : systemError();
}

} // namespace

#ifdef Q_OS_WIN

QString syncFile(int handle)
{
    return reasonUnless(_commit(handle) == 0);
}

QString syncDirectory(const QString &directory)
{
    Q_UNUSED(directory)
    return {};
}

#else

namespace {

template <typename Sync>
QString withOpenDirectory(const QString &directory, Sync sync)
{
    const int handle = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) {
        return reasonUnless(false);
    }
    QString reason = reasonUnless(sync(handle) == 0);
    ::close(handle);
    return reason;
}

} // namespace

QString syncFile(int handle)
{
#ifdef Q_OS_DARWIN
    // fsync leaves the bytes in the drive's own memory there.
    if (::fcntl(handle, F_FULLFSYNC) == 0) {
        return {};
    }
#endif
    return reasonUnless(::fsync(handle) == 0);
}

QString syncDirectory(const QString &directory)
{
    return withOpenDirectory(directory, [](int handle) {
        const int result = ::fsync(handle);
        // Some network file systems have no such thing.
        return result != 0 && errno == EINVAL ? 0 : result;
    });
}

#endif

#ifdef Q_OS_LINUX

bool canSyncFileSystem()
{
    return true;
}

QString syncFileSystem(const QString &directory)
{
    return withOpenDirectory(directory, [](int handle) { return ::syncfs(handle); });
}

#else

bool canSyncFileSystem()
{
    return false;
}

QString syncFileSystem(const QString &directory)
{
    Q_UNUSED(directory)
    return {};
}

#endif

} // namespace DiskSync
