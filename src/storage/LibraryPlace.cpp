#include "LibraryPlace.h"

#include "LibraryFileNames.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>

bool LibraryPlace::holdsLibrary(const QString &directory)
{
    const QStringList files{
        LibraryFileNames::libraryFile(), LibraryFileNames::libraryCopy(), LibraryFileNames::journalFile()};
    return std::any_of(files.begin(), files.end(), [&directory](const QString &file) {
        const QFileInfo info(directory + u'/' + file);
        return info.exists() || info.isSymLink();
    });
}

bool LibraryPlace::isListable(const QString &directory)
{
    return QUrl::fromLocalFile(directory).path(QUrl::FullyEncoded) == directory;
}
