#!/usr/bin/python3
"""What X11's window managers are told of starts of the program: startup.py PROGRAM VELGOR SAMPLES ARTIFACTS"""

import select

from session import check_equal, run
from Xlib import X, Xatom, Xutil
from Xlib import display as xdisplay
from Xlib.protocol import event

MESSAGE_TYPES = ("_NET_STARTUP_INFO_BEGIN", "_NET_STARTUP_INFO")


class Onlooker:
    """Sees what is sent to the window manager, as that itself and a launcher do, and has a window of its own."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.screen = xdisplay.Display(desktop.environment["DISPLAY"])
        self.root = self.screen.screen().root
        self.root.change_attributes(event_mask=X.PropertyChangeMask | X.SubstructureNotifyMask)
        self.window = self.root.create_window(0, 0, 600, 400, 0, X.CopyFromParent, event_mask=X.PropertyChangeMask)
        self.unfinished = {}
        self.startup_messages = []
        self.activations = []  # window and time
        self.screen.sync()

    def close(self):
        self.screen.close()

    def atom(self, name):
        return self.screen.intern_atom(name)

    def text_of(self, window, name):
        found = window.get_full_property(self.atom(name), X.AnyPropertyType)
        return found.value if found else None

    def time(self):
        """The server's time."""
        self.window.change_property(self.atom("ONLOOKER"), Xatom.INTEGER, 32, [1])
        while True:
            self._wait_event()
            for seen in self._events():
                if seen.type == X.PropertyNotify and seen.window == self.window:
                    return seen.time

    def _wait_event(self):
        self.screen.flush()
        if not self.screen.pending_events():
            select.select([self.screen], [], [], self.desktop.WAIT_SECONDS)

    def _events(self):
        while self.screen.pending_events():
            seen = self.screen.next_event()
            if seen.type == X.ClientMessage:
                self._note(seen)
            yield seen

    def _note(self, message):
        kind = self.screen.get_atom_name(message.client_type)
        if kind == "_NET_ACTIVE_WINDOW":
            self.activations.append((message.window.id, message.data[1][1]))
        elif kind in MESSAGE_TYPES:
            begun = b"" if kind == MESSAGE_TYPES[0] else self.unfinished.pop(message.window.id)
            whole, end, _ = (begun + bytes(message.data[1])).partition(b"\0")
            if end:
                self.startup_messages.append(whole.decode())
            else:
                self.unfinished[message.window.id] = whole

    def look(self):
        """Takes in what was sent so far."""
        self.screen.sync()
        list(self._events())

    def window_of(self, process):
        """The window that the window manager knows of a process."""
        for number in self.text_of(self.root, "_NET_CLIENT_LIST") or []:
            window = self.screen.create_resource_object("window", number)
            if list(self.text_of(window, "_NET_WM_PID") or []) == [process] and self.text_of(window, "_NET_WM_NAME"):
                return window
        return None

    def is_in_front(self, window):
        active = self.text_of(self.root, "_NET_ACTIVE_WINDOW")
        stacked = self.text_of(self.root, "_NET_CLIENT_LIST_STACKING")
        return active is not None and list(active)[:1] == [window.id] and list(stacked)[-1] == window.id

    def come_to_front(self):
        """Covers the others with a window that the user has just used."""
        self.window.change_property(self.atom("_NET_WM_USER_TIME"), Xatom.CARDINAL, 32, [self.time()])
        self.window.map()
        self._tell_manager(self.window, "_NET_ACTIVE_WINDOW", [2, self.time(), 0, 0, 0])
        self.desktop.wait(lambda: self.is_in_front(self.window), "the other window in front")

    def iconify(self, window):
        self._tell_manager(window, "WM_CHANGE_STATE", [Xutil.IconicState, 0, 0, 0, 0])
        hidden = self.atom("_NET_WM_STATE_HIDDEN")
        self.desktop.wait(lambda: hidden in (self.text_of(window, "_NET_WM_STATE") or []), "the window to be minimised")

    def _tell_manager(self, window, kind, data):
        message = event.ClientMessage(window=window, client_type=self.atom(kind), data=(32, data))
        self.root.send_event(message, X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.screen.flush()


def start_again(session, identifier):
    """A start that hands over, as a launcher makes it."""
    second = session.desktop.start([session.executable], session.home, DESKTOP_STARTUP_ID=identifier)
    check_equal(second.wait_exit(), 0, "exit status of the second start")
    check_equal(second.lines, [], "what the second start prints")


def check_first_start(session, onlooker):
    """Qt ends the busy pointer of a start that shows a window, and nothing of the start is left for other programs."""
    tools = session.desktop.new_home()
    opener, record = tools / "xdg-open", tools / "environment"
    opener.write_text(f'#!/bin/sh\nenv >"{record}"\necho END >>"{record}"\n')
    opener.chmod(0o755)
    session.variables = {
        "PATH": f"{tools}:{session.desktop.environment['PATH']}",
        "DESKTOP_STARTUP_ID": "menu/first-1_TIME1",
        "XDG_ACTIVATION_TOKEN": "menu/first-1_TIME1",
    }
    session.start()

    def is_told():
        onlooker.look()
        return any("menu/first-1_TIME1" in text for text in onlooker.startup_messages)

    session.desktop.wait(is_told, "the end of the first start")
    session.program.menu("Library", "Show library folder")
    session.desktop.wait(lambda: record.exists() and "END" in record.read_text(), "the program that shows the folder")
    names = {line.split("=")[0] for line in record.read_text().splitlines()}
    check_equal("HOME" in names, True, "the environment is recorded")
    check_equal(names & {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}, set(), "tokens left in the environment")


def check_second_start(session, onlooker, window, identifier, clicked):
    """The window comes to the front as of the click, and the busy pointer goes with the start."""
    onlooker.look()
    onlooker.startup_messages.clear()
    onlooker.activations.clear()
    start_again(session, identifier)
    onlooker.look()
    quoted = identifier.replace("\\", "\\\\").replace('"', '\\"')
    check_equal(onlooker.startup_messages, [f'remove: ID="{quoted}"'], "messages of the start")
    session.desktop.wait(lambda: onlooker.is_in_front(window), "the window in front")

    def is_asked():
        onlooker.look()
        return (window.id, clicked) in onlooker.activations

    session.desktop.wait(is_asked, "the request for the keyboard as of the click")
    used = onlooker.text_of(window, "_NET_WM_USER_TIME")[0]
    check_equal(used >= clicked, True, f"the window's last use, {used}, is not before the click, {clicked}")


def startup(session):
    onlooker = Onlooker(session.desktop)
    try:
        check_first_start(session, onlooker)
        window = onlooker.window_of(session.program.process.pid)
        onlooker.come_to_front()
        clicked = onlooker.time()
        check_second_start(session, onlooker, window, f"menu/velgor/7-0-host_TIME{clicked}", clicked)

        onlooker.come_to_front()
        onlooker.iconify(window)
        clicked = onlooker.time()
        # Of more than one piece, and with letters that are quoted.
        identifier = f'menu/{"long" * 20}\\"/7-0-host_TIME{clicked}'
        check_second_start(session, onlooker, window, identifier, clicked)

        onlooker.come_to_front()
        onlooker.look()
        onlooker.activations.clear()
        start_again(session, "without-a-time")
        session.desktop.wait(lambda: onlooker.is_in_front(window), "the window in front")
        session.quit()
    finally:
        onlooker.close()


if __name__ == "__main__":
    run(startup)
