#include "LoadDoubts.h"

#include "LibraryFileNames.h"
#include "PatchIdentity.h"
#include "PatchName.h"

#include <algorithm>

namespace {

/// A patch has a further one of its fresh ids only when another patch has the former.
constexpr quint32 mostOfOneHash = 2;

} // namespace

void LoadDoubts::insert(quint64 id, const QString &name, bool isDamaged)
{
    m_doubts.insert(id, {.name = name, .file = {}, .isDamaged = isDamaged});
}

void LoadDoubts::setFile(quint64 id, const QString &file)
{
    if (const auto doubt = m_doubts.find(id); doubt != m_doubts.end()) {
        doubt->file = file;
    }
}

void LoadDoubts::note(const LibraryEntries &entries, const QList<VelgorPatch> &patches, LibraryLoadResult &result) const
{
    if (isEmpty()) {
        return;
    }
    const QHash<quint64, quint64> exchangedFiles = exchanged(entries, patches);
    // Where most ids are unexplained, another program has numbered the patches, and an id proves nothing.
    const auto unexplained =
        std::count_if(m_doubts.begin(), m_doubts.end(), [](const Doubt &doubt) { return !doubt.isDamaged; });
    const bool areIdsExplained = 2 * unexplained < patches.size();
    for (const VelgorPatch &patch : patches) {
        const quint64 id = patch.id();
        const auto doubt = m_doubts.constFind(id);
        QString text =
            doubt != m_doubts.cend() ? textOf(*doubt, patch, entries.storedId(patch), areIdsExplained) : QString();
        if (text.isEmpty() && exchangedFiles.contains(id)) {
            text =
                tr("%1: its file holds the patch of the same id that is called \"%2\" in the library (%3)")
                    .arg(patch.name.simplified(), patches.at(entries.rowOf(exchangedFiles.value(id))).name.simplified(),
                        LibraryFileNames::patchFile(patch.name, id));
        }
        if (text.isEmpty()) {
            continue;
        }
        result.doubtfulPatches.append(text);
        result.doubtfulIds.insert(id);
        // Its original may take its place, and is to be written then.
        result.writeState.verified.remove(id);
        if (doubt != m_doubts.cend() && doubt->isDamaged) {
            result.damagedFiles.insert(id, doubt->file);
        }
    }
}

QHash<quint64, quint64> LoadDoubts::exchanged(const LibraryEntries &entries, const QList<VelgorPatch> &patches) const
{
    QHash<quint64, quint64> files;
    for (const Foreign &foreign : m_foreign) {
        const VelgorPatch &own = patches.at(entries.rowOf(foreign.id));
        const qsizetype first = entries.rowOf(foreign.hash);
        if (!PatchIdentity::mayHaveId(own, foreign.id, own.name) && first >= 0
            && PatchIdentity::givesId(patches.at(first), foreign.id, mostOfOneHash)) {
            files.insert(foreign.hash, foreign.id);
        }
    }
    return files;
}

QString LoadDoubts::textOf(const Doubt &doubt, const VelgorPatch &patch, quint64 storedId, bool areIdsExplained)
{
    const QString name = patch.name.simplified();
    if (doubt.isDamaged) {
        return tr("%1: its file is damaged, as its checksum is wrong (%2)").arg(name, doubt.file);
    }
    const bool isSameName = doubt.name == PatchName::fitted(patch.name);
    if ((isSameName && !areIdsExplained) || PatchIdentity::mayHaveId(patch, storedId, patch.name)) {
        return {};
    }
    return isSameName ? tr("%1: its file may have been changed after it was stored (%2)").arg(name, doubt.file)
                      : tr("%1: its file holds \"%2\", which may be another patch (%3)")
                            .arg(name, doubt.name.simplified(), doubt.file);
}
