#include "WrappingRow.h"

#include <QStyle>

#include <algorithm>
#include <numeric>

namespace {

constexpr int fewestColumns = 2;

} // namespace

WrappingRow::WrappingRow(int widest)
    : m_widest(widest)
{
}

void WrappingRow::addItem(QLayoutItem *item)
{
    m_items.emplace_back(item);
}

QLayoutItem *WrappingRow::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<size_t>(index)].get() : nullptr;
}

QLayoutItem *WrappingRow::takeAt(int index)
{
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem *taken = m_items[static_cast<size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return taken;
}

int WrappingRow::rowHeight() const
{
    int height = 0;
    for (const auto &item : m_items) {
        height = std::max(height, item->sizeHint().height());
    }
    return height;
}

QList<int> WrappingRow::leastWidths(int columns) const
{
    QList<int> widths(columns, 0);
    for (int i = 0; i < count(); ++i) {
        widths[i % columns] = std::max(widths.at(i % columns), itemAt(i)->minimumSize().width());
    }
    return widths;
}

int WrappingRow::widthOf(const QList<int> &columns) const
{
    const int gaps = std::max(static_cast<int>(columns.size()) - 1, 0) * spacing();
    return std::accumulate(columns.begin(), columns.end(), gaps);
}

int WrappingRow::columnsFor(int width) const
{
    const int most = std::max(count(), 1);
    const int least = std::min(fewestColumns, most);
    for (int rows = 1; rows <= most; ++rows) {
        const int columns = std::max((most + rows - 1) / rows, least);
        if (columns == least || widthOf(leastWidths(columns)) <= width) {
            return columns;
        }
    }
    return least;
}

QList<int> WrappingRow::widthsFor(int width) const
{
    const int columns = columnsFor(width);
    QList<int> widths = leastWidths(columns);
    QList<int> most(columns, 0);
    for (int i = 0; i < count(); ++i) {
        most[i % columns] = std::max({most.at(i % columns), itemAt(i)->sizeHint().width(), m_widest});
    }
    const bool isOneRow = columns >= count();
    int spare = width - widthOf(widths);
    // Pixel by pixel to the narrowest, so that they become equal where they can.
    while (spare > 0) {
        int narrowest = -1;
        for (int column = 0; column < columns; ++column) {
            const bool canGrow = !isOneRow || widths.at(column) < most.at(column);
            if (canGrow && (narrowest < 0 || widths.at(column) < widths.at(narrowest))) {
                narrowest = column;
            }
        }
        if (narrowest < 0) {
            for (int column = 0; column < columns; ++column) {
                widths[column] = itemAt(column)->sizeHint().width();
            }
            return widths;
        }
        ++widths[narrowest];
        --spare;
    }
    return widths;
}

int WrappingRow::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    const int columns = columnsFor(width - margins.left() - margins.right());
    const int rows = (std::max(count(), 1) + columns - 1) / columns;
    return rows * rowHeight() + (rows - 1) * spacing() + margins.top() + margins.bottom();
}

QSize WrappingRow::sizeHint() const
{
    int width = std::max(count() - 1, 0) * spacing() + contentsMargins().left() + contentsMargins().right();
    for (const auto &item : m_items) {
        width += item->sizeHint().width();
    }
    return {width, heightForWidth(m_width > 0 ? m_width : width)};
}

QSize WrappingRow::minimumSize() const
{
    const QMargins margins = contentsMargins();
    const int columns = std::min(fewestColumns, std::max(count(), 1));
    const int width = widthOf(leastWidths(columns)) + margins.left() + margins.right();
    return {width, heightForWidth(m_width > 0 ? m_width : width)};
}

void WrappingRow::setGeometry(const QRect &rect)
{
    QLayout::setGeometry(rect);
    const bool isHigher = heightForWidth(rect.width()) != heightForWidth(m_width);
    m_width = rect.width();
    if (isHigher && parentWidget()) {
        // The least height of what it stands in follows.
        parentWidget()->updateGeometry();
    }
    const QRect inside = contentsRect();
    const QList<int> widths = widthsFor(inside.width());
    const int columns = static_cast<int>(widths.size());
    const Qt::LayoutDirection direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int x = inside.left();
    int y = inside.top();
    for (int i = 0; i < count(); ++i) {
        const int column = i % columns;
        if (column == 0 && i > 0) {
            x = inside.left();
            y += rowHeight() + spacing();
        }
        const QRect place(x, y, widths.at(column), rowHeight());
        itemAt(i)->setGeometry(QStyle::visualRect(direction, inside, place));
        x += widths.at(column) + spacing();
    }
}
