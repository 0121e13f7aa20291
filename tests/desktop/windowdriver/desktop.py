"""A desktop of its own: X server, window manager, session bus and accessibility bus."""

import ctypes
import os
import pathlib
import select
import shutil
import subprocess
import tempfile
import time
import uuid

from gi.repository import GLib
from PIL import ImageGrab
from Xlib import display as xdisplay

from .accessible import REGISTRY, ROOT, AccessibilityBus
from .errors import Failure, Gone
from .input import Keyboard, Mouse
from .program import Program

# The main window has no decoration, so that its pictures show nothing but the program.
WINDOW_MANAGER_CONFIGURATION = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
 <focus><focusNew>yes</focusNew><focusLast>yes</focusLast><followMouse>no</followMouse></focus>
 <placement><policy>Smart</policy><center>yes</center></placement>
 <theme><name>Clearlooks</name><keepBorder>no</keepBorder></theme>
 <desktops><number>1</number><popupTime>0</popupTime></desktops>
 <keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
 <mouse><context name="Client">
  <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
 </context></mouse>
 <applications><application type="normal"><decor>no</decor></application></applications>
</openbox_config>
"""

# Starts no services, so that nothing of the surrounding system takes part.
SESSION_BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><keep_umask/><listen>unix:path={socket}</listen>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
</policy></busconfig>
"""

KEPT_VARIABLES = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS")
# Has room around a main window of 1280 by 800.
SCREEN = "1400x900x24"
PR_SET_CHILD_SUBREAPER = 36


