#include "MemoryTrend.h"

#include <algorithm>
#include <cstddef>

#include <malloc.h>

#ifdef __SANITIZE_ADDRESS__
// GCC comes without the header of this.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

constexpr qsizetype fewestSamples = 40;

} // namespace

qint64 MemoryTrend::bytesInUse()
{
#ifdef __SANITIZE_ADDRESS__
    return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks + info.hblkhd);
#endif
}

qint64 MemoryTrend::growth() const
{
    if (m_samples.size() < fewestSamples) {
        return 0;
    }
    const qsizetype quarter = m_samples.size() / 4;
    const qint64 early = *std::min_element(m_samples.begin() + quarter, m_samples.begin() + 2 * quarter);
    return *std::min_element(m_samples.end() - quarter, m_samples.end()) - early;
}

QString MemoryTrend::problem() const
{
    return growth() <= allowedGrowth
        ? QString()
        : QStringLiteral("the same small library takes %1 bytes more than before").arg(growth());
}

QString MemoryTrend::summary() const
{
    if (m_samples.isEmpty()) {
        return QStringLiteral("no memory samples");
    }
    return QStringLiteral("%1 bytes in use at first, %2 at last, growth %3 in %4 samples")
        .arg(m_samples.first())
        .arg(m_samples.last())
        .arg(growth())
        .arg(m_samples.size());
}
