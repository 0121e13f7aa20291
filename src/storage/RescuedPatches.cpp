#include "RescuedPatches.h"

#include "KeptLibraries.h"
#include "LibraryFileNames.h"
#include "LibraryJson.h"
#include "LibraryPlace.h"
#include "VelgorLibrary.h"

#include <QHash>

namespace {

/// Finds rows for patches that are to come between those of a library.
class Places {
public:
    Places(const VelgorLibrary &library, const QList<VelgorPatch> &patches)
        : m_library(library)
    {
        for (const VelgorPatch &patch : patches) {
            if (!library.getPatchFromId(patch.id())) {
                m_waiting.insert(patch.id(), patch);
            }
        }
    }

    /// Gives a place to those that `file` names.
    void take(const LibraryState &file)
    {
        qsizetype row = 0;
        QList<VelgorPatch> leading;
        for (const VelgorPatch &named : file.patches) {
            const auto found = m_library.getPatchFromId(named.id());
            const auto waiting = m_waiting.constFind(named.id());
            if (found && !found->patch->empty) {
                row = found->index + 1;
            } else if (waiting != m_waiting.cend()) {
                (row == 0 ? leading : m_before[row]).append(*waiting);
                m_waiting.erase(waiting);
            }
        }
        if (row > 0 && !leading.isEmpty()) {
            m_before[0] += leading;
        } else {
            m_atEnd += leading;
        }
    }

    /// The rest goes to the end.
    void addRest(const QList<VelgorPatch> &patches)
    {
        for (const VelgorPatch &patch : patches) {
            if (m_waiting.remove(patch.id())) {
                m_atEnd.append(patch);
            }
        }
        m_atEnd = m_before.take(m_library.count()) + m_atEnd;
    }

    [[nodiscard]] bool areAllAtEnd() const { return m_before.isEmpty(); }
    [[nodiscard]] QList<VelgorPatch> atEnd() const { return m_atEnd; }
    [[nodiscard]] QList<VelgorPatch> all() const
    {
        QList<VelgorPatch> result;
        for (qsizetype row = 0; row < m_library.count(); ++row) {
            result += m_before.value(row);
            result.append(m_library.patches().at(row));
        }
        return result + m_atEnd;
    }

private:
    const VelgorLibrary &m_library;
    QHash<quint64, VelgorPatch> m_waiting;
    QHash<qsizetype, QList<VelgorPatch>> m_before; ///< by the row of the library that they come before
    QList<VelgorPatch> m_atEnd;
};

} // namespace

QList<LibraryState> RescuedPatches::libraryFiles(const QString &directory)
{
    QList<LibraryState> files;
    const LibraryPlace place(directory);
    for (const QString &name : {LibraryFileNames::libraryFile(), LibraryFileNames::libraryCopy()}) {
        const Result<QByteArray> text = place.read(name);
        if (const auto content = text ? LibraryJson::decode(*text) : std::nullopt) {
            files.append(*content);
        }
    }
    for (const KeptLibrary &kept : KeptLibraries::find(directory).libraries) {
        if (kept.content) {
            files.append(*kept.content);
        }
    }
    return files;
}

void RescuedPatches::addTo(VelgorLibrary &library, const QList<VelgorPatch> &patches, const QList<LibraryState> &files)
{
    Places places(library, patches);
    for (const LibraryState &file : files) {
        places.take(file);
    }
    places.addRest(patches);
    if (places.areAllAtEnd()) {
        library.restore(places.atEnd());
        return;
    }
    const auto selection = library.selection();
    const bool isMultiSel = library.isMultiSel();
    const MultiSelections ticks = library.multiSelections();
    library.adopt({.patches = places.all(), .defaultPatch = library.defaultPatch()});
    library.setIsMultiSel(isMultiSel);
    library.setMultiSelections(ticks);
    library.setSelection(selection);
}
