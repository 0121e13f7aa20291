#include "LibraryMove.h"

#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryPlace.h"
#include "LibraryWriter.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

LibraryMove::LibraryMove(const QString &directory)
    : m_directory(directory)
{
}

QString LibraryMove::makeDirectory()
{
    if (!LibraryPlace::isListable(m_directory)) {
        return tr("%1: the path holds characters that keep the directory from being listed").arg(m_directory);
    }
    if (LibraryPlace::holdsLibrary(m_directory)) {
        return tr("%1: there is a library already").arg(m_directory);
    }
    if (existence(m_directory) == FileExistence::directory) {
        return {};
    }
    QStringList missing;
    for (QString path = m_directory; existence(path) == FileExistence::none && !QFileInfo(path).isRoot();
         path = QFileInfo(path).path()) {
        missing.append(path);
    }
    const QString error = DiskFiles::makeDirectory(m_directory);
    m_madeDirectories = missing;
    return error.isEmpty() ? QString() : tr("%1: %2").arg(m_directory, error);
}

QString LibraryMove::write(const LibraryState &library)
{
    const auto listing = DirectoryListing::scan(m_directory);
    if (!listing) {
        return tr("%1: the directory cannot be listed").arg(m_directory);
    }
    const QStringList names = listing->names();
    m_former = QSet<QString>(names.begin(), names.end());
    m_isBegun = true;
    m_result = LibraryWriter(m_directory, {}).save(library);
    const bool isWhole = m_result.isLibraryFileWritten && m_result.arePatchesWritten;
    return isWhole ? QString() : m_result.problems.join(u'\n');
}

QString LibraryMove::takeBackFiles()
{
    if (!m_isBegun) {
        return {};
    }
    QStringList errors;
    const auto note = [this, &errors](const QString &name, const QString &error) {
        if (!error.isEmpty()) {
            errors.append(tr("%1: %2").arg(pathOf(name), error));
        }
    };
    QStringList written = DirectoryListing::scan(m_directory).value_or(DirectoryListing()).names();
    const auto &renamed = m_result.renamed;
    written.removeIf([this, &renamed](const QString &name) {
        const bool isLibrarys = LibraryFileNames::isReserved(name) || LibraryFileNames::patchFileId(name);
        return !isLibrarys || m_former.contains(name)
            || std::any_of(renamed.begin(), renamed.end(), [&name](const auto &file) { return file.to == name; });
    });
    for (const QString &name : std::as_const(written)) {
        note(name, DiskFiles::remove(pathOf(name)));
    }
    const QList backwards(renamed.crbegin(), renamed.crend());
    for (const auto &file : backwards) {
        if (existence(pathOf(file.from)) == FileExistence::file) {
            note(file.from, DiskFiles::remove(pathOf(file.from)));
        }
        note(file.to, DiskFiles::move(pathOf(file.to), pathOf(file.from)));
    }
    m_isBegun = false;
    return errors.join(u'\n');
}

void LibraryMove::removeDirectories()
{
    for (const QString &directory : std::as_const(m_madeDirectories)) {
        QDir().rmdir(directory);
    }
    m_madeDirectories.clear();
}

QString LibraryMove::pathOf(const QString &name) const
{
    return m_directory + u'/' + name;
}
