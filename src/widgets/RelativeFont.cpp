#include "RelativeFont.h"

#include <QEvent>
#include <QWidget>

void RelativeFont::set(QWidget &widget, Derive derive)
{
    new RelativeFont(widget, derive);
}

RelativeFont::RelativeFont(QWidget &widget, Derive derive)
    : QObject(&widget)
    , m_widget(widget)
    , m_derive(derive)
{
    // The widget itself is not told, because it has a font of its own.
    widget.parentWidget()->installEventFilter(this);
    apply();
}

void RelativeFont::apply()
{
    m_widget.setFont(m_derive(m_widget.parentWidget()->font()));
}

bool RelativeFont::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        apply();
    }
    return QObject::eventFilter(watched, event);
}
