#include "FileContentStamp.h"

#include <QFileDevice>
#include <QFileInfo>
#include <QHash>

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
