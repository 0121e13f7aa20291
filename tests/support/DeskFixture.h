#pragma once

#include "ContentEditor.h"
#include "ContentFiles.h"
#include "EditHistory.h"
#include "FakeFiles.h"
#include "LibraryEditor.h"
#include "PatchFileHandler.h"
#include "RecordingStorage.h"
#include "StoreFixture.h"
#include "VelgorContent.h"

#include <QCoreApplication>

/// What a window works on, without one: a library and a list, what changes them, and the files and dialogs that it
/// asks.
struct DeskFixture : StoreFixture {
    /// What becomes of a save that a change asks for: it is written down, or made as well.
    enum class Saves { Told, Made };

    /// A library and a list of these patches, one sound for each name. Files are in memory.
    explicit DeskFixture(const QString &libraryNames = {}, const QString &slotNames = {}, Saves saves = Saves::Told,
        const LibraryDirectory &place = LibraryDirectory())
        : StoreFixture(place)
        , handler(memory, &dialogs)
        , calls(saves == Saves::Made ? &storage : nullptr)
    {
        for (const QString &name : wordsOf(libraryNames)) {
            library.append(patch(name), false, false);
        }
        if (!slotNames.isEmpty()) {
            content.populate(listOf(slotNames));
        }
    }
    /// A library of these very patches.
    explicit DeskFixture(const QList<VelgorPatch> &patches)
        : DeskFixture()
    {
        library.adopt({patches, std::nullopt});
    }
    /// As the application begins that has the directory from its preferences, and the user's files on `disk`.
    DeskFixture(const LibraryDirectory &place, std::chrono::milliseconds period, std::unique_ptr<FileAccess> disk)
        : StoreFixture(place, period, true)
        , userFiles(std::move(disk))
        , handler(*userFiles, &dialogs)
        , calls(&storage)
    {
    }

    VelgorContent content;
    FakeFileAccess memory;
    FakeFileDialogs dialogs;
    std::unique_ptr<FileAccess> userFiles; ///< in place of memory
    PatchFileHandler handler;
    RecordingStorage calls;
    EditHistory history{library, content, calls};
    LibraryEditor libraryEditor{library, content, history};
    ContentEditor contentEditor{library, content, history};
    ContentFiles contentFiles{content, handler, history};

    static QStringList wordsOf(const QString &names) { return names.split(u' ', Qt::SkipEmptyParts); }
    static VelgorPatch patch(const QString &name) { return TestPatches::imported(name, name.at(0).unicode()); }
    static SPresetFile listOf(const QString &names)
    {
        QList<SPatch> records;
        for (const QString &name : wordsOf(names)) {
            records.append(patch(name).records->patchData);
        }
        return TestRecords::file(records);
    }

    /// Names in the library and in the list.
    [[nodiscard]] QString shown() const { return TestPatches::names(library.patches()).join(u' '); }
    [[nodiscard]] QString slotNames() const
    {
        QStringList names;
        for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
            names.append(slot.patch.name);
        }
        return names.join(u' ');
    }
    [[nodiscard]] quint64 idOf(qsizetype row) const { return library.patches().at(row).id(); }
    [[nodiscard]] QUuid slotId(qsizetype row) const { return content.velgorContentPatchList().at(row).id; }
    [[nodiscard]] const VelgorPatch &inSlot(qsizetype row) const
    {
        return content.velgorContentPatchList().at(row).patch;
    }
    /// The slots number themselves by their place.
    [[nodiscard]] bool isNumbered() const
    {
        const auto &list = content.velgorContentPatchList();
        for (qsizetype row = 0; row < list.size(); ++row) {
            if (list.at(row).bank != row / 3 + 1 || list.at(row).number != row % 3 + 1) {
                return false;
            }
        }
        return true;
    }
    /// What a drag of one carries.
    [[nodiscard]] TransferablePatch row(qsizetype row) const
    {
        return TransferablePatch::ofLibraryPatch(library.patches().at(row));
    }
    [[nodiscard]] TransferablePatch slot(qsizetype row) const
    {
        return TransferablePatch::ofSlot(content.velgorContentPatchList().at(row));
    }

    /// Lets what was put off happen, layouts included: a layout may ask for another one.
    static void settle()
    {
        constexpr int rounds = 5;
        for (int i = 0; i < rounds; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    void select(qsizetype row) { library.setSelection(idOf(row)); }
    void tick(const QList<qsizetype> &rows)
    {
        MultiSelections ticks;
        for (const qsizetype row : rows) {
            ticks.multiSelections.insert(idOf(row), true);
        }
        library.setIsMultiSel(true);
        library.setMultiSelections(ticks);
    }
    void selectSlots(const QList<qsizetype> &rows)
    {
        QSet<QUuid> ids;
        for (const qsizetype row : rows) {
            ids.insert(slotId(row));
        }
        content.setSelections(ids);
    }
    /// A list of these patches, with the first one selected.
    void fillContent(const QString &names)
    {
        content.populate(listOf(names));
        selectSlots({0});
    }
};
