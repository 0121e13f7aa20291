#pragma once

#include <QList>

#include <algorithm>
#include <utility>
#include <vector>

/// A value for each row of a list, kept in step with the list's rows.
template <typename Value>
class RowValues {
public:
    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(m_values.size()); }
    [[nodiscard]] const Value &at(qsizetype row) const { return m_values[static_cast<size_t>(row)]; }
    [[nodiscard]] Value &operator[](qsizetype row) { return m_values[static_cast<size_t>(row)]; }

    void reserve(qsizetype size) { m_values.reserve(static_cast<size_t>(size)); }
    void append(const Value &value) { m_values.push_back(value); }
    void remove(const QList<qsizetype> &ascendingRows)
    {
        qsizetype end = 0;
        auto removed = ascendingRows.begin();
        for (qsizetype row = 0; row < size(); ++row) {
            if (removed != ascendingRows.end() && *removed == row) {
                ++removed;
            } else {
                (*this)[end++] = at(row);
            }
        }
        m_values.resize(static_cast<size_t>(end));
    }
    /// formerRows holds, for each row, the row that its value has now.
    void reorder(const QList<qsizetype> &formerRows)
    {
        std::vector<Value> values;
        values.reserve(m_values.size());
        for (const qsizetype row : formerRows) {
            values.push_back(at(row));
        }
        m_values = std::move(values);
    }
    /// Moves one value; `to` is the row that it has afterwards.
    void move(qsizetype from, qsizetype to)
    {
        const auto first = m_values.begin();
        if (from < to) {
            std::rotate(first + from, first + from + 1, first + to + 1);
        } else {
            std::rotate(first + to, first + from, first + from + 1);
        }
    }

private:
    std::vector<Value> m_values;
};
