#include "SPresetFile.h"

#include "ByteReader.h"
#include "Diagnostics.h"

#include <limits>
#include <utility>

namespace {

Problem refuse(const QString &line)
{
    Diagnostics::printLine(line);
    return {.what = Problem::What::Malformed, .why = line};
}

quint32 checkedUInt32(qint64 value)
{
    if (value < 0 || value > std::numeric_limits<quint32>::max()) {
        Diagnostics::fatalStop("preset file larger than its 32-bit sizes");
    }
    return static_cast<quint32>(value);
}

} // namespace

Result<SPresetFile> SPresetFile::fromData(const QByteArray &data)
{
    const std::optional<SHeaderDesc> header = SHeaderDesc::fromData(data, 0);
    if (!header) {
        return refuse(QStringLiteral("Could not decode HeaderDesc"));
    }
    if (header->nbpatches == 0) {
        return refuse(QStringLiteral("Preset file without patches"));
    }

    SPresetFile file;
    file.headerDesc = *header;
    qint64 offset = header->length;
    for (int i = 0; i < header->nbpatches; ++i) {
        const std::optional<SHeaderPatchDesc> descriptor = SHeaderPatchDesc::fromData(data, offset);
        if (!descriptor) {
            return refuse(QStringLiteral("Missing HeaderPatchDesc in data for index %1").arg(i));
        }
        file.headerPatchDescs.append(*descriptor);
        offset += descriptor->length;
    }
    for (int i = 0; i < header->nbpatches; ++i) {
        std::optional<SPatch> patch = SPatch::fromData(data, offset);
        if (!patch) {
            return refuse(QStringLiteral("Missing Patch content in data for index %1").arg(i));
        }
        const qint64 length = patch->length;
        file.patches.append(*std::move(patch));
        offset += length;

        std::optional<SUserIR> userIR = SUserIR();
        if (length < file.headerPatchDescs.at(i).size) {
            userIR = SUserIR::fromData(data, offset);
        }
        if (!userIR) {
            return refuse(QStringLiteral("Missing UserIR content in data for index %1").arg(i));
        }
        offset += userIR->length;
        file.userIRs.append(*std::move(userIR));
    }
    if (!file.tailFromData(data, offset)) {
        return refuse(QStringLiteral("Error with tail in data at offset %1").arg(offset));
    }
    file.headerDesc.tailBit = file.tailBit;
    return file;
}

Result<SPresetFile> SPresetFile::fromRecords(
    const SHeaderDesc &headerDesc, QList<SPatch> patches, QList<SUserIR> userIRs)
{
    if (patches.isEmpty() || userIRs.size() != patches.size()) {
        return refuse(QStringLiteral("Incoherent presets to be created"));
    }
    SPresetFile file;
    file.patches = std::move(patches);
    file.userIRs = std::move(userIRs);
    qint64 offset = headerDesc.length + SHeaderPatchDesc::encodedLength * file.patches.size();
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        const SUserIR &userIR = file.userIRs.at(i);
        const qint64 size = file.patches.at(i).length + (userIR.size == 0 ? 0 : userIR.length);
        file.headerPatchDescs.append({.offset = checkedUInt32(offset), .size = checkedUInt32(size)});
        offset += size;
    }
    file.headerDesc = headerDesc;
    file.headerDesc.size = checkedUInt32(offset - SHeaderDesc::uncountedSize);
    file.tailBit = headerDesc.tailBit;
    return file;
}

bool SPresetFile::tailFromData(const QByteArray &data, qint64 dataOffset)
{
    ByteReader reader(data, dataOffset);
    if (reader.remaining() < tailLength) {
        return false;
    }
    tailBit = reader.readUInt8();
    checksum = reader.readUInt16();
    return true;
}
