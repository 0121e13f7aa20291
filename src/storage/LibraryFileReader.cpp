#include "LibraryFileReader.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "FileContentStamp.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "LibraryLoadResult.h"

#include <QFileInfo>

std::optional<LibraryState> LibraryFileReader::read(LibraryLoadResult &result) const
{
    const QString path = pathOf(LibraryFileNames::libraryFile());
    const QString copyPath = pathOf(LibraryFileNames::libraryCopy());
    FileReadResult file;
    const auto decode = [&](const QString &source) {
        // Taken before the bytes: what changes from here on then looks changed.
        std::optional<FileContentStamp> stamp = FileContentStamp::of(source);
        file = DiskFiles::readRegular(source, DiskFiles::Links::Refuse);
        if (source == path && file.bytes && stamp) {
            stamp->setBytes(*file.bytes);
            result.writeState.libraryFile = stamp;
        }
        return file.bytes ? LibraryJson::decode(*file.bytes) : std::nullopt;
    };
    std::optional<LibraryState> content = decode(path);
    result.leftovers.isCopySpare = content.has_value();
    if (content) {
        return content;
    }
    const FileReadResult damaged = file;
    content = decode(copyPath);
    const FileReadResult copy = file;
    if (!content) {
        // Another program may just have finished writing the file, and have removed the copy with that.
        content = decode(path);
        result.leftovers.isCopySpare = content.has_value();
    }
    if (result.leftovers.isCopySpare) {
        return content;
    }
    const bool isThere = QFileInfo::exists(path) || QFileInfo(path).isSymLink();
    // A library file that is the beginning of its copy was cut while it was written, and holds nothing of its own.
    const bool isCut = content && (!isThere || (damaged.bytes && copy.bytes->startsWith(*damaged.bytes)));
    if (isCut) {
        result.leftovers.completeText = *copy.bytes;
    } else if (isThere) {
        result.writeState.filesToKeep.append(LibraryFileNames::libraryFile());
    }
    if (content) {
        Diagnostics::printLine(tr("The library file was not complete; its copy %1 is used").arg(copyPath));
        return content;
    }
    noteWithoutContent(file, isThere, result);
    return std::nullopt;
}

void LibraryFileReader::noteWithoutContent(const FileReadResult &file, bool isThere, LibraryLoadResult &result) const
{
    if (existence(pathOf(LibraryFileNames::libraryCopy())) == FileExistence::file) {
        result.writeState.filesToKeep.append(LibraryFileNames::libraryCopy());
    }
    const QString path = pathOf(LibraryFileNames::libraryFile());
    if (file.bytes) {
        Diagnostics::printLine(QStringLiteral("Cannot decode library"));
        result.readError = true;
        result.problem = tr("%1: not a complete library file").arg(path);
    } else {
        Diagnostics::printLine(QStringLiteral("New library"));
        const bool isHidden = isThere || !QFileInfo(m_directory).isExecutable();
        result.problem = isHidden ? tr("%1: %2").arg(path, file.error) : QString();
    }
}

QString LibraryFileReader::pathOf(const QString &name) const
{
    return m_directory + u'/' + name;
}
