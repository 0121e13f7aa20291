#include "RowDelegate.h"

#include "BadgePainter.h"
#include "ColourMix.h"
#include "FirmwareBadge.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "PatchListView.h"
#include "PatchRoles.h"
#include "RoundedFill.h"
#include "Symbols.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTextDocument>
#include <QToolTip>

namespace {

/// A rounded shape for one row of a block: only the block's outer corners are round.
QPainterPath blockPath(const QRectF &rect, bool isFirst, bool isLast)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(rect, LookMeasures::rowRadius, LookMeasures::rowRadius);
    const qreal half = rect.height() / 2;
    if (!isFirst) {
        path.addRect(rect.adjusted(0, 0, 0, -half));
    }
    if (!isLast) {
        path.addRect(rect.adjusted(0, half, 0, 0));
    }
    return path.simplified();
}

} // namespace

QSize RowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const
{
    return {100, LookMeasures::rowHeight(option.fontMetrics)};
}

QRectF RowDelegate::inner(const QRectF &row)
{
    return row.adjusted(LookMeasures::rowInset, 0, -LookMeasures::rowInset, 0);
}

const PatchListView *RowDelegate::viewOf(const QStyleOptionViewItem &option)
{
    return qobject_cast<const PatchListView *>(option.widget);
}

void RowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const PatchListView *view = viewOf(option);
    if (!view) {
        return;
    }
    const RowState state = stateOf(option, *view, index);
    painter->save();
    painter->setFont(option.font);
    paintBackground(*painter, option, index, *view, state);
    paintRow(*painter, option, index, state);
    painter->restore();
}

RowDelegate::RowState RowDelegate::stateOf(
    const QStyleOptionViewItem &option, const PatchListView &view, const QModelIndex &index)
{
    const LookTokens &tokens = LookTokens::current();
    RowState state;
    state.isSelected = option.state.testFlag(QStyle::State_Selected);
    state.isListFocused = view.hasFocus();
    state.isDropTarget = view.dropMark().replaces(index.row());
    const bool isHighlighted = state.isSelected && state.isListFocused && !state.isDropTarget;
    state.text = isHighlighted ? tokens.highlightedText : tokens.text;
    state.secondary = state.isSelected && !state.isDropTarget ? state.text : tokens.secondary;
    state.accent = tokens.accentText;
    state.markOff = state.isSelected ? tokens.secondary : tokens.markOff;
    if (!view.isEnabled()) {
        state.text = state.secondary = state.accent = state.markOff = tokens.disabledText;
    }
    return state;
}

void RowDelegate::paintBackground(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
    const PatchListView &view, const RowState &state) const
{
    const LookTokens &tokens = LookTokens::current();
    painter.fillRect(option.rect, tokens.base);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF rect = inner(option.rect);
    constexpr int bankSize = 3;
    const int row = index.row();
    if (isOnBand(index)) {
        const bool isLast = row % bankSize == bankSize - 1 || row == index.model()->rowCount() - 1;
        painter.fillPath(blockPath(rect, row % bankSize == 0, isLast), tokens.bankBand);
    }
    if (state.isDropTarget) {
        const DropMark &mark = view.dropMark();
        painter.fillPath(blockPath(rect, row == mark.row, row == mark.row + mark.count - 1), tokens.dropFill);
    } else if (state.isSelected) {
        const QItemSelectionModel *selection = view.selectionModel();
        const auto isSelectedAt = [&](int other) { return selection->isSelected(index.siblingAtRow(other)); };
        const QColor fill = state.isListFocused ? tokens.selection : tokens.selectionInactive;
        painter.fillPath(blockPath(rect, !isSelectedAt(row - 1), !isSelectedAt(row + 1)), fill);
        const QRectF pill(rect.left() + 2, rect.top() + 5, LookMeasures::pillWidth, rect.height() - 10);
        fillRounded(
            painter, pill, state.isListFocused ? tokens.selectionPill : tokens.selectionInactivePill, pill.width() / 2);
    } else if (option.state.testFlag(QStyle::State_MouseOver) && view.isEnabled()) {
        // With an edge, because the fill alone is hard to tell from that of a selection without focus.
        painter.setPen(mixed(tokens.separator, tokens.fieldBorder, 0.35));
        painter.setBrush(tokens.rowHover);
        painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), LookMeasures::rowRadius, LookMeasures::rowRadius);
    }
    const bool isCurrent = view.hasFocus() && view.currentIndex() == index;
    const bool isTicking = index.data(Qt::CheckStateRole).isValid();
    if (isCurrent && !state.isDropTarget && (isTicking || view.selectionModel()->selectedIndexes().size() != 1)) {
        constexpr qreal width = 1.5;
        painter.setPen(QPen(tokens.focusRing, width));
        painter.setBrush(Qt::NoBrush);
        const QRectF ring = rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
        painter.drawRoundedRect(ring, LookMeasures::rowRadius, LookMeasures::rowRadius);
    }
}

bool RowDelegate::helpEvent(
    QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QString text = markToolTip(event->pos(), option, index);
    const QString name = index.data(PatchRoles::Name).toString();
    if (text.isEmpty() && option.fontMetrics.horizontalAdvance(name) > nameRect(option, index).width()) {
        text = name;
    }
    // A name that looks like markup is shown as it stands.
    const QString shown = Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
    QToolTip::showText(event->globalPos(), shown, view);
    return true;
}

QString RowDelegate::markToolTip(
    const QPoint &position, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (speakerRect(option, index).contains(position)) {
        return index.data(PatchRoles::HasUserIR).toBool() ? tr("User impulse response") : tr("Stock impulse response");
    }
    if (firmwareRect(option).contains(position)) {
        return tr("Firmware %1").arg(FirmwareBadge::shownVersion(index.data(PatchRoles::Version).toString()));
    }
    return {};
}

void RowDelegate::paintSpeaker(QPainter &painter, const QRect &rect, bool hasUserIR, const RowState &state)
{
    const QString symbol = hasUserIR ? QStringLiteral("speaker.circle.lit") : QStringLiteral("speaker.circle");
    paintSymbol(&painter, symbol, hasUserIR ? state.accent : state.markOff, rect);
}

QRect RowDelegate::firmwareRect(const QStyleOptionViewItem &option)
{
    // A badge of several digits is wider, to the left; nearly all show one.
    const QSize size = firmwareBadgeSize(QStringLiteral("0"), option.font);
    const int height =
        LookMeasures::rowBadgeHeight(option.fontMetrics, QFontMetrics(LookMeasures::badgeFont(option.font)));
    const int right = option.rect.right() + 1 - LookMeasures::columnPadding;
    return {right - size.width(), option.rect.top() + (option.rect.height() - height) / 2, size.width(), height};
}

void RowDelegate::paintFirmware(QPainter &painter, const QRect &rect, const QString &version, const RowState &state)
{
    const FirmwareBadge badge = FirmwareBadge::of(version);
    const int width = std::max(rect.width(), firmwareBadgeSize(badge.text, painter.font()).width());
    const QRect area(rect.right() + 1 - width, rect.top(), width, rect.height());
    paintFirmwareBadge(&painter, area, badge.text, badge.colour, state.text);
}

void RowDelegate::paintName(QPainter &painter, const QRect &rect, const QString &name, const QColor &colour)
{
    painter.setPen(colour);
    const QString shown = painter.fontMetrics().elidedText(name, Qt::ElideRight, rect.width());
    painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}
