#pragma once

#include "RowDelegate.h"

/// A library patch's row: a tick while ticking, name, default mark, user-IR mark, firmware.
class LibraryRowDelegate : public RowDelegate {
    Q_OBJECT

public:
    using RowDelegate::RowDelegate;

    /// Ticks on a click on the tick and on Space.
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

protected:
    void paintRow(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
        const RowState &state) const override;
    [[nodiscard]] QRect nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QString markToolTip(
        const QPoint &position, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    [[nodiscard]] static QRect tickRect(const QStyleOptionViewItem &option);
    [[nodiscard]] static QRect speakerRect(const QStyleOptionViewItem &option);
    [[nodiscard]] static QRect defaultMarkRect(const QStyleOptionViewItem &option);
};
