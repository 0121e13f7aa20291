#include "LibrarySession.h"

#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryManagerPreferences.h"
#include "Output.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace {

QString directoryOf(const Arguments &arguments)
{
    return arguments.value(QStringLiteral("library")).value_or(LibraryManagerPreferences().libraryDirectory());
}

} // namespace

LibrarySession::LibrarySession(const Arguments &arguments)
    : m_isNamed(arguments.has(QStringLiteral("library")))
    , m_isNameEmpty(m_isNamed && arguments.value(QStringLiteral("library"))->isEmpty())
    , m_storage(directoryOf(arguments))
{
}

bool LibrarySession::isUsable(FileExistence found) const
{
    if (m_isNameEmpty) {
        Output::fail(tr("--library needs a directory"));
        return false;
    }
    if (found == FileExistence::file) {
        Output::fail(tr("%1: not a directory").arg(m_storage.libDirectory()));
        return false;
    }
    return true;
}

bool LibrarySession::exists() const
{
    const FileExistence found = existence(m_storage.libDirectory());
    if (isUsable(found) && found == FileExistence::none) {
        Output::fail(tr("%1: there is no such library directory").arg(m_storage.libDirectory()));
    }
    return !m_isNameEmpty && found == FileExistence::directory;
}

bool LibrarySession::create()
{
    m_storage.createDirectoryLibrary();
    if (m_storage.writeError()) {
        Output::fail(m_storage.writeProblems().join(QStringLiteral("; ")));
    }
    return !m_storage.writeError();
}

bool LibrarySession::open(Access access)
{
    const QString directory = m_storage.libDirectory();
    const FileExistence found = existence(directory);
    if (!isUsable(found)) {
        return false;
    }
    if (found == FileExistence::none && access != Access::Create) {
        if (m_isNamed) {
            Output::fail(tr("%1: there is no such library directory").arg(directory));
            return false;
        }
        return true;
    }
    if (access == Access::Create && !create()) {
        return false;
    }
    const bool isChange = access == Access::Change || access == Access::Create || access == Access::Rescue;
    if (isChange && !lock()) {
        return false;
    }
    std::optional<LibraryState> loaded = load(access);
    const bool isRescue = (access == Access::Rescue || access == Access::Inspect) && m_storage.readError();
    if (m_storage.readProblem() && !isRescue) {
        Output::fail(m_storage.readProblem()->text());
        return false;
    }
    if (isChange) {
        m_storage.sweepLeftovers();
        m_removalsDueBefore = m_storage.removalsDue();
    }
    if (!m_storage.droppedPatches().isEmpty()) {
        Output::warn(tr("%1: these patches have no readable file and were left out: %2")
                         .arg(directory, m_storage.droppedProblems().join(QStringLiteral(", "))));
    }
    // The examination tells of each.
    if (access != Access::Inspect && access != Access::Rescue) {
        warnOfDoubtfulPatches();
    }
    if (loaded) {
        m_library.adopt(*std::move(loaded));
    } else {
        warnOfOrphans();
    }
    m_library.setAwaited(m_storage.awaitedPatches());
    return true;
}

std::optional<LibraryState> LibrarySession::load(Access access)
{
    constexpr int attempts = 6;
    constexpr std::chrono::milliseconds pause(50);
    const QDir directory(m_storage.libDirectory());
    const QString file = directory.filePath(LibraryFileNames::libraryFile());
    for (int attempt = 1;; ++attempt) {
        const QDateTime before = QFileInfo(file).lastModified();
        std::optional<LibraryState> loaded =
            m_storage.decodeLibrary(access == Access::List ? LibraryLoader::Sounds::Drop : LibraryLoader::Sounds::Keep);
        const bool isWhole = m_storage.droppedPatches().isEmpty() && !m_storage.readProblem();
        // Without a lock, reading may fall into another program's change and miss files that are about to be there.
        const bool isChanging =
            directory.exists(LibraryFileNames::lockFile()) || QFileInfo(file).lastModified() != before;
        if (m_lock || isWhole || !isChanging || attempt == attempts) {
            return loaded;
        }
        std::this_thread::sleep_for(pause);
    }
}

