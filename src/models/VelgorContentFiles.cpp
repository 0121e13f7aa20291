// How a preset file becomes the list.

#include "VelgorContent.h"

#include "PatchFileHandler.h"

void VelgorContent::openPresetFile(PatchFileHandler &files)
{
    take(files.open(*this), files);
}

void VelgorContent::openPresetFile(PatchFileHandler &files, const QString &filename)
{
    take(files.read(filename), files);
}

void VelgorContent::take(const std::optional<SPresetFile> &presets, const PatchFileHandler &files)
{
    if (presets) {
        populate(*presets);
        setOpenError(false);
    } else if (!files.wasCancelled()) {
        setOpenError(true);
    }
}
