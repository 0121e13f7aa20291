#include "ValueLabel.h"

ValueLabel::ValueLabel(const QString &description, QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setAccessibleDescription(description);
    // A long value is cut rather than making its column wider.
    setMinimumWidth(1);
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
