#include "FileStamp.h"

#include "OpenDirectory.h"

#ifdef Q_OS_WIN

#include <QDateTime>
#include <QFileInfo>

std::optional<FileStamp> FileStamp::of(const OpenDirectory &directory, const QString &name)
{
    const QFileInfo info(directory.pathOf(name));
    if (!info.isFile() || info.isSymLink()) {
        return std::nullopt;
    }
    constexpr qint64 perMillisecond = 1'000'000;
    return FileStamp{
        .number = 0, .size = info.size(), .modified = info.lastModified().toMSecsSinceEpoch() * perMillisecond};
}

#else

#include <fcntl.h>
#include <sys/stat.h>

std::optional<FileStamp> FileStamp::of(const OpenDirectory &directory, const QString &name)
{
    struct stat status { };
    const QByteArray encoded = directory.encoded(name);
    if (::fstatat(directory.descriptor(), encoded.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0
        || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return of(status);
}

FileStamp FileStamp::of(const struct stat &status)
{
    constexpr qint64 perSecond = 1'000'000'000;
    return {.number = status.st_ino,
        .size = status.st_size,
        .modified = qint64(status.st_mtim.tv_sec) * perSecond + status.st_mtim.tv_nsec};
}

#endif
