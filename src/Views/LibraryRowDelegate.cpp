#include "LibraryRowDelegate.h"

#include "FirmwareBadge.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "PatchRoles.h"
#include "Symbols.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int markGap = 10;
constexpr int tickedNameOffset = 28;

bool isTickable(const QModelIndex &index)
{
    return index.flags().testFlag(Qt::ItemIsUserCheckable);
}

} // namespace

QRect LibraryRowDelegate::tickRect(const QStyleOptionViewItem &option)
{
    const int size = LookMeasures::tickSize(option.fontMetrics);
    return {option.rect.left() + LookMeasures::columnPadding, option.rect.top() + (option.rect.height() - size) / 2,
        size, size};
}

QRect LibraryRowDelegate::speakerRect(const QStyleOptionViewItem &option)
{
    const int size = LookMeasures::symbolSize(option.fontMetrics);
    const int left = firmwareRect(option).left() - markGap - size;
    return {left, option.rect.top() + (option.rect.height() - size) / 2, size, size};
}

QRect LibraryRowDelegate::defaultMarkRect(const QStyleOptionViewItem &option)
{
    const QRect speaker = speakerRect(option);
    return speaker.translated(-(speaker.width() + markGap), 0);
}

QRect LibraryRowDelegate::nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool isTicking = isTickable(index);
    const int left = option.rect.left() + LookMeasures::columnPadding + (isTicking ? tickedNameOffset : 0);
    const bool isDefault = index.data(PatchRoles::IsDefault).toBool();
    const QRect behind = isDefault ? defaultMarkRect(option) : speakerRect(option);
    return {
        left, option.rect.top(), std::max(behind.left() - LookMeasures::columnPadding - left, 0), option.rect.height()};
}

void LibraryRowDelegate::paintRow(
    QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index, const RowState &state) const
{
    const QString name = index.data(PatchRoles::Name).toString();
    if (index.data(PatchRoles::IsPlaceholder).toBool()) {
        paintName(painter, option.rect.adjusted(LookMeasures::columnPadding, 0, 0, 0), name, state.secondary);
        return;
    }
    if (isTickable(index)) {
        const bool isTicked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        const QString symbol = isTicked ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("circle");
        paintSymbol(&painter, symbol, isTicked ? state.accent : state.markOff, tickRect(option));
    }
    paintName(painter, nameRect(option, index), name, state.text);
    if (index.data(PatchRoles::IsDefault).toBool()) {
        paintSymbol(&painter, QStringLiteral("star.fill"), state.accent, defaultMarkRect(option));
    }
    paintSpeaker(painter, speakerRect(option), index.data(PatchRoles::HasUserIR).toBool(), state);
    paintFirmware(painter, firmwareRect(option), index.data(PatchRoles::Version).toString(), state);
}

bool LibraryRowDelegate::editorEvent(
    QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (!isTickable(index)) {
        return false;
    }
    const bool isKey = event->type() == QEvent::KeyPress;
    if (isKey && static_cast<QKeyEvent *>(event)->key() != Qt::Key_Space) {
        return false;
    }
    if (!isKey) {
        if (event->type() != QEvent::MouseButtonRelease && event->type() != QEvent::MouseButtonDblClick) {
            return false;
        }
        const auto *mouse = static_cast<QMouseEvent *>(event);
        // The whole height of the row, as far as the name, so that the tick is easy to hit.
        const QRect target(option.rect.left(), option.rect.top(), tickRect(option).right() + 6 - option.rect.left(),
            option.rect.height());
        if (mouse->button() != Qt::LeftButton || !target.contains(mouse->position().toPoint())) {
            return false;
        }
    }
    const bool isTicked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, isTicked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

QString LibraryRowDelegate::markToolTip(
    const QPoint &position, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.data(PatchRoles::IsPlaceholder).toBool()) {
        return {};
    }
    if (speakerRect(option).contains(position)) {
        return index.data(PatchRoles::HasUserIR).toBool() ? tr("User impulse response") : tr("Stock impulse response");
    }
    if (index.data(PatchRoles::IsDefault).toBool() && defaultMarkRect(option).contains(position)) {
        return tr("Default patch");
    }
    if (firmwareRect(option).contains(position)) {
        return tr("Firmware %1").arg(FirmwareBadge::shownVersion(index.data(PatchRoles::Version).toString()));
    }
    return {};
}
