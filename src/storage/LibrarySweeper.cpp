#include "LibrarySweeper.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "FaultPoint.h"
#include "LibraryFileNames.h"
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
    : m_place(directory)
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
    if (!FaultPoint::isSet("no-sweep")) {
        removeTemporaryFiles();
    }
    // What was put in place must be on the disk before the last trace of it goes.
    if (m_leftovers.unfinished.isEmpty() && m_notRemoved.isEmpty() && DiskSync::syncDirectory(m_place.path())) {
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
    const auto written =
        DiskFiles::overwriteInPlace(m_place.pathOf(LibraryFileNames::libraryFile()), m_leftovers.completeText);
    m_isLibraryFileCompleted = written && DiskSync::syncDirectory(m_place.path());
    if (m_isLibraryFileCompleted) {
        m_stamp = *written;
    }
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
    const Result<QByteArray> whole = m_place.read(prepared);
    const Result<QByteArray> there = m_place.read(name);
    if (there && whole && *there == *whole) {
        return remove(prepared);
    }
    const auto id = LibraryFileNames::patchFileId(name);
    if (id && whole && (there || there.problem().mayPass)) {
        const Result<QString> aside = m_place.setAside(name, *id);
        if (!aside) {
            return false;
        }
        Diagnostics::printLine(
            tr("%1 was in the place of a patch's file, and is kept as %2").arg(m_place.pathOf(name), *aside));
    }
    return bool(m_place.move(prepared, name));
}

void LibrarySweeper::removePatchFiles()
{
    if (m_leftovers.removed.isEmpty() || !LibraryPlace::isListable(m_place.path())) {
        return;
    }
    const auto listing = m_place.list().value_or(DirectoryListing());
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
    QDirIterator entry(m_place.path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
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
    const QString path = LibraryFileNames::writeTestFile(m_place.path());
    const Result<QByteArray> file = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    if (file && LibraryFileNames::writeTestText().startsWith(*file)) {
        std::ignore = DiskFiles::remove(path);
    }
}

bool LibrarySweeper::remove(const QString &name) const
{
    return !m_place.has(name) || m_place.remove(name);
}
