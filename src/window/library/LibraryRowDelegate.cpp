#include "LibraryRowDelegate.h"

#include "ClassificationMarks.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "PatchRoles.h"
#include "Symbols.h"
#include "Utf8Text.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int markGap = 10;

bool isTickable(const QModelIndex &index)
{
    return index.flags().testFlag(Qt::ItemIsUserCheckable);
}

int tickedNameOffset(const QStyleOptionViewItem &option)
{
    constexpr int tickGap = 10;
    return LookMeasures::tickSize(option.fontMetrics) + tickGap;
}

QRect tickRect(const QStyleOptionViewItem &option)
{
    const int size = LookMeasures::tickSize(option.fontMetrics);
    return {option.rect.left() + LookMeasures::columnPadding, option.rect.top() + (option.rect.height() - size) / 2,
        size, size};
}

/// A comment may be longer than any screen.
QString toolTipOf(const QString &comment)
{
    constexpr qsizetype longest = 600;
    const QString start = Utf8Text::firstCharacters(comment, longest);
    return start.size() < comment.size() ? start + u'\u2026' : comment;
}

} // namespace

QRect LibraryRowDelegate::speakerRect(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const
{
    const int size = LookMeasures::symbolSize(option.fontMetrics);
    const int left = firmwareRect(option).left() - markGap - size;
    return {left, option.rect.top() + (option.rect.height() - size) / 2, size, size};
}

QRect LibraryRowDelegate::defaultMarkRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QRect speaker = speakerRect(option, index);
    return speaker.translated(-(speaker.width() + markGap), 0);
}

LibraryRowDelegate::Parts LibraryRowDelegate::partsOf(
    const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    constexpr int nameShare = 3; ///< of this many parts of the room, the marks may take one
    constexpr int leastComment = 120;
    const QRect &row = option.rect;
    const int left = row.left() + LookMeasures::columnPadding + (isTickable(index) ? tickedNameOffset(option) : 0);
    const QRect behind =
        index.data(PatchRoles::IsDefault).toBool() ? defaultMarkRect(option, index) : speakerRect(option, index);
    const int room = std::max(behind.left() - LookMeasures::columnPadding - left, 0);
    const auto part = [&](int from, int width) { return QRect(left + from, row.top(), width, row.height()); };

    const QString name = index.data(PatchRoles::Name).toString();
    // The advance is rounded, and a fraction of a pixel would do to shorten the name.
    const int nameWidth = std::min(option.fontMetrics.horizontalAdvance(name) + 1, room);
    const auto flags = index.data(PatchRoles::Classification).value<ShownFlags>();
    const int letteredWidth = ClassificationMarks::width(flags, true, option.font);
    const int plainWidth = ClassificationMarks::width(flags, false, option.font);

    Parts parts;
    int used = nameWidth;
    parts.name = part(0, room);
    if (!flags.isEmpty()) {
        const int spare = room - LookMeasures::columnPadding;
        parts.areMarksLettered = nameWidth + letteredWidth <= spare;
        const int marksWidth = parts.areMarksLettered ? letteredWidth : plainWidth;
        if (nameWidth + marksWidth <= spare || marksWidth * nameShare <= spare) {
            const int shownName = std::min(nameWidth, spare - marksWidth);
            parts.name = part(0, shownName);
            parts.marks = part(shownName + LookMeasures::columnPadding, marksWidth);
            used = shownName + LookMeasures::columnPadding + marksWidth;
        }
    }
    const bool areMarksShown = flags.isEmpty() || !parts.marks.isNull();
    const int commentRoom = room - used - LookMeasures::columnPadding;
    if (areMarksShown && commentRoom >= leastComment && !index.data(PatchRoles::Comment).toString().isEmpty()) {
        parts.name.setWidth(std::min(parts.name.width(), nameWidth));
        parts.comment = part(used + LookMeasures::columnPadding, commentRoom);
    }
    return parts;
}

QRect LibraryRowDelegate::nameRect(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return partsOf(option, index).name;
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
    const Parts parts = partsOf(option, index);
    paintName(painter, parts.name, name, state.text);
    if (!parts.marks.isNull()) {
        const auto flags = index.data(PatchRoles::Classification).value<ShownFlags>();
        const QColor colour = option.widget->isEnabled() ? QColor() : state.markOff;
        ClassificationMarks::paint(painter, parts.marks, flags, parts.areMarksLettered, colour);
    }
    if (!parts.comment.isNull()) {
        painter.setFont(LookMeasures::footnoteFont(option.font));
        paintName(
            painter, parts.comment, PatchRoles::firstLine(index.data(PatchRoles::Comment).toString()), state.secondary);
        painter.setFont(option.font);
    }
    if (index.data(PatchRoles::IsDefault).toBool()) {
        paintSymbol(&painter, QStringLiteral("star.fill"), state.accent, defaultMarkRect(option, index));
    }
    paintSpeaker(painter, speakerRect(option, index), index.data(PatchRoles::HasUserIR).toBool(), state);
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
    if (QString common = RowDelegate::markToolTip(position, option, index); !common.isEmpty()) {
        return common;
    }
    if (index.data(PatchRoles::IsDefault).toBool() && defaultMarkRect(option, index).contains(position)) {
        return tr("Default patch");
    }
    const Parts parts = partsOf(option, index);
    const auto flags = index.data(PatchRoles::Classification).value<ShownFlags>();
    QString spoken = PatchRoles::spokenFlags(flags);
    if (parts.marks.contains(position)) {
        return spoken;
    }
    if (parts.comment.contains(position)) {
        return toolTipOf(index.data(PatchRoles::Comment).toString());
    }
    // What has no room is told all the same.
    const bool isUntold = !flags.isEmpty() && parts.marks.isNull();
    return isUntold ? index.data(PatchRoles::Name).toString() + u'\n' + spoken : QString();
}
