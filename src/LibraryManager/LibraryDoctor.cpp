#include "LibraryDoctor.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "KeptLibraries.h"
#include "LibraryFileNames.h"
#include "PatchFileMatcher.h"
#include "SPresetFile.h"

namespace {

/// True when the id is the hash of the patch, under the name in its record or the one that the user sees.
bool givesId(const VelgorPatch &patch, quint64 id)
{
    return VelgorPatch::staticSimpleHash(patch) == id || VelgorPatch::staticSimpleHash(patch, patch.name) == id;
}

/// The patch of a file with what the library knew about it.
VelgorPatch withEntry(const VelgorPatch &stored, const VelgorPatch &entry)
{
    VelgorPatch patch = entry;
    patch.patchData = stored.patchData;
    patch.userIRData = stored.userIRData;
    patch.headerData = stored.headerData;
    return patch;
}

} // namespace

LibraryDoctor::LibraryDoctor(const QString &directory)
    : m_directory(directory)
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
    const LibraryLoadResult loaded = LibraryLoader(m_directory).load();
    noteLibraryFile(loaded);
    m_listing = DirectoryListing::scan(m_directory);
    noteKeptFiles();
    if (m_listing) {
        QStringList names = m_listing->names();
        names.sort();
        for (const QString &name : std::as_const(names)) {
            examineFile(name);
        }
        examineSubdirectories();
    }
    examineContents();
    noteDropped();
    return m_health;
}

void LibraryDoctor::noteLibraryFile(const LibraryLoadResult &loaded)
{
    if (!loaded.problem.isEmpty()) {
        add(LibraryFinding::Kind::DamagedLibraryFile, LibraryFileNames::libraryFile(), 0, {}, loaded.problem);
    }
    if (loaded.library) {
        for (const VelgorPatch &patch : loaded.library->patches()) {
            m_loaded.insert(patch.id(), patch);
        }
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
    if (name == LibraryFileNames::journalFile() || name == LibraryFileNames::libraryCopy()
        || name.startsWith(LibraryFileNames::temporaryPrefix())) {
        add(LibraryFinding::Kind::Leftover, name, 0);
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
            QString ignored;
            if (const std::optional<VelgorPatch> patch = readPatch(name, ignored)) {
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
    QString reason;
    const std::optional<VelgorPatch> patch = readPatch(name, reason);
    if (!patch) {
        const QString patchName = m_dropped.contains(id) ? m_dropped.value(id, VelgorPatch(id)).name : QString();
        m_unreadable.insert(id);
        add(LibraryFinding::Kind::UnreadableFile, name, id, patchName, reason);
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
    const auto former = m_former.constFind(id);
    if (former != m_former.cend()) {
        const VelgorPatch whole = withEntry(patch, *former);
        const QString reason = tr("a former library file knows it");
        add(LibraryFinding::Kind::FileWithoutEntry, name, id, whole.name, reason, whole);
    } else if (givesId(patch, id)) {
        add(LibraryFinding::Kind::FileWithoutEntry, name, id, patch.name, {}, patch.withId(id));
    } else if (m_loaded.contains(contentId)) {
        add(LibraryFinding::Kind::FileOfOtherContent, name, id, patch.name,
            tr("it holds \"%1\", which the library has").arg(patch.name));
    } else {
        add(LibraryFinding::Kind::FileOfOtherContent, name, id, patch.name, tr("it holds \"%1\"").arg(patch.name),
            patch);
    }
}

void LibraryDoctor::examineContents()
{
    for (const VelgorPatch &patch : std::as_const(m_loaded)) {
        if (!givesId(patch, patch.id())) {
            const QString held = patch.patchData ? patch.patchData->name : QString();
            add(LibraryFinding::Kind::FileOfOtherContent, LibraryFileNames::patchFile(patch.name, patch.id()),
                patch.id(), patch.name, tr("it holds \"%1\", whose id would be another").arg(held));
        }
    }
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
            add(LibraryFinding::Kind::PatchWithoutFile, {}, entry.id(), entry.name);
        }
    }
}

std::optional<VelgorPatch> LibraryDoctor::readPatch(const QString &name, QString &reason) const
{
    const FileReadResult file = DiskFiles::readRegular(m_directory + u'/' + name, DiskFiles::Links::Refuse);
    if (!file.bytes) {
        reason = file.error;
        return std::nullopt;
    }
    const std::optional<SPresetFile> presets = SPresetFile::fromData(*file.bytes);
    if (!presets) {
        reason = Diagnostics::lastLine();
        return std::nullopt;
    }
    if (presets->patches.size() != 1) {
        reason = tr("a list of %1 patches").arg(presets->patches.size());
        return std::nullopt;
    }
    return VelgorPatch(presets->patches.first(), presets->userIRs.first(), presets->headerDesc);
}

void LibraryDoctor::noteKeptFiles()
{
    const KeptLibraries::Found kept = KeptLibraries::find(m_directory);
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