void LibrarySession::warnOfDoubtfulPatches() const
{
    const QStringList doubtful = m_storage.doubtfulPatches();
    if (doubtful.size() == 1) {
        Output::warn(tr("%1: %2").arg(m_storage.libDirectory(), doubtful.first()));
    } else if (!doubtful.isEmpty()) {
        Output::warn(tr("%1: %2 files may hold other patches than the library says, which \"velgor library doctor\" "
                        "lists; the first is of %3")
                         .arg(m_storage.libDirectory(), QString::number(doubtful.size()), doubtful.first()));
    }
}

void LibrarySession::warnOfOrphans() const
{
    const QDir directory(m_storage.libDirectory());
    if (directory.exists(LibraryFileNames::libraryFile())) {
        return;
    }
    const QStringList files = directory.entryList({QStringLiteral("lib-*.prst")}, QDir::Files);
    if (!files.isEmpty()) {
        Output::warn(tr("%1: there is no library file, but %2 patch files, which can be added again")
                         .arg(directory.path(), QString::number(files.size())));
    }
}

bool LibrarySession::lock()
{
    m_lock = std::make_unique<LibraryLock>(m_storage.libDirectory());
    const Result<> locked = m_lock->tryLock();
    if (!locked) {
        Output::fail(locked.problem().text());
    }
    return bool(locked);
}

std::optional<VelgorPatch> LibrarySession::patch(const QString &id) const
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]+\\z"));
    bool isNumber = false;
    const quint64 value = digits.match(id).hasMatch() ? id.toULongLong(&isNumber) : 0;
    const auto found = m_library.getPatchFromId(isNumber ? std::optional(value) : std::nullopt);
    if (isNumber && !found && m_storage.awaitedPatches().patches.contains(value)) {
        Output::fail(tr("patch %1 was left out, as its file cannot be read").arg(id));
        return std::nullopt;
    }
    if (!found || found->patch->empty) {
        Output::fail(isNumber ? tr("unknown id %1").arg(id) : tr("\"%1\" is no patch id").arg(id));
        return std::nullopt;
    }
    return *found->patch;
}

std::optional<QList<VelgorPatch>> LibrarySession::patches(const QStringList &ids) const
{
    QList<VelgorPatch> result;
    for (const QString &id : ids) {
        const std::optional<VelgorPatch> found = patch(id);
        if (!found) {
            return std::nullopt;
        }
        result.append(*found);
    }
    return result;
}

int LibrarySession::save()
{
    m_storage.save(m_library);
    return report();
}

int LibrarySession::report()
{
    m_storage.finish();
    const QList<quint64> due = m_storage.removalsDue();
    const bool areRemoved = m_storage.wereFilesRemoved()
        || std::all_of(due.begin(), due.end(), [this](quint64 id) { return m_removalsDueBefore.contains(id); });
    const bool isSafe =
        m_storage.wasLastSaveWritten() && areRemoved && existence(m_storage.libDirectory()) == FileExistence::directory;
    for (const QString &problem : m_storage.writeProblems()) {
        if (isSafe) {
            Output::warn(problem);
        } else {
            Output::fail(problem);
        }
    }
    for (const QString &kept : m_storage.keptFiles()) {
        if (!LibraryFileNames::isDatedCopy(QFileInfo(kept).fileName())) {
            Output::warn(tr("what stood in the place of a patch's file was kept as %1").arg(kept));
        } else if (m_storage.wasChangedByOthers()) {
            Output::warn(
                tr("another program changed the library file meanwhile; what it wrote was kept as %1").arg(kept));
        } else {
            Output::warn(tr("the former library file was kept as %1").arg(kept));
        }
    }
    return isSafe ? Done : Failed;
}
