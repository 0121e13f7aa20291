#pragma once

#include <QByteArray>

#include <array>
#include <optional>

/// One user impulse response of a preset file. A default-made record is the placeholder of a patch without one:
/// nothing of it is ever written.
struct SUserIR {
    static constexpr qint64 sizeFieldEnd = 8; ///< tag and size: the bytes that `size` does not count
    static constexpr qsizetype numberSize = 4; ///< bytes of the user-IR number at the start of `data`

    std::array<char, 4> risu{'R', 'I', 'S', 'U'}; ///< tag, not checked
    quint32 size = 0; ///< bytes of `data`; 0 means that the patch has no user impulse response
    QByteArray data; ///< the number, little-endian, then the impulse response itself
    qint64 length = 0; ///< bytes taken in the file: `size` + 8, or 0 for the placeholder

    /// Reads the block at `dataOffset`. Prints a line and gives nothing when it is longer than what remains.
    [[nodiscard]] static std::optional<SUserIR> fromData(const QByteArray &data, qint64 dataOffset);

    /// The user-IR number; 0 when there are fewer than 4 bytes of data.
    [[nodiscard]] quint32 getFirstUInt32() const;

    /// Content hash; the number, which changes on export, does not count. 0 for the placeholder.
    [[nodiscard]] quint64 simpleHash() const;

    bool operator==(const SUserIR &) const = default;
};
