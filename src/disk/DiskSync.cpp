#include "DiskSync.h"

#include "FaultPoint.h"
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

Result<> problemUnless(bool isSuccess, const QString &where = {})
{
    return isSuccess ? Result<>(Success()) : Problem{.where = where, .why = systemError()};
}

} // namespace

#ifdef Q_OS_WIN

Result<> syncFile(int handle)
{
    return problemUnless(_commit(handle) == 0);
}

Result<> syncDirectory(const QString &directory)
{
    Q_UNUSED(directory)
    return Success();
}

#else

namespace {

template <typename Sync>
Result<> withOpenDirectory(const QString &directory, Sync sync)
{
    const int handle = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) {
        return problemUnless(false, directory);
    }
    Result<> result = problemUnless(sync(handle) == 0, directory);
    ::close(handle);
    return result;
}

} // namespace

Result<> syncFile(int handle)
{
#ifdef Q_OS_DARWIN
    // fsync leaves the bytes in the drive's own memory there.
    if (::fcntl(handle, F_FULLFSYNC) == 0) {
        return Success();
    }
#endif
    return problemUnless(FaultPoint::isSet("no-synchronisation") || ::fsync(handle) == 0);
}

Result<> syncDirectory(const QString &directory)
{
    return withOpenDirectory(directory, [](int handle) {
        const int result = FaultPoint::isSet("no-synchronisation") ? 0 : ::fsync(handle);
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

Result<> syncFileSystem(const QString &directory)
{
    return withOpenDirectory(
        directory, [](int handle) { return FaultPoint::isSet("no-synchronisation") ? 0 : ::syncfs(handle); });
}

#else

bool canSyncFileSystem()
{
    return false;
}

Result<> syncFileSystem(const QString &directory)
{
    Q_UNUSED(directory)
    return Success();
}

#endif

} // namespace DiskSync
