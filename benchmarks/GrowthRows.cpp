#include "ContentEditor.h"
#include "DirectoryListing.h"
#include "EditHistory.h"
#include "LibraryEditor.h"
#include "LibraryStorage.h"
#include "LibraryViewFilter.h"
#include "Measurement.h"
#include "PatchWriter.h"
#include "Rows.h"
#include "SampleLibrary.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <algorithm>

namespace {

/// Keeps nothing, so that the library's own work is measured alone.
class NoStorage : public LibraryStorage {
public:
    void remove(const QList<quint64> &patchIDs) override { Q_UNUSED(patchIDs) }
    void startSave(const VelgorLibrary &library) override { Q_UNUSED(library) }
    void delayedSave(const VelgorLibrary &library) override { Q_UNUSED(library) }
};

const QList<VelgorPatch> &patchesOf(const benchmark::State &state)
{
    return SampleLibrary::ofSize(state.range(0)).patches();
}

QList<quint64> everySecondId(const QList<VelgorPatch> &patches)
{
    QList<quint64> ids;
    for (qsizetype i = 0; i < patches.size(); i += 2) {
        ids.append(patches.at(i).id());
    }
    return ids;
}

void append(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = patchesOf(state);
    measureGrowth(state, "append, one by one", [&] {
        VelgorLibrary library;
        return secondsOf([&] {
            for (const VelgorPatch &patch : patches) {
                library.append(patch, false, false);
            }
        });
    });
}

void deleteHalf(benchmark::State &state)
{
    const QList<quint64> ids = everySecondId(patchesOf(state));
    measureGrowth(state, "delete half", [&] {
        VelgorLibrary library(patchesOf(state), patchesOf(state).last().id());
        return secondsOf([&] { library.deletePatches(ids); });
    });
}

void duplicate(benchmark::State &state)
{
    measureGrowth(state, "duplicate one patch again and again", [&] {
        VelgorLibrary library(patchesOf(state).first(1), std::nullopt);
        const quint64 id = library.patches().first().id();
        return secondsOf([&] {
            for (int64_t i = 0; i < state.range(0); ++i) {
                library.duplicateSelection(id);
            }
        });
    });
}

void duplicateEach(benchmark::State &state)
{
    measureGrowth(state, "duplicate every patch", [&] {
        VelgorLibrary library(patchesOf(state), std::nullopt);
        return secondsOf([&] {
            for (const VelgorPatch &patch : patchesOf(state)) {
                library.duplicateSelection(patch.id());
            }
        });
    });
}

void ticked(benchmark::State &state)
{
    VelgorLibrary library(patchesOf(state), std::nullopt);
    MultiSelections ticks;
    for (const quint64 id : everySecondId(patchesOf(state))) {
        ticks.multiSelections.insert(id, true);
    }
    library.setMultiSelections(ticks);
    measureGrowth(state, "list the ticked half",
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(library.getMultiSelection()); }); });
}

void similar(benchmark::State &state)
{
    measureGrowth(state, "find similar patches", [&] {
        const VelgorLibrary library(patchesOf(state), std::nullopt);
        const quint64 id = patchesOf(state).last().id();
        return secondsOf([&] { benchmark::DoNotOptimize(library.findSimilarPatches(id)); });
    });
}

void filterFirst(benchmark::State &state)
{
    LibraryViewFilter filter;
    filter.filterPatch.name = SampleLibrary::nameFragment();
    filter.filterPatch.comment = SampleLibrary::threeCommentWords();
    measureGrowth(state, "filter, the first keystroke", [&] {
        const VelgorLibrary library(patchesOf(state), std::nullopt);
        return secondsOf([&] { benchmark::DoNotOptimize(filter.shownRows(library)); });
    });
}

void restoreOrder(benchmark::State &state)
{
    constexpr double growthTarget = 40;
    measureGrowth(
        state, "restore the order",
        [&] {
            VelgorLibrary library(patchesOf(state), std::nullopt);
            library.saveOrder();
            library.sort();
            return secondsOf([&] { library.sort(); });
        },
        growthTarget);
}

/// A library, a list of 99 or more slots, and the user's operations on both.
struct Desk {
    explicit Desk(const QList<VelgorPatch> &patches)
        : library(patches, std::nullopt)
    {
    }

    NoStorage storage;
    VelgorLibrary library;
    VelgorContent content;
    EditHistory history{library, content, storage};
    LibraryEditor libraryEditor{library, content, history};
    ContentEditor contentEditor{library, content, history};
};

/// As many as a file can hold at most.
SPresetFile fileOf(const QList<VelgorPatch> &patches)
{
    constexpr qsizetype mostPatches = 65'535;
    QList<SPatch> records;
    QList<SUserIR> userIRs;
    for (const VelgorPatch &patch : patches.first(std::min(patches.size(), mostPatches))) {
        records.append(patch.records->patchData);
        userIRs.append(patch.records->userIRData);
    }
    SPresetFile file = *SPresetFile::fromRecords(patches.first().records->headerData, records, userIRs);
    file.headerDesc.nbpatches = static_cast<quint16>(records.size());
    return file;
}

