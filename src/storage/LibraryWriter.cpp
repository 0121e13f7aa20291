#include "LibraryWriter.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "DisplacedFiles.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryFileWriter.h"
#include "LibraryPlace.h"
#include "OrphanedJournal.h"
#include "PatchFileHandler.h"

#include <QDir>
#include <QFileInfo>
#include <QStringBuilder>

#include <algorithm>
#include <future>
#include <utility>

LibraryWriter::LibraryWriter(const QString &directory, const LibraryWriteState &state)
    : m_directory(directory)
    , m_openDirectory(directory)
    , m_files(directory)
{
    m_result.state = state;
}

LibraryWriteResult LibraryWriter::save(const LibraryState &library)
{
    Diagnostics::printLine(QStringLiteral("Saving in progress..."));
    forgetRemovalsOf(library.patches);
    if (std::exchange(m_result.state.isJournalOrphaned, false)) {
        OrphanedJournal::settle(m_directory);
    }
    // While this thread waits for the disk. Where there can be no second thread, it is done when it is asked for.
    std::future<QByteArray> text = std::async(std::launch::async | std::launch::deferred,
        [content = withUnread(library)] { return LibraryJson::encode(content); });
    if (prepare(library.patches) && writeJournal()) {
        LibraryFileWriter(m_directory, m_result).write(text.get());
        carryOut();
    } else {
        Diagnostics::printLine(QStringLiteral("cannot encode library"));
        m_result.arePatchesWritten = false;
    }
    if (library.patches.isEmpty()) {
        Diagnostics::printLine(QStringLiteral("Nothing to save in library"));
    }
    if (m_result.arePatchesWritten) {
        Diagnostics::printLine(QStringLiteral("Saving done %1 patches").arg(m_result.written));
    } else {
        Diagnostics::printLine(
            QStringLiteral("Error: %1 patches stored out of %2").arg(m_result.written).arg(library.patches.size()));
    }
    return m_result;
}

void LibraryWriter::forgetRemovalsOf(const QList<VelgorPatch> &patches)
{
    QList<quint64> &ids = m_result.state.idsToRemove;
    if (ids.isEmpty()) {
        return;
    }
    QSet<quint64> present;
    for (const VelgorPatch &patch : patches) {
        present.insert(patch.id());
    }
    ids.removeIf([&present](quint64 id) { return present.contains(id); });
}

LibraryState LibraryWriter::withUnread(const LibraryState &library)
{
    LibraryWriteState &state = m_result.state;
    if (state.unread.forget(library.patches) && !state.filesToKeep.contains(LibraryFileNames::libraryFile())) {
        // The patch was imported anew, without what the user had said about it.
        state.filesToKeep.append(LibraryFileNames::libraryFile());
    }
    return state.unread.joinedWith(library);
}

bool LibraryWriter::prepare(const QList<VelgorPatch> &patches)
{
    m_result.state.verified.keepOnly(patches);
    if (!patches.isEmpty() || !m_result.state.idsToRemove.isEmpty()) {
        m_result.isTidy = scan();
    }
    m_files.setListing(m_listing ? &*m_listing : nullptr);
    for (const VelgorPatch &patch : patches) {
        const QString name = LibraryFileNames::patchFile(patch.name, patch.id());
        const bool isAlone = m_listing && m_listing->hasOnly(patch.id(), name);
        if (m_listing && !isAlone && planMoves(patch, name)) {
            continue;
        }
        const bool isThere = isAlone || isStored(name);
        if (isThere && m_result.state.verified.holds(m_openDirectory, name, patch)) {
            continue;
        }
        if (stage(patch, name, m_files)) {
            m_journal.staged.insert(patch.id(), m_files.staged().constLast().temporary);
            if (isThere || isLink(name)) {
                m_displaced.insert(name, patch.id());
            }
        } else if (m_files.isBlocked()) {
            return false;
        }
    }
    const QString error = m_files.sync();
    if (!error.isEmpty()) {
        addProblem({}, error);
    }
    return error.isEmpty();
}

