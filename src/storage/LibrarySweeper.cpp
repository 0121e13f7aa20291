#include "LibrarySweeper.h"

#include "Diagnostics.h"
#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "DisplacedFiles.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryPlace.h"
#include "PatchFileMatcher.h"
#include "TemporaryFiles.h"

#include <QDirIterator>

namespace {

bool isRegularFile(const QFileInfo &info)
{
    return info.isFile() && !info.isSymLink();
}

} // namespace

LibrarySweeper::LibrarySweeper(const QString &directory, const LibraryLeftovers &leftovers)
    : m_directory(directory)
    , m_leftovers(leftovers)
{
}

void LibrarySweeper::sweep()
{
    removeWriteTestFile();
    if (!m_leftovers.areKnown) {
        return;
    }
    completeLibraryFile();
    putInPlace();
    removePatchFiles();
    removeTemporaryFiles();
    // What was put in place must be on the disk before the last trace of it goes.
    if (m_leftovers.unfinished.isEmpty() && m_notRemoved.isEmpty() && DiskSync::syncDirectory(m_directory).isEmpty()) {
        remove(LibraryFileNames::journalFile());
    }
    if (m_leftovers.isCopySpare || m_isLibraryFileCompleted) {
        remove(LibraryFileNames::libraryCopy());
    }
}

void LibrarySweeper::completeLibraryFile()
{
    if (m_leftovers.completeText.isEmpty()) {
        return;
    }
    bool wasTouched = false;
    const QString error = DiskFiles::overwriteInPlace(
        pathOf(LibraryFileNames::libraryFile()), m_leftovers.completeText, wasTouched, &m_stamp);
    m_isLibraryFileCompleted = error.isEmpty() && DiskSync::syncDirectory(m_directory).isEmpty();
}

void LibrarySweeper::putInPlace()
{
    for (auto file = m_leftovers.unfinished.begin(); file != m_leftovers.unfinished.end();) {
        const bool isDone = putInPlace(file.key(), file.value());
        file = isDone ? m_leftovers.unfinished.erase(file) : std::next(file);
    }
}

bool LibrarySweeper::putInPlace(const QString &prepared, const QString &name)
{
    const FileReadResult whole = DiskFiles::readRegular(pathOf(prepared), DiskFiles::Links::Refuse);
    const FileReadResult there = DiskFiles::readRegular(pathOf(name), DiskFiles::Links::Refuse);
    if (there.bytes && there.bytes == whole.bytes) {
        return remove(prepared);
    }
    const auto id = LibraryFileNames::patchFileId(name);
    if (id && whole.bytes && (there.bytes || there.isUnreadable)) {
        QString aside;
        if (!DisplacedFiles::setAside(m_directory, name, *id, aside).isEmpty()) {
            return false;
        }
        Diagnostics::printLine(tr("%1 was in the place of a patch's file, and is kept as %2").arg(pathOf(name), aside));
    }
    return DiskFiles::move(pathOf(prepared), pathOf(name)).isEmpty();
}

void LibrarySweeper::removePatchFiles()
{
    if (m_leftovers.removed.isEmpty() || !LibraryPlace::isListable(m_directory)) {
        return;
    }
    const auto listing = DirectoryListing::scan(m_directory).value_or(DirectoryListing());
    for (const quint64 id : std::as_const(m_leftovers.removed)) {
        for (const PatchFileMatcher::Candidate &candidate : PatchFileMatcher::candidates(listing, id)) {
            if (!remove(candidate.name) && !m_notRemoved.contains(id)) {
                m_notRemoved.append(id);
            }
        }
    }
}

void LibrarySweeper::removeTemporaryFiles()
{
    // Name filters of a directory cost several times as much as its names, and many patches are many names.
    const QString prefix = TemporaryFiles::prefix();
    QStringList names;
    QDirIterator entry(m_directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entry.hasNext()) {
        entry.next();
        if (entry.fileName().startsWith(prefix) && isRegularFile(entry.fileInfo())) {
            names.append(entry.fileName());
        }
    }
    for (const QString &name : names) {
        // One that could not be put in place is the only file of its patch.
        if (!m_leftovers.unfinished.contains(name)) {
            remove(name);
        }
    }
}

void LibrarySweeper::removeWriteTestFile()
{
    const QString path = LibraryFileNames::writeTestFile(m_directory);
    const FileReadResult file = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    if (file.bytes && LibraryFileNames::writeTestText().startsWith(*file.bytes)) {
        std::ignore = DiskFiles::remove(path);
    }
}

bool LibrarySweeper::remove(const QString &name)
{
    return existence(pathOf(name)) != FileExistence::file || DiskFiles::remove(pathOf(name)).isEmpty();
}

QString LibrarySweeper::pathOf(const QString &name) const
{
    return m_directory + u'/' + name;
}
