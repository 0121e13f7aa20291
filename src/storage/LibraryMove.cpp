#include "LibraryMove.h"

#include "DirectoryListing.h"
#include "DiskFiles.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryPlace.h"
#include "LibraryWriter.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

void LibraryMove::start(
    Worker &worker, QObject *asking, const QString &directory, const Result<> &obstacle, const Steps &steps)
{
    const std::shared_ptr<LibraryMove> move(new LibraryMove(directory));
    const auto giveUp = [&worker, asking, move, steps](const Problem &reason, bool isTaken) {
        const auto takeBack = [move, reason] {
            const Result<> undone = move->revertFiles();
            return undone ? reason : Problem{.why = reason.text() + u'\n' + undone.problem().text()};
        };
        worker.start(asking, takeBack, [&worker, asking, move, steps, isTaken](const Problem &problem) {
            if (isTaken && steps.release) {
                steps.release();
            }
            const auto removeDirectories = [move, problem] {
                move->removeDirectories();
                return problem;
            };
            worker.start(asking, removeDirectories, [steps](const Problem &told) { steps.ended(told, {}); });
        });
    };
    const auto settle = [move, steps, giveUp](const Result<> &written) {
        const Result<> recorded = written ? steps.record() : written;
        if (recorded) {
            steps.ended(recorded, move->m_result);
        } else {
            giveUp(recorded.problem(), true);
        }
    };
    const auto make = [move, obstacle] { return obstacle ? move->makeDirectory() : obstacle; };
    worker.start(asking, make, [&worker, asking, move, steps, giveUp, settle](const Result<> &made) {
        const Result<> taken = made && steps.acquire ? steps.acquire(move->m_directory) : made;
        if (taken) {
            worker.start(
                asking, [move, library = steps.library()] { return move->write(library); }, settle);
        } else {
            giveUp(taken.problem(), bool(made));
        }
    });
}

Result<> LibraryMove::makeDirectory()
{
    if (!LibraryPlace::isListable(m_directory)) {
        return Problem{
            .where = m_directory, .why = tr("the path holds characters that keep the directory from being listed")};
    }
    if (LibraryPlace::holdsLibrary(m_directory)) {
        return Problem{.what = Problem::What::Taken, .where = m_directory, .why = tr("there is a library already")};
    }
    if (existence(m_directory) == FileExistence::directory) {
        return Success();
    }
    QStringList missing;
    for (QString path = m_directory; existence(path) == FileExistence::none && !QFileInfo(path).isRoot();
         path = QFileInfo(path).path()) {
        missing.append(path);
    }
    m_madeDirectories = missing;
    return DiskFiles::makeDirectory(m_directory);
}

Result<> LibraryMove::write(const LibraryState &library)
{
    const auto listing = DirectoryListing::scan(m_directory);
    if (!listing) {
        return Problem{.where = m_directory, .why = tr("the directory cannot be listed")};
    }
    const QStringList names = listing->names();
    m_former = QSet<QString>(names.begin(), names.end());
    m_isBegun = true;
    m_result = LibraryWriter(m_directory, {}).save(library);
    const bool isWhole = m_result.isLibraryFileWritten && m_result.arePatchesWritten;
    return isWhole ? Result<>(Success()) : Problem{.why = m_result.problems.join(u'\n')};
}

Result<> LibraryMove::revertFiles()
{
    if (!m_isBegun) {
        return Success();
    }
    QStringList errors;
    const auto note = [&errors](const Result<> &result) {
        if (!result) {
            errors.append(result.problem().text());
        }
    };
    const LibraryPlace place(m_directory);
    QStringList written = place.list().value_or(DirectoryListing()).names();
    const auto &renamed = m_result.renamed;
    written.removeIf([this, &renamed](const QString &name) {
        const bool isLibrarys = LibraryFileNames::isReserved(name) || LibraryFileNames::patchFileId(name);
        return !isLibrarys || m_former.contains(name)
            || std::any_of(renamed.begin(), renamed.end(), [&name](const auto &file) { return file.to == name; });
    });
    for (const QString &name : std::as_const(written)) {
        note(place.remove(name));
    }
    const QList backwards(renamed.crbegin(), renamed.crend());
    for (const auto &file : backwards) {
        if (place.has(file.from)) {
            note(place.remove(file.from));
        }
        note(place.move(file.to, file.from));
    }
    m_isBegun = false;
    return errors.isEmpty() ? Result<>(Success()) : Problem{.why = errors.join(u'\n')};
}

void LibraryMove::removeDirectories()
{
    for (const QString &directory : std::as_const(m_madeDirectories)) {
        QDir().rmdir(directory);
    }
    m_madeDirectories.clear();
}
