#include "RelativeFont.h"

#include <QEvent>
#include <QWidget>

#include <utility>

FontFollower::FontFollower(QWidget &widget, std::function<void()> follow, QObject *owner)
    : QObject(owner)
    , m_follow(std::move(follow))
{
    widget.installEventFilter(this);
}

bool FontFollower::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        m_follow();
    }
    return QObject::eventFilter(watched, event);
}

void RelativeFont::set(QWidget &widget, QFont (*derive)(const QFont &base))
{
    const auto follow = [&widget, derive] { widget.setFont(derive(widget.parentWidget()->font())); };
    // The widget itself is not told, because it has a font of its own.
    new FontFollower(*widget.parentWidget(), follow, &widget);
    follow();
}
