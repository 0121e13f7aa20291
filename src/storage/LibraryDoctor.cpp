#include "LibraryDoctor.h"

#include "FileExistence.h"
#include "KeptLibraries.h"
#include "LibraryFileNames.h"
#include "LibraryLock.h"
#include "PatchFileMatcher.h"
#include "PatchIdentity.h"
#include "ProcessExistence.h"
#include "TemporaryFiles.h"

#include <QFileInfo>
#include <QSysInfo>

#include <utility>

namespace {

/// The patch of a file with what the library knew about it.
VelgorPatch withEntry(const VelgorPatch &stored, const VelgorPatch &entry)
{
    VelgorPatch patch = entry;
    patch.records = stored.records;
    return patch;
}

/// The patch of a file that no library file knows. Of what the user has said about it, the name is left.
VelgorPatch adopted(const VelgorPatch &stored, const QString &fileName, quint64 id)
{
    VelgorPatch patch = stored.withId(id);
    if (LibraryFileNames::patchFile(stored.name, id) != fileName) {
        patch.name = LibraryFileNames::patchNameIn(fileName);
    }
    return patch;
}

bool holdsTheSame(const VelgorPatch &a, const VelgorPatch &b)
{
    return a.records && b.records && a.records->patchData == b.records->patchData
        && a.records->userIRData == b.records->userIRData;
}

} // namespace

LibraryDoctor::LibraryDoctor(const QString &directory, LibraryLoader::Report report)
    : m_place(directory)
    , m_report(std::move(report))
{
}

LibraryHealth LibraryDoctor::examine()
{
    m_health = {};
    m_loaded.clear();
    m_dropped.clear();
    m_former.clear();
    m_unreadable.clear();
    m_spare.clear();
    m_staged.clear();
    const LibraryLoadResult loaded = LibraryLoader(m_place.path(), m_report).load();
    noteLibraryFile(loaded);
    if (!loaded.leftovers.areKnown) {
        noteJournal();
    }
    // A directory whose names may not be read is listed as if it were empty.
    const QFileInfo info(m_place.path());
    m_listing = info.isReadable() ? m_place.list() : std::nullopt;
    if (!m_listing && info.isDir()) {
        add(LibraryFinding::Kind::UnlistedDirectory, QStringLiteral("."), 0, {},
            tr("the files in the directory cannot be listed"));
    }
    noteKeptFiles();
    if (m_listing) {
        QStringList names = m_listing->names();
        names.sort();
        for (const QString &name : std::as_const(names)) {
            if (!reportStillBusy()) {
                return m_health;
            }
            examineFile(name);
        }
        examineStaged();
        examineSubdirectories();
    }
    examineContents();
    noteDropped();
    return m_health;
}

bool LibraryDoctor::reportStillBusy() const
{
    const qsizetype all = m_loaded.size() + m_dropped.size();
    return !m_report || m_report(all, all);
}

void LibraryDoctor::noteJournal()
{
    const auto journal = m_place.journal().value_or(LibraryJournal());
    for (auto staged = journal.staged.cbegin(); staged != journal.staged.cend(); ++staged) {
        m_staged.insert(staged.value(), staged.key());
    }
}

void LibraryDoctor::noteLibraryFile(const LibraryLoadResult &loaded)
{
    if (loaded.problem) {
        add(LibraryFinding::Kind::DamagedLibraryFile, LibraryFileNames::libraryFile(), 0, {}, loaded.problem->text());
    }
    if (loaded.library) {
        for (const VelgorPatch &patch : loaded.library->patches) {
            m_loaded.insert(patch.id(), patch);
        }
        m_damaged = loaded.damagedFiles;
    }
    for (const VelgorPatch &patch : loaded.droppedEntries) {
        m_dropped.insert(patch.id(), patch);
    }
}

