#include "MultiSelections.h"

#include <algorithm>

qsizetype MultiSelections::count(bool val) const
{
    return std::count(multiSelections.cbegin(), multiSelections.cend(), val);
}

MultiSelectionsIterator MultiSelections::makeIterator() const
{
    return MultiSelectionsIterator(multiSelections);
}

MultiSelectionsIterator::MultiSelectionsIterator(const QHash<quint64, bool> &entries)
    : ms(entries)
    , msIterator(ms.cbegin())
{
}

std::optional<std::pair<quint64, bool>> MultiSelectionsIterator::next()
{
    if (msIterator == ms.cend()) {
        return std::nullopt;
    }
    const std::pair<quint64, bool> entry(msIterator.key(), msIterator.value());
    ++msIterator;
    return entry;
}
