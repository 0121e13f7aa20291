#pragma once

#include "SPresetFile.h"

#include <QByteArray>
#include <QByteArrayView>

/// Turns preset records into the bytes of a file that the unit's editor loads.
class PatchWriter {
public:
    /// The file's bytes, with positions and user-IR numbers renumbered from 0 and a fresh checksum. Names are
    /// written as they are: the caller passes names that fit their 16-byte field.
    /// Prints the reason too when the lists differ in length or are empty, or the header's size is below 12. More than
    /// 65,535 patches stop the program.
    [[nodiscard]] static Result<QByteArray> encodePatches(const SPresetFile &presets);

    /// The checksum of everything before it: the sum of the bytes, one byte wide, with its low nibble in the high
    /// byte and its high nibble in the low byte. The unit's editor expects this split.
    [[nodiscard]] static quint16 calcChecksum(QByteArrayView data);
    /// The one that `data`, the bytes from which `file` was read, should have: over all up to the tail byte.
    [[nodiscard]] static quint16 checksumOf(const SPresetFile &file, QByteArrayView data);
};
