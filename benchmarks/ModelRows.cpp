#include "Baselines.h"
#include "LibraryViewFilter.h"
#include "Measurement.h"
#include "Rows.h"
#include "SampleLibrary.h"
#include "Utf8Text.h"
#include "VelgorLibrary.h"

namespace {

void filterByName(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = SampleLibrary::ofSize(state.range(0)).patches();
    LibraryViewFilter filter;
    filter.filterPatch.name = SampleLibrary::nameFragment();
    measurePairs(
        state, "filter, name", 0.25,
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(filter.filter(patches)); }); },
        [&] {
            return secondsOf(
                [&] { benchmark::DoNotOptimize(Baselines::rowsByName(patches, filter.filterPatch.name)); });
        });
}

void filterByComment(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = SampleLibrary::ofSize(state.range(0)).patches();
    LibraryViewFilter filter;
    filter.filterPatch.comment = SampleLibrary::threeCommentWords();
    measurePairs(
        state, "filter, three-word comment", 0.25,
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(filter.filter(patches)); }); },
        [&] {
            return secondsOf(
                [&] { benchmark::DoNotOptimize(Baselines::rowsByComment(patches, filter.filterPatch.comment)); });
        });
}

void sortByName(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = SampleLibrary::ofSize(state.range(0)).patches();
    std::vector<std::string> keys;
    for (const VelgorPatch &patch : patches) {
        keys.push_back(Utf8Text::caselessKey(patch.name).toStdString());
    }
    measurePairs(
        state, "sort by name", 2.0,
        [&] {
            VelgorLibrary library(patches, std::nullopt);
            return secondsOf([&] { library.sort(); });
        },
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(Baselines::sortedRows(keys)); }); });
}

} // namespace

void registerModelRows()
{
    registerRows({
        {"filter, name", filterByName},
        {"filter, three-word comment", filterByComment},
        {"sort by name", sortByName},
    });
}
