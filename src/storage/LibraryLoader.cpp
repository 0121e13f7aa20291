#include "LibraryLoader.h"

#include "Diagnostics.h"
#include "FaultPoint.h"
#include "LibraryFileNames.h"
#include "LibraryFileReader.h"
#include "LibraryJson.h"
#include "PatchFileMatcher.h"
#include "PatchWriter.h"
#include "SinglePatchFile.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

LibraryLoader::LibraryLoader(const QString &directory, Report report, Sounds sounds)
    : m_place(directory)
    , m_report(std::move(report))
    , m_sounds(sounds)
{
}

LibraryLoadResult LibraryLoader::load()
{
    Diagnostics::printLine(QStringLiteral("Loading library from directory"));
    LibraryLoadResult result;
    const std::optional<LibraryState> content = LibraryFileReader(m_place).read(result);
    result.leftovers.areKnown = !result.problem;
    result.writeState.isJournalOrphaned = !result.leftovers.areKnown;
    m_journal = m_place.journal().value_or(LibraryJournal());
    if (content) {
        fill(*content, result);
    }
    return result;
}

LibraryLoadResult LibraryLoader::loadEntries(const LibraryState &stored)
{
    LibraryLoadResult result;
    m_journal = m_place.journal().value_or(LibraryJournal());
    fill(stored, result);
    return result;
}

void LibraryLoader::fill(const LibraryState &stored, LibraryLoadResult &result)
{
    m_entries = LibraryEntries(stored.patches);
    QList<VelgorPatch> patches = m_entries.patches();
    const Progress progress = loadPatches(patches, result);
    if (progress.isStopped) {
        return;
    }
    if (progress.loaded > 0) {
        patches.removeIf([](const VelgorPatch &patch) { return patch.empty; });
    }
    if (!progress.complete) {
        Diagnostics::printLine(
            QStringLiteral("Incomplete library loading: %1 out of %2").arg(progress.loaded).arg(patches.size()));
        patches.removeIf([](const VelgorPatch &patch) { return !patch.records; });
    }
    if (!patches.isEmpty()) {
        result.library = LibraryState{.patches = std::move(patches), .defaultPatch = stored.defaultPatch};
    }
    UnreadPatches &unread = result.writeState.unread;
    if (!unread.isEmpty()) {
        for (const VelgorPatch &entry : m_entries.patches()) {
            unread.order.append(entry.id());
        }
        unread.defaultPatch = stored.defaultPatch;
    }
    noteDropped(result);
    for (const VelgorPatch &entry : std::as_const(result.droppedEntries)) {
        if (entry.id() == stored.defaultPatch) {
            result.droppedDefault = stored.defaultPatch;
        }
    }
    if (stored.hasUnknown) {
        keepSource(result);
    }
    noteRemoved(result);
}

void LibraryLoader::noteRemoved(LibraryLoadResult &result) const
{
    QSet<quint64> present;
    if (!m_journal.removed.isEmpty()) {
        for (const VelgorPatch &entry : m_entries.patches()) {
            present.insert(m_entries.storedId(entry));
        }
    }
    result.leftovers.removed = m_journal.removed;
    result.leftovers.removed.removeIf([&present](quint64 id) { return present.contains(id); });
}

void LibraryLoader::noteDropped(LibraryLoadResult &result) const
{
    const QList<VelgorPatch> &stored = m_entries.patches();
    const bool isPlaceholder = stored.size() == 1 && stored.first().empty && stored.first().comment.isEmpty();
    // An empty place takes no part in the library; what was said about it is in its file only.
    const bool hasEmptyPlaces =
        std::any_of(stored.begin(), stored.end(), [](const VelgorPatch &entry) { return entry.empty; });
    const QList<VelgorPatch> loaded = result.library ? result.library->patches : QList<VelgorPatch>();
    if (isPlaceholder || (loaded.size() == stored.size() && !hasEmptyPlaces)) {
        return;
    }
    QSet<quint64> ids;
    for (const VelgorPatch &patch : loaded) {
        ids.insert(patch.id());
    }
    for (const VelgorPatch &entry : stored) {
        if (!ids.contains(entry.id())) {
            result.droppedPatches.append(entry.name);
            result.droppedProblems.append(m_failures.value(entry.id(), entry.name));
            result.droppedEntries.append(entry);
        }
    }
    if (!hasEmptyPlaces && result.droppedEntries.size() == result.writeState.unread.patches.size()) {
        return;
    }
    keepSource(result);
}

