#pragma once

#include "RowDelegate.h"

/// A slot's row: position, user-IR mark, name, firmware.
class ContentRowDelegate : public RowDelegate {
    Q_OBJECT

public:
    using RowDelegate::RowDelegate;

protected:
    void paintRow(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
        const RowState &state) const override;
    [[nodiscard]] QRect nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] bool isOnBand(const QModelIndex &index) const override;
    [[nodiscard]] QString markToolTip(
        const QPoint &position, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    [[nodiscard]] static QRect positionRect(const QStyleOptionViewItem &option, const QModelIndex &index);
    [[nodiscard]] static QRect speakerRect(const QStyleOptionViewItem &option, const QModelIndex &index);
    static void paintPosition(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index, const RowState &state);
    static void paintReplacement(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
        const QRect &nameRect, const RowState &state);
};
