#include "SPatch.h"

#include "ByteReader.h"
#include "Diagnostics.h"
#include "FaultPoint.h"
#include "PatchName.h"
#include "SimpleHasher.h"

#include <utility>

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
    if (patch.size <= fixedSize || (reader.remaining() < patch.size && !FaultPoint::isSet("size-field-believed"))) {
        return refuse();
    }
    patch.sep = reader.readUInt8();
    patch.pos = reader.readUInt16();
    patch.sep2 = reader.readUInt8();
    const auto nameField = reader.readArray<PatchName::fieldSize>();
    if (std::optional<QString> name = PatchName::decodeField(nameField)) {
        patch.name = *std::move(name);
    } else {
        patch.name = PatchName::unreadable();
        patch.unreadableName = QByteArrayView(nameField).toByteArray();
    }
    patch.data = reader.readBytes(patch.size - fixedSize);
    patch.length = sizeFieldEnd + patch.size;
    return patch;
}

QByteArray SPatch::nameField() const
{
    return unreadableName.isEmpty() ? PatchName::encodeField(name) : unreadableName;
}

void SPatch::rename(const QString &newName)
{
    if (newName != name) {
        unreadableName.clear();
    }
    name = PatchName::fitted(newName);
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
