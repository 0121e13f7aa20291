#pragma once

#include "RowDelegate.h"

/// A library patch's row: a tick while ticking, name, classification, the first line of the comment, default mark,
/// user-IR mark, firmware. Where there is no room, the comment goes first and the classification next.
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
    [[nodiscard]] QRect speakerRect(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QString markToolTip(
        const QPoint &position, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    /// Where the parts with no fixed place stand; null for what has no room.
    struct Parts {
        QRect name;
        QRect marks;
        bool areMarksLettered = false;
        QRect comment;
    };

    [[nodiscard]] Parts partsOf(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    [[nodiscard]] QRect defaultMarkRect(const QStyleOptionViewItem &option, const QModelIndex &index) const;
};
