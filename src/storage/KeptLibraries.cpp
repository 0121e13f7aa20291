#include "KeptLibraries.h"

#include "LibraryFileNames.h"
#include "LibraryJson.h"
#include "LibraryPlace.h"

#include <QDir>
#include <QHash>

namespace KeptLibraries {

namespace {

std::optional<LibraryState> contentOf(const LibraryPlace &place, const QString &name)
{
    const Result<QByteArray> text = place.read(name);
    return text ? LibraryJson::decode(*text) : std::nullopt;
}

QHash<quint64, VelgorPatch> byId(const QList<VelgorPatch> &patches)
{
    QHash<quint64, VelgorPatch> result;
    for (const VelgorPatch &patch : patches) {
        if (!patch.empty) {
            result.insert(patch.id(), patch);
        }
    }
    return result;
}

/// The ids that `others` has too, in their order.
QList<quint64> commonIds(const QList<VelgorPatch> &patches, const QHash<quint64, VelgorPatch> &others)
{
    QList<quint64> ids;
    for (const VelgorPatch &patch : patches) {
        if (!patch.empty && others.contains(patch.id())) {
            ids.append(patch.id());
        }
    }
    return ids;
}

std::optional<quint64> defaultOf(std::optional<quint64> id, const QHash<quint64, VelgorPatch> &patches)
{
    return id && patches.contains(*id) ? id : std::nullopt;
}

} // namespace

Found find(const QString &directory)
{
    Found found;
    const LibraryPlace place(directory);
    const QDir folder(directory);
    const QStringList names = folder.entryList(QDir::Files | QDir::NoSymLinks, QDir::Name | QDir::Reversed);
    for (const QString &name : names) {
        if (LibraryFileNames::isDatedCopy(name)) {
            found.libraries.append(
                {.file = name, .keptAt = LibraryFileNames::dateOfCopy(name), .content = contentOf(place, name)});
        } else if (LibraryFileNames::isDamagedFile(name)) {
            found.patchFiles.prepend(name);
        }
    }
    return found;
}

std::optional<Preview> preview(
    const QString &directory, const QString &file, const LibraryState &present, const LibraryLoader::Report &report)
{
    const LibraryPlace place(directory);
    const std::optional<LibraryState> content = contentOf(place, file);
    if (!content) {
        return std::nullopt;
    }
    const LibraryLoadResult loaded = LibraryLoader(directory, report).loadEntries(*content);
    Preview result;
    for (const VelgorPatch &dropped : loaded.droppedEntries) {
        const QString name = LibraryFileNames::patchFile(dropped.name, dropped.id());
        const Result<VelgorPatch> stored = place.patch(name);
        if (!stored && stored.problem().what == Problem::What::Absent) {
            result.withoutFile.append(dropped.name);
        } else {
            result.unreadable.append({.name = dropped.name, .reason = stored ? QString() : stored.problem().why});
        }
    }
    if (loaded.library) {
        result.patches = loaded.library->patches;
        result.defaultPatch = loaded.library->defaultPatch;
    }
    const QHash<quint64, VelgorPatch> now = byId(present.patches);
    const QHash<quint64, VelgorPatch> then = byId(result.patches);
    for (const VelgorPatch &patch : std::as_const(result.patches)) {
        const auto other = now.constFind(patch.id());
        if (other == now.cend()) {
            result.comingBack.append(patch.name);
        } else if (!(*other == patch)) {
            result.changing.append(patch.name);
        }
    }
    for (const VelgorPatch &patch : present.patches) {
        if (!patch.empty && !then.contains(patch.id())) {
            result.leaving.append(patch.name);
        }
    }
    const std::optional<quint64> newDefault = defaultOf(result.defaultPatch, then);
    result.isDefaultChanging = newDefault != defaultOf(present.defaultPatch, now);
    result.defaultName = newDefault ? then.constFind(*newDefault)->name : QString();
    result.isOrderChanging = commonIds(result.patches, now) != commonIds(present.patches, then);
    return result;
}

} // namespace KeptLibraries
