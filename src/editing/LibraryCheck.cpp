#include "LibraryCheck.h"

#include "EditHistory.h"
#include "LibraryDoctor.h"
#include "LibraryFileNames.h"
#include "LibrarySnapshot.h"
#include "LibraryStorageManager.h"
#include "RescuedPatches.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QSet>

#include <utility>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(LibraryCheck)
};

} // namespace

LibraryCheck::LibraryCheck(VelgorLibrary &library, LibraryStorageManager &storage, EditHistory &history)
    : m_library(library)
    , m_storage(storage)
    , m_history(history)
{
}

void LibraryCheck::examine()
{
    m_storage.saveUnsaved();
    m_examination.start([this, directory = m_storage.libDirectory()](const BackgroundRun::Report &report) {
        m_found = LibraryDoctor(directory, report).examine();
    });
}

void LibraryCheck::takeFindings()
{
    m_health = std::exchange(m_found, {});
    notePatchesThatCanBeReadAgain();
}

bool LibraryCheck::isMissing(const VelgorPatch &patch) const
{
    return !patch.empty && !m_library.getPatchFromId(patch.id());
}

void LibraryCheck::notePatchesThatCanBeReadAgain()
{
    // A file that was put back is no finding on disk, but the library was loaded without its patch.
    if (m_storage.droppedPatches().isEmpty() && m_storage.readProblem().isEmpty()) {
        return;
    }
    const auto onDisk = preview(LibraryFileNames::libraryFile());
    for (const VelgorPatch &patch : onDisk ? onDisk->patches : QList<VelgorPatch>()) {
        if (isMissing(patch)) {
            m_health.findings.append({.kind = LibraryFinding::Kind::PatchWithoutFile,
                .file = LibraryFileNames::patchFile(patch.name, patch.id()),
                .id = patch.id(),
                .name = patch.name,
                .reason = Texts::tr("its file can be read again"),
                .rescued = patch});
        }
    }
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
    const QList<VelgorPatch> patches = rescued();
    if (!patches.isEmpty()) {
        m_history.perform(patches.size() == 1 ? Texts::tr("Rescue of a Patch")
                                              : Texts::tr("Rescue of %1 Patches").arg(patches.size()),
            [&] { RescuedPatches::addTo(m_library, m_storage.libDirectory(), patches); });
        m_storage.save(m_library);
    }
}

std::optional<KeptLibraries::Preview> LibraryCheck::preview(const QString &file) const
{
    return KeptLibraries::preview(m_storage.libDirectory(), file, LibrarySnapshot::take(m_library));
}

bool LibraryCheck::restore(const QString &file)
{
    // Patches that are in no file yet could not be brought back.
    if (!m_storage.saveUnsaved()) {
        return false;
    }
    const auto former = preview(file);
    if (!former || former->patches.isEmpty()) {
        return false;
    }
    m_library.takeOver({.patches = former->patches, .defaultPatch = former->defaultPatch});
    m_history.forget();
    m_storage.keepLibraryFile();
    m_storage.save(m_library);
    return true;
}
