#pragma once

#include <QString>

#include <functional>

/// Walks through a directory and everything below it, without following links.
namespace DirectoryWalk {

enum class Kind { RegularFile, Directory, Other };

struct Entry {
    QString path; ///< relative to the directory
    Kind kind = Kind::Other;
    bool isListed = true; ///< false for a directory that may not be listed
    /// False when a name in the path is not valid UTF-8. The path can be shown then, but leads nowhere.
    bool isUtf8 = true;
};

using Visit = std::function<void(const Entry &entry)>;

/// Shows each entry, a directory before what is in it. What may not be listed below the directory counts as empty.
/// False when the directory is none or may not be listed itself, or something failed.
[[nodiscard]] bool visit(const QString &directory, const Visit &visit);

} // namespace DirectoryWalk
