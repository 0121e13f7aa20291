"""A Wayland desktop of its own, without a screen, a graphics card, a seat or a session."""

import contextlib
import json
import os
import pathlib
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import time

from PIL import Image
from windowdriver import Failure

# Windows lie behind each other, and come to the front when they are activated by right.
CONFIGURATION = """xwayland disable
output * resolution 1280x800 background #204060 solid_color
focus_follows_mouse no
focus_on_window_activation focus
workspace_layout tabbed
default_border none
"""
KEPT_VARIABLES = ("PATH", "LD_LIBRARY_PATH")
NOBODY = 65534
HOUR = 3_600_000  # milliseconds


class Client:
    """A program on the desktop, with a home of its own. What it prints as an error is kept."""

    def __init__(self, desktop, command, home, **variables):
        environment = dict(desktop.environment, HOME=str(home), **variables)
        for name in ("config", "cache", "data", "state"):
            environment[f"XDG_{name.upper()}_HOME"] = str(home / name)
        self.desktop, self.home = desktop, home
        self.error_file = home / f"errors-{time.monotonic_ns()}"
        with self.error_file.open("wb") as errors:
            self.process = desktop.run(command, environment, stdout=subprocess.DEVNULL, stderr=errors)

    @property
    def errors(self):
        return self.error_file.read_text(errors="replace")

    @property
    def window(self):
        """How the desktop shows the program's window; nothing while there is none."""
        return next((window for window in self.desktop.windows() if window["pid"] == self.process.pid), None)

    def wait_window(self, is_meant, what):
        def found():
            if self.process.poll() is not None:
                raise Failure(f"the program ended with {self.process.returncode} while waiting for {what}: {self.errors}")
            window = self.window
            return window if window and is_meant(window) else None

        return self.desktop.wait(found, what)

    def wait_exit(self):
        return self.desktop.wait(lambda: self.process.poll() is not None, "the end of the program") and self.process.poll()

    def quit(self):
        self.process.send_signal(signal.SIGTERM)
        return self.wait_exit()


class WaylandDesktop:
    """Everything it starts ends with it, also when this process is killed."""

    WAIT_SECONDS = 30

    def __init__(self, artifacts):
        self.artifacts = pathlib.Path(artifacts)
        self.processes = []

    def __enter__(self):
        self.artifacts.mkdir(parents=True, exist_ok=True)
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="velgor-wayland-"))
        try:
            self._start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, kind, error, trace):
        try:
            if error is not None:
                self.keep_evidence()
        finally:
            self.stop()

    def _start(self):
        for program in ("sway", "swaymsg", "grim", "wtype"):
            if shutil.which(program) is None:
                raise Failure(f"{program} is not installed; scripts/setup window installs it")
        own, runtime = self.directory / "sway", self.directory / "run"
        own.mkdir(mode=0o700)
        runtime.mkdir(mode=0o700)
        configuration = own / "configuration"
        configuration.write_text(CONFIGURATION)
        kept = {name: os.environ[name] for name in KEPT_VARIABLES if name in os.environ}
        kept.update(LANG="C.UTF-8", TZ="UTC")
        command = ["sway", "--config", configuration]
        if os.geteuid() == 0:
            # Which it refuses to run as.
            for path in (own, configuration):
                os.chown(path, NOBODY, NOBODY)
            self.directory.chmod(0o711)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", *command]
        headless = dict(
            kept,
            HOME=str(own),
            XDG_RUNTIME_DIR=str(own),
            WLR_BACKENDS="headless",
            WLR_LIBINPUT_NO_DEVICES="1",
            WLR_RENDERER="pixman",
        )
        with open(self.artifacts / "sway.log", "wb") as log:
            self.run(command, headless, stdout=log, stderr=log)
        display = self.wait(lambda: next(own.glob("wayland-[0-9]"), None), "the compositor")
        commands = self.wait(lambda: next(own.glob("sway-ipc.*"), None), "the compositor's commands")
        self.environment = dict(
            kept,
            XDG_RUNTIME_DIR=str(runtime),
            WAYLAND_DISPLAY=str(display),
            SWAYSOCK=str(commands),
            QT_QPA_PLATFORM="wayland",
        )
        self.wait(lambda: self._ask("swaymsg", "-t", "get_outputs"), "the compositor's answers")
        # A keyboard that stays, as programs miss the keys of one that has just come.
        self.run(["wtype", "-s", str(HOUR)], self.environment)

    def run(self, command, environment, **options):
        """A process that ends when this one dies, in whatever way."""
        process = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", "--", *map(str, command)],
            env=environment,
            stdin=subprocess.DEVNULL,
            start_new_session=True,
            **options,
        )
        self.processes.append(process)
        return process

    def _ask(self, *command):
        done = subprocess.run(command, env=self.environment, capture_output=True, check=False)
        return done.stdout if done.returncode == 0 else None

    def tell(self, *command):
        if self._ask("swaymsg", "--", *command) is None:
            raise Failure(f"sway does not take: {' '.join(command)}")

    def press(self, *words):
        """Types as wtype's arguments say."""
        if self._ask("wtype", *words) is None:
            raise Failure(f"wtype does not type: {' '.join(words)}")

    def windows(self):
        """All windows as sway describes them: "pid", "app_id", "name", "focused", "visible" and more."""
        found, left = [], [json.loads(self._ask("swaymsg", "-r", "-t", "get_tree"))]
        while left:
            node = left.pop()
            left += node["nodes"] + node["floating_nodes"]
            if "pid" in node and "app_id" in node:
                found.append(node)
        return found

    def picture(self, name):
        path = self.artifacts / name
        if self._ask("grim", path) is None:
            raise Failure("grim takes no picture")
        with Image.open(path) as image:
            return image.convert("RGB")

    def activation_token(self):
        """What a launcher asks for before it starts a program."""
        return _activation_token(self.environment["WAYLAND_DISPLAY"])

    def new_home(self):
        return pathlib.Path(tempfile.mkdtemp(prefix="home-", dir=self.directory))

    def wait(self, condition, what):
        """Asks until `condition` returns something true, which is returned."""
        end = time.monotonic() + self.WAIT_SECONDS
        while not (found := condition()):
            if time.monotonic() > end:
                raise Failure(f"waited in vain for {what}")
            time.sleep(0.03)
        return found

    def keep_evidence(self):
        if self._ask("grim", self.artifacts / "failure.png") is not None:
            print(f"-- screen: {self.artifacts / 'failure.png'}")
            for window in self.windows():
                print("--", {name: window[name] for name in ("pid", "app_id", "name", "focused", "visible")})

    def stop(self):
        for process in reversed(self.processes):
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)
            process.wait()
        shutil.rmtree(self.directory, ignore_errors=True)


