#include "DragPicture.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"
#include "Symbols.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int cardHeight = 30;
// Where a line of text is 16 pixels high.
constexpr QSize narrowest(140, cardHeight);
constexpr QSize widest(260, cardHeight);
constexpr int peep = 3; // of each card below
constexpr int overlap = 10; // of the count's badge beyond the card
constexpr int topMargin = overlap - 4; // for that badge
constexpr qreal opacity = 0.94;

void paintCard(QPainter &painter, const QRectF &rect)
{
    const LookTokens &tokens = LookTokens::current();
    painter.setPen(QPen(tokens.fieldBorder, 1));
    painter.setBrush(tokens.button);
    painter.drawRoundedRect(
        rect.adjusted(0.5, 0.5, -0.5, -0.5), LookMeasures::controlRadius, LookMeasures::controlRadius);
}

void paintCount(QPainter &painter, const QRectF &card, qsizetype count, const QFont &font)
{
    const LookTokens &tokens = LookTokens::current();
    const QFont badgeFont = LookMeasures::badgeFont(font);
    const QString text = QString::number(count);
    const qreal height = std::max(18, LookMeasures::badgeHeight(QFontMetrics(badgeFont)));
    const qreal width = std::max<qreal>(height, QFontMetricsF(badgeFont).horizontalAdvance(text) + 10);
    const QRectF badge(card.right() + overlap - width, card.top() - overlap + 4, width, height);
    fillRounded(painter, badge, tokens.accent, height / 2);
    painter.setPen(tokens.badgeText);
    painter.setFont(badgeFont);
    painter.drawText(badge, Qt::AlignCenter, text);
}

} // namespace

QPixmap DragPicture::paint(const QString &name, bool hasUserIR, qsizetype count, const QFont &font, qreal ratio)
{
    const QFontMetrics metrics(font);
    const int symbolSize = LookMeasures::symbolSize(metrics);
    const int beforeName = LookMeasures::columnPadding + symbolSize + LookMeasures::gap;
    const int width = std::clamp(beforeName + metrics.horizontalAdvance(name) + LookMeasures::detailsPadding,
        LookMeasures::scaledToText(narrowest, metrics).width(), LookMeasures::scaledToText(widest, metrics).width());
    const int height = std::max(cardHeight, metrics.height() + 12);
    const int below = static_cast<int>(std::min<qsizetype>(count - 1, 2));
    const QSize size(width + overlap, topMargin + height + 2 * peep);

    QPixmap picture(
        QSize(static_cast<int>(std::ceil(size.width() * ratio)), static_cast<int>(std::ceil(size.height() * ratio))));
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity);
    const QRectF card(0, topMargin, width, height);
    for (int i = below; i > 0; --i) {
        paintCard(painter, card.adjusted(4.0 * i, peep * i, -4.0 * i, peep * i));
    }
    paintCard(painter, card);

    const LookTokens &tokens = LookTokens::current();
    const QRectF symbol(
        card.left() + LookMeasures::columnPadding, card.center().y() - symbolSize / 2.0, symbolSize, symbolSize);
    paintSymbol(&painter, hasUserIR ? QStringLiteral("speaker.circle.lit") : QStringLiteral("speaker.circle"),
        hasUserIR ? tokens.accentText : tokens.markOff, symbol);
    painter.setFont(font);
    painter.setPen(tokens.buttonText);
    const QRectF text = card.adjusted(beforeName, 0, -LookMeasures::gap, 0);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
        metrics.elidedText(name, Qt::ElideRight, static_cast<int>(text.width())));
    if (count > 1) {
        paintCount(painter, card, count, font);
    }
    return picture;
}

QPoint DragPicture::hotSpot(const QPixmap &picture, const QFont &font)
{
    // The pointer may be at the lower edge of its row. A margin in the picture itself would be opaque where the desktop
    // knows no transparency.
    return {
        0, static_cast<int>(picture.deviceIndependentSize().height()) + LookMeasures::rowHeight(QFontMetrics(font))};
}
