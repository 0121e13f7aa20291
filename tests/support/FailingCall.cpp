#include "FailingCall.h"

#include <array>
#include <atomic>
#include <cstdarg>

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using Call = FailingCall::Call;

struct Fault {
    std::atomic<int> error = 0;
    std::atomic<int> before = 0;
};

std::array<Fault, static_cast<std::size_t>(Call::Thread) + 1> faults;

Fault &faultOf(Call call)
{
    return faults[static_cast<std::size_t>(call)];
}

/// The error of this call; 0 for one that goes through.
int errorOf(Call call)
{
    Fault &fault = faultOf(call);
    return fault.error != 0 && fault.before-- == 0 ? fault.error.load() : 0;
}

bool fails(Call call)
{
    const int error = errorOf(call);
    if (error != 0) {
        errno = error;
    }
    return error != 0;
}

} // namespace

FailingCall::FailingCall(Call call, int error, int before)
    : m_call(call)
{
    faultOf(call).before = before;
    faultOf(call).error = error;
}

FailingCall::~FailingCall()
{
    faultOf(m_call).error = 0;
}

bool FailingCall::wasMade() const
{
    return faultOf(m_call).before < 0;
}

extern "C" {

ssize_t read(int handle, void *bytes, size_t count)
{
    if (fails(Call::Read)) {
        return errno == FailingCall::endOfFile ? 0 : -1;
    }
    return syscall(SYS_read, handle, bytes, count);
}

ssize_t write(int handle, const void *bytes, size_t count)
{
    return fails(Call::Write) ? -1 : syscall(SYS_write, handle, bytes, count);
}

int openat(int directory, const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const unsigned rights = (flags & O_CREAT) != 0 ? va_arg(rest, unsigned) : 0;
    va_end(rest);
    return fails(Call::Open) ? -1 : static_cast<int>(syscall(SYS_openat, directory, path, flags, rights));
}

int fstat(int handle, struct stat *status) noexcept
{
    return fails(Call::Stat) ? -1 : fstatat(handle, "", status, AT_EMPTY_PATH);
}

int fsync(int handle)
{
    return fails(Call::Sync) ? -1 : static_cast<int>(syscall(SYS_fsync, handle));
}

int syncfs(int handle) noexcept
{
    return fails(Call::SyncAll) ? -1 : static_cast<int>(syscall(SYS_syncfs, handle));
}

int rename(const char *from, const char *to) noexcept
{
    return fails(Call::Rename) ? -1 : static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int renameat(int fromDirectory, const char *from, int toDirectory, const char *to) noexcept
{
    return fails(Call::Rename) ? -1 : static_cast<int>(syscall(SYS_renameat2, fromDirectory, from, toDirectory, to, 0));
}

int renameat2(int fromDirectory, const char *from, int toDirectory, const char *to, unsigned int flags) noexcept
{
    return fails(Call::MoveOnly)
        ? -1
        : static_cast<int>(syscall(SYS_renameat2, fromDirectory, from, toDirectory, to, flags));
}

int unlink(const char *path) noexcept
{
    return fails(Call::Unlink) ? -1 : static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

int pthread_create(
    pthread_t *thread, const pthread_attr_t *attributes, void *(*routine)(void *), void *argument) noexcept
{
    static const auto next = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    const int error = errorOf(Call::Thread);
    return error != 0 ? error : next(thread, attributes, routine, argument);
}
}
