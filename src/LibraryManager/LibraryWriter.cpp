#include "LibraryWriter.h"

#include "BatchFiles.h"
#include "Diagnostics.h"
#include "DiskFiles.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "PatchFileHandler.h"

#include <QDir>
#include <QFileInfo>

LibraryWriter::LibraryWriter(const QString &directory, const LibraryWriteState &state)
    : m_directory(directory)
{
    m_result.state = state;
}

LibraryWriteResult LibraryWriter::save(const LibraryJson::Content &library)
{
    Diagnostics::printLine(QStringLiteral("Saving in progress..."));
    encodeLibrary(library);
    savePatches(library.patches);
    if (m_result.arePatchesWritten) {
        Diagnostics::printLine(QStringLiteral("Saving done %1 patches").arg(m_result.written));
    } else {
        Diagnostics::printLine(
            QStringLiteral("Error: %1 patches stored out of %2").arg(m_result.written).arg(library.patches.size()));
    }
    return m_result;
}

// What a crash leaves at each step: before the copy is complete, the old library file; from then on the copy, which
// loading uses while the library file does not decode; after the rewriting, the new library file.
void LibraryWriter::encodeLibrary(const LibraryJson::Content &library)
{
    const QString path = pathOf(LibraryFileNames::libraryFile());
    const QString copy = pathOf(LibraryFileNames::libraryCopy());
    const QByteArray text = LibraryJson::encode(library);
    const auto fail = [this](const QString &name, const QString &error) {
        Diagnostics::printLine(QStringLiteral("cannot encode library"));
        addProblem(name, error);
    };
    if (!keepOldFiles()) {
        fail(LibraryFileNames::libraryFile(), tr("it is not replaced, because the old one could not be kept"));
        return;
    }
    QString error = DiskFiles::replace(copy, text);
    if (!error.isEmpty()) {
        fail(LibraryFileNames::libraryCopy(), error);
        return;
    }
    bool wasTouched = false;
    error = DiskFiles::overwriteInPlace(path, text, wasTouched);
    if (!error.isEmpty()) {
        fail(LibraryFileNames::libraryFile(), error);
    }
    m_result.isLibraryFileWritten = error.isEmpty();
    if (error.isEmpty() || !wasTouched) {
        std::ignore = DiskFiles::remove(copy);
    }
}

bool LibraryWriter::keepOldFiles()
{
    const QStringList files = m_result.state.filesToKeep;
    for (const QString &name : files) {
        if (!keepOldFile(name)) {
            return false;
        }
        m_result.state.filesToKeep.removeOne(name);
    }
    if (!files.isEmpty()) {
        pruneKeptFiles();
    }
    return true;
}

bool LibraryWriter::keepOldFile(const QString &name)
{
    const QString path = pathOf(name);
    if (existence(path) == FileExistence::none) {
        return true;
    }
    const FileReadResult old = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    if (!old.bytes) {
        addProblem(name, old.error);
        return false;
    }
    int attempt = 0;
    QString kept = pathOf(LibraryFileNames::datedCopy(attempt));
    while (existence(kept) != FileExistence::none) {
        kept = pathOf(LibraryFileNames::datedCopy(++attempt));
    }
    const QString error = DiskFiles::replace(kept, *old.bytes);
    if (!error.isEmpty()) {
        m_result.problems.append(tr("%1: %2").arg(kept, error));
        return false;
    }
    m_result.keptFiles.append(kept);
    return true;
}

void LibraryWriter::pruneKeptFiles()
{
    QStringList kept = QDir(m_directory).entryList(QDir::Files, QDir::Name);
    // What was kept just now stays, even if the clock went back and its name says that it is the oldest.
    kept.removeIf([this](const QString &name) {
        return !LibraryFileNames::isDatedCopy(name) || m_result.keptFiles.contains(pathOf(name));
    });
    while (!kept.isEmpty() && kept.size() + m_result.keptFiles.size() > keptFileLimit) {
        std::ignore = DiskFiles::remove(pathOf(kept.takeFirst()));
    }
}

void LibraryWriter::setDamagedFileAside(const QString &name, quint64 patchID)
{
    int attempt = 0;
    QString aside = LibraryFileNames::damagedFile(patchID, attempt);
    while (existence(pathOf(aside)) != FileExistence::none) {
        aside = LibraryFileNames::damagedFile(patchID, ++attempt);
    }
    const QString error = DiskFiles::move(pathOf(name), pathOf(aside));
    if (!error.isEmpty()) {
        addProblem(name, error);
        return;
    }
    m_result.state.damagedFiles.remove(name);
    if (m_listing) {
        m_listing->moved(name, aside);
    }
}

