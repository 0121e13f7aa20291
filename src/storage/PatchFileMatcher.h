#pragma once

#include "DirectoryListing.h"

#include <QList>
#include <QString>

/// Decides which files of a library directory count as a patch's own.
namespace PatchFileMatcher {

/// A file that carries a patch's id.
struct Candidate {
    QString path; ///< relative to the library directory
    QString name; ///< last part of the path; the file is looked for under it directly in the directory
    bool isNamedForPatch; ///< named as the store names this patch's file, under whatever patch name
};

/// The files of this id, those named for the patch first. Left out are directories, the library's own files, and
/// files named for another patch, which may hold this number by chance.
[[nodiscard]] QList<Candidate> candidates(const DirectoryListing &listing, quint64 id);

} // namespace PatchFileMatcher
