#include "ByteWriter.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

void ByteWriter::writeUInt8(quint8 value)
{
    *room(sizeof(value)) = static_cast<char>(value);
}

void ByteWriter::writeUInt16(quint16 value)
{
    qToLittleEndian(value, room(sizeof(value)));
}

void ByteWriter::writeUInt32(quint32 value)
{
    qToLittleEndian(value, room(sizeof(value)));
}

void ByteWriter::writeBytes(QByteArrayView bytes)
{
    std::copy(bytes.begin(), bytes.end(), room(bytes.size()));
}

QByteArray ByteWriter::take()
{
    m_bytes.truncate(std::exchange(m_size, 0));
    return std::exchange(m_bytes, {});
}

char *ByteWriter::room(qsizetype count)
{
    const qsizetype start = std::exchange(m_size, m_size + count);
    if (m_size > m_bytes.size()) {
        m_bytes.resize(std::max(m_size, 2 * m_bytes.size()));
    }
    return m_bytes.data() + start;
}
