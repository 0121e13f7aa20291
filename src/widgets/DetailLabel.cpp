#include "DetailLabel.h"

DetailLabel::DetailLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setForegroundRole(QPalette::PlaceholderText);
    setTextFormat(Qt::PlainText);
    // A selectable text stands a pixel higher than another, so that both have to be.
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::NoFocus);
}
