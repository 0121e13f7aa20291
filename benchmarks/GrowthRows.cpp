#include "DirectoryListing.h"
#include "LibraryStorage.h"
#include "Measurement.h"
#include "Rows.h"
#include "SampleLibrary.h"
#include "VelgorLibrary.h"

namespace {

/// Keeps nothing, so that the library's own work is measured alone.
class NoStorage : public LibraryStorage {
public:
    void remove(const QList<quint64> &patchIDs) override { Q_UNUSED(patchIDs) }
    void save(const VelgorLibrary &library) override { Q_UNUSED(library) }
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
        NoStorage storage;
        VelgorLibrary library(patchesOf(state), patchesOf(state).last().id());
        return secondsOf([&] { library.deletePatches(ids, storage); });
    });
}

void duplicate(benchmark::State &state)
{
    measureGrowth(state, "duplicate one patch again and again", [&] {
        NoStorage storage;
        VelgorLibrary library(patchesOf(state).first(1), std::nullopt);
        const quint64 id = library.patches().first().id();
        return secondsOf([&] {
            for (int64_t i = 0; i < state.range(0); ++i) {
                library.duplicateSelection(id, storage);
            }
        });
    });
}

void duplicateEach(benchmark::State &state)
{
    measureGrowth(state, "duplicate every patch", [&] {
        NoStorage storage;
        VelgorLibrary library(patchesOf(state), std::nullopt);
        return secondsOf([&] {
            for (const VelgorPatch &patch : patchesOf(state)) {
                library.duplicateSelection(patch.id(), storage);
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
    const VelgorLibrary library(patchesOf(state), std::nullopt);
    const quint64 id = patchesOf(state).last().id();
    measureGrowth(state, "find similar patches",
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(library.findSimilarPatches(id)); }); });
}

void restoreOrder(benchmark::State &state)
{
    measureGrowth(state, "restore the order", [&] {
        VelgorLibrary library(patchesOf(state), std::nullopt);
        library.saveOrder();
        library.sort();
        return secondsOf([&] { library.sort(); });
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
        {"duplicate one patch again and again", duplicate, 10'000},
        {"duplicate every patch", duplicateEach},
        {"list the ticked half", ticked},
        {"find similar patches", similar},
        {"restore the order", restoreOrder},
        {"scan the directory", listing},
    });
}
