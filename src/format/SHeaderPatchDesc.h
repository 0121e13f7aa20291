#pragma once

#include <QByteArray>

#include <optional>

/// Where a patch stands in a preset file, and how long it is.
struct SHeaderPatchDesc {
    static constexpr qint64 encodedLength = 8;

    quint32 offset = 0; ///< of the patch block, from the first byte of the file
    quint32 size = 0; ///< bytes of the patch block and, if the patch has one, its user-IR block
    qint64 length = encodedLength; ///< bytes taken in the file

    /// Reads the descriptor at `dataOffset`. Prints a line and gives nothing when fewer than 8 bytes remain there.
    [[nodiscard]] static std::optional<SHeaderPatchDesc> fromData(const QByteArray &data, qint64 dataOffset);

    bool operator==(const SHeaderPatchDesc &) const = default;
};
