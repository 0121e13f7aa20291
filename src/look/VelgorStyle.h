#pragma once

#include <QProxyStyle>

class KeyboardHints;
class QStyleOptionButton;
class QStyleOptionMenuItem;
class QStyleOptionSlider;

/// The style of every widget, the same on every desktop: Fusion with our own buttons, fields, menus, scroll bars,
/// splitters and progress bars. Colours come from the palette, or from LookTokens where the palette has no
/// role.
///
/// Boolean dynamic properties choose a variant: `lead`, `strong`, `plain`, `destructive` and `roomy` of a push button
/// (see ButtonLook), `quiet` of a line edit, which then has no frame until the pointer or the focus reaches it. A
/// checked action button has the selection's fill and an accent symbol.
///
/// Letters that work with Alt are underlined in menus, and elsewhere while Alt is held down.
///
/// A push button's size includes LookMeasures::focusGutter around its panel.
class VelgorStyle : public QProxyStyle {
    Q_OBJECT

public:
    VelgorStyle();

    void polish(QApplication *application) override;
    void unpolish(QApplication *application) override;
    void polish(QWidget *widget) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    void drawPrimitive(
        PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const override;
    void drawControl(
        ControlElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
        const QWidget *widget) const override;

    [[nodiscard]] QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
        const QWidget *widget) const override;
    [[nodiscard]] QRect subElementRect(
        SubElement element, const QStyleOption *option, const QWidget *widget) const override;
    [[nodiscard]] QSize sizeFromContents(
        ContentsType type, const QStyleOption *option, const QSize &size, const QWidget *widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    [[nodiscard]] int styleHint(
        StyleHint hint, const QStyleOption *option, const QWidget *widget, QStyleHintReturn *returnData) const override;
    [[nodiscard]] QIcon standardIcon(
        StandardPixmap pixmap, const QStyleOption *option, const QWidget *widget) const override;
    [[nodiscard]] QPixmap standardPixmap(
        StandardPixmap pixmap, const QStyleOption *option, const QWidget *widget) const override;

private:
    void drawButtonLabel(const QStyleOptionButton &option, QPainter *painter, const QWidget *widget) const;
    void drawMenuBarItem(const QStyleOptionMenuItem &option, QPainter *painter, const QWidget *widget) const;
    void drawMenuItem(const QStyleOptionMenuItem &option, QPainter *painter, const QWidget *widget) const;
    void drawScrollBar(const QStyleOptionSlider &option, QPainter *painter, const QWidget *widget) const;
    [[nodiscard]] QRect scrollBarRect(const QStyleOptionSlider &option, SubControl part) const;

    [[nodiscard]] static QSize menuItemSize(const QStyleOptionMenuItem &option, const QSize &size);

    KeyboardHints *m_keyboardHints;
};