void LibraryLoader::keepSource(LibraryLoadResult &result)
{
    const QString source =
        result.leftovers.isCopySpare ? LibraryFileNames::libraryFile() : LibraryFileNames::libraryCopy();
    if (!result.writeState.filesToKeep.contains(source)) {
        result.writeState.filesToKeep.append(source);
    }
}

LibraryLoader::Progress LibraryLoader::loadPatches(QList<VelgorPatch> &patches, LibraryLoadResult &result)
{
    if (patches.isEmpty()) {
        Diagnostics::printLine(QStringLiteral("Nothing to load into library"));
        return {.complete = false};
    }
    result.writeState.verified.reserve(patches.size());
    Progress progress;
    qsizetype done = 0;
    for (VelgorPatch &entry : patches) {
        if (Result<Found> found = readPatch(entry, result)) {
            entry.records = std::move(found->records);
            if (m_sounds == Sounds::Drop) {
                entry.records->patchData.data.clear();
                entry.records->userIRData.data.clear();
            }
            ++progress.loaded;
            if (m_entries.hasFreshId(entry)) {
                // It will be stored anew under its own id; its former file still carries the other patch's.
                result.writeState.leftAlone.insert(found->file);
            }
            m_doubts.setFile(entry.id(), found->file);
        } else {
            progress.complete = false;
        }
        ++done;
        if (m_report && !m_report(done, patches.size())) {
            progress.isStopped = true;
            return progress;
        }
    }
    if (m_sounds == Sounds::Drop && !m_doubts.isEmpty()) {
        // What is said of a doubt depends on the sounds.
        m_sounds = Sounds::Keep;
        m_doubts = {};
        return loadPatches(patches, result);
    }
    m_doubts.note(m_entries, patches, result);
    return progress;
}

Result<LibraryLoader::Found> LibraryLoader::readPatch(const VelgorPatch &entry, LibraryLoadResult &result)
{
    const QString fileName = LibraryFileNames::patchFile(entry.name, m_entries.storedId(entry));
    // What a save had prepared and not put in place goes before what it was about to take the place of.
    Result<PresetRecords> prepared = readFromJournal(entry, fileName, result);
    if (prepared) {
        return Found{*std::move(prepared), fileName};
    }
    // Nothing of the bytes stays, so that all files can be read into the same memory.
    auto file = m_place.readPatchFile(fileName, std::exchange(m_room, {}));
    Result<PresetRecords> own = file ? ownRecords(entry, file->bytes) : file.problem();
    if (file) {
        m_room = std::exchange(file->bytes, {});
    }
    if (own) {
        if (!m_entries.hasFreshId(entry)) {
            result.writeState.verified.insert(entry.id(), file->stamp);
        }
        return Found{*std::move(own), fileName};
    }
    Result<Found> other = FaultPoint::isSet("no-search-by-id") ? Problem() : readFromOtherFile(entry);
    if (other) {
        return other;
    }
    if (prepared.problem().mayPass || own.problem().mayPass || other.problem().mayPass) {
        result.writeState.unread.patches.insert(entry.id(), entry.withId(m_entries.storedId(entry)));
    }
    m_failures.insert(entry.id(), tr("%1: %2 (%3)").arg(entry.name.simplified(), own.problem().why, fileName));
    if (!file) {
        Diagnostics::printLine(QStringLiteral("Could not open ") + LibraryFileNames::address(m_place.pathOf(fileName)));
    }
    return own.problem();
}

