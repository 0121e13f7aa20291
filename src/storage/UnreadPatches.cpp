#include "UnreadPatches.h"

#include <QHash>
#include <QSet>

bool UnreadPatches::forget(const QList<VelgorPatch> &stored)
{
    if (isEmpty()) {
        return false;
    }
    const qsizetype before = patches.size();
    for (const VelgorPatch &patch : stored) {
        patches.remove(patch.id());
    }
    return patches.size() < before;
}

LibraryState UnreadPatches::joinedWith(const LibraryState &library)
{
    if (isEmpty()) {
        return library;
    }
    QHash<quint64, QList<VelgorPatch>> behind;
    QSet<quint64> present;
    for (const VelgorPatch &patch : library.patches) {
        present.insert(patch.id());
    }
    LibraryState content{.patches = {}, .defaultPatch = library.defaultPatch};
    content.patches.reserve(library.patches.size() + patches.size());
    std::optional<quint64> predecessor;
    for (const quint64 id : std::as_const(order)) {
        const auto patch = patches.constFind(id);
        if (present.contains(id)) {
            predecessor = id;
        } else if (patch != patches.cend()) {
            (predecessor ? behind[*predecessor] : content.patches).append(*patch);
        }
    }
    for (const VelgorPatch &patch : library.patches) {
        content.patches.append(patch);
        content.patches.append(behind.value(patch.id()));
    }
    if (library.defaultPatch && library.defaultPatch != defaultPatch) {
        // The user chose another one.
        defaultPatch.reset();
    }
    if (!content.defaultPatch && defaultPatch && patches.contains(*defaultPatch)) {
        content.defaultPatch = defaultPatch;
    }
    return content;
}
