#include "ByteWriter.h"

#include <QtEndian>

#include <array>
#include <cstring>

namespace {

template <typename Integer>
void append(QByteArray &bytes, Integer value)
{
    const Integer littleEndian = qToLittleEndian(value);
    std::array<char, sizeof(Integer)> taken{};
    std::memcpy(taken.data(), &littleEndian, sizeof(Integer));
    bytes.append(QByteArrayView(taken));
}

} // namespace

void ByteWriter::writeUInt8(quint8 value)
{
    m_bytes.append(static_cast<char>(value));
}

void ByteWriter::writeUInt16(quint16 value)
{
    append(m_bytes, value);
}

void ByteWriter::writeUInt32(quint32 value)
{
    append(m_bytes, value);
}
