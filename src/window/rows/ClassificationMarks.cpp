#include "ClassificationMarks.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "RoundedFill.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr QSizeF plainSize{14, 6};
constexpr qreal radius = 3;
constexpr int marksApart = 3;
constexpr int letteredLeast = 16;
constexpr int letterPadding = 4;

int markWidth(const PatchField &field, bool isLettered, const QFont &base)
{
    if (!isLettered) {
        return static_cast<int>(plainSize.width());
    }
    const QFontMetrics metrics(badgeFont(base));
    return std::max(letteredLeast, metrics.horizontalAdvance(PatchFlags::initial(field)) + 2 * letterPadding);
}

} // namespace

int ClassificationMarks::width(const ShownFlags &flags, bool areLettered, const QFont &base)
{
    int width = std::max(static_cast<int>(flags.size()) - 1, 0) * marksApart;
    for (const PatchField *field : flags) {
        width += markWidth(*field, areLettered, base);
    }
    return width;
}

void ClassificationMarks::paint(
    QPainter &painter, const QRect &rect, const ShownFlags &flags, bool areLettered, const QColor &colour)
{
    painter.save();
    const QFont base = painter.font();
    const QFont letters = badgeFont(base);
    const qreal height = areLettered ? rowBadgeHeight(QFontMetrics(base), QFontMetrics(letters)) : plainSize.height();
    painter.setFont(letters);
    qreal x = rect.left();
    for (const PatchField *field : flags) {
        const QRectF mark(x, rect.top() + (rect.height() - height) / 2, markWidth(*field, areLettered, base), height);
        fillRounded(
            painter, mark, colour.isValid() ? colour : ToggleButton::toneColour(PatchFlags::tone(*field)), radius);
        if (areLettered) {
            painter.setPen(LookTokens::current().badgeText);
            painter.drawText(mark, Qt::AlignCenter | Qt::TextSingleLine, PatchFlags::initial(*field));
        }
        x += mark.width() + marksApart;
    }
    painter.restore();
}
