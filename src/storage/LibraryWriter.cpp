#include "LibraryWriter.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "FaultPoint.h"
#include "LibraryFileNames.h"
#include "LibraryFileWriter.h"
#include "LibraryJson.h"
#include "PatchFileHandler.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <future>
#include <utility>

LibraryWriter::LibraryWriter(const QString &directory, const LibraryWriteState &state)
    : m_place(directory)
    , m_files(directory)
{
    m_result.state = state;
}

LibraryWriteResult LibraryWriter::save(const LibraryState &library)
{
    Diagnostics::printLine(QStringLiteral("Saving in progress..."));
    forgetRemovalsOf(library.patches);
    if (std::exchange(m_result.state.isJournalOrphaned, false)) {
        m_place.settleOrphanedJournal();
    }
    // While this thread waits for the disk. Where there can be no second thread, it is done when it is asked for.
    std::future<QByteArray> text = std::async(std::launch::async | std::launch::deferred,
        [content = withUnread(library)] { return LibraryJson::encode(content); });
    // What an interruption leaves: of the first three steps, the old library file; of the fourth, the copy, which
    // loading uses while the library file does not decode; of the rest, the new one, and the journal of what is left.
    LibraryFileWriter file(m_place, m_result);
    if (prepareFiles(library.patches) && writeJournal()) {
        if (FaultPoint::isSet("removal-before-library-file")) {
            removeFiles();
        }
        const QByteArray json = text.get();
        if (file.writeCopy(json)) {
            file.writeFile(json);
        }
        putFilesInPlace();
        removeFiles();
        endJournal();
    } else {
        Diagnostics::printLine(QStringLiteral("cannot encode library"));
        m_result.arePatchesWritten = false;
    }
    if (library.patches.isEmpty()) {
        Diagnostics::printLine(QStringLiteral("Nothing to save in library"));
    }
    Diagnostics::printLine(m_result.arePatchesWritten
            ? QStringLiteral("Saving done %1 patches").arg(m_result.written)
            : QStringLiteral("Error: %1 patches stored out of %2").arg(m_result.written).arg(library.patches.size()));
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
    return FaultPoint::isSet("unread-entries-dropped") ? library : state.unread.joinedWith(library);
}

bool LibraryWriter::prepareFiles(const QList<VelgorPatch> &patches)
{
    m_result.state.verified.keepOnly(patches);
    if (!patches.isEmpty() || !m_result.state.idsToRemove.isEmpty()) {
        m_result.isTidy = scan();
    }
    m_files.setListing(m_listing ? &*m_listing : nullptr);
    if (!std::all_of(patches.begin(), patches.end(), [this](const VelgorPatch &patch) { return prepareFile(patch); })) {
        return false;
    }
    const Result<> synced = m_files.sync();
    if (!synced) {
        m_result.problems.append(synced.problem().text());
    }
    return bool(synced);
}

bool LibraryWriter::prepareFile(const VelgorPatch &patch)
{
    const QString name = LibraryFileNames::patchFile(patch.name, patch.id());
    const bool isAlone = m_listing && m_listing->hasOnly(patch.id(), name);
    const bool isToMove = m_listing && !isAlone && planMoves(patch, name);
    const bool isThere = !isToMove && (isAlone || isStored(name));
    if (isToMove || (isThere && m_result.state.verified.holds(m_place.directory(), name, patch))) {
        return true;
    }
    const Result<QString> temporary = stage(patch, name, m_files);
    if (!temporary) {
        // Unless the reason lies with this file, it lies with the disk or the directory.
        return !patch.records || temporary.problem().what == Problem::What::Taken;
    }
    m_journal.staged.insert(patch.id(), *temporary);
    if (isThere || isLink(name)) {
        m_displaced.insert(name, patch.id());
    }
    return true;
}

Result<QString> LibraryWriter::stage(const VelgorPatch &patch, const QString &name, BatchFiles &files)
{
    const Result<QByteArray> bytes = PatchFileHandler::storedBytes(patch);
    Result<QString> temporary = bytes ? files.write(name, *bytes) : bytes.problem();
    if (!temporary) {
        m_result.problems.append(temporary.problem().text());
        m_result.arePatchesWritten = false;
    }
    return temporary;
}

bool LibraryWriter::writeJournal()
{
    m_journal.removed = m_result.state.idsToRemove;
    if (m_journal.isEmpty() || FaultPoint::isSet("no-journal")) {
        // One of a removal that failed must not outlive the return of its patch. What cannot be read now may be in a
        // file that only the journal knows.
        m_hasJournal = m_result.state.unread.isEmpty() && m_place.has(LibraryFileNames::journalFile());
        return true;
    }
    const Result<> written = DiskFiles::replace(m_place.pathOf(LibraryFileNames::journalFile()), m_journal.encode());
    if (!written) {
        m_result.problems.append(written.problem().text());
    }
    m_hasJournal = bool(written);
    return m_hasJournal;
}

void LibraryWriter::putFilesInPlace()
{
    setDisplacedFilesAside();
    moveFiles();
    finish(m_files, true);
}

