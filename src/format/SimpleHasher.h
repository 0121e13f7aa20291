#pragma once

#include <QByteArrayView>

/// The hash behind patch ids: the exclusive or of a buffer's little-endian 64-bit words.
///
/// Libraries on disk hold these values as ids, so the arithmetic never changes, its oddity included: of a buffer
/// whose size is one more than a multiple of eight, the last byte does not count.
class SimpleHasher {
public:
    explicit SimpleHasher(quint64 seed = 0)
        : m_hash(seed)
    {
    }

    void combine(QByteArrayView data);
    [[nodiscard]] quint64 hash() const { return m_hash; }

private:
    quint64 m_hash;
};