void LibraryDoctor::examineFile(const QString &name)
{
    if (m_listing->kindOf(name) != DirectoryListing::Kind::RegularFile) {
        return;
    }
    static const QStringList ofASave{LibraryFileNames::journalFile(), LibraryFileNames::libraryCopy()};
    if (ofASave.contains(name) || name.startsWith(TemporaryFiles::prefix())) {
        if (!m_staged.contains(name) && isLeftover(name)) {
            add(LibraryFinding::Kind::Leftover, name, 0);
        }
        return;
    }
    if (LibraryFileNames::isReserved(name)) {
        return;
    }
    if (const auto id = LibraryFileNames::patchFileId(name)) {
        examinePatchFile(name, *id);
        return;
    }
    for (const quint64 id : LibraryFileNames::idsIn(name)) {
        if (m_loaded.contains(id) || m_dropped.contains(id)) {
            if (const Result<VelgorPatch> patch = m_place.patch(name)) {
                m_spare.insert(VelgorPatch::staticSimpleHash(*patch), *patch);
            }
            add(LibraryFinding::Kind::ForeignFile, name, id,
                m_loaded.value(id, m_dropped.value(id, VelgorPatch(id))).name);
        }
    }
}

void LibraryDoctor::examinePatchFile(const QString &name, quint64 id)
{
    const auto known = m_loaded.constFind(id);
    if (known != m_loaded.cend() && name == LibraryFileNames::patchFile(known->name, id)) {
        return;
    }
    const Result<VelgorPatch> patch = m_place.patch(name);
    if (!patch) {
        const QString patchName = m_dropped.contains(id) ? m_dropped.value(id, VelgorPatch(id)).name : QString();
        m_unreadable.insert(id);
        add(LibraryFinding::Kind::UnreadableFile, name, id, patchName, patch.problem().why);
        return;
    }
    if (known != m_loaded.cend()) {
        // The next save moves the file of a renamed patch, unless the patch has one under its present name.
        const bool isInUse = !m_listing->kindOf(LibraryFileNames::patchFile(known->name, id));
        if (!isInUse) {
            add(LibraryFinding::Kind::ForeignFile, name, id, known->name);
        }
        return;
    }
    examineFileWithoutEntry(name, id, *patch);
}

void LibraryDoctor::examineFileWithoutEntry(const QString &name, quint64 id, const VelgorPatch &patch)
{
    const quint64 contentId = VelgorPatch::staticSimpleHash(patch);
    if (m_dropped.contains(contentId)) {
        m_spare.insert(contentId, patch);
        return;
    }
    if (m_dropped.contains(id)) {
        // Loading has refused it; the entry tells of it.
        return;
    }
    const auto former = m_former.constFind(id);
    const auto known = m_loaded.constFind(contentId);
    if (former != m_former.cend()) {
        const VelgorPatch whole = withEntry(patch, *former);
        const QString reason = tr("a former library file knows it");
        add(LibraryFinding::Kind::FileWithoutEntry, name, id, whole.name, reason, whole);
    } else if (PatchIdentity::mayHaveId(patch, id, adopted(patch, name, id).name)) {
        const VelgorPatch whole = adopted(patch, name, id);
        add(LibraryFinding::Kind::FileWithoutEntry, name, id, whole.name, {}, whole);
    } else if (known != m_loaded.cend() && holdsTheSame(*known, patch)) {
        m_health.notes.append({.kind = LibraryFinding::Kind::SpareFile,
            .file = name,
            .id = known->id(),
            .name = known->name,
            .reason = tr("the library has what is in it under another name"),
            .rescued = std::nullopt});
    } else if (known != m_loaded.cend()) {
        add(LibraryFinding::Kind::FileOfOtherContent, name, id, known->name,
            tr("it holds \"%1\", in whose place the library has another patch").arg(patch.name));
    } else {
        add(LibraryFinding::Kind::FileOfOtherContent, name, id, patch.name, tr("it holds \"%1\"").arg(patch.name),
            patch);
    }
}

void LibraryDoctor::examineStaged()
{
    QSet<quint64> found;
    for (const LibraryFinding &finding : std::as_const(m_health.findings)) {
        found.insert(finding.rescued ? finding.rescued->id() : 0);
    }
    QStringList names = m_staged.keys();
    names.sort();
    for (const QString &name : std::as_const(names)) {
        if (m_listing->kindOf(name) != DirectoryListing::Kind::RegularFile || !isLeftover(name)) {
            continue;
        }
        const quint64 id = m_staged.value(name);
        const Result<VelgorPatch> patch = found.contains(id) ? Problem() : m_place.patch(name);
        if (!patch) {
            add(LibraryFinding::Kind::Leftover, name, 0);
            continue;
        }
        const auto former = m_former.constFind(id);
        const VelgorPatch whole = former != m_former.cend() ? withEntry(*patch, *former) : patch->withId(id);
        add(LibraryFinding::Kind::FileWithoutEntry, name, id, whole.name,
            tr("an interrupted save had not put it in place"), whole);
    }
}

