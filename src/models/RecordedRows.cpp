#include "RecordedRows.h"

#include "VelgorContentPatch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <numeric>
#include <utility>
#include <vector>

namespace {

bool isOneBlock(const QList<qsizetype> &ascendingRows)
{
    return ascendingRows.last() - ascendingRows.first() + 1 == ascendingRows.size();
}

/// Gives each row the value of its former row.
template <typename Row>
void rearrange(QList<Row> &rows, const QList<qsizetype> &formerRows)
{
    // As bytes, around each circle of rows: a copy of the list, or moves member by member, take several times as long.
    static_assert(QTypeInfo<Row>::isRelocatable);
    auto *const bytes = reinterpret_cast<std::byte *>(rows.data());
    const auto rowAt = [bytes](size_t row) { return bytes + row * sizeof(Row); };
    std::vector<size_t> sources(formerRows.begin(), formerRows.end());
    for (size_t start = 0; start < sources.size(); ++start) {
        if (sources[start] == start) {
            continue;
        }
        std::array<std::byte, sizeof(Row)> first{};
        std::memcpy(first.data(), rowAt(start), first.size());
        size_t row = start;
        for (size_t source = 0; (source = std::exchange(sources[row], row)) != start; row = source) {
            std::memcpy(rowAt(row), rowAt(source), first.size());
        }
        std::memcpy(rowAt(row), first.data(), first.size());
    }
}

/// The values at these rows, which are taken out of the list.
template <typename Row>
QList<Row> takeOut(QList<Row> &list, const QList<qsizetype> &ascendingRows)
{
    QList<Row> values;
    values.reserve(ascendingRows.size());
    auto removed = ascendingRows.begin();
    qsizetype end = *removed;
    for (qsizetype row = end; row < list.size(); ++row) {
        if (removed != ascendingRows.end() && *removed == row) {
            values.append(std::move(list[row]));
            ++removed;
        } else {
            list[end++] = std::move(list[row]);
        }
    }
    list.remove(end, list.size() - end);
    return values;
}

template <typename Row>
void putIn(QList<Row> &list, const QList<qsizetype> &rows, const QList<Row> &values)
{
    if (rows.first() == list.size()) {
        list.append(values);
        return;
    }
    QList<Row> filled;
    filled.reserve(list.size() + values.size());
    auto inserted = rows.begin();
    for (qsizetype from = 0; from < list.size() || inserted != rows.end();) {
        if (inserted != rows.end() && *inserted == filled.size()) {
            filled.append(values.at(inserted - rows.begin()));
            ++inserted;
        } else {
            filled.append(std::move(list[from++]));
        }
    }
    list = filled;
}

} // namespace

template <typename Row>
QList<RowDelta<Row>> RecordedRows<Row>::takeRecorded()
{
    return std::exchange(m_recorded, std::nullopt).value_or(QList<RowDelta<Row>>());
}

template <typename Row>
void RecordedRows<Row>::applyDeltas(const QList<RowDelta<Row>> &deltas)
{
    using Delta = RowDelta<Row>;
    struct Applier {
        RecordedRows &list;
        void operator()(const typename Delta::Inserted &step) { list.insertRows(step.rows, step.values); }
        void operator()(const typename Delta::Removed &step) { list.removeRows(step.rows); }
        void operator()(const typename Delta::Changed &step) { list.changeRows(step.rows, step.after); }
        void operator()(const typename Delta::Moved &step) { list.moveRow(step.from, step.offset); }
        void operator()(const typename Delta::Reordered &step) { list.reorderRows(step.formerRows); }
        void operator()(const typename Delta::Exchanged &step) { list.exchangeRows(step.after); }
    };
    for (const Delta &delta : deltas) {
        std::visit(Applier{*this}, delta.step);
    }
}

template <typename Row>
void RecordedRows<Row>::insertRows(qsizetype first, const QList<Row> &values)
{
    QList<qsizetype> rows(values.size());
    std::iota(rows.begin(), rows.end(), first);
    insertRows(rows, values);
}

template <typename Row>
void RecordedRows<Row>::insertRows(const QList<qsizetype> &rows, const QList<Row> &values)
{
    if (rows.isEmpty()) {
        return;
    }
    record(typename RowDelta<Row>::Inserted{rows, values});
    const bool isBlock = isOneBlock(rows);
    if (isBlock) {
        Q_EMIT rowsAboutToBeInserted(rows.first(), rows.last());
    } else {
        Q_EMIT aboutToBeReset();
    }
    putIn(m_rows, rows, values);
    followInserted(rows);
    if (isBlock) {
        Q_EMIT rowsInserted(rows.first(), rows.last());
    } else {
        Q_EMIT wasReset();
    }
}

template <typename Row>
void RecordedRows<Row>::removeRows(const QList<qsizetype> &ascendingRows)
{
    if (ascendingRows.isEmpty()) {
        return;
    }
    const bool isBlock = isOneBlock(ascendingRows);
    if (isBlock) {
        Q_EMIT rowsAboutToBeRemoved(ascendingRows.first(), ascendingRows.last());
    } else {
        Q_EMIT aboutToBeReset();
    }
    record(typename RowDelta<Row>::Removed{ascendingRows, takeOut(m_rows, ascendingRows)});
    followRemoved(ascendingRows);
    if (isBlock) {
        Q_EMIT rowsRemoved(ascendingRows.first(), ascendingRows.last());
    } else {
        Q_EMIT wasReset();
    }
}

template <typename Row>
void RecordedRows<Row>::changeRows(const QList<qsizetype> &rows, const QList<Row> &values)
{
    if (rows.isEmpty()) {
        return;
    }
    QList<Row> before;
    before.reserve(rows.size());
    for (qsizetype i = 0; i < rows.size(); ++i) {
        Row &row = m_rows[rows.at(i)];
        before.append(std::exchange(row, values.at(i)));
        followChanged(rows.at(i), before.last());
    }
    record(typename RowDelta<Row>::Changed{rows, before, values});
    const auto [first, last] = std::minmax_element(rows.begin(), rows.end());
    Q_EMIT rowsChanged(*first, *last);
}

template <typename Row>
void RecordedRows<Row>::moveRow(qsizetype from, qsizetype offset)
{
    if (offset == from || offset == from + 1) {
        return;
    }
    record(typename RowDelta<Row>::Moved{from, offset});
    Q_EMIT rowAboutToBeMoved(from, offset);
    const qsizetype to = offset > from ? offset - 1 : offset;
    m_rows.move(from, to);
    followMoved(from, to);
    Q_EMIT rowMoved(from, offset);
}

template <typename Row>
void RecordedRows<Row>::reorderRows(const QList<qsizetype> &formerRows)
{
    if (std::is_sorted(formerRows.begin(), formerRows.end())) {
        return;
    }
    record(typename RowDelta<Row>::Reordered{formerRows});
    Q_EMIT aboutToBeReordered();
    rearrange(m_rows, formerRows);
    followReordered(formerRows);
    Q_EMIT reordered(formerRows);
}

template <typename Row>
void RecordedRows<Row>::exchangeRows(QList<Row> values)
{
    record(typename RowDelta<Row>::Exchanged{m_rows, values});
    Q_EMIT aboutToBeReset();
    m_rows = std::move(values);
    followExchanged();
    Q_EMIT wasReset();
}

template class RecordedRows<VelgorPatch>;
template class RecordedRows<VelgorContentPatch>;
