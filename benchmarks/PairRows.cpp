#include "Baselines.h"
#include "LibraryFileNames.h"
#include "LibraryJson.h"
#include "LibraryStorageManager.h"
#include "LibraryViewFilter.h"
#include "Measurement.h"
#include "Rows.h"
#include "SampleLibrary.h"
#include "Utf8Text.h"

#include <QFile>

namespace {

void load(benchmark::State &state)
{
    const QString directory = SampleLibrary::ofSize(state.range(0)).directory();
    // In the order in which the program asks for them.
    std::vector<std::string> paths{(directory + u'/' + LibraryFileNames::libraryFile()).toStdString()};
    for (const VelgorPatch &patch : SampleLibrary::ofSize(state.range(0)).patches()) {
        paths.push_back((directory + u'/' + LibraryFileNames::patchFile(patch.name, patch.id())).toStdString());
    }
    measurePairs(
        state, "load",
        [&] {
            LibraryStorageManager storage(directory);
            std::unique_ptr<VelgorLibrary> library;
            const double seconds = secondsOf([&] { library = storage.decodeLibrary(); });
            if (!library || library->count() != state.range(0)) {
                state.SkipWithError("the library was not loaded");
            }
            return seconds;
        },
        [&] {
            std::vector<std::string> contents;
            return secondsOf([&] { contents = Baselines::readFiles(paths); });
        });
}

void saveUnchanged(benchmark::State &state)
{
    SampleLibrary &sample = SampleLibrary::ofSize(state.range(0));
    const QString directory = sample.directory();
    const VelgorLibrary library(sample.patches(), std::nullopt);
    LibraryStorageManager storage(directory);
    const QTemporaryDir besides;
    const std::string plainFile = besides.filePath(QStringLiteral("plain.json")).toStdString();
    measurePairs(
        state, "save, nothing changed", [&] { return secondsOf([&] { storage.save(library); }); },
        [&] {
            return secondsOf([&] {
                Baselines::writeFile(plainFile, LibraryJson::encode({sample.patches(), std::nullopt}));
                benchmark::DoNotOptimize(Baselines::scan(directory.toStdString()));
            });
        });
}

void saveNew(benchmark::State &state)
{
    SampleLibrary &sample = SampleLibrary::ofSize(state.range(0));
    const std::vector<std::string> contents =
        Baselines::readFiles(Baselines::filesIn(sample.directory().toStdString()));
    const VelgorLibrary library(sample.patches(), std::nullopt);
    measurePairs(
        state, "save, all patches new",
        [&] {
            const QTemporaryDir directory;
            LibraryStorageManager storage(directory.path());
            return secondsOf([&] { storage.save(library); });
        },
        [&] {
            const QTemporaryDir directory;
            const std::string prefix = directory.filePath(QStringLiteral("lib-")).toStdString();
            return secondsOf([&] {
                for (std::size_t i = 0; i < contents.size(); ++i) {
                    const std::string &text = contents[i];
                    Baselines::writeFile(prefix + std::to_string(i),
                        QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size())));
                }
            });
        });
}

void filterByName(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = SampleLibrary::ofSize(state.range(0)).patches();
    LibraryViewFilter filter;
    filter.filterPatch.name = SampleLibrary::nameFragment();
    measurePairs(
        state, "filter, name", [&] { return secondsOf([&] { benchmark::DoNotOptimize(filter.filter(patches)); }); },
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
        state, "filter, three-word comment",
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
        state, "sort by name",
        [&] {
            VelgorLibrary library(patches, std::nullopt);
            return secondsOf([&] { library.sort(); });
        },
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(Baselines::sortedRows(keys)); }); });
}

} // namespace

void registerPairRows()
{
    constexpr int pairs = 9;
    const std::array<std::pair<const char *, void (*)(benchmark::State &)>, 6> rows{{
        {"load", load},
        {"save, nothing changed", saveUnchanged},
        {"save, all patches new", saveNew},
        {"filter, name", filterByName},
        {"filter, three-word comment", filterByComment},
        {"sort by name", sortByName},
    }};
    for (const auto &[name, row] : rows) {
        benchmark::RegisterBenchmark(name, row)
            ->RangeMultiplier(10)
            ->Range(1000, 100'000)
            ->Iterations(pairs)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
}
