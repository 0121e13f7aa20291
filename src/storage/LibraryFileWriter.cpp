#include "LibraryFileWriter.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "FaultPoint.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"

#include <QDateTime>
#include <QDir>

#include <algorithm>
#include <utility>

LibraryFileWriter::LibraryFileWriter(const LibraryPlace &place, LibraryWriteResult &result)
    : m_place(place)
    , m_result(result)
{
}

bool LibraryFileWriter::writeCopy(const QByteArray &text)
{
    noteForeignChange();
    if (!keepOldFiles()) {
        fail({.where = m_place.pathOf(LibraryFileNames::libraryFile()),
            .why = tr("it is not replaced, because the old one could not be kept")});
        return false;
    }
    const Result<> written = FaultPoint::isSet("library-file-without-copy")
        ? Success()
        : DiskFiles::replace(m_place.pathOf(LibraryFileNames::libraryCopy()), text);
    if (!written) {
        fail(written.problem());
    }
    return bool(written);
}

void LibraryFileWriter::writeFile(const QByteArray &text)
{
    const QString path = m_place.pathOf(LibraryFileNames::libraryFile());
    const bool isNew = existence(path) == FileExistence::none;
    const Result<FileContentStamp> written = DiskFiles::overwriteInPlace(path, text);
    // The copy must not go before the new name is on the disk.
    const Result<> synced = written && isNew ? DiskSync::syncDirectory(m_place.path()) : Success();
    m_result.isLibraryFileWritten = written && synced;
    const bool wasTouched = written || written.problem().what == Problem::What::Touched;
    if (written) {
        m_result.state.libraryFile = *written;
    } else if (wasTouched) {
        // Its bytes are of no use; only another program's change of them would be one.
        m_result.state.libraryFile = FileContentStamp::of(path).value_or(FileContentStamp());
        m_result.state.libraryFile->setBytes({});
    }
    if (!m_result.isLibraryFileWritten) {
        fail((written ? synced.problem() : written.problem()).in(path));
    }
    if (m_result.isLibraryFileWritten || !wasTouched) {
        std::ignore = m_place.remove(LibraryFileNames::libraryCopy());
    }
}

void LibraryFileWriter::noteForeignChange()
{
    const QString name = LibraryFileNames::libraryFile();
    const auto &seen = m_result.state.libraryFile;
    const bool isToBeKept = m_result.state.filesToKeep.contains(name);
    if (!m_place.has(name) || isToBeKept || (seen && !seen->looksChanged(m_place.pathOf(name)))) {
        return;
    }
    const Result<QByteArray> file = m_place.read(name);
    if (file && (file->isEmpty() || (seen && seen->isOf(*file)))) {
        return;
    }
    m_result.state.filesToKeep.append(name);
    m_result.state.isForeignChangeToKeep = true;
}

bool LibraryFileWriter::keepOldFiles()
{
    const QStringList files = m_result.state.filesToKeep;
    for (const QString &name : files) {
        if (!keepOldFile(name)) {
            return false;
        }
        m_result.state.filesToKeep.removeOne(name);
    }
    m_result.wasChangedByOthers = std::exchange(m_result.state.isForeignChangeToKeep, false);
    if (!files.isEmpty()) {
        pruneKeptFiles();
    }
    return true;
}

bool LibraryFileWriter::keepOldFile(const QString &name)
{
    if (existence(m_place.pathOf(name)) == FileExistence::none) {
        return true;
    }
    int attempt = 0;
    QString kept = m_place.pathOf(LibraryFileNames::datedCopy(attempt));
    while (existence(kept) != FileExistence::none) {
        kept = m_place.pathOf(LibraryFileNames::datedCopy(++attempt));
    }
    const Result<QByteArray> old = m_place.read(name);
    const Result<> written = old ? DiskFiles::replace(kept, *old) : old.problem();
    if (!written) {
        m_result.problems.append(written.problem().text());
        return false;
    }
    m_result.keptFiles.append(kept);
    return true;
}

void LibraryFileWriter::pruneKeptFiles()
{
    QStringList kept = QDir(m_place.path()).entryList(QDir::Files, QDir::Name);
    kept.removeIf([](const QString &name) { return !LibraryFileNames::isDatedCopy(name); });
    qsizetype spare = kept.size() - keptFileLimit;
    // What was kept just now stays, even if the clock went back and its name says that it is the oldest.
    kept.removeIf([this](const QString &name) { return m_result.keptFiles.contains(m_place.pathOf(name)); });
    const QDateTime latest = QDateTime::currentDateTimeUtc().addDuration(-keptFileAge);
    for (auto name = kept.cbegin(); name != kept.cend() && spare > 0; ++name) {
        const QDateTime keptAt = LibraryFileNames::dateOfCopy(*name);
        if (keptAt.isValid() && keptAt < latest) {
            std::ignore = m_place.remove(*name);
            --spare;
        }
    }
}

void LibraryFileWriter::fail(const Problem &problem)
{
    Diagnostics::printLine(QStringLiteral("cannot encode library"));
    m_result.problems.append(problem.text());
}
