#include "SinglePatchFile.h"

#include "PatchFileHandler.h"

#include <QCoreApplication>

#include <utility>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(SinglePatchFile)
};

} // namespace

Result<SPresetFile> SinglePatchFile::decode(const QByteArray &bytes)
{
    Result<SPresetFile> file = SPresetFile::fromData(bytes);
    if (file && file->patches.size() != 1) {
        return Problem{.why = Texts::tr("a list of %1 patches").arg(file->patches.size())};
    }
    return file;
}

PresetRecords SinglePatchFile::recordsIn(SPresetFile file)
{
    return {std::move(file.patches.first()), std::move(file.userIRs.first()), file.headerDesc};
}

VelgorPatch SinglePatchFile::patchIn(const SPresetFile &file)
{
    return {file.patches.first(), file.userIRs.first(), file.headerDesc};
}

bool SinglePatchFile::holds(const QByteArray &bytes, const VelgorPatch &patch)
{
    const Result<QByteArray> expected = PatchFileHandler::storedBytes(patch);
    if (!expected || bytes == *expected) {
        return bool(expected);
    }
    // Another writer may have numbered it otherwise.
    const Result<SPresetFile> file = decode(bytes);
    const Result<QByteArray> written = file ? PatchFileHandler::storedBytes(patchIn(*file)) : file.problem();
    return written && *written == *expected;
}
