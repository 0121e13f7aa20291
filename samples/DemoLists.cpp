#include "DemoLists.h"

#include "DemoBytes.h"
#include "DemoNames.h"
#include "PatchWriter.h"

#include <algorithm>

namespace {

constexpr std::array tag{'M', 'R', 'A', 'P'};
constexpr quint64 firstNewSeed = 1000;

SHeaderDesc header(const std::array<char, 5> &version, quint8 tailByte)
{
    SHeaderDesc header;
    header.tsrp = {'T', 'S', 'R', 'P'};
    header.pm0 = version;
    header.tailBit = tailByte;
    return header;
}

/// Sounds in the making. A sound is what its seed makes it, whatever its name.
struct Sounds {
    QList<SPatch> patches;
    QList<SUserIR> userIRs;

    void add(const QString &name, quint64 seed)
    {
        DemoBytes bytes(seed);
        SPatch patch;
        patch.mrap = tag;
        patch.sep = 1;
        patch.sep2 = 2;
        patch.name = name;
        patch.data = bytes.parameters(bytes.between(4, 24));
        patch.size = SPatch::fixedSize + static_cast<quint32>(patch.data.size());
        patch.length = SPatch::sizeFieldEnd + patch.size;
        patches.append(patch);

        SUserIR userIR;
        if (seed % 3 == 0) {
            const qsizetype size = qsizetype{1024} << bytes.between(1, 3);
            userIR.data = QByteArray(SUserIR::numberSize, '\0') + bytes.impulseResponse(size);
            userIR.size = static_cast<quint32>(userIR.data.size());
            userIR.length = SUserIR::sizeFieldEnd + userIR.size;
        }
        userIRs.append(userIR);
    }

    [[nodiscard]] QByteArray encode(const SHeaderDesc &header) const
    {
        return *PatchWriter::encodePatches(*SPresetFile::fromRecords(header, patches, userIRs));
    }
};

quint64 seedOf(qsizetype index)
{
    return static_cast<quint64>(index) + 1;
}

} // namespace

QByteArray DemoLists::demo()
{
    Sounds sounds;
    for (const QString &name : DemoNames::list()) {
        sounds.add(name, seedOf(sounds.patches.size()));
    }
    return sounds.encode(header({'V', '1', '.', '2', '0'}, 0x10));
}

QByteArray DemoLists::demoNewFirmware()
{
    QStringList names = DemoNames::newSounds();
    Sounds sounds;
    for (const DemoNames::Renamed &renamed : DemoNames::renamed()) {
        // Two new sounds, then an old one.
        for (int i = 0; i < 2 && !names.isEmpty(); ++i) {
            sounds.add(names.takeFirst(), firstNewSeed + seedOf(sounds.patches.size()));
        }
        sounds.add(renamed.name, seedOf(renamed.index));
    }
    for (const QString &name : std::as_const(names)) {
        sounds.add(name, firstNewSeed + seedOf(sounds.patches.size()));
    }
    return sounds.encode(header({'V', '1', '.', '2', '1'}, 0x11));
}
