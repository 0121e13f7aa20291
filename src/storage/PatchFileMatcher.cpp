#include "PatchFileMatcher.h"

#include "LibraryFileNames.h"

#include <QSet>

#include <algorithm>

namespace PatchFileMatcher {

QList<Candidate> candidates(const DirectoryListing &listing, quint64 id)
{
    QStringList paths = listing.pathsFor(id);
    if (paths.isEmpty()) {
        return {};
    }
    // A file in the directory itself comes before one of the same name further down.
    std::stable_partition(paths.begin(), paths.end(), [](const QString &path) { return !path.contains(u'/'); });

    QList<Candidate> result;
    QSet<QString> names;
    for (const QString &path : std::as_const(paths)) {
        const QString name = path.section(u'/', -1);
        const std::optional<quint64> namedFor = LibraryFileNames::patchFileId(name);
        const bool isForeign = (namedFor && *namedFor != id) || LibraryFileNames::isReserved(name)
            || !LibraryFileNames::idsIn(name).contains(id) || listing.kindOf(name) == DirectoryListing::Kind::Directory;
        if (!isForeign && !names.contains(name)) {
            names.insert(name);
            result.append({path, name, namedFor == id});
        }
    }
    std::stable_partition(
        result.begin(), result.end(), [](const Candidate &candidate) { return candidate.isNamedForPatch; });
    return result;
}

} // namespace PatchFileMatcher
