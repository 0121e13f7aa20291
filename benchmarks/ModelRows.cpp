#include "Baselines.h"
#include "LibraryViewFilter.h"
#include "Measurement.h"
#include "Rows.h"
#include "SampleLibrary.h"
#include "Utf8Text.h"
#include "VelgorLibrary.h"

#include <memory>

namespace {

constexpr int64_t many = 10'000;
constexpr int64_t veryMany = 100'000;

/// As an own list of the library, which a change need not copy first.
std::unique_ptr<VelgorLibrary> libraryOf(const benchmark::State &state)
{
    QList<VelgorPatch> patches = SampleLibrary::ofSize(state.range(0)).patches();
    patches.detach();
    return std::make_unique<VelgorLibrary>(patches, std::nullopt);
}

/// A keystroke, after the first of all.
void filterRow(benchmark::State &state, const std::string &row, QString VelgorPatch::*text, const QString &wanted,
    std::vector<qsizetype> (*baseline)(const QList<VelgorPatch> &, const QString &))
{
    const auto library = libraryOf(state);
    LibraryViewFilter filter;
    filter.filterPatch.*text = wanted;
    measurePairs(
        state, row, {.ratio = 0.25, .patches = veryMany, .growth = 12},
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(filter.shownRows(*library)); }); },
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(baseline(library->patches(), wanted)); }); });
}

void filterByName(benchmark::State &state)
{
    filterRow(state, "filter, name", &VelgorPatch::name, SampleLibrary::nameFragment(), Baselines::rowsByName);
}

void filterByComment(benchmark::State &state)
{
    filterRow(state, "filter, three-word comment", &VelgorPatch::comment, SampleLibrary::threeCommentWords(),
        Baselines::rowsByComment);
}

template <typename Prepare>
void sortRow(benchmark::State &state, const std::string &row, Target target, Prepare prepare)
{
    std::vector<std::string> keys;
    for (const VelgorPatch &patch : SampleLibrary::ofSize(state.range(0)).patches()) {
        keys.push_back(Utf8Text::caselessKey(patch.name).toStdString());
    }
    measurePairs(
        state, row, target,
        [&] {
            const auto library = libraryOf(state);
            prepare(*library);
            return secondsOf([&] { library->sort(); });
        },
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(Baselines::sortedRows(keys)); }); });
}

void sortByName(benchmark::State &state)
{
    sortRow(state, "sort by name", {.ratio = 2.0, .patches = veryMany, .growth = 40},
        [](const VelgorLibrary &library) { benchmark::DoNotOptimize(library.caselessNames()); });
}

/// Lower-cases every name too, which no later sort and no later keystroke in the filter does.
void sortByNameFirst(benchmark::State &state)
{
    sortRow(state, "sort by name, for the first time", {.growth = 40}, [](const VelgorLibrary &) {});
}

void similarAgain(benchmark::State &state)
{
    const auto library = libraryOf(state);
    const quint64 id = library->patches().last().id();
    measurePairs(
        state, "find similar patches again", {.ratio = 0.1, .patches = many},
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(library->findSimilarPatches(id)); }); },
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(Baselines::readPayload(library->patches())); }); });
}

} // namespace

void registerModelRows()
{
    registerRows({
        {"filter, name", filterByName},
        {"filter, three-word comment", filterByComment},
        {"sort by name", sortByName},
        {"sort by name, for the first time", sortByNameFirst},
        {"find similar patches again", similarAgain},
    });
}
