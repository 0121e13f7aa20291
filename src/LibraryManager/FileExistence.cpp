#include "FileExistence.h"

#include "LibraryFileNames.h"

#include <QFileInfo>

#include <algorithm>

FileExistence existence(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return FileExistence::none;
    }
    return info.isDir() ? FileExistence::directory : FileExistence::file;
}

bool holdsLibrary(const QString &directory)
{
    const QStringList files{
        LibraryFileNames::libraryFile(), LibraryFileNames::libraryCopy(), LibraryFileNames::journalFile()};
    return std::any_of(files.begin(), files.end(), [&directory](const QString &file) {
        const QFileInfo info(directory + u'/' + file);
        return info.exists() || info.isSymLink();
    });
}
