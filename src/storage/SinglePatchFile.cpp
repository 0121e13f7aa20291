#include "SinglePatchFile.h"

#include "Diagnostics.h"
#include "DiskFiles.h"
#include "SPresetFile.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(SinglePatchFile)
};

} // namespace

SinglePatchFile::Result SinglePatchFile::read(const QString &path)
{
    Result result;
    const FileReadResult file = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    const QFileInfo info(path);
    result.isThere = file.bytes || file.isUnreadable || info.exists() || info.isSymLink();
    if (!file.bytes) {
        result.reason = file.error;
        return result;
    }
    const std::optional<SPresetFile> presets = SPresetFile::fromData(*file.bytes);
    if (!presets) {
        result.reason = Diagnostics::lastLine();
    } else if (presets->patches.size() != 1) {
        result.reason = Texts::tr("a list of %1 patches").arg(presets->patches.size());
    } else {
        result.patch = VelgorPatch(presets->patches.first(), presets->userIRs.first(), presets->headerDesc);
    }
    return result;
}
