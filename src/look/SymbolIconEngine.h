#pragma once

#include "LookTokens.h"

#include <QIconEngine>

#include <variant>

/// Draws a symbol in a colour that is looked up when it is painted, never before.
class SymbolIconEngine : public QIconEngine {
public:
    using Colour = std::variant<QPalette::ColorRole, QColor LookTokens::*>;

    SymbolIconEngine(QString name, Colour colour);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    /// `size` is in the pixels of the device, `scale` already multiplied in.
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    [[nodiscard]] QIconEngine *clone() const override;
    QString iconName() override;

private:
    [[nodiscard]] QColor colourFor(QIcon::Mode mode) const;

    QString m_name;
    Colour m_colour;
};
