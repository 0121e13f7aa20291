#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// What the desktop gives a program that the user starts, so that its window may take the keyboard from another one.
struct Activation {
    QByteArray token = {}; ///< Wayland: lets a window come to the front, once
    QByteArray startupId = {}; ///< X11: names the start, and ends in the time at which the user asked for it

    /// Removes the token from the environment, where every program that is started later would find it. To be called
    /// before there is an application: the startup id stays until then, as Qt looks for it there, and is removed with
    /// removeStartupIdFromEnvironment(). What is no sound token is left out.
    [[nodiscard]] static Activation extractFromEnvironment();
    static void removeStartupIdFromEnvironment();

    /// Printable ASCII without blanks, and not longer than any desktop makes it.
    [[nodiscard]] static bool isSound(QByteArrayView text);

    /// Desktops that know one of the two often take it for the other too.
    [[nodiscard]] QByteArray forWayland() const { return token.isEmpty() ? startupId : token; }
    [[nodiscard]] QByteArray forX11() const { return startupId.isEmpty() ? token : startupId; }

    friend bool operator==(const Activation &, const Activation &) = default;
};
