#pragma once

#include "LookTokens.h"

#include <QWidget>

/// A symbol that stands by itself, in a colour that follows the scheme. It only repeats what a text beside it says,
/// so assistive technology does not meet it.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    using Colour = QColor LookTokens::*;

    SymbolView(const QString &symbol, Colour colour, QWidget *parent);

    void setSymbol(const QString &symbol, Colour colour);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    Colour m_colour;
};
