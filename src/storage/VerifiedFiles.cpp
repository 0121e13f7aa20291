#include "VerifiedFiles.h"

#include "DiskFiles.h"
#include "SinglePatchFile.h"

#include <QSet>

#include <algorithm>

bool VerifiedFiles::holds(const OpenDirectory &directory, const QString &name, const VelgorPatch &patch)
{
    if (!patch.records) {
        return true;
    }
    const auto known = m_stamps.constFind(patch.id());
    if (known != m_stamps.cend() && FileStamp::of(directory, name) == *known) {
        return true;
    }
    const auto file = DiskFiles::readRegular(directory, name, DiskFiles::Links::Refuse);
    const bool isHeld = file && SinglePatchFile::holds(file->bytes, patch);
    if (isHeld) {
        insert(patch.id(), file->stamp);
    }
    return isHeld;
}

void VerifiedFiles::keepOnly(const QList<VelgorPatch> &patches)
{
    const qsizetype known = std::count_if(
        patches.begin(), patches.end(), [this](const VelgorPatch &patch) { return m_stamps.contains(patch.id()); });
    if (known == m_stamps.size()) {
        return;
    }
    QSet<quint64> ids;
    ids.reserve(patches.size());
    for (const VelgorPatch &patch : patches) {
        ids.insert(patch.id());
    }
    m_stamps.removeIf([&ids](QHash<quint64, FileStamp>::iterator stamp) { return !ids.contains(stamp.key()); });
}
