#include "SHeaderDesc.h"

#include "ByteReader.h"
#include "Diagnostics.h"

std::optional<SHeaderDesc> SHeaderDesc::fromData(const QByteArray &data, qint64 dataOffset)
{
    ByteReader reader(data, dataOffset);
    if (reader.remaining() < encodedLength) {
        Diagnostics::printLine(QStringLiteral("Wrong data size in HeaderDesc"));
        return std::nullopt;
    }
    SHeaderDesc header;
    header.tsrp = reader.readArray<4>();
    header.size = reader.readUInt32();
    header.pm0 = reader.readArray<5>();
    header.sep = reader.readUInt8();
    header.nbpatches = reader.readUInt16();
    header.filler = reader.readArray<16>();
    return header;
}
