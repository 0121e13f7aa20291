#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <cstring>

/// A cursor over the bytes of a file. Integers are little-endian.
///
/// Reads must succeed: a caller asks remaining() first, and a read past the end stops the program.
/// The bytes are not copied and have to outlive the cursor.
class ByteReader {
public:
    /// Starts at `offset`; an offset outside of the data leaves nothing to read.
    ByteReader(QByteArrayView data, qint64 offset);

    [[nodiscard]] qint64 remaining() const { return m_rest.size(); }

    quint8 readUInt8();
    quint16 readUInt16();
    quint32 readUInt32();

    /// A copy of the next `count` bytes.
    QByteArray readBytes(qint64 count);

    template <std::size_t Size>
    std::array<char, Size> readArray()
    {
        std::array<char, Size> result{};
        std::memcpy(result.data(), take(static_cast<qint64>(Size)).data(), Size);
        return result;
    }

private:
    QByteArrayView take(qint64 count);

    QByteArrayView m_rest;
};
