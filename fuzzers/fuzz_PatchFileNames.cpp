#include "Diagnostics.h"
#include "LibraryFileNames.h"
#include "PatchFileMatcher.h"

#include <QFile>

#include <cstdint>
#include <cstring>

namespace {

void require(bool condition, const char *what)
{
    if (!condition) {
        Diagnostics::fatalStop(what);
    }
}

/// The file of a patch of any name is one that a directory takes and that is found again.
void requireOwnFile(const QString &patchName, quint64 id)
{
    const QString name = LibraryFileNames::patchFile(patchName, id);
    const QByteArray encoded = QFile::encodeName(name);
    require(!encoded.contains('/') && !encoded.contains('\0'), "the name of a patch file leads elsewhere");
    require(encoded.size() <= 255, "the name of a patch file is too long");
    require(!LibraryFileNames::isReserved(name), "a patch has a file of the library as a whole");
    require(LibraryFileNames::patchFileId(name) == id, "the name of a patch file does not tell its id");

    DirectoryListing listing;
    listing.added(name);
    const auto found = PatchFileMatcher::candidates(listing, id);
    require(found.size() == 1 && found.first().isNamedForPatch, "a patch does not find its file");
}

/// Of whatever stands in a directory, a patch takes nothing that is the library's or another patch's.
void requireNoOther(const QStringList &names)
{
    DirectoryListing listing;
    for (const QString &name : names) {
        listing.added(name);
    }
    for (const QString &name : names) {
        for (const quint64 id : LibraryFileNames::idsIn(name)) {
            for (const auto &candidate : PatchFileMatcher::candidates(listing, id)) {
                require(!LibraryFileNames::isReserved(candidate.name), "a patch takes a file of the library");
                require(
                    LibraryFileNames::patchFileId(candidate.name).value_or(id) == id, "a patch takes another's file");
                require(candidate.name.contains(u'.' + QString::number(id) + u'.'), "a patch takes any file");
            }
        }
    }
}

} // namespace

/// The first eight bytes are an id; what follows is a patch's name in UTF-16, and the names of a directory's files.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Every pair of names is looked at.
    constexpr std::size_t largest = 1024;
    quint64 id = 0;
    if (size < sizeof(id) || size > largest) {
        return 0;
    }
    std::memcpy(&id, data, sizeof(id));
    const QByteArray rest(reinterpret_cast<const char *>(data) + sizeof(id), static_cast<qsizetype>(size - sizeof(id)));
    QString name(rest.size() / 2, Qt::Uninitialized);
    std::memcpy(name.data(), rest.constData(), static_cast<std::size_t>(name.size()) * sizeof(QChar));
    // Names are whole characters: no library file nor preset file gives half of a surrogate pair.
    requireOwnFile(QString::fromUtf8(name.toUtf8()), id);
    requireOwnFile(QString::fromUtf8(rest), id);

    QStringList names;
    for (const QByteArray &line : rest.split('\n')) {
        const QString text = QString::fromUtf8(line);
        if (!text.isEmpty() && !text.contains(u'/') && !text.contains(QChar(u'\0'))) {
            names.append(text);
        }
    }
    requireNoOther(names);
    return 0;
}
