#include "OpenDirectory.h"

#include <QFile>

#ifdef Q_OS_WIN

OpenDirectory::OpenDirectory(const QString &path)
    : m_path(path)
{
}

OpenDirectory::~OpenDirectory() = default;

bool OpenDirectory::isInPlace() const
{
    return true;
}

#else

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Files can be reached in a directory that may not be listed.
#ifdef O_PATH
constexpr int flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

} // namespace

OpenDirectory::OpenDirectory(const QString &path)
    : m_path(path)
    , m_descriptor(::open(QFile::encodeName(path).constData(), flags))
{
}

OpenDirectory::~OpenDirectory()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

bool OpenDirectory::isInPlace() const
{
    if (m_descriptor < 0) {
        return true;
    }
    struct stat held { };
    struct stat found { };
    return ::fstat(m_descriptor, &held) == 0 && ::stat(QFile::encodeName(m_path).constData(), &found) == 0
        && held.st_dev == found.st_dev && held.st_ino == found.st_ino;
}

int OpenDirectory::descriptor() const
{
    return m_descriptor >= 0 ? m_descriptor : AT_FDCWD;
}

QByteArray OpenDirectory::encoded(const QString &name) const
{
    return QFile::encodeName(m_descriptor >= 0 ? name : pathOf(name));
}

#endif
