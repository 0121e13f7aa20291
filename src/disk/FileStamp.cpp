#include "FileStamp.h"

#include "OpenDirectory.h"

#include <QFileDevice>
#include <QFileInfo>
#include <QHash>

#ifdef Q_OS_WIN

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

std::optional<FileContentStamp> FileContentStamp::of(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return std::nullopt;
    }
    return FileContentStamp{
        .size = info.size(), .modified = info.lastModified(), .changed = info.metadataChangeTime(), .hash = 0};
}

FileContentStamp FileContentStamp::of(const QFileDevice &file)
{
    return {.size = file.size(),
        .modified = file.fileTime(QFileDevice::FileModificationTime),
        .changed = file.fileTime(QFileDevice::FileMetadataChangeTime),
        .hash = 0};
}

void FileContentStamp::setBytes(const QByteArray &bytes)
{
    hash = qHash(bytes);
}

bool FileContentStamp::looksChanged(const QString &path) const
{
    const QFileInfo info(path);
    return info.size() != size || info.lastModified() != modified || info.metadataChangeTime() != changed;
}

bool FileContentStamp::isOf(const QByteArray &bytes) const
{
    return bytes.size() == size && qHash(bytes) == hash;
}
