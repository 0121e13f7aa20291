#include "DirectoryListing.h"

#include "LibraryFileNames.h"

#include <QFile>

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

QString textOf(const fs::path &path)
{
#ifdef Q_OS_WIN
    return QString::fromStdWString(path.generic_wstring());
#else
    return QFile::decodeName(path.c_str());
#endif
}

fs::path nativePath(const QString &path)
{
#ifdef Q_OS_WIN
    return path.toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}

DirectoryListing::Kind kindOfEntry(const fs::directory_entry &entry)
{
    std::error_code ignored;
    if (entry.is_symlink(ignored)) {
        return DirectoryListing::Kind::Other;
    }
    if (entry.is_directory(ignored)) {
        return DirectoryListing::Kind::Directory;
    }
    return entry.is_regular_file(ignored) ? DirectoryListing::Kind::RegularFile : DirectoryListing::Kind::Other;
}

} // namespace

std::optional<DirectoryListing> DirectoryListing::scan(const QString &directory)
{
    std::error_code error;
    const fs::path root = nativePath(directory);
    // A directory below may refuse to be listed; this one would only seem to be empty.
    const fs::directory_iterator unlisted(root, error);
    if (error) {
        return std::nullopt;
    }
    fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied, error);
    if (error || !fs::is_directory(root, error)) {
        return std::nullopt;
    }
    const qsizetype rootLength = directory.endsWith(u'/') ? directory.size() : directory.size() + 1;
    DirectoryListing listing;
    while (entry != fs::recursive_directory_iterator()) {
        listing.insert(textOf(entry->path()).sliced(rootLength), kindOfEntry(*entry));
        entry.increment(error);
        if (error) {
            return std::nullopt;
        }
    }
    return listing;
}

std::optional<DirectoryListing::Kind> DirectoryListing::kindOf(const QString &name) const
{
    const auto found = m_kinds.constFind(name);
    return found == m_kinds.cend() ? std::nullopt : std::optional(found.value());
}

void DirectoryListing::added(const QString &name)
{
    if (!m_kinds.contains(name)) {
        insert(name, Kind::RegularFile);
    } else {
        m_kinds[name] = Kind::RegularFile;
    }
}

void DirectoryListing::moved(const QString &from, const QString &to)
{
    for (const quint64 id : LibraryFileNames::idsIn(from)) {
        m_paths[id].removeAll(from);
    }
    const Kind kind = m_kinds.value(from, Kind::RegularFile);
    m_kinds.remove(from);
    insert(to, kind);
}

void DirectoryListing::insert(const QString &path, Kind kind)
{
    if (kind != Kind::Directory) {
        for (const quint64 id : LibraryFileNames::idsIn(path)) {
            m_paths[id].append(path);
        }
    }
    if (!path.contains(u'/')) {
        m_kinds.insert(path, kind);
    }
}