void LibraryDoctor::examineContents()
{
    for (const VelgorPatch &patch : std::as_const(m_loaded)) {
        if (!reportStillBusy()) {
            return;
        }
        if (const auto damaged = m_damaged.constFind(patch.id()); damaged != m_damaged.cend()) {
            add(LibraryFinding::Kind::UnreadableFile, *damaged, patch.id(), patch.name, tr("its checksum is wrong"));
        } else if (!PatchIdentity::mayHaveId(patch, patch.id(), patch.name)) {
            addOtherContent(patch, patch);
        }
    }
}

void LibraryDoctor::addOtherContent(const VelgorPatch &entry, const VelgorPatch &content)
{
    const QString held = content.records ? content.records->patchData.name : QString();
    add(LibraryFinding::Kind::FileOfOtherContent, LibraryFileNames::patchFile(entry.name, entry.id()), entry.id(),
        entry.name, tr("it holds \"%1\", whose id would be another").arg(held));
}

void LibraryDoctor::examineSubdirectories()
{
    for (const auto *patches : {&m_loaded, &m_dropped}) {
        for (const VelgorPatch &patch : *patches) {
            for (const QString &path : m_listing->pathsFor(patch.id())) {
                if (path.contains(u'/')) {
                    add(LibraryFinding::Kind::ForeignFile, path, patch.id());
                }
            }
        }
    }
}

void LibraryDoctor::noteDropped()
{
    for (const VelgorPatch &entry : std::as_const(m_dropped)) {
        const auto spare = m_spare.constFind(entry.id());
        if (spare != m_spare.cend()) {
            add(LibraryFinding::Kind::PatchWithoutFile, {}, entry.id(), entry.name,
                tr("its sound is in another file of the directory"), withEntry(*spare, entry));
        } else if (!m_unreadable.contains(entry.id()) && !entry.empty) {
            // There may be a link or a directory, or a file in a directory that cannot be listed.
            const QString name = LibraryFileNames::patchFile(entry.name, entry.id());
            const Result<VelgorPatch> patch = m_place.patch(name);
            if (patch) {
                addOtherContent(entry, *patch);
                continue;
            }
            const bool isThere = patch.problem().what != Problem::What::Absent;
            add(LibraryFinding::Kind::PatchWithoutFile, isThere ? name : QString(), entry.id(), entry.name,
                isThere ? patch.problem().why : QString());
        }
    }
}

bool LibraryDoctor::isLeftover(const QString &name) const
{
    const auto owner = TemporaryFiles::ownerOf(name, QSysInfo::machineHostName());
    const bool isInUse = owner ? *owner != QCoreApplication::applicationPid() && !isProcessGone(*owner)
                               : LibraryLock::isHeldByOther(m_place.path());
    // What a save had just removed was not left, and a save that began meanwhile holds the lock.
    return !isInUse && existence(m_place.pathOf(name)) != FileExistence::none;
}

void LibraryDoctor::noteKeptFiles()
{
    const KeptLibraries::Found kept = KeptLibraries::find(m_place.path());
    m_health.keptLibraries = kept.libraries;
    m_health.keptPatchFiles = kept.patchFiles;
    for (const KeptLibrary &library : kept.libraries) {
        const QList<VelgorPatch> patches = library.content ? library.content->patches : QList<VelgorPatch>();
        for (const VelgorPatch &patch : patches) {
            if (!m_former.contains(patch.id())) {
                m_former.insert(patch.id(), patch);
            }
        }
    }
}

void LibraryDoctor::add(LibraryFinding::Kind kind, const QString &file, quint64 id, const QString &name,
    const QString &reason, const std::optional<VelgorPatch> &rescued)
{
    m_health.findings.append(
        {.kind = kind, .file = file, .id = id, .name = name, .reason = reason, .rescued = rescued});
}
