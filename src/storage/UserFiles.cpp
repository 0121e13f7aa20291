#include "UserFiles.h"

#include "DiskFiles.h"
#include "LibraryFileNames.h"
#include "LibraryPlace.h"
#include "TemporaryFiles.h"

#include <QDir>
#include <QFileInfo>

Result<QByteArray> UserFiles::read(const QString &path)
{
    return DiskFiles::readRegular(path, DiskFiles::Links::Follow);
}

Result<> UserFiles::write(const QString &path, const QByteArray &bytes)
{
    const QFileInfo target(DiskFiles::endOfLinks(path));
    const bool isLibraryDirectory = LibraryPlace::holdsLibrary(target.absolutePath());
    const QString name = target.fileName();
    if (isLibraryDirectory && (LibraryFileNames::isReserved(name) || LibraryFileNames::patchFileId(name))) {
        return Problem{.what = Problem::What::Taken,
            .where = path,
            .why = tr("the file belongs to a library and is not replaced by an export")};
    }
    if (!isLibraryDirectory) {
        TemporaryFiles::sweep(target.absoluteDir());
    }
    return DiskFiles::replace(target.filePath(), bytes);
}
