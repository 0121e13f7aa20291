#include "LibraryLoader.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "LibraryFileNames.h"
#include "LibraryJson.h"
#include "PatchFileMatcher.h"
#include "RandomId.h"

#include <QFileInfo>

LibraryLoader::LibraryLoader(const QString &directory)
    : m_directory(directory)
{
}

LibraryLoader::~LibraryLoader() = default;

LibraryLoadResult LibraryLoader::load()
{
    Diagnostics::printLine(QStringLiteral("Loading library from directory"));
    LibraryLoadResult result;
    const std::optional<LibraryJson::Content> content = readLibraryFile(result);
    if (!content) {
        return result;
    }
    const QList<Entry> entries = withUniqueIds(content->patches);
    QList<VelgorPatch> patches;
    patches.reserve(entries.size());
    for (const Entry &entry : entries) {
        patches.append(entry.patch);
    }
    result.library = std::make_unique<VelgorLibrary>(patches, content->defaultPatch);
    const Progress progress = loadPatches(*result.library, entries, result);
    if (progress.complete) {
        return result;
    }
    Diagnostics::printLine(QStringLiteral("Incomplete library loading: %1 out of %2")
                               .arg(progress.loaded)
                               .arg(result.library->patches().size()));
    QList<VelgorPatch> kept;
    for (const VelgorPatch &patch : result.library->patches()) {
        if (patch.patchData) {
            kept.append(patch);
        } else if (!patch.empty) {
            result.droppedPatches.append(patch.name);
        }
    }
    result.mustKeepOldFile |= !result.droppedPatches.isEmpty();
    result.library.reset();
    if (!kept.isEmpty()) {
        result.library = std::make_unique<VelgorLibrary>(kept, content->defaultPatch);
        result.library->saveOrder();
    }
    return result;
}

std::optional<LibraryJson::Content> LibraryLoader::readLibraryFile(LibraryLoadResult &result)
{
    const QString path = pathOf(LibraryFileNames::libraryFile());
    const FileReadResult file = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    if (file.bytes) {
        if (auto content = LibraryJson::decode(*file.bytes)) {
            result.isCopySpare = true;
            return content;
        }
    }
    const bool isThere = QFileInfo::exists(path) || QFileInfo(path).isSymLink();
    result.mustKeepOldFile = isThere;
    const QString copyPath = pathOf(LibraryFileNames::libraryCopy());
    const FileReadResult copy = DiskFiles::readRegular(copyPath, DiskFiles::Links::Refuse);
    if (auto content = copy.bytes ? LibraryJson::decode(*copy.bytes) : std::nullopt) {
        Diagnostics::printLine(tr("The library file was not complete; its copy %1 is used").arg(copyPath));
        return content;
    }
    if (file.bytes) {
        Diagnostics::printLine(QStringLiteral("Cannot decode library"));
        result.readError = true;
        result.problem = tr("%1: not a complete library file").arg(path);
    } else {
        Diagnostics::printLine(QStringLiteral("New library"));
        result.problem = isThere ? tr("%1: %2").arg(path, file.error) : QString();
    }
    return std::nullopt;
}

QList<LibraryLoader::Entry> LibraryLoader::withUniqueIds(const QList<VelgorPatch> &patches)
{
    QList<Entry> entries;
    entries.reserve(patches.size());
    QSet<quint64> ids;
    ids.reserve(patches.size());
    for (const VelgorPatch &patch : patches) {
        Entry entry{.patch = patch, .storedId = patch.id()};
        while (ids.contains(entry.patch.id())) {
            entry.patch = patch.withId(randomId());
        }
        ids.insert(entry.patch.id());
        entries.append(entry);
    }
    return entries;
}

LibraryLoader::Progress LibraryLoader::loadPatches(
    VelgorLibrary &library, const QList<Entry> &entries, LibraryLoadResult &result)
{
    if (entries.isEmpty()) {
        Diagnostics::printLine(QStringLiteral("Nothing to load into library"));
        return {.complete = false};
    }
    Progress progress;
    for (const Entry &entry : entries) {
        QString fileName;
        if (const std::optional<SPresetFile> presets = readPatch(entry, fileName)) {
            library.append(*presets, true, entry.patch.id());
            ++progress.loaded;
            if (entry.patch.id() != entry.storedId) {
                // It will be stored anew under its own id; its former file still carries the other patch's.
                result.leftAlone.insert(fileName);
            }
        } else {
            progress.complete = false;
        }
    }
    return progress;
}

std::optional<SPresetFile> LibraryLoader::readPatch(const Entry &entry, QString &fileName)
{
    fileName = LibraryFileNames::patchFile(entry.patch.name, entry.storedId);
    const QString path = pathOf(fileName);
    const FileReadResult file = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    std::optional<SPresetFile> presets;
    if (file.bytes) {
        presets = SPresetFile::fromData(*file.bytes);
    }
    if (!presets) {
        presets = readFromOtherFile(entry, fileName);
    }
    if (!presets && !file.bytes) {
        Diagnostics::printLine(QStringLiteral("Could not open ") + LibraryFileNames::address(path));
    }
    return presets;
}

std::optional<SPresetFile> LibraryLoader::readFromOtherFile(const Entry &entry, QString &fileName)
{
    if (!m_listing) {
        m_listing =
            std::make_unique<DirectoryListing>(DirectoryListing::scan(m_directory).value_or(DirectoryListing()));
    }
    for (const PatchFileMatcher::Candidate &candidate : PatchFileMatcher::candidates(*m_listing, entry.storedId)) {
        if (candidate.name == fileName || m_listing->kindOf(candidate.name) != DirectoryListing::Kind::RegularFile) {
            continue;
        }
        const FileReadResult file = DiskFiles::readRegular(pathOf(candidate.name), DiskFiles::Links::Refuse);
        std::optional<SPresetFile> presets = file.bytes ? SPresetFile::fromData(*file.bytes) : std::nullopt;
        if (presets && presets->patches.size() == 1) {
            fileName = candidate.name;
            return presets;
        }
    }
    return std::nullopt;
}

QString LibraryLoader::pathOf(const QString &name) const
{
    return m_directory + u'/' + name;
}
