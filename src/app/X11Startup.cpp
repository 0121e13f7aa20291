#include "X11Startup.h"

#include <QGuiApplication>

#if defined(VELGOR_HAS_XCB) && QT_CONFIG(xcb)

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

namespace {

constexpr qsizetype piece = 20;

template <typename T>
using Reply = std::unique_ptr<T, void (*)(void *)>;

xcb_connection_t *connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_screen_t *screenOf(xcb_connection_t *server)
{
    return xcb_setup_roots_iterator(xcb_get_setup(server)).data;
}

xcb_atom_t atom(xcb_connection_t *server, QByteArrayView name)
{
    const xcb_intern_atom_cookie_t cookie =
        xcb_intern_atom(server, false, static_cast<uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(server, cookie, nullptr), std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void sendToRoot(xcb_connection_t *server, const xcb_client_message_event_t &message, uint32_t mask)
{
    xcb_send_event(server, false, screenOf(server)->root, mask, reinterpret_cast<const char *>(&message));
}

/// The time in milliseconds with which the id of a start ends by convention.
std::optional<uint32_t> timeOf(const QByteArray &startupId)
{
    constexpr QByteArrayView mark = "_TIME";
    const qsizetype at = startupId.lastIndexOf(mark);
    bool isNumber = false;
    const uint time = at < 0 ? 0 : startupId.sliced(at + mark.size()).toUInt(&isNumber);
    return isNumber && time != XCB_CURRENT_TIME ? std::optional<uint32_t>(time) : std::nullopt;
}

QByteArray quoted(QByteArray text)
{
    return '"' + text.replace('\\', "\\\\").replace('"', "\\\"") + '"';
}

} // namespace

void X11Startup::complete(const QByteArray &startupId)
{
    xcb_connection_t *server = connection();
    if (!server || startupId.isEmpty()) {
        return;
    }
    // The pieces of one message are known by a window of their sender.
    const xcb_window_t sender = xcb_generate_id(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, sender, screenOf(server)->root, -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = sender;
    message.type = atom(server, "_NET_STARTUP_INFO_BEGIN");
    // With the zero byte that ends it.
    const QByteArray text = "remove: ID=" + quoted(startupId) + '\0';
    for (qsizetype at = 0; at < text.size(); at += piece) {
        const QByteArray part = text.mid(at, piece).leftJustified(piece, '\0');
        std::memcpy(message.data.data8, part.constData(), sizeof(message.data.data8));
        sendToRoot(server, message, XCB_EVENT_MASK_PROPERTY_CHANGE);
        message.type = atom(server, "_NET_STARTUP_INFO");
    }
    xcb_destroy_window(server, sender);
    // The program may end before anything else is sent.
    const Reply<xcb_get_input_focus_reply_t> answer(
        xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr), std::free);
}

void X11Startup::activate(const QWindow &window, const QByteArray &startupId)
{
    xcb_connection_t *server = connection();
    const std::optional<uint32_t> time = timeOf(startupId);
    if (!server || !time) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_change_property(
        server, XCB_PROP_MODE_REPLACE, id, atom(server, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1, &*time);
    constexpr uint32_t byApplication = 1;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = atom(server, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = byApplication;
    message.data.data32[1] = *time;
    sendToRoot(server, message, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    xcb_flush(server);
}

#else

void X11Startup::complete(const QByteArray & /*startupId*/) { }

void X11Startup::activate(const QWindow & /*window*/, const QByteArray & /*startupId*/) { }

#endif
