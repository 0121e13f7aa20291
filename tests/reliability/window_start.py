"""The window program, killed at every system call with which its start and its end change files."""

from __future__ import annotations

import os
import pathlib
import random
import shutil
import signal
import subprocess
import time

from harness import Figures, Library, LibraryBroken, State, Velgor, calls, check_next_start, random_presets, same

SLOWEST = 60.0  # seconds
PATIENCE = 10.0  # seconds within which a start and the end after it are expected
SETTLED = 0.3  # seconds from the lock to a window that has loaded its library


class Window:
    def __init__(self, executable: pathlib.Path, home: pathlib.Path) -> None:
        self.executable, self.home = executable, home
        self.directory = home / "Documents" / "VelgorLibrary"
        kept = {name: text for name, text in os.environ.items() if not name.startswith("XDG_")}
        self.environment = {
            **kept,
            "HOME": str(home),
            "XDG_RUNTIME_DIR": str(home),
            "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "offscreen",
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
        }

    def run(self, prefix: list[str]) -> int:
        """Starts the program, and asks it to end as soon as its window is there. Gives the status."""
        self.home.chmod(0o700)
        process = subprocess.Popen(
            [*prefix, str(self.executable)],
            env=self.environment,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        deadline = time.monotonic() + SLOWEST
        while process.poll() is None and not self._is_locked():
            if time.monotonic() > deadline:
                break
            time.sleep(0.01)
        try:
            return process.wait(SETTLED)
        except subprocess.TimeoutExpired:
            self._terminate(process.pid, bool(prefix))
        try:
            return process.wait(SLOWEST)
        except subprocess.TimeoutExpired:
            self._terminate(process.pid, bool(prefix), signal.SIGKILL)
            process.wait()
            return -1

    def _is_locked(self) -> bool:
        # A lock that the last kill left is younger than this start only when it was taken over.
        lock = self.directory / ".velgorlibrary.lock"
        try:
            return lock.stat().st_size > 0
        except OSError:
            return False

    def _terminate(self, process: int, is_traced: bool, kind: signal.Signals = signal.SIGTERM) -> None:
        pids = [process]
        if is_traced:
            pids = [int(pid) for pid in pathlib.Path(f"/proc/{process}/task/{process}/children").read_text().split()]
        for pid in pids:
            os.kill(pid, kind)


def kill_window(
    executable: pathlib.Path, velgor: Velgor, chance: random.Random, scratch: pathlib.Path, figures: Figures
) -> None:
    template = scratch / "window.template"
    for name, count in (("first start of the window", 0), ("start of the window", 5)):
        window = Window(executable, scratch / name.replace(" ", "-"))
        shutil.rmtree(template, ignore_errors=True)
        template.mkdir()
        before = State()
        if count:
            filled = Library(velgor, template / "Documents" / "VelgorLibrary")
            filled.directory.parent.mkdir()
            filled = Library.create(velgor, filled.directory, random_presets(chance, count))
            before = filled.state()

        def reset() -> None:
            shutil.rmtree(window.home, ignore_errors=True)
            shutil.copytree(template, window.home)

        reset()
        log = scratch / "calls.txt"
        status = window.run(calls.recorder(log))
        if status != 0:
            figures.fail("lost", f"{name}: ended with {status}")
        found = calls.recorded(log, window.home)
        for call in found:
            where = f"{name}, {call.name} {call.number}: {call.text}"
            reset()
            # Threads make the order of calls differ a little, so that some number may not be reached.
            figures.count("window ended before" if window.run(calls.killer(call)) == 0 else "window kills")
            check_window(window, Library(velgor, window.directory), before, figures, where)
        print(f"  {name}: {len(found)} calls", flush=True)


def check_window(window: Window, library: Library, before: State, figures: Figures, where: str) -> None:
    try:
        is_whole = same(before, library.state())
        begin = time.monotonic()
        status = window.run([])
        if time.monotonic() - begin > PATIENCE:
            figures.fail("hung", f"{where}: the next start and end took {time.monotonic() - begin:.0f} seconds")
        is_whole = is_whole and same(before, library.state())
    except LibraryBroken as broken:
        figures.fail("lost", f"{where}: {broken}")
        return
    if not is_whole:
        figures.fail("lost", f"{where}: another library than before")
    if status != 0:
        figures.fail("lost", f"{where}: the next start ended with {status}")
    leftovers = library.leftovers(before)
    leftovers += [name for name in os.listdir(library.directory.parent) if name != library.directory.name]
    leftovers = [name for name in leftovers if name != "velgorlibrary.json"]
    if leftovers:
        figures.fail("leftovers", f"{where}: {leftovers}")
    check_next_start(library, before, figures, where)
