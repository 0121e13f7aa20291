#include "LibraryFileWriter.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "DiskSync.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"

#include <QDateTime>
#include <QDir>

#include <algorithm>
#include <utility>

LibraryFileWriter::LibraryFileWriter(const QString &directory, LibraryWriteResult &result)
    : m_directory(directory)
    , m_result(result)
{
}

// What a crash leaves at each step: before the copy is complete, the old library file; from then on the copy, which
// loading uses while the library file does not decode; after the rewriting, the new library file.
void LibraryFileWriter::write(const QByteArray &text)
{
    const QString path = pathOf(LibraryFileNames::libraryFile());
    const QString copy = pathOf(LibraryFileNames::libraryCopy());
    noteForeignChange();
    if (!keepOldFiles()) {
        fail(LibraryFileNames::libraryFile(), tr("it is not replaced, because the old one could not be kept"));
        return;
    }
    QString error = DiskFiles::replace(copy, text);
    if (!error.isEmpty()) {
        fail(LibraryFileNames::libraryCopy(), error);
        return;
    }
    const bool isNew = existence(path) == FileExistence::none;
    bool wasTouched = false;
    std::optional<FileContentStamp> stamp;
    error = DiskFiles::overwriteInPlace(path, text, wasTouched, &stamp);
    if (error.isEmpty() && isNew) {
        // The copy must not go before the new name is on the disk.
        error = DiskSync::syncDirectory(m_directory);
    }
    if (!error.isEmpty()) {
        fail(LibraryFileNames::libraryFile(), error);
    }
    m_result.isLibraryFileWritten = error.isEmpty();
    if (error.isEmpty() || !wasTouched) {
        std::ignore = DiskFiles::remove(copy);
    }
    if (wasTouched) {
        m_result.state.libraryFile = stamp;
    }
}

void LibraryFileWriter::noteForeignChange()
{
    const QString name = LibraryFileNames::libraryFile();
    const auto &seen = m_result.state.libraryFile;
    const bool isThere = existence(pathOf(name)) == FileExistence::file;
    if (!isThere || m_result.state.filesToKeep.contains(name) || (seen && !seen->looksChanged(pathOf(name)))) {
        return;
    }
    const FileReadResult file = DiskFiles::readRegular(pathOf(name), DiskFiles::Links::Refuse);
    if (file.bytes && (file.bytes->isEmpty() || (seen && seen->isOf(*file.bytes)))) {
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
    const QString path = pathOf(name);
    if (existence(path) == FileExistence::none) {
        return true;
    }
    const FileReadResult old = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    if (!old.bytes) {
        m_result.problems.append(tr("%1: %2").arg(path, old.error));
        return false;
    }
    int attempt = 0;
    QString kept = pathOf(LibraryFileNames::datedCopy(attempt));
    while (existence(kept) != FileExistence::none) {
        kept = pathOf(LibraryFileNames::datedCopy(++attempt));
    }
    const QString error = DiskFiles::replace(kept, *old.bytes);
    if (!error.isEmpty()) {
        m_result.problems.append(tr("%1: %2").arg(kept, error));
        return false;
    }
    m_result.keptFiles.append(kept);
    return true;
}

void LibraryFileWriter::pruneKeptFiles()
{
    QStringList kept = QDir(m_directory).entryList(QDir::Files, QDir::Name);
    kept.removeIf([](const QString &name) { return !LibraryFileNames::isDatedCopy(name); });
    qsizetype spare = kept.size() - keptFileLimit;
    // What was kept just now stays, even if the clock went back and its name says that it is the oldest.
    kept.removeIf([this](const QString &name) { return m_result.keptFiles.contains(pathOf(name)); });
    const QDateTime latest = QDateTime::currentDateTimeUtc().addDuration(-keptFileAge);
    for (auto name = kept.cbegin(); name != kept.cend() && spare > 0; ++name) {
        const QDateTime keptAt = LibraryFileNames::dateOfCopy(*name);
        if (keptAt.isValid() && keptAt < latest) {
            std::ignore = DiskFiles::remove(pathOf(*name));
            --spare;
        }
    }
}

void LibraryFileWriter::fail(const QString &name, const QString &reason)
{
    Diagnostics::printLine(QStringLiteral("cannot encode library"));
    m_result.problems.append(tr("%1: %2").arg(pathOf(name), reason));
}

QString LibraryFileWriter::pathOf(const QString &name) const
{
    return m_directory + u'/' + name;
}
