#include "Symbols.h"

#include "SymbolIconEngine.h"
#include "SymbolShapes.h"

#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

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

QStringList symbolNames()
{
    return SymbolShapes::names();
}
