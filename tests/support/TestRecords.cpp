#include "TestRecords.h"

#include "PatchWriter.h"

#include <QRandomGenerator>

#include <algorithm>

namespace TestRecords {

namespace {

QByteArray bytes(int seed, int count)
{
    QRandomGenerator generator(static_cast<quint32>(seed));
    QByteArray result(count, '\0');
    std::generate(result.begin(), result.end(), [&] { return static_cast<char>(generator.generate() & 0xFFU); });
    return result;
}

template <std::size_t Size>
std::array<char, Size> array(const QByteArray &text)
{
    std::array<char, Size> result{};
    std::copy_n(text.begin(), std::min<qsizetype>(text.size(), Size), result.begin());
    return result;
}

} // namespace

SHeaderDesc header(quint16 count, const QByteArray &version)
{
    SHeaderDesc header;
    header.tsrp = array<4>("TSRP");
    header.pm0 = array<5>(version);
    header.nbpatches = count;
    header.filler = array<16>("0123456789ABCDEF");
    header.tailBit = 0x5A;
    return header;
}

SPatch patch(const QString &name, int seed, int dataSize)
{
    SPatch patch;
    patch.mrap = array<4>("MRAP");
    patch.sep = 1;
    patch.sep2 = 2;
    patch.name = name;
    patch.data = bytes(seed, dataSize);
    patch.size = SPatch::fixedSize + static_cast<quint32>(dataSize);
    patch.length = SPatch::sizeFieldEnd + patch.size;
    return patch;
}

SUserIR userIR(quint32 number, int seed, int dataSize)
{
    SUserIR userIR;
    userIR.data = bytes(seed, dataSize);
    for (int i = 0; i < std::min(4, dataSize); ++i) {
        userIR.data[i] = static_cast<char>((number >> (8 * i)) & 0xFFU);
    }
    userIR.size = static_cast<quint32>(dataSize);
    userIR.length = SUserIR::sizeFieldEnd + dataSize;
    return userIR;
}

SPresetFile file(const QList<SPatch> &patches, QList<SUserIR> userIRs, const QByteArray &version)
{
    userIRs.resize(patches.size());
    return *SPresetFile::fromRecords(header(static_cast<quint16>(patches.size()), version), patches, userIRs);
}

QByteArray fileBytes(const QList<SPatch> &patches, const QList<SUserIR> &userIRs, const QByteArray &version)
{
    return *PatchWriter::encodePatches(file(patches, userIRs, version));
}

} // namespace TestRecords
