#include "WindowPlacement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

QList<QRect> roomOfScreens()
{
    QList<QRect> rooms;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        rooms.append(screen->availableGeometry());
    }
    return rooms;
}

int area(const QRect &rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

int distance(const QRect &a, const QRect &b)
{
    const int across = std::max({a.left() - b.right(), b.left() - a.right(), 0});
    const int down = std::max({a.top() - b.bottom(), b.top() - a.bottom(), 0});
    return across + down;
}

/// Whole, as long as the window can be as small as that.
void fit(QWidget &window, const QRect &inner, const QMargins &frame)
{
    const QRect room = WindowPlacement::fitted(inner + frame, roomOfScreens()) - frame;
    const QRect placed(room.topLeft(), room.size().expandedTo(window.minimumSizeHint()));
    if (placed != window.geometry()) {
        window.setGeometry(placed);
    }
}

} // namespace

QRect WindowPlacement::fitted(const QRect &frame, const QList<QRect> &screens)
{
    if (screens.isEmpty()) {
        return frame;
    }
    const QRect room = *std::max_element(screens.begin(), screens.end(), [&frame](const QRect &a, const QRect &b) {
        const int inA = area(a & frame);
        const int inB = area(b & frame);
        return inA == inB ? distance(a, frame) > distance(b, frame) : inA < inB;
    });
    QRect placed(frame.topLeft(), frame.size().boundedTo(room.size()));
    placed.moveRight(std::min(placed.right(), room.right()));
    placed.moveBottom(std::min(placed.bottom(), room.bottom()));
    placed.moveLeft(std::max(placed.left(), room.left()));
    placed.moveTop(std::max(placed.top(), room.top()));
    return placed;
}

bool WindowPlacement::restore(QWidget &window, const QByteArray &geometry)
{
    if (!window.restoreGeometry(geometry)) {
        return false;
    }
    const Qt::WindowStates large = window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen);
    const QRect inner = large ? window.normalGeometry() : window.geometry();
    if (large) {
        // The size that it goes back to has to fit as well.
        window.setWindowState(window.windowState() & ~large);
    }
    // There is no frame yet.
    fit(window, inner, {});
    if (large) {
        window.setWindowState(window.windowState() | large);
    }
    return true;
}

void WindowPlacement::keepOnScreen(QWidget &window)
{
    if (window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized)) {
        return;
    }
    const QRect inner = window.geometry();
    const QRect outer = window.frameGeometry();
    fit(window, inner,
        {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
            outer.bottom() - inner.bottom()});
}
