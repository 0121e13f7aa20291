#include "BadgePainter.h"

#include "ColourMix.h"
#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"

#include <QPainter>

#include <algorithm>

using namespace LookMeasures;

namespace {

/// A firmware badge has an edge inside its rectangle, and stands in a column: one digit takes the room of two.
constexpr int firmwarePadding = badgePadding + 2;

void paintText(QPainter *painter, const QRectF &rect, const QString &text, const QColor &colour)
{
    painter->setFont(badgeFont(painter->font()));
    painter->setPen(colour);
    painter->drawText(rect, Qt::AlignCenter | Qt::TextSingleLine, text.trimmed());
}

} // namespace

QSize firmwareBadgeSize(const QString &text, const QFont &base)
{
    const QFontMetrics metrics(badgeFont(base));
    const int twoDigits = metrics.horizontalAdvance(QStringLiteral("00")) + 2 * badgePadding;
    return {std::max(twoDigits, metrics.horizontalAdvance(text.trimmed()) + 2 * firmwarePadding), badgeHeight(metrics)};
}

QSize placeBadgeSize(const QString &text, const QFont &base)
{
    const QFontMetrics metrics(badgeFont(base));
    return {metrics.horizontalAdvance(text) + 2 * badgePadding, badgeHeight(metrics)};
}

FirmwareBadgeColours firmwareBadgeColours(const std::optional<QColor> &versionColour)
{
    const LookTokens &tokens = LookTokens::current();
    const QColor colour = versionColour.value_or(tokens.accent);
    if (tokens.isDark) {
        return {withAlpha(mixed(colour, Qt::white, 0.15), 0.3), mixed(colour, Qt::white, 0.3)};
    }
    return {withAlpha(colour, 0.13), mixed(colour, Qt::black, 0.2)};
}

void paintFirmwareBadge(QPainter *painter, const QRectF &rect, const QString &text,
    const std::optional<QColor> &versionColour, const QColor &textColour)
{
    const FirmwareBadgeColours colours = firmwareBadgeColours(versionColour);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(colours.edge);
    painter->setBrush(colours.fill);
    painter->drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), badgeRadius, badgeRadius);
    paintText(painter, rect, text, textColour);
    painter->restore();
}

void paintPlaceBadge(QPainter *painter, const QRectF &rect, const QString &text)
{
    const LookTokens &tokens = LookTokens::current();
    painter->save();
    fillRounded(*painter, rect, tokens.accent, badgeRadius);
    paintText(painter, rect, text, tokens.badgeText);
    painter->restore();
}
