#pragma once

#include <QLayout>
#include <QList>
#include <QWidget>

#include <memory>
#include <vector>

/// Buttons side by side that share the width, none wider than its maximum. Where they do not fit they stand in as many
/// rows as they need, one below the other, and never in fewer than two columns. With more room than all of them may
/// take, they stand at the left in the widths that they ask for.
class WrappingRow : public QLayout {
    Q_OBJECT

public:
    /// `widest` limits an item, unless that asks for more itself.
    explicit WrappingRow(int widest = QWIDGETSIZE_MAX);

    void addItem(QLayoutItem *item) override;
    [[nodiscard]] int count() const override { return static_cast<int>(m_items.size()); }
    [[nodiscard]] QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;

    [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    /// Items in a row where there is room for `width`, margins not counted.
    [[nodiscard]] int columnsFor(int width) const;
    [[nodiscard]] QList<int> leastWidths(int columns) const;
    [[nodiscard]] QList<int> widthsFor(int width) const;
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] int widthOf(const QList<int> &columns) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
    int m_widest;
    int m_width = 0; ///< as it was laid out last
};
