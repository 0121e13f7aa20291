#include "SimpleHasher.h"

#include <QtEndian>

#include <algorithm>
#include <array>

void SimpleHasher::combine(QByteArrayView data)
{
    constexpr qsizetype wordSize = 8;
    qsizetype i = 0;
    for (; i + wordSize <= data.size(); i += wordSize) {
        m_hash ^= qFromLittleEndian<quint64>(data.data() + i);
    }
    // Strictly before the last byte: a last byte on its own is left out.
    if (i < data.size() - 1) {
        std::array<char, wordSize> word{};
        std::copy(data.begin() + i, data.end(), word.begin());
        m_hash ^= qFromLittleEndian<quint64>(word.data());
    }
}
