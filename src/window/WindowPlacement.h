#pragma once

#include <QByteArray>
#include <QList>
#include <QRect>

class QWidget;

/// Where a window stands that was closed on screens which may be other ones now.
namespace WindowPlacement {

/// The frame that fits: as it is, or moved and made smaller as far as it takes to lie wholly on the screen that has
/// most of it, or on the nearest one. `screens` is the room that the desktop leaves on each; without any, nothing
/// changes.
[[nodiscard]] QRect fitted(const QRect &frame, const QList<QRect> &screens);

/// Gives a window that is not shown yet the geometry that saveGeometry() gave, so that it fits the screens there are.
/// Its frame is not known before it is shown: keepOnScreen() has to follow then. False for what is no such geometry, or
/// one of a much larger or smaller screen, which changes nothing.
bool restore(QWidget &window, const QByteArray &geometry);
/// Moves a window that is shown, and makes it smaller, if its frame does not fit the screens. One that is maximized or
/// fills its screen is left alone.
void keepOnScreen(QWidget &window);

} // namespace WindowPlacement
