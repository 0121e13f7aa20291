#include "Baselines.h"
#include "LibraryFileNames.h"
#include "LibraryJson.h"
#include "LibraryStorageManager.h"
#include "Measurement.h"
#include "Rows.h"
#include "SampleLibrary.h"

#include <QTemporaryDir>

#include <algorithm>

namespace {

constexpr int64_t many = 10'000;

void load(benchmark::State &state)
{
    const QString directory = SampleLibrary::ofSize(state.range(0)).directory();
    // In the order in which the program asks for them.
    std::vector<std::string> paths{(directory + u'/' + LibraryFileNames::libraryFile()).toStdString()};
    for (const VelgorPatch &patch : SampleLibrary::ofSize(state.range(0)).patches()) {
        paths.push_back((directory + u'/' + LibraryFileNames::patchFile(patch.name, patch.id())).toStdString());
    }
    measurePairs(
        state, "load", {.ratio = 1.5, .patches = many, .growth = 18},
        [&] {
            LibraryStorageManager storage(directory);
            VelgorLibrary library;
            const double seconds = secondsOf([&] { library.adopt(storage.decodeLibrary().value_or(LibraryState())); });
            if (library.count() != state.range(0)) {
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
        state, "save, nothing changed", {.ratio = 2.0, .patches = many, .growth = 18},
        [&] { return secondsOf([&] { storage.save(library); }); },
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
        state, "save, all patches new", {.ratio = 1.8, .patches = many, .growth = 18},
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

void encodeJson(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = SampleLibrary::ofSize(state.range(0)).patches();
    measurePairs(
        state, "library file, encode", {.ratio = 0.5, .patches = many},
        [&] { return secondsOf([&] {
                  benchmark::DoNotOptimize(LibraryJson::encode({patches, std::nullopt}));
              }); },
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(Baselines::encodeByDocument(patches)); }); });
}

void decodeJson(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = SampleLibrary::ofSize(state.range(0)).patches();
    const QByteArray text = LibraryJson::encode({patches, std::nullopt});
    const QByteArray documentText = Baselines::encodeByDocument(patches);
    measurePairs(
        state, "library file, decode", {.ratio = 0.75, .patches = many},
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(LibraryJson::decode(text)); }); },
        [&] { return secondsOf([&] { benchmark::DoNotOptimize(Baselines::decodeByDocument(documentText)); }); });
}

/// The files of the first patches of a library, so that many can be removed and come back.
std::vector<std::string> firstFiles(const QString &directory, const QList<VelgorPatch> &patches, qsizetype count)
{
    std::vector<std::string> paths;
    for (const VelgorPatch &patch : patches.first(count)) {
        paths.push_back((directory + u'/' + LibraryFileNames::patchFile(patch.name, patch.id())).toStdString());
    }
    return paths;
}

void deleteTicked(benchmark::State &state)
{
    const QList<VelgorPatch> &patches = SampleLibrary::ofSize(state.range(0)).patches();
    const qsizetype count = std::min<qsizetype>(1000, patches.size() / 2);
    const QTemporaryDir directory;
    LibraryStorageManager storage(directory.path());
    const VelgorLibrary all(patches, std::nullopt);
    const std::vector<std::string> paths = firstFiles(directory.path(), patches, count);
    QList<quint64> ids;
    for (const VelgorPatch &patch : patches.first(count)) {
        ids.append(patch.id());
    }
    measurePairs(
        state, "delete 1,000 ticked", {.ratio = 3.0, .patches = many},
        [&] {
            VelgorLibrary library(patches, std::nullopt);
            storage.save(library);
            return secondsOf([&] {
                library.deletePatches(ids);
                storage.remove(ids);
                storage.save(library);
            });
        },
        [&] {
            storage.save(all);
            return secondsOf([&] {
                storage.save(all);
                Baselines::removeFiles(paths);
            });
        });
}

} // namespace

void registerStorageRows()
{
    registerRows({
        {"load", load},
        {"save, nothing changed", saveUnchanged},
        {"save, all patches new", saveNew},
        {"library file, encode", encodeJson},
        {"library file, decode", decodeJson},
        {"delete 1,000 ticked", deleteTicked},
    });
}
