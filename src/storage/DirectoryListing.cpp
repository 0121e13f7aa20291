#include "DirectoryListing.h"

#include "LibraryFileNames.h"

#include <utility>

std::optional<DirectoryListing> DirectoryListing::scan(const QString &directory)
{
    DirectoryListing listing;
    const bool isComplete = DirectoryWalk::visit(
        directory, [&listing](const DirectoryWalk::Entry &entry) { listing.insert(entry.path, entry.kind); });
    return isComplete ? std::optional(std::move(listing)) : std::nullopt;
}

QStringList DirectoryListing::pathsFor(quint64 id) const
{
    const auto paths = m_paths.constFind(id);
    return paths == m_paths.cend() ? QStringList() : QStringList(paths->first) + paths->others;
}

bool DirectoryListing::hasOnly(quint64 id, const QString &name) const
{
    const auto paths = m_paths.constFind(id);
    return paths != m_paths.cend() && paths->others.isEmpty() && paths->firstKind == Kind::RegularFile
        && paths->first == name;
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
        QStringList left = pathsFor(id);
        left.removeAll(from);
        m_paths.remove(id);
        for (const QString &path : std::as_const(left)) {
            add(id, path, kindOf(path).value_or(Kind::Other));
        }
    }
    const Kind kind = m_kinds.value(from, Kind::RegularFile);
    m_kinds.remove(from);
    insert(to, kind);
}

void DirectoryListing::insert(const QString &path, Kind kind)
{
    if (kind != Kind::Directory) {
        for (const quint64 id : LibraryFileNames::idsIn(path)) {
            add(id, path, kind);
        }
    }
    if (!path.contains(u'/')) {
        m_kinds.insert(path, kind);
    }
}

void DirectoryListing::add(quint64 id, const QString &path, Kind kind)
{
    Paths &paths = m_paths[id];
    if (paths.first.isEmpty()) {
        paths.first = path;
        paths.firstKind = kind;
    } else {
        paths.others.append(path);
    }
}