void addFile(benchmark::State &state)
{
    constexpr qsizetype unitPatches = 99;
    const QList<VelgorPatch> &patches = patchesOf(state);
    const SPresetFile file = fileOf(patches.last(unitPatches));
    measureGrowth(state, "add a file of 99", [&] {
        VelgorLibrary library(patches.first(patches.size() - unitPatches), std::nullopt);
        // As after loading: the patches can be found already, and the list has room.
        library.append(patches.at(patches.size() - unitPatches), false, false);
        return secondsOf([&] { library.append(file, false); });
    });
}

void tickAll(benchmark::State &state)
{
    measureGrowth(state, "tick all", [&] {
        Desk desk(patchesOf(state));
        return secondsOf([&] { desk.libraryEditor.tickAll(); });
    });
}

void importFile(benchmark::State &state)
{
    const SPresetFile file = fileOf(patchesOf(state));
    measureGrowth(state, "import a file, 65,535 patches at most", [&] {
        VelgorContent content;
        return secondsOf([&] { content.populate(file); });
    });
}

void exportContent(benchmark::State &state)
{
    VelgorContent content;
    content.populate(fileOf(patchesOf(state)));
    measureGrowth(state, "export the list, 65,535 patches at most", [&] {
        return secondsOf([&] {
            const auto [records, userIRs] = content.getPatchesAndUserIRs();
            const auto file = SPresetFile::fromRecords(
                content.velgorContentPatchList().first().patch.records->headerData, records, userIRs);
            benchmark::DoNotOptimize(PatchWriter::encodePatches(*file));
        });
    });
}

void dropOntoSlots(benchmark::State &state)
{
    const SPresetFile file = fileOf(patchesOf(state));
    measureGrowth(state, "drop all patches onto the slots", [&] {
        Desk desk(patchesOf(state));
        desk.content.populate(file);
        desk.libraryEditor.tickAll();
        return secondsOf([&] { desk.contentEditor.dropDest(desk.library.patches().last().id(), 0); });
    });
}

QList<TransferablePatch> everySlot(const VelgorContent &content)
{
    QList<TransferablePatch> items;
    for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
        items.append(TransferablePatch::ofSlot(slot));
    }
    return items;
}

void dropOntoLibrary(benchmark::State &state)
{
    const SPresetFile file = fileOf(patchesOf(state));
    measureGrowth(state, "drop all slots onto the library", [&] {
        Desk desk({});
        desk.content.populate(file);
        const QList<TransferablePatch> items = everySlot(desk.content);
        return secondsOf([&] { desk.libraryEditor.drop(items, 0); });
    });
}

void moveSlots(benchmark::State &state)
{
    const SPresetFile file = fileOf(patchesOf(state));
    QList<qsizetype> rows(file.patches.size() / 2);
    std::generate(rows.begin(), rows.end(), [row = qsizetype(-1)]() mutable { return row += 2; });
    measureGrowth(state, "move every second slot", [&] {
        Desk desk({});
        desk.content.populate(file);
        return secondsOf([&] { desk.contentEditor.moveSlots(rows, 0); });
    });
}

void replaceSlots(benchmark::State &state)
{
    const SPresetFile file = fileOf(patchesOf(state));
    measureGrowth(state, "replace all slots", [&] {
        Desk desk(patchesOf(state));
        desk.content.populate(file);
        QSet<QUuid> selected;
        for (const VelgorContentPatch &slot : desk.content.velgorContentPatchList()) {
            selected.insert(slot.id);
        }
        desk.content.setSelections(selected);
        desk.library.setSelection(desk.library.patches().last().id());
        return secondsOf([&] { desk.contentEditor.replaceSelectedSlots(); });
    });
}

void listing(benchmark::State &state)
{
    const QString directory = SampleLibrary::ofSize(state.range(0)).directory();
    measureGrowth(state, "scan the directory",
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(DirectoryListing::scan(directory)); }); });
}

} // namespace

void registerGrowthRows()
{
    registerRows({
        {"append, one by one", append},
        {"delete half", deleteHalf},
        {"duplicate one patch again and again", duplicate},
        {"duplicate every patch", duplicateEach},
        {"list the ticked half", ticked},
        {"find similar patches", similar},
        {"filter, the first keystroke", filterFirst},
        {"restore the order", restoreOrder},
        {"add a file of 99", addFile},
        {"tick all", tickAll},
        {"drop all patches onto the slots", dropOntoSlots},
        {"drop all slots onto the library", dropOntoLibrary},
        {"move every second slot", moveSlots},
        {"replace all slots", replaceSlots},
        {"import a file, 65,535 patches at most", importFile},
        {"export the list, 65,535 patches at most", exportContent},
        {"scan the directory", listing},
    });
}
