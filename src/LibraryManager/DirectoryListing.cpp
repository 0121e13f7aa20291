#include "DirectoryListing.h"

#include "DirectoryWalk.h"
#include "LibraryFileNames.h"

std::optional<DirectoryListing> DirectoryListing::scan(const QString &directory)
{
    DirectoryListing listing;
    const bool isComplete =
        DirectoryWalk::visit(directory, [&listing](const QString &path, Kind kind) { listing.insert(path, kind); });
    return isComplete ? std::optional(std::move(listing)) : std::nullopt;
}

bool DirectoryListing::hasOnly(quint64 id, const QString &name) const
{
    const auto paths = m_paths.constFind(id);
    return paths != m_paths.cend() && paths->size() == 1 && paths->first() == name
        && m_kinds.value(name, Kind::Other) == Kind::RegularFile;
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
