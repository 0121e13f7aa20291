#pragma once

#include "DirectoryListing.h"

#include <QString>

#include <functional>

/// Walks through a directory and everything below it, without following links.
namespace DirectoryWalk {

using Visit = std::function<void(const QString &path, DirectoryListing::Kind kind)>;

/// Shows each entry with its path relative to the directory, a directory before what is in it. What may not be listed
/// below it counts as empty. False when the directory is none or may not be listed itself, or something failed.
[[nodiscard]] bool visit(const QString &directory, const Visit &visit);

} // namespace DirectoryWalk
