#include "LibraryFileReader.h"

#include "Diagnostics.h"
#include "FaultPoint.h"
#include "FileStamp.h"
#include "LibraryFileNames.h"
#include "LibraryLoadResult.h"
#include "LibraryPlace.h"

#include <QFileInfo>

std::optional<LibraryState> LibraryFileReader::read(LibraryLoadResult &result) const
{
    const QString name = LibraryFileNames::libraryFile();
    Result<QByteArray> file = Problem{.what = Problem::What::Absent};
    const auto decode = [&](const QString &source) {
        // Taken before the bytes: what changes from here on then looks changed.
        std::optional<FileContentStamp> stamp = FileContentStamp::of(m_place.pathOf(source));
        file = m_place.read(source);
        if (source == name && file && stamp) {
            stamp->setBytes(*file);
            result.writeState.libraryFile = stamp;
        }
        return file ? LibraryJson::decode(*file) : std::nullopt;
    };
    std::optional<LibraryState> content = decode(name);
    result.leftovers.isCopySpare = content.has_value();
    if (content) {
        return content;
    }
    const Result<QByteArray> damaged = file;
    content = decode(LibraryFileNames::libraryCopy());
    const Result<QByteArray> copy = file;
    if (!content) {
        // Another program may just have finished writing the file, and have removed the copy with that.
        content = decode(name);
        result.leftovers.isCopySpare = content.has_value();
    }
    if (result.leftovers.isCopySpare) {
        return content;
    }
    const QFileInfo info(m_place.pathOf(name));
    const bool isThere = info.exists() || info.isSymLink();
    // A library file that is the beginning of its copy was cut while it was written, and holds nothing of its own.
    const bool isCut = content && (!isThere || (damaged && copy->startsWith(*damaged)));
    if (isCut) {
        result.leftovers.completeText = *copy;
    } else if (isThere && !FaultPoint::isSet("refused-file-overwritten")) {
        result.writeState.filesToKeep.append(name);
    }
    if (content) {
        Diagnostics::printLine(tr("The library file was not complete; its copy %1 is used")
                                   .arg(m_place.pathOf(LibraryFileNames::libraryCopy())));
        return content;
    }
    noteWithoutContent(file, isThere, result);
    return std::nullopt;
}

void LibraryFileReader::noteWithoutContent(
    const Result<QByteArray> &file, bool isThere, LibraryLoadResult &result) const
{
    if (m_place.has(LibraryFileNames::libraryCopy())) {
        result.writeState.filesToKeep.append(LibraryFileNames::libraryCopy());
    }
    if (file) {
        Diagnostics::printLine(QStringLiteral("Cannot decode library"));
        result.readError = true;
        result.problem = Problem{.what = Problem::What::Malformed,
            .where = m_place.pathOf(LibraryFileNames::libraryFile()),
            .why = tr("not a complete library file")};
    } else {
        Diagnostics::printLine(QStringLiteral("New library"));
        const bool isHidden = isThere || !QFileInfo(m_place.path()).isExecutable();
        result.problem = isHidden ? std::optional(file.problem()) : std::nullopt;
    }
}
