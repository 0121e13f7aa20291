#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>

/// Collects the bytes of a file, front to back. Integers are written little-endian.
class ByteWriter {
public:
    /// `sizeHint` is the expected size in bytes; it only saves reallocations.
    explicit ByteWriter(qsizetype sizeHint = 0) { m_bytes.reserve(sizeHint); }

    void writeUInt8(quint8 value);
    void writeUInt16(quint16 value);
    void writeUInt32(quint32 value);
    void writeBytes(QByteArrayView bytes) { m_bytes.append(bytes); }

    template <std::size_t Size>
    void writeArray(const std::array<char, Size> &bytes)
    {
        writeBytes(QByteArrayView(bytes));
    }

    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};
