#include "ByteWriter.h"

#include <QtEndian>

namespace {

template <typename Integer>
QByteArray littleEndian(Integer value)
{
    QByteArray bytes(static_cast<qsizetype>(sizeof(Integer)), Qt::Uninitialized);
    qToLittleEndian(value, bytes.data());
    return bytes;
}

} // namespace

void ByteWriter::writeUInt8(quint8 value)
{
    m_bytes.append(static_cast<char>(value));
}

void ByteWriter::writeUInt16(quint16 value)
{
    m_bytes.append(littleEndian(value));
}

void ByteWriter::writeUInt32(quint32 value)
{
    m_bytes.append(littleEndian(value));
}
