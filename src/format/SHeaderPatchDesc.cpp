#include "SHeaderPatchDesc.h"

#include "ByteReader.h"
#include "Diagnostics.h"

std::optional<SHeaderPatchDesc> SHeaderPatchDesc::fromData(const QByteArray &data, qint64 dataOffset)
{
    ByteReader reader(data, dataOffset);
    if (reader.remaining() < encodedLength) {
        Diagnostics::printLine(QStringLiteral("Wrong data size in HeaderPatchDesc"));
        return std::nullopt;
    }
    SHeaderPatchDesc descriptor;
    descriptor.offset = reader.readUInt32();
    descriptor.size = reader.readUInt32();
    return descriptor;
}
