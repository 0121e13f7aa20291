#pragma once

#include <QHash>

#include <optional>
#include <utility>

class MultiSelectionsIterator;

/// The ticked patches: id to true (ticked) or false (known, not ticked). An absent id is not ticked.
struct MultiSelections {
    QHash<quint64, bool> multiSelections;

    /// Number of entries whose value is `val`: count(true) is the number of ticked patches.
    [[nodiscard]] qsizetype count(bool val) const;
    [[nodiscard]] bool isTicked(quint64 id) const { return multiSelections.value(id, false); }
    /// Walks every entry once, in no particular order.
    [[nodiscard]] MultiSelectionsIterator makeIterator() const;

    bool operator==(const MultiSelections &) const = default;
};

/// A walk over a MultiSelections. It keeps the entries that it walks over.
class MultiSelectionsIterator {
public:
    explicit MultiSelectionsIterator(const QHash<quint64, bool> &entries);

    /// The next (id, value) pair; nothing after the last.
    std::optional<std::pair<quint64, bool>> next();

private:
    QHash<quint64, bool> ms;
    QHash<quint64, bool>::const_iterator msIterator;
};