class Desktop:
    """Everything it starts ends with it, also when this process is killed."""

    # Waits end as soon as their condition holds, so that a generous limit costs nothing.
    WAIT_SECONDS = 30

    def __init__(self, artifacts, is_composited=False):
        """Composited, windows may be translucent, and every picture takes longer."""
        self.artifacts = pathlib.Path(artifacts)
        self.is_composited = is_composited
        self.mark = f"WINDOW_DRIVER={uuid.uuid4().hex}"
        self.helpers = []
        self.programs = []
        self.screen = self.bus = None

    def __enter__(self):
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
        self.artifacts.mkdir(parents=True, exist_ok=True)
        self.directory = pathlib.Path(tempfile.mkdtemp(prefix="velgor-window-"))
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
        runtime = self.directory / "run"
        runtime.mkdir(mode=0o700)
        self.environment = {name: os.environ[name] for name in KEPT_VARIABLES if name in os.environ}
        self.environment.update([self.mark.split("=")])
        self.environment.update(
            HOME=str(self.directory), XDG_RUNTIME_DIR=str(runtime), LANG="C.UTF-8", TZ="UTC", GSETTINGS_BACKEND="memory"
        )
        number = self._spawn("Xvfb", "-displayfd", "{fd}", "-screen", "0", SCREEN, "-dpi", "96", "-nolisten", "tcp")
        self.environment["DISPLAY"] = f":{number}"
        self.screen = xdisplay.Display(f":{number}")
        self.keyboard = Keyboard(self.screen)
        self.mouse = Mouse(self.screen, self.keyboard)
        self._start_buses(runtime)
        configuration = self.directory / "openbox.xml"
        configuration.write_text(WINDOW_MANAGER_CONFIGURATION)
        self._spawn("openbox", "--sm-disable", "--config-file", str(configuration))
        root = self.screen.screen().root
        check = self.screen.intern_atom("_NET_SUPPORTING_WM_CHECK")
        self.wait(lambda: root.get_full_property(check, 0), "the window manager")
        if self.is_composited:
            self._spawn("xcompmgr", "-n")
            selection = self.screen.intern_atom("_NET_WM_CM_S0")
            self.wait(lambda: self.screen.get_selection_owner(selection), "the compositor")
        self.environment.update(
            QT_QPA_PLATFORM="xcb",
            QT_XCB_GL_INTEGRATION="none",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_ENABLE_HIGHDPI_SCALING="0",
            QT_FONT_DPI="96",
        )

    def _start_buses(self, runtime):
        configuration = self.directory / "session.conf"
        configuration.write_text(SESSION_BUS_CONFIGURATION.format(socket=runtime / "bus"))
        address = self._spawn("dbus-daemon", f"--config-file={configuration}", "--nofork", "--print-address={fd}")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self._spawn("/usr/libexec/at-spi-bus-launcher", "--launch-immediately")
        session = AccessibilityBus(address)

        def has_launcher():
            name = GLib.Variant("(s)", ("org.a11y.Bus",))
            return session.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner", name)[0]

        self.wait(has_launcher, "the accessibility bus")
        launcher = ("org.a11y.Bus", "/org/a11y/bus")
        enabled = GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True)))
        session.call(*launcher, "org.freedesktop.DBus.Properties", "Set", enabled)
        self.bus = AccessibilityBus(session.call(*launcher, "org.a11y.Bus", "GetAddress")[0])
        session.close()
        self.bus.call(REGISTRY, ROOT, "org.a11y.atspi.Accessible", "GetChildren")

    def _spawn(self, program, *arguments):
        """Starts a helper; returns the line that it writes to the descriptor "{fd}" of its arguments."""
        if shutil.which(program) is None:
            raise Failure(f"{program} is not installed; scripts/setup window installs it")
        reading, writing = os.pipe()
        command = [program] + [argument.format(fd=writing) for argument in arguments]
        with open(self.directory / (os.path.basename(program) + ".log"), "wb") as log:
            helper = self.run(command, self.environment, "TERM", stdout=log, stderr=log, pass_fds=(writing,))
        os.close(writing)
        self.helpers.append(helper)
        with os.fdopen(reading) as answer:
            if not any("{fd}" in argument for argument in arguments):
                return None
            ready, _, _ = select.select([answer], [], [], self.WAIT_SECONDS)
            line = answer.readline().strip() if ready else ""
        if not line:
            raise Failure(f"{program} did not start")
        return line

    def run(self, command, environment, signal_at_death, **options):
        """A process that gets a signal when this one dies, in whatever way."""
        dying = ["setpriv", "--pdeathsig", signal_at_death, "--"]
        return subprocess.Popen(
            dying + [str(part) for part in command],
            env=environment,
            stdin=subprocess.DEVNULL,
            start_new_session=True,
            **options,
        )

    def new_home(self):
        return pathlib.Path(tempfile.mkdtemp(prefix="home-", dir=self.directory))

    def start(self, command, home, **environment):
        """Starts the program under test with `home` and all of XDG below it, and does not wait for its window."""
        variables = dict(self.environment, HOME=str(home), **environment)
        for name in ("config", "cache", "data", "state"):
            variables[f"XDG_{name.upper()}_HOME"] = str(home / name)
        program = Program(self, command, variables, home)
        self.programs.append(program)
        return program

    def wait(self, condition, what, seconds=None):
        """Asks until `condition` returns something true, which is returned. Vanished widgets count as not yet."""
        end = time.monotonic() + (seconds or self.WAIT_SECONDS)
        last = None
        while True:
            try:
                last = None
                if found := condition():
                    return found
            except Gone as error:
                last = error
            if time.monotonic() > end:
                raise Failure(f"waited in vain for {what}" + (f" ({last})" if last else ""))
            time.sleep(0.05)

    def screenshot(self, path=None):
        picture = ImageGrab.grab(xdisplay=self.environment["DISPLAY"]).convert("RGB")
        if path is not None:
            picture.save(path)
        return picture

    def still_screenshot(self):
        """Waits until two pictures in a row are equal."""
        pictures = [self.screenshot()]

        def is_still():
            time.sleep(0.1)
            pictures.append(self.screenshot())
            return pictures[-1].tobytes() == pictures[-2].tobytes()

        self.wait(is_still, "a picture that does not change")
        return pictures[-1]

    def keep_evidence(self):
        """The screen and the widgets, where a failure is looked into."""
        if self.bus is None:
            return
        picture = self.artifacts / "failure.png"
        self.screenshot(picture)
        for program in self.programs:
            print(f"-- {program.command[0]}, {program.outcome()}")
            print("\n".join(program.lines[-20:]))
            if program.is_running and program.root is not None:
                print("\n".join(program.root.tree()))
        print(f"-- screen: {picture}")

    def stop(self):
        for program in self.programs:
            program.end()
        if self.bus is not None:
            self.bus.close()
        if self.screen is not None:
            self.screen.close()
        for helper in reversed(self.helpers):
            helper.terminate()
            helper.wait()
        # What the helpers started in turn, known by the mark in its environment.
        end = time.monotonic() + 5
        while (left := self._marked()) and time.monotonic() < end:
            time.sleep(0.05)
        for process in left:
            os.kill(process, 9)
        self._reap()
        shutil.rmtree(self.directory, ignore_errors=True)

    def _marked(self):
        found = []
        for process in filter(str.isdigit, os.listdir("/proc")):
            try:
                variables = pathlib.Path("/proc", process, "environ").read_bytes().split(b"\0")
            except OSError:
                continue
            if self.mark.encode() in variables and int(process) != os.getpid():
                found.append(int(process))
        return found

    @staticmethod
    def _reap():
        try:
            while os.waitpid(-1, os.WNOHANG)[0]:
                pass
        except ChildProcessError:
            pass
