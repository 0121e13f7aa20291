#include "DisplacedFiles.h"

#include "DiskFiles.h"
#include "LibraryFileNames.h"

#include <QFileInfo>

QString DisplacedFiles::setAside(const QString &directory, const QString &name, quint64 patchID, QString &aside)
{
    const auto isTaken = [&directory](const QString &other) {
        const QFileInfo info(directory + u'/' + other);
        return info.exists() || info.isSymLink();
    };
    int attempt = 0;
    aside = LibraryFileNames::damagedFile(patchID, attempt);
    while (isTaken(aside)) {
        aside = LibraryFileNames::damagedFile(patchID, ++attempt);
    }
    return DiskFiles::move(directory + u'/' + name, directory + u'/' + aside);
}
