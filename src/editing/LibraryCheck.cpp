#include "LibraryCheck.h"

#include "EditHistory.h"
#include "LibraryDoctor.h"
#include "LibraryFileNames.h"
#include "LibraryStorageManager.h"
#include "RescuedPatches.h"
#include "VelgorLibrary.h"
#include "Worker.h"

#include <QSet>

#include <utility>

struct LibraryCheck::Examination {
    LibraryHealth health;
    Preview onDisk; ///< nothing where the library was loaded whole
};

LibraryCheck::LibraryCheck(VelgorLibrary &library, LibraryStorageManager &storage, EditHistory &history)
    : m_library(library)
    , m_storage(storage)
    , m_history(history)
{
    connect(&m_storage, &LibraryStorageManager::saveFinished, this, [this] {
        // One that was asked for before ends first.
        if (!m_storage.isSaving() && std::exchange(m_isSaving, false)) {
            Q_EMIT ended(true);
        }
    });
}

void LibraryCheck::examine()
{
    m_storage.startSavingUnsaved();
    // A file that was put back is no finding on disk, but the library was loaded without its patch.
    const bool isPartial = !m_storage.droppedPatches().isEmpty() || m_storage.readProblem();
    const auto look = [directory = m_storage.libDirectory(), isPartial, present = m_library.state()](
                          const Worker::Report &report) {
        Examination examination;
        qsizetype all = 0;
        const auto count = [&report, &all](qsizetype done, qsizetype total) {
            all = total;
            return report(done, total);
        };
        const auto goOn = [&report, &all](qsizetype, qsizetype) { return report(all, all); };
        examination.health = LibraryDoctor(directory, count).examine();
        if (isPartial && goOn(0, 0)) {
            examination.onDisk = KeptLibraries::preview(directory, LibraryFileNames::libraryFile(), present, goOn);
        }
        return examination;
    };
    m_storage.worker().start(
        this, look, [this](const Examination &examination) { adoptFindings(examination); },
        [this](qsizetype done, qsizetype total) { Q_EMIT progress(done, total); });
}

bool LibraryCheck::finishWithin(std::chrono::milliseconds time)
{
    return m_storage.worker().finishWithin(time);
}

bool LibraryCheck::isMissing(const VelgorPatch &patch) const
{
    return !patch.empty && !m_library.getPatchFromId(patch.id());
}

void LibraryCheck::adoptFindings(const Examination &examination)
{
    m_health = examination.health;
    for (const VelgorPatch &patch : examination.onDisk ? examination.onDisk->patches : QList<VelgorPatch>()) {
        if (isMissing(patch)) {
            m_health.findings.append({.kind = LibraryFinding::Kind::PatchWithoutFile,
                .file = LibraryFileNames::patchFile(patch.name, patch.id()),
                .id = patch.id(),
                .name = patch.name,
                .reason = tr("its file can be read again"),
                .rescued = patch});
        }
    }
    Q_EMIT examined();
}

QList<VelgorPatch> LibraryCheck::rescued() const
{
    QList<VelgorPatch> patches;
    QSet<quint64> ids;
    for (const VelgorPatch &patch : m_health.rescuedPatches()) {
        if (isMissing(patch) && !ids.contains(patch.id())) {
            ids.insert(patch.id());
            patches.append(patch);
        }
    }
    return patches;
}

void LibraryCheck::addRescued()
{
    m_storage.worker().start(
        this, [directory = m_storage.libDirectory()] { return RescuedPatches::libraryFiles(directory); },
        [this](const QList<LibraryState> &files) {
            const QList<VelgorPatch> patches = rescued();
            if (patches.isEmpty()) {
                Q_EMIT ended(false);
                return;
            }
            m_history.perform(
                patches.size() == 1 ? tr("Rescue of a Patch") : tr("Rescue of %1 Patches").arg(patches.size()),
                [&] { RescuedPatches::addTo(m_library, patches, files); });
            save();
        });
}

void LibraryCheck::preview(const QString &file, QObject *asking, const std::function<void(const Preview &)> &then) const
{
    const auto read = [directory = m_storage.libDirectory(), file, present = m_library.state()](
                          const Worker::Report &report) {
        return KeptLibraries::preview(directory, file, present, report);
    };
    m_storage.worker().start(asking, read, then);
}

void LibraryCheck::restore(const QString &file)
{
    m_storage.startSavingUnsaved();
    preview(file, this, [this](const Preview &former) {
        // Patches that are in no file yet could not be brought back.
        if (m_storage.hasUnsavedChanges() || !former || former->patches.isEmpty()) {
            Q_EMIT ended(false);
            return;
        }
        m_library.adopt({.patches = former->patches, .defaultPatch = former->defaultPatch});
        m_history.forget();
        m_storage.keepLibraryFile();
        save();
    });
}

void LibraryCheck::save()
{
    m_isSaving = true;
    m_storage.startSave(m_library);
}
