#include "SymbolView.h"

#include "LookMeasures.h"
#include "Symbols.h"

#include <QPainter>

using namespace LookMeasures;

SymbolView::SymbolView(const QString &symbol, Colour colour, QWidget *parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_colour(colour)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setSymbol(const QString &symbol, Colour colour)
{
    m_symbol = symbol;
    m_colour = colour;
    update();
}

QSize SymbolView::sizeHint() const
{
    const int size = symbolSize(fontMetrics());
    return {size, size};
}

void SymbolView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    paintSymbol(&painter, m_symbol, LookTokens::current().*m_colour, rect());
}
