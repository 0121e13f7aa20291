#pragma once

#include <QString>

class QPainter;
class QWidget;

/// What a list without rows shows instead: a symbol, a title and what to do.
struct EmptyHint {
    QString symbol;
    QString title;
    QString text;

    [[nodiscard]] bool isEmpty() const { return title.isEmpty(); }
    bool operator==(const EmptyHint &) const = default;

    /// Paints into a widget's area, with the symbol at the same height of the window in every column.
    void paint(QPainter &painter, const QWidget &area) const;
};
