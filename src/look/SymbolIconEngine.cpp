#include "SymbolIconEngine.h"

#include "Symbols.h"

#include <QGuiApplication>
#include <QPainter>

#include <algorithm>

namespace {

int sideOf(const QSize &size)
{
    return std::min(size.width(), size.height());
}

} // namespace

SymbolIconEngine::SymbolIconEngine(QString name, Colour colour)
    : m_name(std::move(name))
    , m_colour(colour)
{
}

void SymbolIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State /*state*/)
{
    QRect square(0, 0, sideOf(rect.size()), sideOf(rect.size()));
    square.moveCenter(rect.center());
    paintSymbol(painter, m_name, colourFor(mode), square);
}

QPixmap SymbolIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    return scaledPixmap(size, mode, state, 1);
}

QPixmap SymbolIconEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State /*state*/, qreal /*scale*/)
{
    // QIcon puts the ratio on the pixmap itself.
    return symbolPixmap(m_name, colourFor(mode), sideOf(size), 1);
}

QIconEngine *SymbolIconEngine::clone() const
{
    return new SymbolIconEngine(*this);
}

QString SymbolIconEngine::iconName()
{
    return m_name;
}

QColor SymbolIconEngine::colourFor(QIcon::Mode mode) const
{
    const QPalette palette = QGuiApplication::palette();
    if (const auto *role = std::get_if<QPalette::ColorRole>(&m_colour)) {
        return palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, *role);
    }
    if (mode == QIcon::Disabled) {
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    }
    return LookTokens::current().*std::get<QColor LookTokens::*>(m_colour);
}