# Wayland's own numbers: of the first objects, of the requests that are sent and of the events that are waited for.
DISPLAY, REGISTRY, CALLBACK, ACTIVATION, TOKEN = 1, 2, 3, 4, 5
SYNC, GET_REGISTRY, BIND, GET_TOKEN, COMMIT = 0, 1, 0, 1, 3
FAILED, GLOBAL, DONE = 0, 0, 0


def _activation_token(display):
    with socket.socket(socket.AF_UNIX) as connection:
        connection.settimeout(WaylandDesktop.WAIT_SECONDS)
        connection.connect(display)
        events = connection.makefile("rb")

        def send(target, request, arguments=b""):
            connection.sendall(struct.pack("=IHH", target, request, 8 + len(arguments)) + arguments)

        def received(wanted):
            """The events up to the wanted one."""
            while True:
                source, event, size = struct.unpack("=IHH", events.read(8))
                arguments = events.read(size - 8)
                if (source, event) == (DISPLAY, FAILED):
                    raise Failure(f"the compositor refuses: {arguments}")
                yield source, event, arguments
                if (source, event) == wanted:
                    return

        send(DISPLAY, GET_REGISTRY, struct.pack("=I", REGISTRY))
        send(DISPLAY, SYNC, struct.pack("=I", CALLBACK))
        name = None
        for source, event, arguments in received((CALLBACK, DONE)):
            if (source, event) == (REGISTRY, GLOBAL) and _text(arguments[4:]) == "xdg_activation_v1":
                name = struct.unpack_from("=I", arguments)[0]
        if name is None:
            raise Failure("the compositor activates no windows")
        interface = b"xdg_activation_v1\0"
        padded = struct.pack("=I", len(interface)) + interface + bytes(-len(interface) % 4)
        send(REGISTRY, BIND, struct.pack("=I", name) + padded + struct.pack("=II", 1, ACTIVATION))
        send(ACTIVATION, GET_TOKEN, struct.pack("=I", TOKEN))
        send(TOKEN, COMMIT)
        return [_text(arguments) for _, _, arguments in received((TOKEN, DONE))][-1]


def _text(arguments):
    length = struct.unpack_from("=I", arguments)[0]
    return arguments[4 : 4 + length - 1].decode()
