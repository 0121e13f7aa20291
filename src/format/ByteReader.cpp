#include "ByteReader.h"

#include "Diagnostics.h"

#include <QtEndian>

ByteReader::ByteReader(QByteArrayView data, qint64 offset)
    : m_rest(offset >= 0 && offset <= data.size() ? data.sliced(offset) : QByteArrayView())
{
}

quint8 ByteReader::readUInt8()
{
    return qFromLittleEndian<quint8>(take(1).data());
}

quint16 ByteReader::readUInt16()
{
    return qFromLittleEndian<quint16>(take(2).data());
}

quint32 ByteReader::readUInt32()
{
    return qFromLittleEndian<quint32>(take(4).data());
}

QByteArray ByteReader::readBytes(qint64 count)
{
    return take(count).toByteArray();
}

QByteArrayView ByteReader::take(qint64 count)
{
    if (count < 0 || count > remaining()) {
        Diagnostics::fatalStop("read beyond the end of the data");
    }
    const QByteArrayView taken = m_rest.first(count);
    m_rest = m_rest.sliced(count);
    return taken;
}
