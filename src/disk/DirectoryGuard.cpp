#include "DirectoryGuard.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <thread>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

#ifdef Q_OS_UNIX

DirectoryGuard::DirectoryGuard(const QString &directory)
    : m_handle(::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    constexpr int attempts = 100;
    constexpr std::chrono::milliseconds pause(20);
    for (int attempt = 0; attempt < attempts && m_handle >= 0 && !m_isHeld; ++attempt) {
        m_isHeld = ::flock(m_handle, LOCK_EX | LOCK_NB) == 0;
        if (!m_isHeld && errno != EWOULDBLOCK && errno != EINTR) {
            return;
        }
        if (!m_isHeld) {
            std::this_thread::sleep_for(pause);
        }
    }
}

DirectoryGuard::~DirectoryGuard()
{
    if (m_handle >= 0) {
        ::close(m_handle);
    }
}

#else

DirectoryGuard::DirectoryGuard(const QString &directory)
{
    Q_UNUSED(directory)
}

DirectoryGuard::~DirectoryGuard() = default;

#endif
