#pragma once

#include <QByteArray>
#include <QWindow>

/// What X11's window managers know of a start of the program. Does nothing where the application has no connection to
/// an X server.
namespace X11Startup {

/// Ends the busy pointer that stands for a start which shows no window of its own.
void complete(const QByteArray &startupId);

/// Asks the window manager for the keyboard as of the moment at which the user asked for the start, which Qt cannot
/// know: by the last event of the window itself, the request would look older than what the user did elsewhere since.
/// Does nothing when the id tells no time.
void activate(const QWindow &window, const QByteArray &startupId);

} // namespace X11Startup
