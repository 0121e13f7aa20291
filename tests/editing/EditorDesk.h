#pragma once

#include "EditHistory.h"
#include "FakeLibraryStorage.h"
#include "LibraryEditor.h"
#include "TestPatches.h"
#include "VelgorContent.h"

namespace EditorDesk {

inline const QString abc = QStringLiteral("A B C");

/// Nothing but a library, a list and the editor between them.
struct Desk {
    VelgorLibrary library;
    VelgorContent content;
    FakeLibraryStorage storage;
    EditHistory history{library, content, storage};
    LibraryEditor editor{library, content, history};

    /// A library of these patches, one sound each, and a list of others.
    explicit Desk(const QString &libraryNames = {}, const QString &slotNames = {})
    {
        for (const QString &name : libraryNames.split(u' ', Qt::SkipEmptyParts)) {
            library.append(patch(name), false, false);
        }
        QList<SPatch> records;
        for (const QString &name : slotNames.split(u' ', Qt::SkipEmptyParts)) {
            records.append(patch(name).records->patchData);
        }
        if (!records.isEmpty()) {
            content.populate(TestRecords::file(records));
        }
    }

    static VelgorPatch patch(const QString &name) { return TestPatches::imported(name, name.at(0).unicode()); }
    [[nodiscard]] quint64 idOf(qsizetype row) const { return library.patches().at(row).id(); }
    [[nodiscard]] QString shown() const { return TestPatches::names(library.patches()).join(u' '); }
    [[nodiscard]] TransferablePatch slot(qsizetype row) const
    {
        return TransferablePatch::ofSlot(content.velgorContentPatchList().at(row));
    }
    [[nodiscard]] TransferablePatch row(qsizetype row) const
    {
        return TransferablePatch::ofLibraryPatch(library.patches().at(row));
    }

    void tick(const QList<qsizetype> &rows)
    {
        library.setIsMultiSel(true);
        MultiSelections ticks;
        for (const qsizetype row : rows) {
            ticks.multiSelections.insert(idOf(row), true);
        }
        library.setMultiSelections(ticks);
    }

    void select(const QList<qsizetype> &slotRows)
    {
        QSet<QUuid> ids;
        for (const qsizetype row : slotRows) {
            ids.insert(content.velgorContentPatchList().at(row).id);
        }
        content.setSelections(ids);
    }
};

} // namespace EditorDesk