bool LibraryWriter::stage(const VelgorPatch &patch, const QString &name, BatchFiles &files)
{
    PatchFileHandler handler(files);
    if (!handler.save(patch, pathOf(name))) {
        m_result.problems.append(handler.problem());
        m_result.arePatchesWritten = false;
        return false;
    }
    return true;
}

bool LibraryWriter::writeJournal()
{
    m_journal.removed = m_result.state.idsToRemove;
    if (m_journal.isEmpty()) {
        // One of a removal that failed must not outlive the return of its patch. What cannot be read now may be in a
        // file that only the journal knows.
        m_hasJournal = m_result.state.unread.isEmpty()
            && existence(pathOf(LibraryFileNames::journalFile())) == FileExistence::file;
        return true;
    }
    const QString error = DiskFiles::replace(pathOf(LibraryFileNames::journalFile()), m_journal.encode());
    if (!error.isEmpty()) {
        addProblem(LibraryFileNames::journalFile(), error);
    }
    m_hasJournal = error.isEmpty();
    return error.isEmpty();
}

void LibraryWriter::carryOut()
{
    setDisplacedFilesAside();
    moveFiles();
    putInPlace(m_files, true);
    if (m_result.isLibraryFileWritten) {
        removeFiles();
    }
    const QString error = m_hasJournal ? DiskSync::syncDirectory(m_directory) : QString();
    if (!error.isEmpty()) {
        addProblem({}, error);
        m_result.arePatchesWritten = false;
    }
    // A journal of what could not be done stays for the next start.
    const bool isDone = m_result.isLibraryFileWritten || !m_journal.isEmpty();
    if (m_hasJournal && isDone && error.isEmpty() && m_result.state.idsToRemove.isEmpty() && m_unfinished.isEmpty()) {
        std::ignore = DiskFiles::remove(pathOf(LibraryFileNames::journalFile()));
    }
    if (m_hasJournal && m_result.arePatchesWritten) {
        for (const QString &spare : std::as_const(m_result.state.prepared)) {
            std::ignore = DiskFiles::remove(spare);
        }
        m_result.state.prepared.clear();
    }
    m_result.state.prepared.append(m_unfinished);
}

void LibraryWriter::setDisplacedFilesAside()
{
    for (auto file = m_displaced.cbegin(); file != m_displaced.cend(); ++file) {
        QString aside;
        const QString error = DisplacedFiles::setAside(m_directory, file.key(), file.value(), aside);
        if (error.isEmpty()) {
            m_result.keptFiles.append(pathOf(aside));
            m_result.renamed.append({.from = file.key(), .to = aside});
        } else {
            addProblem(file.key(), error);
            m_result.arePatchesWritten = false;
            m_files.leavePrepared(file.key());
        }
    }
}

void LibraryWriter::moveFiles()
{
    BatchFiles instead(m_directory);
    for (const Move &move : std::as_const(m_moves)) {
        const QString error = DiskFiles::move(pathOf(move.candidate.name), pathOf(move.to));
        if (error.isEmpty()) {
            m_result.renamed.append({.from = move.candidate.name, .to = move.to});
            continue;
        }
        reportMove(move.candidate, error);
        if (stage(move.patch, move.to, instead)) {
            m_result.state.leftAlone.insert(move.candidate.name);
        }
    }
    const QString error = instead.sync();
    if (error.isEmpty()) {
        putInPlace(instead, false);
    } else {
        addProblem({}, error);
        m_result.arePatchesWritten = false;
    }
}

