#pragma once

#include <QByteArray>

/// Random-looking bytes that are the same on every machine: whole numbers only, and no distribution of the standard
/// library, whose results differ between its makers.
class DemoBytes {
public:
    explicit DemoBytes(quint64 seed);

    /// From `least` to `most`, both included.
    [[nodiscard]] quint32 between(quint32 least, quint32 most);
    /// Parameters of `effects` effects: number, on or off, and 16-bit values, many of which are at rest.
    [[nodiscard]] QByteArray parameters(quint32 effects);
    /// 16-bit samples of noise that dies away, as the response of a loudspeaker does.
    [[nodiscard]] QByteArray impulseResponse(qsizetype size);

private:
    [[nodiscard]] quint32 next();

    quint64 m_state;
};