Result<PresetRecords> LibraryLoader::ownRecords(const VelgorPatch &entry, const QByteArray &bytes)
{
    Result<SPresetFile> presets = SinglePatchFile::decode(bytes);
    if (!presets) {
        const bool isNone = presets.problem().what == Problem::What::Malformed;
        return isNone ? Problem{.what = Problem::What::Malformed, .why = tr("not a preset file")} : presets.problem();
    }
    // Every file that a library writes has the right one.
    const bool isDamaged = presets->checksum != PatchWriter::checksumOf(*presets, bytes);
    PresetRecords records = SinglePatchFile::recordsIn(*std::move(presets));
    const SPatch &patch = records.patchData;
    const quint64 hash = VelgorPatch::staticSimpleHash(patch, records.userIRData);
    const LibraryEntries::Owner owner = hash == m_entries.storedId(entry)
        ? LibraryEntries::Owner::Entry
        : m_entries.ownerOf(VelgorPatch(patch, records.userIRData, records.headerData), entry);
    if (owner != LibraryEntries::Owner::Entry) {
        m_doubts.insertForeign(entry.id(), hash);
    }
    if (owner == LibraryEntries::Owner::OtherEntry) {
        return Problem{
            .why = tr("it holds \"%1\", another patch of the library").arg(patch.name.simplified()), .mayPass = true};
    }
    if (isDamaged || owner == LibraryEntries::Owner::Unknown) {
        m_doubts.insert(entry.id(), patch.name, isDamaged);
    }
    return records;
}

Result<PresetRecords> LibraryLoader::readFromJournal(
    const VelgorPatch &entry, const QString &fileName, LibraryLoadResult &result)
{
    // Of two entries with one id, the journal knows the first.
    const QString temporary = m_entries.hasFreshId(entry) ? QString() : m_journal.staged.value(entry.id());
    if (temporary.isEmpty()) {
        return Problem{.what = Problem::What::Absent};
    }
    Result<PresetRecords> records = readOnePatch(temporary, entry);
    if (records) {
        result.leftovers.unfinished.insert(temporary, fileName);
    }
    return records;
}

Result<LibraryLoader::Found> LibraryLoader::readFromOtherFile(const VelgorPatch &entry)
{
    const quint64 id = m_entries.storedId(entry);
    auto known = m_otherFiles.find(id);
    if (known == m_otherFiles.end()) {
        known = m_otherFiles.insert(id, otherFiles(id));
    }
    OtherFiles &files = known.value();
    while (!files.names.isEmpty()) {
        Result<PresetRecords> records = readOnePatch(files.names.first(), entry);
        if (records) {
            return Found{*std::move(records), files.names.first()};
        }
        files.areUnreadable = files.areUnreadable || records.problem().mayPass;
        files.names.removeFirst();
    }
    return Problem{.what = Problem::What::Absent, .mayPass = files.areUnreadable};
}

LibraryLoader::OtherFiles LibraryLoader::otherFiles(quint64 id)
{
    if (!m_listing) {
        m_listing = m_place.list().value_or(DirectoryListing());
        m_expectedNames.reserve(m_entries.patches().size());
        for (const VelgorPatch &entry : m_entries.patches()) {
            m_expectedNames.insert(LibraryFileNames::patchFile(entry.name, m_entries.storedId(entry)));
        }
    }
    OtherFiles files;
    for (const PatchFileMatcher::Candidate &candidate : PatchFileMatcher::candidates(*m_listing, id)) {
        // Two entries with one id: the file of the one is not for the other.
        const bool isTaken = m_expectedNames.contains(candidate.name);
        const auto kind = m_listing->kindOf(candidate.name);
        if (!isTaken && kind == DirectoryListing::Kind::RegularFile) {
            files.names.append(candidate.name);
        } else if (!isTaken && kind && candidate.isNamedForPatch) {
            // A link is not followed; the patch may be behind it.
            files.areUnreadable = files.areUnreadable || QFileInfo(m_place.pathOf(candidate.name)).isSymLink();
        }
    }
    return files;
}

Result<PresetRecords> LibraryLoader::readOnePatch(const QString &name, const VelgorPatch &entry)
{
    const auto file = m_place.readPatchFile(name);
    return file ? ownRecords(entry, file->bytes) : file.problem();
}
