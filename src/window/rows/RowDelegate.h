#pragma once

#include <QStyledItemDelegate>

class PatchListView;

/// Paints what the rows of both lists have in common: band, hover, the selection as one shape, and the target of a
/// drop. The subclass paints the row's text and marks. For views of the class PatchListView.
class RowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// Shows the whole name as a tool tip where the row has no room for it.
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

    /// The part of a row that bands, hover and selection fill.
    [[nodiscard]] static QRectF inner(const QRectF &row);

protected:
    /// What the subclass needs to know of the row's state.
    struct RowState {
        bool isSelected = false;
        bool isListFocused = false;
        bool isDropTarget = false;
        QColor text;
        QColor secondary;
        QColor accent;
        QColor markOff;
    };

    virtual void paintRow(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
        const RowState &state) const = 0;
    /// Where the name stands.
    [[nodiscard]] virtual QRect nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const = 0;
    [[nodiscard]] virtual bool isOnBand(const QModelIndex & /*index*/) const { return false; }
    /// Where the mark of the impulse response stands.
    [[nodiscard]] virtual QRect speakerRect(const QStyleOptionViewItem &option, const QModelIndex &index) const = 0;
    /// What the mark or badge under the pointer means; empty for none.
    [[nodiscard]] virtual QString markToolTip(
        const QPoint &position, const QStyleOptionViewItem &option, const QModelIndex &index) const;

    [[nodiscard]] static const PatchListView *viewOf(const QStyleOptionViewItem &option);
    static void paintSpeaker(QPainter &painter, const QRect &rect, bool hasUserIR, const RowState &state);
    static void paintFirmware(QPainter &painter, const QRect &rect, const QString &version, const RowState &state);
    /// The column of firmware badges at the right of a row.
    [[nodiscard]] static QRect firmwareRect(const QStyleOptionViewItem &option);
    static void paintName(QPainter &painter, const QRect &rect, const QString &name, const QColor &colour);

private:
    static RowState stateOf(const QStyleOptionViewItem &option, const PatchListView &view, const QModelIndex &index);
    void paintBackground(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
        const PatchListView &view, const RowState &state) const;
};
