#include "LibraryFileStamp.h"

#include <QFileInfo>
#include <QHash>

std::optional<LibraryFileStamp> LibraryFileStamp::of(const QString &path, const QByteArray &bytes)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return std::nullopt;
    }
    return LibraryFileStamp{.size = info.size(),
        .modified = info.lastModified(),
        .changed = info.metadataChangeTime(),
        .hash = qHash(bytes)};
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
