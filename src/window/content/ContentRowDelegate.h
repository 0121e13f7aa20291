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
    [[nodiscard]] QRect speakerRect(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] bool isOnBand(const QModelIndex &index) const override;

private:
    static void paintPosition(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index, const RowState &state);
    void paintReplacement(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index, const RowState &state) const;
};
