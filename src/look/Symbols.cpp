#include "Symbols.h"

#include "SymbolShapes.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <variant>

namespace {

QPixmap rendered(const QString &name, const QColor &colour, int px, qreal ratio)
{
    QByteArray document = SymbolShapes::document(name);
    document.replace("currentColor", colour.name().toLatin1());
    QSvgRenderer renderer(document);
    const int side = qRound(px * ratio);
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(colour.alphaF());
    renderer.render(&painter, QRectF(0, 0, side, side));
    painter.end();
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

int sideOf(const QSize &size)
{
    return std::min(size.width(), size.height());
}

/// Draws a symbol in a colour that is looked up when it is painted, never before.
class SymbolIconEngine : public QIconEngine {
public:
    using Colour = std::variant<QPalette::ColorRole, QColor LookTokens::*>;

    SymbolIconEngine(QString name, Colour colour)
        : m_name(std::move(name))
        , m_colour(colour)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        QRect square(0, 0, sideOf(rect.size()), sideOf(rect.size()));
        square.moveCenter(rect.center());
        paintSymbol(painter, m_name, colourFor(mode), square);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }
    /// `size` is in the pixels of the device, `scale` already multiplied in.
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State /*state*/, qreal /*scale*/) override
    {
        // QIcon puts the ratio on the pixmap itself.
        return symbolPixmap(m_name, colourFor(mode), sideOf(size), 1);
    }
    [[nodiscard]] QIconEngine *clone() const override { return new SymbolIconEngine(*this); }
    QString iconName() override { return m_name; }

private:
    [[nodiscard]] QColor colourFor(QIcon::Mode mode) const
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

    QString m_name;
    Colour m_colour;
};

} // namespace

QPixmap symbolPixmap(const QString &name, const QColor &colour, int px, qreal ratio)
{
    const QString key = QStringLiteral("symbol/%1/%2/%3/%4").arg(name, colour.name(QColor::HexArgb)).arg(px).arg(ratio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = rendered(name, colour, px, ratio);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

void paintSymbol(QPainter *painter, const QString &name, const QColor &colour, const QRectF &rect)
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    painter->drawPixmap(rect.topLeft(), symbolPixmap(name, colour, qRound(rect.width()), ratio));
}

QIcon symbolIcon(const QString &name, QPalette::ColorRole role)
{
    return QIcon(new SymbolIconEngine(name, role));
}

QIcon symbolIcon(const QString &name, QColor LookTokens::*token)
{
    return QIcon(new SymbolIconEngine(name, token));
}
