#include "LibraryFileStamp.h"

#include <QFileDevice>
#include <QFileInfo>
#include <QHash>

std::optional<LibraryFileStamp> LibraryFileStamp::of(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return std::nullopt;
    }
    return LibraryFileStamp{
        .size = info.size(), .modified = info.lastModified(), .changed = info.metadataChangeTime(), .hash = 0};
}

LibraryFileStamp LibraryFileStamp::of(const QFileDevice &file)
{
    return {.size = file.size(),
        .modified = file.fileTime(QFileDevice::FileModificationTime),
        .changed = file.fileTime(QFileDevice::FileMetadataChangeTime),
        .hash = 0};
}

void LibraryFileStamp::setBytes(const QByteArray &bytes)
{
    hash = qHash(bytes);
}

bool LibraryFileStamp::looksChanged(const QString &path) const
{
    const QFileInfo info(path);
    return info.size() != size || info.lastModified() != modified || info.metadataChangeTime() != changed;
}

bool LibraryFileStamp::isOf(const QByteArray &bytes) const
{
    return bytes.size() == size && qHash(bytes) == hash;
}
