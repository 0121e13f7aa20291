#pragma once

#include <QColor>
#include <QSize>
#include <QString>

#include <optional>

class QFont;
class QPainter;
class QRectF;

/// The size of a firmware badge, or of the badge of a place, in the text font `base`. One digit takes the room of two.
/// Spaces around the text do not count.
[[nodiscard]] QSize firmwareBadgeSize(const QString &text, const QFont &base);
[[nodiscard]] QSize placeBadgeSize(const QString &text, const QFont &base);

/// What a firmware badge is painted with.
struct FirmwareBadgeColours {
    QColor fill; ///< See-through, so that the row shines through
    QColor edge;
};

/// The colours for a version's colour, or for the accent when there is none, in the scheme in use.
[[nodiscard]] FirmwareBadgeColours firmwareBadgeColours(const std::optional<QColor> &versionColour);

/// A tinted badge with an edge, for the version's number. It takes the text colour of its surroundings, because its
/// fill lets them through. The painter's font is the text font that the size was asked for.
void paintFirmwareBadge(QPainter *painter, const QRectF &rect, const QString &text,
    const std::optional<QColor> &versionColour, const QColor &textColour);

/// A solid badge for a place in the content, white on the accent.
void paintPlaceBadge(QPainter *painter, const QRectF &rect, const QString &text);