void LibraryWriter::endJournal()
{
    const Result<> synced = m_hasJournal ? DiskSync::syncDirectory(m_place.path()) : Success();
    if (!synced) {
        m_result.problems.append(synced.problem().text());
        m_result.arePatchesWritten = false;
    }
    // A journal of what could not be done stays for the next start.
    const bool isDone = m_result.isLibraryFileWritten || !m_journal.isEmpty();
    if (m_hasJournal && isDone && synced && m_result.state.idsToRemove.isEmpty() && m_unfinished.isEmpty()) {
        std::ignore = m_place.remove(LibraryFileNames::journalFile());
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
        const Result<QString> aside = m_place.setAside(file.key(), file.value());
        if (aside) {
            m_result.keptFiles.append(m_place.pathOf(*aside));
            m_result.renamed.append({.from = file.key(), .to = *aside});
        } else {
            m_result.problems.append(aside.problem().text());
            m_result.arePatchesWritten = false;
            m_files.leavePrepared(file.key());
        }
    }
}

void LibraryWriter::moveFiles()
{
    BatchFiles instead(m_place.path());
    for (const Move &move : std::as_const(m_moves)) {
        const Result<> moved = m_place.move(move.candidate.name, move.to);
        if (moved) {
            m_result.renamed.append({.from = move.candidate.name, .to = move.to});
            continue;
        }
        reportMove(move.candidate, moved.problem().why);
        if (stage(move.patch, move.to, instead)) {
            m_result.state.leftAlone.insert(move.candidate.name);
        }
    }
    if (const Result<> synced = instead.sync(); synced) {
        finish(instead, false);
    } else {
        m_result.problems.append(synced.problem().text());
        m_result.arePatchesWritten = false;
    }
}

void LibraryWriter::finish(BatchFiles &files, bool isInJournal)
{
    const QList<BatchFiles::Failure> failures = files.finish();
    for (const BatchFiles::Failure &failure : failures) {
        if (failure.problem) {
            m_result.problems.append(failure.problem->text());
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
    if (!m_result.isLibraryFileWritten && !FaultPoint::isSet("removal-before-library-file")) {
        return;
    }
    QList<quint64> &ids = m_result.state.idsToRemove;
    if (!ids.isEmpty() && !m_listing) {
        addProblem({}, tr("the files of removed patches stay in it"));
    }
    QHash<QString, bool> handled;
    QList<quint64> failed;
    for (const quint64 id : std::as_const(ids)) {
        const auto candidates =
            m_listing ? PatchFileMatcher::candidates(*m_listing, id) : QList<PatchFileMatcher::Candidate>();
        for (const PatchFileMatcher::Candidate &candidate : candidates) {
            if (std::exchange(handled[candidate.name], true)) {
                continue;
            }
            const Result<> removed = m_place.remove(candidate.name);
            if (!removed) {
                Diagnostics::printLine(QStringLiteral("Could not remove file ") + candidate.name);
                m_result.problems.append(removed.problem().text());
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
        const Result<> checked = checkMove(candidate, patch, currentName);
        if (checked) {
            m_moves.append({candidate, currentName, patch});
            m_listing->moved(candidate.name, currentName);
            isPlanned = true;
        } else {
            reportMove(candidate, checked.problem().why);
            m_result.state.leftAlone.insert(candidate.name);
        }
    }
    return isPlanned;
}

Result<> LibraryWriter::checkMove(
    const PatchFileMatcher::Candidate &candidate, const VelgorPatch &patch, const QString &currentName)
{
    if (m_listing->kindOf(currentName)) {
        return Problem{.what = Problem::What::Taken, .why = tr("the patch has its file already")};
    }
    if (m_listing->kindOf(candidate.name) != DirectoryListing::Kind::RegularFile) {
        return Problem{.why = tr("not a regular file in the library directory")};
    }
    // A name alone proves nothing: the user may have put another patch's bytes under it.
    if (!patch.records || !m_result.state.verified.holds(m_place.directory(), candidate.name, patch)) {
        return Problem{.why = tr("it does not hold the patch that its name speaks of")};
    }
    return Success();
}

void LibraryWriter::reportMove(const PatchFileMatcher::Candidate &candidate, const QString &reason)
{
    const QString path = QDir::current().absoluteFilePath(candidate.path);
    Diagnostics::printLine(QStringLiteral("Error renaming item ") + LibraryFileNames::address(path));
    addProblem(candidate.name, reason);
    m_result.isTidy = false;
}

bool LibraryWriter::isStored(const QString &name) const
{
    const QFileInfo info(m_place.pathOf(name));
    return m_listing ? m_listing->kindOf(name) == DirectoryListing::Kind::RegularFile
                     : info.isFile() && !info.isSymLink();
}

bool LibraryWriter::isLink(const QString &name) const
{
    return (!m_listing || m_listing->kindOf(name) == DirectoryListing::Kind::Other)
        && QFileInfo(m_place.pathOf(name)).isSymLink();
}

bool LibraryWriter::scan()
{
    if (!LibraryPlace::isListable(m_place.path())) {
        addProblem({}, tr("the path holds characters that keep the directory from being listed"));
        return false;
    }
    if (!(m_listing = m_place.list())) {
        addProblem({}, tr("the directory cannot be listed"));
    }
    return m_listing.has_value();
}

void LibraryWriter::addProblem(const QString &name, const QString &reason)
{
    m_result.problems.append(
        Problem{.where = name.isEmpty() ? m_place.path() : m_place.pathOf(name), .why = reason}.text());
}
