#include "PatchWriter.h"

#include "ByteWriter.h"
#include "Diagnostics.h"

#include <QtEndian>

#include <array>
#include <limits>
#include <numeric>

namespace {

constexpr quint32 smallestHeaderSize = 12;

/// From the records, not from the header, whose size is whatever a file claimed.
qsizetype expectedSize(const SPresetFile &presets)
{
    qint64 size = presets.headerDesc.length + SHeaderPatchDesc::encodedLength * presets.patches.size();
    for (qsizetype i = 0; i < presets.patches.size(); ++i) {
        size += presets.patches.at(i).length + presets.userIRs.at(i).length;
    }
    return size + SPresetFile::tailLength;
}

void writeHeader(ByteWriter &writer, const SHeaderDesc &header, quint16 count)
{
    writer.writeArray(header.tsrp);
    writer.writeUInt32(header.size);
    writer.writeArray(header.pm0);
    writer.writeUInt8(header.sep);
    writer.writeUInt16(count);
    writer.writeArray(header.filler);
}

void writePatch(ByteWriter &writer, const SPatch &patch, quint16 position)
{
    writer.writeArray(patch.mrap);
    writer.writeUInt32(patch.size);
    writer.writeUInt8(patch.sep);
    writer.writeUInt16(position);
    writer.writeUInt8(patch.sep2);
    writer.writeBytes(patch.nameField());
    writer.writeBytes(patch.data);
}

void writeUserIR(ByteWriter &writer, const SUserIR &userIR, quint32 number)
{
    if (userIR.size == 0) {
        return;
    }
    writer.writeArray(userIR.risu);
    writer.writeUInt32(userIR.size);
    // A response too short for a whole number gets as many bytes of it as there is room for.
    const qsizetype numberSize = qMin(SUserIR::numberSize, userIR.data.size());
    std::array<char, SUserIR::numberSize> numberBytes{};
    qToLittleEndian(number, numberBytes.data());
    writer.writeBytes(QByteArrayView(numberBytes).first(numberSize));
    writer.writeBytes(QByteArrayView(userIR.data).sliced(numberSize));
}

} // namespace

Result<QByteArray> PatchWriter::encodePatches(const SPresetFile &presets)
{
    const qsizetype count = presets.headerPatchDescs.size();
    if (presets.headerDesc.size < smallestHeaderSize || count == 0 || presets.patches.size() != count
        || presets.userIRs.size() != count) {
        const QString line = QStringLiteral("Incoherent presets to be encoded");
        Diagnostics::printLine(line);
        return Problem{.what = Problem::What::Malformed, .why = line};
    }
    if (count > std::numeric_limits<quint16>::max()) {
        Diagnostics::fatalStop("more patches than a preset file can count");
    }

    ByteWriter writer(expectedSize(presets));
    writeHeader(writer, presets.headerDesc, static_cast<quint16>(count));
    for (const SHeaderPatchDesc &descriptor : presets.headerPatchDescs) {
        writer.writeUInt32(descriptor.offset);
        writer.writeUInt32(descriptor.size);
    }
    for (qsizetype i = 0; i < count; ++i) {
        writePatch(writer, presets.patches.at(i), static_cast<quint16>(i));
        writeUserIR(writer, presets.userIRs.at(i), static_cast<quint32>(i));
    }
    writer.writeUInt8(presets.tailBit);
    writer.writeUInt16(calcChecksum(writer.written()));
    return writer.take();
}

quint16 PatchWriter::checksumOf(const SPresetFile &file, QByteArrayView data)
{
    qint64 end = SHeaderDesc::encodedLength + SHeaderPatchDesc::encodedLength * file.patches.size() + 1;
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        end += file.patches.at(i).length + file.userIRs.at(i).length;
    }
    return calcChecksum(data.first(end));
}

quint16 PatchWriter::calcChecksum(QByteArrayView data)
{
    // Only the lowest eight bits of the sum count.
    const quint8 sum = std::accumulate(data.begin(), data.end(), quint8(0),
        [](quint8 total, char byte) { return static_cast<quint8>(total + static_cast<quint8>(byte)); });
    return static_cast<quint16>(((sum & 0x0FU) << 8U) | ((sum >> 4U) & 0x0FU));
}
