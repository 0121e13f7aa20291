#include "SPatch.h"

#include "ByteReader.h"
#include "Diagnostics.h"
#include "PatchName.h"
#include "SimpleHasher.h"

std::optional<SPatch> SPatch::fromData(const QByteArray &data, qint64 dataOffset)
{
    ByteReader reader(data, dataOffset);
    const auto refuse = [] {
        Diagnostics::printLine(QStringLiteral("Wrong data size in Patch data"));
        return std::nullopt;
    };
    if (reader.remaining() < sizeFieldEnd) {
        return refuse();
    }
    SPatch patch;
    patch.mrap = reader.readArray<4>();
    patch.size = reader.readUInt32();
    if (patch.size <= fixedSize || reader.remaining() < patch.size) {
        return refuse();
    }
    patch.sep = reader.readUInt8();
    patch.pos = reader.readUInt16();
    patch.sep2 = reader.readUInt8();
    patch.name = PatchName::getStringFrom16UInt8(reader.readBytes(PatchName::fieldSize), PatchName::fieldSize);
    patch.data = reader.readBytes(patch.size - fixedSize);
    patch.length = sizeFieldEnd + patch.size;
    return patch;
}

quint64 SPatch::simpleHash(const std::optional<QString> &overrideName) const
{
    SimpleHasher hasher;
    hasher.combine(QByteArrayView(mrap));
    hasher = SimpleHasher(hasher.hash() ^ size);
    hasher.combine(overrideName.value_or(name).toUtf8());
    hasher.combine(data);
    return hasher.hash();
}
