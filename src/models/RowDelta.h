#pragma once

#include <QList>

#include <utility>
#include <variant>

/// One step by which a list of rows came from one state to the next, with what it takes to go back. A value; rows are
/// shared until changed.
template <typename Row>
struct RowDelta {
    /// Rows ascend; they count in the list with these values in it.
    struct Inserted {
        QList<qsizetype> rows;
        QList<Row> values;
    };
    struct Removed {
        QList<qsizetype> rows;
        QList<Row> values;
    };
    struct Changed {
        QList<qsizetype> rows;
        QList<Row> before;
        QList<Row> after;
    };
    /// `offset` counts in the list as it is before the move.
    struct Moved {
        qsizetype from;
        qsizetype offset;
    };
    /// For each row, the one that it was before.
    struct Reordered {
        QList<qsizetype> formerRows;
    };
    struct Exchanged {
        QList<Row> before;
        QList<Row> after;
    };

    std::variant<Inserted, Removed, Changed, Moved, Reordered, Exchanged> step;

    /// The step that takes this one back.
    [[nodiscard]] RowDelta inverse() const
    {
        return std::visit([](const auto &done) { return RowDelta{inverseOf(done)}; }, step);
    }

private:
    static Removed inverseOf(const Inserted &done) { return {done.rows, done.values}; }
    static Inserted inverseOf(const Removed &done) { return {done.rows, done.values}; }
    /// Backwards, as a row may have changed twice.
    static Changed inverseOf(const Changed &done)
    {
        return {QList<qsizetype>(done.rows.rbegin(), done.rows.rend()),
            QList<Row>(done.after.rbegin(), done.after.rend()), QList<Row>(done.before.rbegin(), done.before.rend())};
    }
    static Exchanged inverseOf(const Exchanged &done) { return {done.after, done.before}; }
    static Moved inverseOf(const Moved &done)
    {
        const qsizetype to = done.offset > done.from ? done.offset - 1 : done.offset;
        return {to, done.from > to ? done.from + 1 : done.from};
    }
    static Reordered inverseOf(const Reordered &done)
    {
        QList<qsizetype> rows(done.formerRows.size());
        for (qsizetype row = 0; row < rows.size(); ++row) {
            rows[done.formerRows.at(row)] = row;
        }
        return {rows};
    }
};

/// What one deed did to an object of rows: the steps in their order, and what belongs to the rows before and after.
template <typename Row, typename Marks>
struct RowsChange {
    QList<RowDelta<Row>> deltas = {};
    Marks before = {};
    Marks after = {};

    [[nodiscard]] RowsChange inverse() const
    {
        RowsChange change{.before = after, .after = before};
        change.deltas.reserve(deltas.size());
        for (auto delta = deltas.rbegin(); delta != deltas.rend(); ++delta) {
            change.deltas.append(delta->inverse());
        }
        return change;
    }

    /// This one and then `next` as one; two changes of the same rows become one step.
    [[nodiscard]] RowsChange followedBy(const RowsChange &next) const
    {
        using Changed = typename RowDelta<Row>::Changed;
        RowsChange both{.deltas = deltas, .before = deltas.isEmpty() ? next.before : before, .after = next.after};
        for (const RowDelta<Row> &delta : next.deltas) {
            auto *last = both.deltas.isEmpty() ? nullptr : std::get_if<Changed>(&both.deltas.last().step);
            const auto *changed = std::get_if<Changed>(&delta.step);
            if (last && changed && last->rows == changed->rows) {
                last->after = changed->after;
            } else {
                both.deltas.append(delta);
            }
        }
        return both;
    }
};
