#include "WrappedText.h"

#include <QFontMetrics>
#include <QTextLayout>

#include <algorithm>

namespace {

bool isBlank(QChar character)
{
    return character.isSpace();
}

bool isWordFitting(const QString &word, const QFont &font, int width)
{
    QTextLayout layout(word, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WordWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    bool isFitting = true;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        isFitting = isFitting && line.naturalTextWidth() <= width;
    }
    layout.endLayout();
    return isFitting;
}

} // namespace

bool WrappedText::canBeWrapped(const QString &text, const QFont &font, int width)
{
    return fitted(text, font, width) == text;
}

QString WrappedText::fitted(const QString &text, const QFont &font, int width)
{
    const QFontMetrics metrics(font);
    QString result;
    for (auto from = text.begin(); from != text.end();) {
        const auto to = std::find_if(from, text.end(), isBlank);
        const QString word(from, to - from);
        const bool isFitting = metrics.horizontalAdvance(word) <= width || isWordFitting(word, font, width);
        result += isFitting ? word : metrics.elidedText(word, Qt::ElideMiddle, width);
        from = std::find_if_not(to, text.end(), isBlank);
        result += QString(to, from - to);
    }
    return result;
}
