#include "EmptyDetails.h"

#include "LookMeasures.h"
#include "RelativeFont.h"

#include <QLabel>

#include <algorithm>

using namespace LookMeasures;

EmptyDetails::EmptyDetails(QWidget *parent)
    : QWidget(parent)
    , m_text(new QLabel(this))
    , m_nextStep(new QLabel(this))
{
    new FontFollower(
        *this, [this] { arrange(); }, this);
    m_text->setForegroundRole(QPalette::PlaceholderText);
    for (QLabel *label : {m_text, m_nextStep}) {
        label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
}

void EmptyDetails::setText(const QString &text, const QString &nextStep)
{
    m_text->setText(text);
    m_nextStep->setText(nextStep);
    m_nextStep->setVisible(!nextStep.isEmpty());
    arrange();
}

QSize EmptyDetails::minimumSizeHint() const
{
    // It shares its place with the form, which decides.
    return {1, 1};
}

void EmptyDetails::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void EmptyDetails::arrange()
{
    constexpr int widest = 300;
    constexpr int lineLength = 44;
    const auto widthFor = [this](int wanted) { return std::max(std::min(wanted, width() - 2 * columnPadding), 1); };
    int textWidth = widthFor(std::max(widest, lineLength * fontMetrics().averageCharWidth()));
    const auto heightOf = [&textWidth](const QLabel *label) {
        return label->text().isEmpty() ? 0 : label->heightForWidth(textWidth);
    };
    const auto neededHeight = [&] { return heightOf(m_text) + gap + heightOf(m_nextStep); };
    if (neededHeight() > height()) {
        textWidth = widthFor(width());
    }
    const int windowTop = mapTo(window(), QPoint(0, 0)).y();
    const int wanted = window()->height() * 2 / 5 + emptyStateSymbolSize - windowTop;
    const int lowest = std::max(height() - neededHeight(), 0);
    const int top = std::clamp(wanted, std::min(gap, lowest), lowest);
    const int left = (width() - textWidth) / 2;
    m_text->setGeometry(left, top, textWidth, heightOf(m_text));
    m_nextStep->setGeometry(left, top + heightOf(m_text) + gap, textWidth, heightOf(m_nextStep));
}
