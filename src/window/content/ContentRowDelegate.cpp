#include "ContentRowDelegate.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "PatchListView.h"
#include "PatchRoles.h"
#include "RoundedFill.h"
#include "Symbols.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int positionGap = 10;
constexpr int bankSize = 3;

QRect positionRect(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    // The last row's position is the widest one there is.
    const int rows = std::max(index.model()->rowCount(), 99);
    const QString widest = QString(QString::number((rows + 2) / bankSize).size(), u'3') + QStringLiteral(".3");
    const int width = option.fontMetrics.horizontalAdvance(widest);
    return {option.rect.left() + LookMeasures::columnPadding, option.rect.top(), width, option.rect.height()};
}

} // namespace

QRect ContentRowDelegate::speakerRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int size = LookMeasures::symbolSize(option.fontMetrics);
    const int left = positionRect(option, index).right() + 1 + positionGap;
    return {left, option.rect.top() + (option.rect.height() - size) / 2, size, size};
}

QRect ContentRowDelegate::nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int left = speakerRect(option, index).right() + 1 + LookMeasures::gap;
    const int right = firmwareRect(option).left() - LookMeasures::gap;
    return {left, option.rect.top(), std::max(right - left, 0), option.rect.height()};
}

bool ContentRowDelegate::isOnBand(const QModelIndex &index) const
{
    return index.row() / bankSize % 2 == 1;
}

void ContentRowDelegate::paintRow(
    QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index, const RowState &state) const
{
    paintPosition(painter, option, index, state);
    if (state.isDropTarget) {
        paintReplacement(painter, option, index, state);
        return;
    }
    paintSpeaker(painter, speakerRect(option, index), index.data(PatchRoles::HasUserIR).toBool(), state);
    paintName(painter, nameRect(option, index), index.data(PatchRoles::Name).toString(), state.text);
    paintFirmware(painter, firmwareRect(option), index.data(PatchRoles::Version).toString(), state);
}

void ContentRowDelegate::paintPosition(
    QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index, const RowState &state)
{
    const QString position = index.data(PatchRoles::Position).toString();
    const QRect rect = positionRect(option, index);
    if (index.data(PatchRoles::IsPlaceUsed).toBool() && !state.isDropTarget) {
        const int width = option.fontMetrics.horizontalAdvance(position);
        const int height = std::min(std::max(18, option.fontMetrics.height() + 2), rect.height() - 4);
        const QRectF badge(
            rect.right() + 1 - width - 4.5, rect.top() + (rect.height() - height) / 2.0, width + 9, height);
        fillRounded(painter, badge, LookTokens::current().accent, LookMeasures::badgeRadius);
        painter.setPen(LookTokens::current().badgeText);
    } else {
        painter.setPen(index.row() % bankSize == 0 ? state.text : state.secondary);
    }
    painter.drawText(rect, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, position);
}

void ContentRowDelegate::paintReplacement(
    QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index, const RowState &state) const
{
    const DropMark &mark = viewOf(option)->dropMark();
    paintSymbol(&painter, QStringLiteral("arrow.right"), state.accent, speakerRect(option, index));

    QFont struck = LookMeasures::footnoteFont(option.font);
    struck.setStrikeOut(true);
    const QFontMetrics metrics(struck);
    const int right = option.rect.right() + 1 - LookMeasures::columnPadding;
    const QString leaving =
        metrics.elidedText(index.data(PatchRoles::Name).toString(), Qt::ElideRight, option.rect.width() * 2 / 5);
    const int leavingWidth = std::min(metrics.horizontalAdvance(leaving), option.rect.width() * 2 / 5);
    const QRect leavingRect(right - leavingWidth, option.rect.top(), leavingWidth, option.rect.height());
    painter.setFont(struck);
    painter.setPen(LookTokens::current().secondary);
    painter.drawText(leavingRect, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, leaving);

    painter.setFont(option.font);
    QRect comingRect = nameRect(option, index);
    comingRect.setRight(leavingRect.left() - LookMeasures::gap);
    paintName(painter, comingRect, mark.names.value(index.row() - mark.row), state.text);
}
