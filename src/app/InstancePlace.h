#pragma once

#include <QString>
#include <QStringList>

/// Where the application that has a library directory listens for further starts.
namespace InstancePlace {

/// The local sockets that it may listen on, best first; none where the user has no directory for sockets.
///
/// On desktops with XDG's directories the best stands in "app/APPLICATION-ID" below the runtime directory, the only
/// part of that which sandboxes of the application share with each other and with programs outside. The second is for a
/// runtime directory with so long a path that the first has no room in a socket's address of about a hundred bytes.
[[nodiscard]] QStringList sockets(const QString &libraryDirectory);

/// Makes the directory of the socket, for this user alone, if it is missing. False when it is not to be trusted.
[[nodiscard]] bool prepare(const QString &socket);

/// The directory of the socket is there, and nobody but this user can change what is in it.
[[nodiscard]] bool isTrusted(const QString &socket);

} // namespace InstancePlace
