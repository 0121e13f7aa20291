#pragma once

#include "DiagnosticRecorder.h"
#include "LibraryDoctor.h"
#include "LibraryLoader.h"
#include "LibraryManagerPreferences.h"
#include "LibraryStorageManager.h"
#include "LibrarySweeper.h"
#include "LibraryWriter.h"
#include "RescuedPatches.h"
#include "StoredEdits.h"
#include "TestLibraries.h"

#include <QTest>

/// A library's directory, a program that runs on it with the library that it holds, and the lines printed meanwhile.
/// The other functions do what other programs would that start now and end at once.
class StoreFixture : public LibraryDirectory {
public:
    /// A delayed save does not come by itself.
    static constexpr std::chrono::milliseconds never = std::chrono::hours(1);

    /// With these patches on disk. The program has loaded nothing yet.
    explicit StoreFixture(const LibraryState &stored = {}, std::chrono::milliseconds period = never)
        : StoreFixture(LibraryDirectory(), period)
    {
        if (!stored.patches.isEmpty() && save(stored).hasError()) {
            qFatal("cannot store the library");
        }
        lines.take();
    }
    /// With nothing on disk, and these patches in the program.
    explicit StoreFixture(std::chrono::milliseconds period, const LibraryState &held = {})
        : StoreFixture(LibraryDirectory(), period)
    {
        library.adopt(held);
    }
    /// The program has the directory from its preferences, and makes it, where `isPreferred`.
    explicit StoreFixture(
        const LibraryDirectory &place, std::chrono::milliseconds period = never, bool isPreferred = false)
        : LibraryDirectory(place)
        , preferences(settings(isPreferred))
        , storage(isPreferred ? LibraryStorageManager(preferences, period) : LibraryStorageManager(path(), period))
    {
    }

    // The program

    DiagnosticRecorder lines;
    LibraryManagerPreferences preferences; ///< beside the library
    VelgorLibrary library;
    LibraryStorageManager storage;

    /// Loads the library. False where nothing is loaded.
    [[nodiscard]] bool start()
    {
        const std::optional<LibraryState> found = storage.decodeLibrary();
        if (found) {
            library.adopt(*found);
        }
        return found.has_value();
    }

    /// Changes the patch of this id; a save is not asked for.
    template <typename Change>
    void edit(quint64 id, Change change)
    {
        VelgorPatch changed = *library.getPatchFromId(id)->patch;
        change(changed);
        if (!library.update(changed)) {
            qFatal("no such patch");
        }
    }
    void rename(quint64 id, const QString &name)
    {
        edit(id, [&name](VelgorPatch &patch) { patch.name = name; });
    }
    void requestSave() { storage.delayedSave(library); }
    /// False when a save that was asked for does not end.
    [[nodiscard]] bool waitForSave() const
    {
        return QTest::qWaitFor([this] { return !storage.waitingToSave(); }, 10'000);
    }
    void deletePatches(const QList<quint64> &ids) { StoredEdits::deletePatches(library, ids, storage); }

    /// Moves the library and waits for the end.
    Result<> move(const QString &target, const LibraryMove::Steps &steps = {})
    {
        return moveOf(storage, library, target, steps);
    }
    static Result<> moveOf(LibraryStorageManager &storage, const VelgorLibrary &library, const QString &target,
        LibraryMove::Steps steps = {})
    {
        Result<> result = Problem{.why = QStringLiteral("not ended")};
        steps.ended = [&result](const Result<> &moved, const LibraryWriteResult &) { result = moved; };
        storage.startMove(target, library, std::move(steps));
        storage.finish();
        return result;
    }

    // Other programs

    [[nodiscard]] LibraryLoadResult load() const { return LibraryLoader(path()).load(); }
    /// The patches that loading gives.
    [[nodiscard]] QList<VelgorPatch> loaded() const
    {
        const LibraryLoadResult result = load();
        return result.library ? result.library->patches : QList<VelgorPatch>();
    }
    [[nodiscard]] QStringList loadedNames() const { return TestPatches::names(loaded()); }
    /// Loading gives these patches, and what they hold is the same.
    [[nodiscard]] bool holds(const QList<VelgorPatch> &patches) const
    {
        return TestLibraries::areIdentical(loaded(), patches);
    }

    /// What a program remembers that has just read or written the library file.
    [[nodiscard]] LibraryWriteState state() const
    {
        const QString file = filePath(TestLibraries::libraryFile);
        std::optional<FileContentStamp> stamp = FileContentStamp::of(file);
        if (stamp) {
            // A pipe would be waited for.
            stamp->setBytes(QFileInfo(file).isFile() ? read(TestLibraries::libraryFile) : QByteArray());
        }
        return {.libraryFile = stamp};
    }
    LibraryWriteResult save(
        const LibraryState &content, const std::optional<LibraryWriteState> &remembered = std::nullopt) const
    {
        return LibraryWriter(path(), remembered ? *remembered : state()).save(content);
    }
    /// Saves what is stored without these patches.
    [[nodiscard]] LibraryWriteResult remove(const QList<quint64> &ids) const
    {
        LibraryState content{.patches = loaded(), .defaultPatch = {}};
        content.patches.removeIf([&ids](const VelgorPatch &patch) { return ids.contains(patch.id()); });
        LibraryWriteState withRemovals = state();
        withRemovals.idsToRemove = ids;
        return save(content, withRemovals);
    }
    /// A library file's text and a file for each of its patches, without a save.
    void writeEntries(const LibraryState &content) const
    {
        write(TestLibraries::libraryFile, LibraryJson::encode(content));
        for (const VelgorPatch &patch : content.patches) {
            write(TestLibraries::fileOf(patch), TestLibraries::patchBytes(patch));
        }
    }
    /// Starts where no other program uses the directory: loads, and sweeps what was left.
    void sweep() const { LibrarySweeper(path(), load().leftovers).sweep(); }
    /// The files kept under a dated name.
    [[nodiscard]] QStringList datedCopies() const
    {
        QStringList names = files();
        names.removeIf([](const QString &name) { return !LibraryFileNames::isDatedCopy(name); });
        return names;
    }

    [[nodiscard]] LibraryHealth examine() const { return LibraryDoctor(path()).examine(); }
    /// The one finding that there is to be.
    [[nodiscard]] LibraryFinding finding() const
    {
        const LibraryHealth health = examine();
        return health.findings.size() == 1 ? health.findings.first() : LibraryFinding();
    }
    /// Loads, sweeps, adds what was rescued, saves.
    void repair() const
    {
        StoreFixture other(static_cast<const LibraryDirectory &>(*this));
        std::ignore = other.start();
        other.storage.sweepLeftovers();
        RescuedPatches::addTo(other.library, examine().rescuedPatches(), RescuedPatches::libraryFiles(path()));
        other.storage.save(other.library);
    }

private:
    [[nodiscard]] std::unique_ptr<QSettings> settings(bool isPreferred) const
    {
        auto store = std::make_unique<QSettings>(parentPath() + QStringLiteral("/settings.ini"), QSettings::IniFormat);
        if (isPreferred) {
            store->setValue(QStringLiteral("libraryDirectory"), path());
        }
        return store;
    }
};
