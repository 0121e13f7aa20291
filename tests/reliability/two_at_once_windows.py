"""The window beside itself and beside commands. It runs without a display."""

from __future__ import annotations

import os
import pathlib
import signal
import subprocess
import time
import typing

from harness import Figures, same
from two_at_once_locks import LOCK

REFUSED = 2
STARTS = 6
LONGEST = 20.0  # seconds


class Windows:
    """Starts the window with a home of its own, and ends what is left."""

    def __init__(self, bench: typing.Any) -> None:
        runtime = bench.home / "run"
        runtime.mkdir(mode=0o700, exist_ok=True)
        self.bench = bench
        self.environment = {
            **os.environ,
            "HOME": str(bench.home),
            "XDG_RUNTIME_DIR": str(runtime),
            "QT_QPA_PLATFORM": "offscreen",
            "LC_ALL": "C.UTF-8",
        }
        for name in ("CONFIG", "CACHE", "DATA", "STATE"):
            self.environment[f"XDG_{name}_HOME"] = str(bench.home / name.lower())
        self.started: list[subprocess.Popen[bytes]] = []

    def start(self, *arguments: str | pathlib.Path) -> subprocess.Popen[bytes]:
        command = [str(self.bench.window), *map(str, arguments)]
        silent = subprocess.DEVNULL
        process = subprocess.Popen(command, env=self.environment, stdin=silent, stdout=silent, stderr=silent)
        self.started.append(process)
        return process

    def end(self) -> None:
        for process in self.started:
            if process.poll() is None:
                process.kill()
            process.wait()


def wait_until(condition: typing.Callable[[], bool]) -> bool:
    end = time.monotonic() + LONGEST
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.02)
    return True


def is_ready(bench: typing.Any, process: subprocess.Popen[bytes]) -> bool:
    """It has the library, and ends as it should when it is told to."""
    status = pathlib.Path("/proc", str(process.pid), "status").read_text()
    caught = int(status.split("SigCgt:")[1].split()[0], 16) if "SigCgt:" in status else 0
    return has_lock(bench, process) and bool(caught & 1 << (signal.SIGTERM - 1))


def has_lock(bench: typing.Any, process: subprocess.Popen[bytes]) -> bool:
    try:
        return (bench.library.directory / LOCK).read_bytes().startswith(b"%d\n" % process.pid)
    except FileNotFoundError:
        return False


def _check_untouched(figures: Figures, bench: typing.Any, before: typing.Any, what: str) -> None:
    if not same(before, bench.library.state()):
        figures.fail("lost", f"{what} changed the library")


def _check_ended(figures: Figures, bench: typing.Any, process: subprocess.Popen[bytes], number: int) -> None:
    process.send_signal(number)
    if not wait_until(lambda: process.poll() is not None) or process.returncode != 0:
        figures.fail("not taken over", f"the window does not end with signal {number}: {process.returncode}")
    litter = bench.library.leftovers(bench.library.state())
    if litter:
        figures.fail("leftovers", f"after the window: {', '.join(litter)}")


def second_start(figures: Figures, bench: typing.Any, windows: Windows) -> None:
    before = bench.library.state()
    first = windows.start()
    if not wait_until(lambda: is_ready(bench, first)):
        figures.fail("not taken over", "the window does not lock its library")
        return
    for arguments in ([], [bench.home / "missing.prst"]):
        second = windows.start(*arguments)
        figures.count("windows")
        if not wait_until(lambda process=second: process.poll() is not None) or second.returncode != 0:
            figures.fail("refused badly", f"the second start does not hand over and end: {second.returncode}")
    commands_beside(figures, bench, before)
    if first.poll() is not None or not has_lock(bench, first):
        figures.fail("lost", "the first window has not kept its library")
    _check_ended(figures, bench, first, signal.SIGTERM)
    _check_untouched(figures, bench, before, "two windows")


def commands_beside(figures: Figures, bench: typing.Any, before: typing.Any) -> None:
    """Commands that change stay away while the window runs, and those that read do not."""
    library = bench.library
    one, other = str(before.patches[2].id), str(before.patches[3].id)
    file = bench.home / "beside.prst"
    library.command("export", one, other, "-o", file)
    library.command("similar", one)
    changing = (["set", one, "--comment", "no"], ["duplicate", one], ["remove", one, other], ["add", file])
    for arguments in changing:
        done = library.run(*arguments)
        figures.count("commands beside a window")
        if done.returncode != REFUSED or str(library.directory) not in done.stderr or "in use" not in done.stderr:
            figures.fail("refused badly", f"{arguments[0]}: {done.returncode}, {done.stderr.strip()!r}")
        _check_untouched(figures, bench, before, f"{arguments[0]} beside a window")


def many_starts(figures: Figures, bench: typing.Any, windows: Windows) -> None:
    """Of many starts at once, one stays and the others end well."""
    before = bench.library.state()
    started = [windows.start() for _ in range(STARTS)]
    figures.count("windows", len(started))
    wait_until(lambda: sum(process.poll() is None for process in started) <= 1)
    left = [process for process in started if process.poll() is None]
    wait_until(lambda: all(is_ready(bench, process) for process in left))
    wrong = [process.returncode for process in started if process.poll() not in (None, 0)]
    if len(left) != 1 or wrong:
        figures.fail("refused badly", f"{len(left)} of {STARTS} windows stay, others end with {wrong}")
    for process in left:
        if not has_lock(bench, process):
            figures.fail("lost", "the window that stays does not have the lock")
        _check_ended(figures, bench, process, signal.SIGINT)
    _check_untouched(figures, bench, before, "many windows")


def killed_window(figures: Figures, bench: typing.Any, windows: Windows) -> None:
    """The lock of a window that was killed is taken over: by a command, and by another window."""
    for successor in ("command", "window"):
        killed = windows.start()
        if not wait_until(lambda process=killed: is_ready(bench, process)):
            figures.fail("not taken over", "the window does not lock its library")
        killed.kill()
        killed.wait()
        figures.count("killed windows")
        if successor == "command":
            patch = bench.library.state().patches[4]
            done = bench.library.run("set", str(patch.id), "--comment", "after a kill")
            if done.returncode != 0:
                figures.fail("not taken over", f"by a command: {done.returncode}, {done.stderr.strip()!r}")
        else:
            second = windows.start()
            if not wait_until(lambda process=second: is_ready(bench, process)):
                figures.fail("not taken over", "by a window")
            _check_ended(figures, bench, second, signal.SIGHUP)


def run(figures: Figures, bench: typing.Any) -> None:
    windows = Windows(bench)
    try:
        second_start(figures, bench, windows)
        many_starts(figures, bench, windows)
        killed_window(figures, bench, windows)
    finally:
        windows.end()
