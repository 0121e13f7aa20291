#pragma once

#include "DirectoryListing.h"
#include "VelgorPatch.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

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

/// True when `bytes` are a preset file of just this patch: loading them gives the patch to the last byte that an
/// export writes.
[[nodiscard]] bool holdsPatch(const QByteArray &bytes, const VelgorPatch &patch);

} // namespace PatchFileMatcher
