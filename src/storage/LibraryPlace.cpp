#include "LibraryPlace.h"

#include "Diagnostics.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
#include "SinglePatchFile.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace {

bool isSomethingAt(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

Result<> testWrite(const QString &directory)
{
    const QString path = LibraryFileNames::writeTestFile(directory);
    const Result<QByteArray> there = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    if (there && !LibraryFileNames::writeTestText().startsWith(*there)) {
        // Somebody else's; that the directory could be made says enough.
        return Success();
    }
    const auto written = DiskFiles::overwriteInPlace(path, LibraryFileNames::writeTestText());
    return written ? DiskFiles::remove(path) : written.problem();
}

} // namespace

bool LibraryPlace::holdsLibrary(const QString &directory)
{
    const QStringList files{
        LibraryFileNames::libraryFile(), LibraryFileNames::libraryCopy(), LibraryFileNames::journalFile()};
    return std::any_of(files.begin(), files.end(),
        [&directory](const QString &file) { return isSomethingAt(directory + u'/' + file); });
}

bool LibraryPlace::isListable(const QString &directory)
{
    return QUrl::fromLocalFile(directory).path(QUrl::FullyEncoded) == directory;
}

Result<> LibraryPlace::make(const QString &directory)
{
    if (existence(directory) == FileExistence::directory) {
        return Success();
    }
    Result<> made = DiskFiles::makeDirectory(directory);
    if (made) {
        return testWrite(directory);
    }
    Diagnostics::printLine(QStringLiteral("Cannot create library directory"));
    return made;
}

LibraryPlace::LibraryPlace(const QString &directory)
    : m_path(directory)
    , m_directory(directory)
{
}

bool LibraryPlace::has(const QString &name) const
{
    return existence(pathOf(name)) == FileExistence::file;
}

Result<QByteArray> LibraryPlace::read(const QString &name) const
{
    return DiskFiles::readRegular(pathOf(name), DiskFiles::Links::Refuse);
}

Result<DiskFiles::ReadFile> LibraryPlace::readPatchFile(const QString &name, QByteArray room) const
{
    auto file = DiskFiles::readRegular(m_directory, name, DiskFiles::Links::Refuse, std::move(room));
    if (file || m_directory.isInPlace()) {
        return file;
    }
    // Another directory stands under the path by now, and the file may be in that one.
    return DiskFiles::readRegular({}, pathOf(name), DiskFiles::Links::Refuse);
}

Result<VelgorPatch> LibraryPlace::patch(const QString &name) const
{
    const Result<QByteArray> bytes = read(name);
    const Result<SPresetFile> file = bytes ? SinglePatchFile::decode(*bytes) : bytes.problem();
    return file ? Result<VelgorPatch>(SinglePatchFile::patchIn(*file)) : file.problem();
}

std::optional<LibraryJournal> LibraryPlace::journal() const
{
    const Result<QByteArray> text = read(LibraryFileNames::journalFile());
    return text ? LibraryJournal::decode(*text) : std::nullopt;
}

void LibraryPlace::settleOrphanedJournal() const
{
    const auto staged = journal().value_or(LibraryJournal()).staged;
    for (auto file = staged.cbegin(); file != staged.cend(); ++file) {
        if (const Result<VelgorPatch> found = patch(file.value())) {
            std::ignore = move(file.value(), LibraryFileNames::patchFile(found->name, file.key()));
        }
    }
    if (read(LibraryFileNames::journalFile())) {
        std::ignore = remove(LibraryFileNames::journalFile());
    }
}

Result<> LibraryPlace::remove(const QString &name) const
{
    return DiskFiles::remove(pathOf(name));
}

Result<> LibraryPlace::move(const QString &from, const QString &to) const
{
    return DiskFiles::move(pathOf(from), pathOf(to));
}

Result<QString> LibraryPlace::setAside(const QString &name, quint64 patchID) const
{
    int attempt = 0;
    QString aside = LibraryFileNames::damagedFile(patchID, attempt);
    while (isSomethingAt(pathOf(aside))) {
        aside = LibraryFileNames::damagedFile(patchID, ++attempt);
    }
    const Result<> moved = move(name, aside);
    return moved ? Result<QString>(aside) : moved.problem();
}
