// How a preset file becomes the list.

#include "VelgorContent.h"

#include "PatchFileHandler.h"

Result<QString> VelgorContent::openPresetFile(PatchFileHandler &files)
{
    Result<QString> path = files.askForFile();
    return path ? openPresetFile(files, *path) : path;
}

Result<QString> VelgorContent::openPresetFile(PatchFileHandler &files, const QString &filename)
{
    const Result<SPresetFile> presets = files.read(filename);
    if (presets) {
        populate(*presets);
    }
    setOpenError(!presets);
    return presets ? Result<QString>(filename) : presets.problem();
}
