#include "FileExistence.h"

#include <QFileInfo>

FileExistence existence(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return FileExistence::none;
    }
    return info.isDir() ? FileExistence::directory : FileExistence::file;
}