void LibraryWriter::savePatches(const QList<VelgorPatch> &patches)
{
    if (patches.isEmpty()) {
        Diagnostics::printLine(QStringLiteral("Nothing to save in library"));
        return;
    }
    m_result.isTidy = scan();
    BatchFiles files(m_directory);
    PatchFileHandler handler(files);
    qsizetype staged = 0;
    for (const VelgorPatch &patch : patches) {
        const QString name = LibraryFileNames::patchFile(patch.name, patch.id());
        if (m_listing) {
            renameIfNeeded(patch, name);
        }
        if (isStored(name) && m_result.state.damagedFiles.contains(name)) {
            setDamagedFileAside(name, patch.id());
        }
        if (isStored(name)) {
            continue;
        }
        if (handler.save(patch, pathOf(name))) {
            ++staged;
        } else {
            m_result.problems.append(handler.problem());
            m_result.arePatchesWritten = false;
        }
    }
    const QList<BatchFiles::Failure> failures = files.finish();
    for (const BatchFiles::Failure &failure : failures) {
        m_result.problems.append(tr("%1: %2").arg(failure.path, failure.error));
        m_result.arePatchesWritten = false;
    }
    m_result.written = staged - failures.size();
}

void LibraryWriter::renameIfNeeded(const VelgorPatch &patch, const QString &currentName)
{
    for (const PatchFileMatcher::Candidate &candidate : PatchFileMatcher::candidates(*m_listing, patch.id())) {
        const bool isSettled = candidate.name == currentName || m_result.state.leftAlone.contains(candidate.name);
        // An older file of a patch that is stored under its present name: moving it failed once, and may rest.
        if (isSettled || (candidate.isNamedForPatch && isStored(currentName))) {
            continue;
        }
        QString error;
        if (canMove(candidate, patch, currentName, error)) {
            error = DiskFiles::move(pathOf(candidate.name), pathOf(currentName));
        }
        if (error.isEmpty()) {
            m_listing->moved(candidate.name, currentName);
            continue;
        }
        const QString address = LibraryFileNames::address(QDir::current().absoluteFilePath(candidate.path));
        Diagnostics::printLine(QStringLiteral("Error renaming item ") + address);
        addProblem(candidate.name, error);
        m_result.isTidy = false;
        m_result.state.leftAlone.insert(candidate.name);
    }
}

bool LibraryWriter::canMove(const PatchFileMatcher::Candidate &candidate, const VelgorPatch &patch,
    const QString &currentName, QString &reason) const
{
    if (m_listing->kindOf(currentName)) {
        reason = tr("the patch has its file already");
        return false;
    }
    if (m_listing->kindOf(candidate.name) != DirectoryListing::Kind::RegularFile) {
        reason = tr("not a regular file in the library directory");
        return false;
    }
    // A name alone proves nothing: the user may have put another patch's bytes under it.
    const FileReadResult file = DiskFiles::readRegular(pathOf(candidate.name), DiskFiles::Links::Refuse);
    if (!file.bytes || !PatchFileMatcher::holdsPatch(*file.bytes, patch)) {
        reason = tr("it does not hold the patch that its name speaks of");
        return false;
    }
    return true;
}

bool LibraryWriter::isStored(const QString &name) const
{
    if (m_listing) {
        return m_listing->kindOf(name) == DirectoryListing::Kind::RegularFile;
    }
    const QFileInfo info(pathOf(name));
    return info.isFile() && !info.isSymLink();
}

LibraryWriteResult LibraryWriter::remove(const QList<quint64> &patchIDs)
{
    m_result.isLibraryFileWritten = true;
    m_result.isTidy = scan();
    if (!m_listing) {
        addProblem({}, tr("the files of removed patches stay in it"));
        return m_result;
    }
    QSet<QString> handled;
    for (const quint64 id : patchIDs) {
        for (const PatchFileMatcher::Candidate &candidate : PatchFileMatcher::candidates(*m_listing, id)) {
            if (handled.contains(candidate.name)) {
                continue;
            }
            handled.insert(candidate.name);
            const QString error = DiskFiles::remove(pathOf(candidate.name));
            if (!error.isEmpty()) {
                Diagnostics::printLine(QStringLiteral("Could not remove file ") + candidate.name);
                addProblem(candidate.name, error);
                m_result.areFilesRemoved = false;
            }
        }
    }
    return m_result;
}

void LibraryWriter::sweepLeftovers(const QString &directory, bool isCopySpare)
{
    const QDir folder(directory);
    QStringList filters{LibraryFileNames::temporaryPrefix() + u'*'};
    if (isCopySpare) {
        filters.append(LibraryFileNames::libraryCopy());
    }
    for (const QString &name :
        folder.entryList(filters, QDir::Files | QDir::Hidden | QDir::NoSymLinks | QDir::CaseSensitive)) {
        std::ignore = DiskFiles::remove(folder.filePath(name));
    }
}

bool LibraryWriter::scan()
{
    if (!LibraryFileNames::isListable(m_directory)) {
        addProblem({}, tr("the path holds characters that keep the directory from being listed"));
        return false;
    }
    m_listing = DirectoryListing::scan(m_directory);
    if (!m_listing) {
        addProblem({}, tr("the directory cannot be listed"));
    }
    return m_listing.has_value();
}

void LibraryWriter::addProblem(const QString &name, const QString &reason)
{
    m_result.problems.append(tr("%1: %2").arg(name.isEmpty() ? m_directory : pathOf(name), reason));
}

QString LibraryWriter::pathOf(const QString &name) const
{
    return m_directory + u'/' + name;
}
