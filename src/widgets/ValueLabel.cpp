#include "ValueLabel.h"

ValueLabel::ValueLabel(const QString &description, QWidget *parent)
    : ElidedLabel(parent)
{
    setAccessibleDescription(description);
}

void ValueLabel::setValue(const QString &value)
{
    if (value == text()) {
        return;
    }
    // What holds no text takes no focus either, because it would have no name.
    setTextInteractionFlags(value.isEmpty() ? Qt::NoTextInteraction : Qt::TextSelectableByMouse);
    setText(value);
}

DetailLabel::DetailLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setForegroundRole(QPalette::PlaceholderText);
    setTextFormat(Qt::PlainText);
    // A selectable text stands a pixel higher than another, so that both have to be.
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::NoFocus);
}
