#include "SettledExamination.h"

#include "FileExistence.h"
#include "LibraryDoctor.h"
#include "LibraryFileNames.h"
#include "LibraryLock.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSet>

#include <chrono>
#include <thread>

namespace {

/// What changes when a program adds, removes or writes files of the library.
QList<QDateTime> stampsOf(const QString &directory)
{
    return {QFileInfo(directory).lastModified(),
        QFileInfo(directory + u'/' + LibraryFileNames::libraryFile()).lastModified()};
}

QString keyOf(const LibraryFinding &finding)
{
    return QStringLiteral("%1 %2 %3").arg(static_cast<int>(finding.kind)).arg(finding.id).arg(finding.file);
}

/// Leaves what both readings found.
void keepCommon(QList<LibraryFinding> &findings, const QList<LibraryFinding> &others)
{
    QSet<QString> keys;
    for (const LibraryFinding &other : others) {
        keys.insert(keyOf(other));
    }
    findings.removeIf([&keys](const LibraryFinding &finding) { return !keys.contains(keyOf(finding)); });
}

} // namespace

LibraryHealth SettledExamination::examine(const QString &directory)
{
    constexpr int attempts = 10;
    constexpr std::chrono::milliseconds pause(50);
    const QString journal = directory + u'/' + LibraryFileNames::journalFile();
    LibraryHealth health;
    QList<LibraryFinding> last;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const QList<QDateTime> before = stampsOf(directory);
        bool isHeld = LibraryLock::isHeldByOther(directory);
        LibraryHealth next = LibraryDoctor(directory).examine();
        isHeld = isHeld || LibraryLock::isHeldByOther(directory);
        const bool isQuiet = !isHeld && stampsOf(directory) == before;
        const bool isSaving = isHeld && existence(journal) != FileExistence::none;
        const bool isAsLast = attempt > 0 && next.findings == last;
        last = next.findings;
        if (attempt > 0) {
            keepCommon(next.findings, health.findings);
        }
        health = next;
        if (health.findings.isEmpty() || isQuiet || (isAsLast && !isSaving)) {
            break;
        }
        std::this_thread::sleep_for(pause);
    }
    return health;
}
