#include "LibraryCheckDelegate.h"

#include "LookMeasures.h"
#include "LookTokens.h"

#include <QPainter>

namespace {

void paintGround(QPainter &painter, const QStyleOptionViewItem &option, bool isFocused)
{
    const LookTokens &tokens = LookTokens::current();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
    if (!isSelected && !isHovered) {
        return;
    }
    const QRectF rect = option.rect;
    painter.setPen(Qt::NoPen);
    painter.setBrush(!isSelected ? tokens.rowHover : isFocused ? tokens.selection : tokens.selectionInactive);
    painter.drawRoundedRect(rect, LookMeasures::rowRadius, LookMeasures::rowRadius);
    if (isSelected) {
        constexpr int pillMargin = 5;
        const QRectF pill(rect.left() + LookMeasures::tinyGap, rect.top() + pillMargin, LookMeasures::pillWidth,
            rect.height() - 2 * pillMargin);
        painter.setBrush(isFocused ? tokens.selectionPill : tokens.selectionInactivePill);
        painter.drawRoundedRect(pill, pill.width() / 2, pill.width() / 2);
    }
}

} // namespace

QSize LibraryCheckDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    Q_UNUSED(index)
    return {100, LookMeasures::rowHeight(option.fontMetrics)};
}

void LibraryCheckDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const LookTokens &tokens = LookTokens::current();
    const bool isTitle = !index.flags().testFlag(Qt::ItemIsEnabled);
    const bool isFocused = option.widget != nullptr && option.widget->hasFocus();
    const bool isHighlighted = isFocused && option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (!isTitle) {
        paintGround(*painter, option, isFocused);
    }
    const QFont font = isTitle ? LookMeasures::strongFont(option.font) : option.font;
    painter->setFont(font);
    painter->setPen(isHighlighted ? tokens.highlightedText : tokens.text);
    const QRect rect = option.rect.adjusted(LookMeasures::gap, 0, -LookMeasures::gap, 0);
    const QString shown = QFontMetrics(font).elidedText(
        index.data().toString(), isTitle ? Qt::ElideRight : Qt::ElideMiddle, rect.width());
    painter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
    painter->restore();
}
