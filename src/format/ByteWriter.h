#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>

/// Collects the bytes of a file, front to back. Integers are written little-endian.
class ByteWriter {
public:
    /// `sizeHint` is the expected size in bytes; it only saves reallocations.
    explicit ByteWriter(qsizetype sizeHint = 0)
        : m_bytes(sizeHint, Qt::Uninitialized)
    {
    }

    void writeUInt8(quint8 value);
    void writeUInt16(quint16 value);
    void writeUInt32(quint32 value);
    void writeBytes(QByteArrayView bytes);

    template <std::size_t Size>
    void writeArray(const std::array<char, Size> &bytes)
    {
        writeBytes(QByteArrayView(bytes));
    }

    /// What was written so far; valid until more is.
    [[nodiscard]] QByteArrayView written() const { return QByteArrayView(m_bytes).first(m_size); }
    /// Everything that was written so far; the writer is empty then.
    [[nodiscard]] QByteArray take();

private:
    /// Where the next `count` bytes go.
    [[nodiscard]] char *room(qsizetype count);

    QByteArray m_bytes; ///< room at its end included
    qsizetype m_size = 0;
};
