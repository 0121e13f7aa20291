#include "SUserIR.h"

#include "ByteReader.h"
#include "Diagnostics.h"
#include "SimpleHasher.h"

std::optional<SUserIR> SUserIR::fromData(const QByteArray &data, qint64 dataOffset)
{
    ByteReader reader(data, dataOffset);
    if (reader.remaining() < sizeFieldEnd) {
        Diagnostics::printLine(QStringLiteral("Wrong data size in UserIR"));
        return std::nullopt;
    }
    SUserIR userIR;
    userIR.risu = reader.readArray<4>();
    userIR.size = reader.readUInt32();
    if (reader.remaining() < userIR.size) {
        Diagnostics::printLine(QStringLiteral("Wrong data size or userIrSize in UserIR"));
        return std::nullopt;
    }
    userIR.data = reader.readBytes(userIR.size);
    userIR.length = sizeFieldEnd + userIR.size;
    return userIR;
}

quint32 SUserIR::getFirstUInt32() const
{
    return data.size() < numberSize ? 0 : ByteReader(data, 0).readUInt32();
}

quint64 SUserIR::simpleHash() const
{
    SimpleHasher hasher(size);
    if (data.size() > numberSize) {
        hasher.combine(QByteArrayView(data).sliced(numberSize));
    }
    return hasher.hash();
}
