#include "LibraryWriter.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryFileWriter.h"
#include "PatchFileHandler.h"
#include "SPresetFile.h"

#include <QDir>
#include <QFileInfo>
#include <QStringBuilder>

#include <algorithm>
#include <future>

LibraryWriter::LibraryWriter(const QString &directory, const LibraryWriteState &state)
    : m_directory(directory)
    , m_files(directory)
{
    m_result.state = state;
}

LibraryWriteResult LibraryWriter::save(const LibraryJson::Content &library)
{
    Diagnostics::printLine(QStringLiteral("Saving in progress..."));
    forgetRemovalsOf(library.patches);
    settleOrphanedJournal();
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

LibraryJson::Content LibraryWriter::withUnread(const LibraryJson::Content &library)
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
    if (!patches.isEmpty() || !m_result.state.idsToRemove.isEmpty()) {
        m_result.isTidy = scan();
    }
    m_files.setListing(m_listing ? &*m_listing : nullptr);
    for (const VelgorPatch &patch : patches) {
        const QString name = LibraryFileNames::patchFile(patch.name, patch.id());
        const bool isAlone = m_listing && m_listing->hasOnly(patch.id(), name);
        if (m_listing && !isAlone) {
            planMoves(patch, name);
        }
        const bool isThere = isAlone || isStored(name);
        if (isThere && !m_result.state.damagedFiles.contains(name)) {
            continue;
        }
        if (isThere) {
            m_damagedFiles.insert(name, patch.id());
        }
        if (stage(patch, name, m_files)) {
            m_journal.staged.insert(patch.id(), m_files.staged().constLast().temporary);
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

// A library file that could not be decoded may have held what its journal speaks of: what that one prepared becomes
// files without an entry, which can be added, and what it wanted to remove stays.
void LibraryWriter::settleOrphanedJournal()
{
    const QString path = pathOf(LibraryFileNames::journalFile());
    if (!m_result.state.isJournalOrphaned) {
        return;
    }
    const FileReadResult file = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    const auto journal = file.bytes ? LibraryJournal::decode(*file.bytes) : std::nullopt;
    const auto staged = journal ? journal->staged : QHash<quint64, QString>();
    for (auto patch = staged.cbegin(); patch != staged.cend(); ++patch) {
        const FileReadResult bytes = DiskFiles::readRegular(pathOf(patch.value()), DiskFiles::Links::Refuse);
        const auto presets = bytes.bytes ? SPresetFile::fromData(*bytes.bytes) : std::nullopt;
        if (presets && presets->patches.size() == 1) {
            const QString name = LibraryFileNames::patchFile(presets->patches.first().name, patch.key());
            std::ignore = DiskFiles::move(pathOf(patch.value()), pathOf(name));
        }
    }
    if (file.bytes) {
        std::ignore = DiskFiles::remove(path);
    }
    m_result.state.isJournalOrphaned = false;
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
    setDamagedFilesAside();
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
    if (m_hasJournal && error.isEmpty() && m_result.state.idsToRemove.isEmpty() && m_unfinished.isEmpty()) {
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

void LibraryWriter::setDamagedFilesAside()
{
    for (auto file = m_damagedFiles.cbegin(); file != m_damagedFiles.cend(); ++file) {
        int attempt = 0;
        QString aside = LibraryFileNames::damagedFile(file.value(), attempt);
        while (existence(pathOf(aside)) != FileExistence::none) {
            aside = LibraryFileNames::damagedFile(file.value(), ++attempt);
        }
        const QString error = DiskFiles::move(pathOf(file.key()), pathOf(aside));
        if (error.isEmpty()) {
            m_result.state.damagedFiles.remove(file.key());
            m_result.keptFiles.append(pathOf(aside));
        } else {
            addProblem(file.key(), error);
            m_result.arePatchesWritten = false;
            m_files.discard(file.key());
        }
    }
}

void LibraryWriter::moveFiles()
{
    BatchFiles instead(m_directory);
    for (const Move &move : std::as_const(m_moves)) {
        const QString error = DiskFiles::move(pathOf(move.candidate.name), pathOf(move.to));
        if (error.isEmpty()) {
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
    const qsizetype count = files.staged().size() - files.discarded();
    const QList<BatchFiles::Failure> failures = files.finish();
    for (const BatchFiles::Failure &failure : failures) {
        m_result.problems.append(tr("%1: %2").arg(failure.path, failure.error));
        m_result.arePatchesWritten = false;
        if (isInJournal) {
            // The next start finds it by the journal.
            m_unfinished.append(failure.temporary);
        } else {
            std::ignore = DiskFiles::remove(failure.temporary);
        }
    }
    m_result.written += count - failures.size();
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
                m_result.areFilesRemoved = false;
                if (m_listing->kindOf(candidate.name)) {
                    failed.append(id);
                }
            }
        }
    }
    ids = failed;
}

void LibraryWriter::planMoves(const VelgorPatch &patch, const QString &currentName)
{
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
        } else {
            reportMove(candidate, reason);
            m_result.state.leftAlone.insert(candidate.name);
        }
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
    return m_directory % u'/' % name;
}
