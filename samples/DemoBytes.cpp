#include "DemoBytes.h"

#include "ByteWriter.h"

DemoBytes::DemoBytes(quint64 seed)
    : m_state(seed)
{
}

quint32 DemoBytes::next()
{
    // SplitMix64: good from any seed, and short.
    m_state += 0x9E37'79B9'7F4A'7C15U;
    quint64 mixed = m_state;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58'476D'1CE4'E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D0'49BB'1331'11EBU;
    return static_cast<quint32>((mixed ^ (mixed >> 31U)) >> 32U);
}

quint32 DemoBytes::between(quint32 least, quint32 most)
{
    return least + next() % (most - least + 1);
}

QByteArray DemoBytes::parameters(quint32 effects)
{
    constexpr quint16 atRest = 500;
    ByteWriter writer;
    for (quint32 effect = 0; effect < effects; ++effect) {
        writer.writeUInt8(static_cast<quint8>(effect));
        writer.writeUInt8(static_cast<quint8>(between(0, 1)));
        writer.writeUInt16(static_cast<quint16>(between(1, 180)));
        const quint32 count = between(8, 60);
        writer.writeUInt16(static_cast<quint16>(count));
        for (quint32 i = 0; i < count; ++i) {
            const quint32 value = between(0, 1000);
            writer.writeUInt16(between(0, 2) == 0 ? atRest : static_cast<quint16>(value));
        }
    }
    writer.writeUInt8(static_cast<quint8>(effects));
    return writer.take();
}

QByteArray DemoBytes::impulseResponse(qsizetype size)
{
    constexpr qint64 loudest = 32'000;
    constexpr qint64 fraction = 1 << 16;
    // After a quarter of the response about a tenth of the level is left.
    const qint64 samples = size / 2;
    const qint64 fall = fraction - fraction * 9 / samples;
    qint64 level = loudest * fraction;
    ByteWriter writer(size);
    for (qint64 i = 0; i < samples; ++i) {
        const qint64 noise = qint64{between(0, 2 * loudest)} - loudest;
        writer.writeUInt16(static_cast<quint16>(static_cast<qint16>(noise * (level / fraction) / loudest)));
        level = level / fraction * fall + (level % fraction) * fall / fraction;
    }
    return writer.take();
}
