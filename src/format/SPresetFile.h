#pragma once

#include "PresetRecords.h"
#include "Result.h"
#include "SHeaderDesc.h"
#include "SHeaderPatchDesc.h"
#include "SPatch.h"
#include "SUserIR.h"

#include <QByteArray>
#include <QList>

/// A whole preset file: the three lists have one entry a patch, in file order.
struct SPresetFile {
    static constexpr qint64 tailLength = 3;

    SHeaderDesc headerDesc;
    QList<SHeaderPatchDesc> headerPatchDescs;
    QList<SPatch> patches;
    QList<SUserIR> userIRs; ///< the placeholder for a patch without a user impulse response
    quint8 tailBit = 0;
    quint16 checksum = 0; ///< as found in the file and not verified; 0 in a file assembled for export
    qint64 length = tailLength;

    /// Reads a file's bytes. Blocks are read back to back; tags, descriptor offsets, the header's size and the
    /// checksum are not checked, and bytes after the tail are ignored. Prints the reason too when the file is
    /// malformed.
    [[nodiscard]] static Result<SPresetFile> fromData(const QByteArray &data);

    /// Assembles a file for export: descriptors and header size are computed, the checksum is left to the writer.
    /// Prints the reason too when there are no patches or not one user IR for each. A file whose sizes do not fit 32
    /// bits stops the program.
    [[nodiscard]] static Result<SPresetFile> fromRecords(
        const SHeaderDesc &headerDesc, QList<SPatch> patches, QList<SUserIR> userIRs);

    bool operator==(const SPresetFile &) const = default;

private:
    bool tailFromData(const QByteArray &data, qint64 dataOffset);
};
