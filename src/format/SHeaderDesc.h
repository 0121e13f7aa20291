#pragma once

#include <QByteArray>

#include <array>
#include <optional>

/// The header of a preset file. Opaque fields are kept as read and written back unchanged.
struct SHeaderDesc {
    static constexpr qint64 encodedLength = 32;
    static constexpr qint64 uncountedSize = 8; ///< tag and size: the bytes that `size` does not count

    std::array<char, 4> tsrp{}; ///< tag, not checked
    quint32 size = 0; ///< bytes from offset 8 to the end of the last patch's blocks
    std::array<char, 5> pm0{}; ///< firmware version text
    quint8 sep = 0;
    quint16 nbpatches = 0;
    std::array<char, 16> filler{};
    qint64 length = encodedLength; ///< bytes taken in the file
    quint8 tailBit = 0xFF; ///< copy of the file's tail byte; 0xFF until the tail is known

    /// Reads the header at `dataOffset`. Prints a line and gives nothing when fewer than 32 bytes remain there.
    [[nodiscard]] static std::optional<SHeaderDesc> fromData(const QByteArray &data, qint64 dataOffset);

    bool operator==(const SHeaderDesc &) const = default;
};
