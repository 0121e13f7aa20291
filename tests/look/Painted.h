#pragma once

#include <QImage>
#include <QPushButton>
#include <QStyleOptionButton>

/// A button that claims a state which only a pointer or a desktop could bring about.
template <typename Button>
class InState : public Button {
public:
    using Button::Button;

    QStyle::State extra;

    void initStyleOption(QStyleOptionButton *option) const override
    {
        Button::initStyleOption(option);
        option->state |= extra;
    }
};

/// What a widget looks like at its preferred size.
inline QImage painted(QWidget &widget)
{
    widget.resize(widget.sizeHint());
    return widget.grab().toImage();
}