void LibraryWriter::putInPlace(BatchFiles &files, bool isInJournal)
{
    const QList<BatchFiles::Failure> failures = files.finish();
    for (const BatchFiles::Failure &failure : failures) {
        if (!failure.error.isEmpty()) {
            m_result.problems.append(tr("%1: %2").arg(failure.path, failure.error));
        }
        m_result.arePatchesWritten = false;
        if (isInJournal) {
            // The next start finds it by the journal.
            m_unfinished.append(failure.temporary);
        } else {
            std::ignore = DiskFiles::remove(failure.temporary);
        }
    }
    for (const BatchFiles::Staged &file : files.placed()) {
        if (const auto id = LibraryFileNames::patchFileId(file.name)) {
            m_result.state.verified.insert(*id, file.stamp);
        }
    }
    m_result.written += files.placed().size();
}

void LibraryWriter::removeFiles()
{
    QList<quint64> &ids = m_result.state.idsToRemove;
    if (!ids.isEmpty() && !m_listing) {
        addProblem({}, tr("the files of removed patches stay in it"));
    }
    QSet<QString> handled;
    QList<quint64> failed;
    for (const quint64 id : std::as_const(ids)) {
        const auto candidates =
            m_listing ? PatchFileMatcher::candidates(*m_listing, id) : QList<PatchFileMatcher::Candidate>();
        for (const PatchFileMatcher::Candidate &candidate : candidates) {
            if (handled.contains(candidate.name)) {
                continue;
            }
            handled.insert(candidate.name);
            const QString error = DiskFiles::remove(pathOf(candidate.name));
            if (!error.isEmpty()) {
                Diagnostics::printLine(QStringLiteral("Could not remove file ") + candidate.name);
                addProblem(candidate.name, error);
                m_result.isTidy = false;
                // In a directory below, where nothing is removed, it is no file of the patch.
                if (m_listing->kindOf(candidate.name)) {
                    m_result.areFilesRemoved = false;
                    failed.append(id);
                }
            }
        }
    }
    ids = failed;
}

bool LibraryWriter::planMoves(const VelgorPatch &patch, const QString &currentName)
{
    bool isPlanned = false;
    for (const PatchFileMatcher::Candidate &candidate : PatchFileMatcher::candidates(*m_listing, patch.id())) {
        const bool isSettled = candidate.name == currentName || m_result.state.leftAlone.contains(candidate.name);
        // An older file of a patch that is stored under its present name: moving it failed once, and may rest.
        if (isSettled || (candidate.isNamedForPatch && isStored(currentName))) {
            continue;
        }
        QString reason;
        if (canMove(candidate, patch, currentName, reason)) {
            m_moves.append({candidate, currentName, patch});
            m_listing->moved(candidate.name, currentName);
            isPlanned = true;
        } else {
            reportMove(candidate, reason);
            m_result.state.leftAlone.insert(candidate.name);
        }
    }
    return isPlanned;
}

bool LibraryWriter::canMove(
    const PatchFileMatcher::Candidate &candidate, const VelgorPatch &patch, const QString &currentName, QString &reason)
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
    if (!patch.records || !m_result.state.verified.holds(m_openDirectory, candidate.name, patch)) {
        reason = tr("it does not hold the patch that its name speaks of");
        return false;
    }
    return true;
}

void LibraryWriter::reportMove(const PatchFileMatcher::Candidate &candidate, const QString &reason)
{
    const QString address = LibraryFileNames::address(QDir::current().absoluteFilePath(candidate.path));
    Diagnostics::printLine(QStringLiteral("Error renaming item ") + address);
    addProblem(candidate.name, reason);
    m_result.isTidy = false;
}

bool LibraryWriter::isStored(const QString &name) const
{
    if (m_listing) {
        return m_listing->kindOf(name) == DirectoryListing::Kind::RegularFile;
    }
    const QFileInfo info(pathOf(name));
    return info.isFile() && !info.isSymLink();
}

bool LibraryWriter::isLink(const QString &name) const
{
    const bool isOther = !m_listing || m_listing->kindOf(name) == DirectoryListing::Kind::Other;
    return isOther && QFileInfo(pathOf(name)).isSymLink();
}

bool LibraryWriter::scan()
{
    if (!LibraryPlace::isListable(m_directory)) {
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
    return m_directory % u'/' % name;
}
