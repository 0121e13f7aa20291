#!/usr/bin/env python3
"""Programs in sandboxes that have the library and the application's runtime directory in common, but neither process
ids nor anything else: as Flatpak starts them. One has the library, the others hand over or stay away, and a lock whose
holder was killed is taken over, whatever its process id says in another sandbox."""

from __future__ import annotations

import argparse
import os
import pathlib
import random
import shutil
import subprocess
import tempfile
import time

from harness import Figures, Library, State, Velgor, difference, random_presets, same, skip

APPLICATION_ID = "org.example.VelgorLibraryManager"
LOCK = ".velgorlibrary.lock"
REFUSED = 2
LONGEST = 20.0  # seconds
# Process ids begin anew in each sandbox; some are spent, so that the program has the one that is wanted.
ENTER = 'mount --bind "$1" "$2" && n=$3 && shift 3 && while [ "$n" -gt 0 ]; do /bin/true; n=$((n - 1)); done && "$@"; exit $?'


def namespaces() -> list[str]:
    user = [] if os.geteuid() == 0 else ["--user", "--map-root-user"]
    return ["unshare", *user, "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "--"]


class Bench:
    """A home directory with a library in it, and sandboxes that see it."""

    def __init__(self, velgor: pathlib.Path, window: pathlib.Path, seed: int) -> None:
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="velgor-sandboxes-"))
        self.window = window
        self.velgor = Velgor(velgor)
        for name in ("CONFIG", "CACHE", "DATA", "STATE"):
            self.velgor.environment[f"XDG_{name}_HOME"] = str(self.home / name.lower())
        self.velgor.environment["HOME"] = str(self.home)
        self.velgor.environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
        self.shared = self.home / "shared"
        self.shared.mkdir(mode=0o700)
        documents = self.home / "Documents"
        documents.mkdir()
        self.library = Library.create(self.velgor, documents / "VelgorLibrary", random_presets(random.Random(seed), 3))
        self.started: list[subprocess.Popen[bytes]] = []

    def sandbox(self, name: str, spent: int) -> list[str]:
        """What enters a sandbox, before the command that runs there with a process id of about `spent`."""
        place = self.home / name / "app" / APPLICATION_ID
        place.mkdir(parents=True, exist_ok=True)
        (self.home / name).chmod(0o700)
        enter = ["sh", "-c", ENTER, "sandbox", str(self.shared), str(place), str(spent)]
        return [*namespaces(), "env", f"XDG_RUNTIME_DIR={self.home / name}", *enter]

    def start(self, name: str, spent: int, *arguments: pathlib.Path) -> subprocess.Popen[bytes]:
        silent = subprocess.DEVNULL
        process = subprocess.Popen(
            [*self.sandbox(name, spent), str(self.window), *map(str, arguments)],
            env=self.velgor.environment,
            stdin=silent,
            stdout=silent,
            stderr=silent,
        )
        self.started.append(process)
        return process

    def lock_text(self) -> bytes:
        try:
            return (self.library.directory / LOCK).read_bytes()
        except FileNotFoundError:
            return b""

    def lock_made(self) -> int:
        """When the lock was made, in nanoseconds."""
        try:
            return (self.library.directory / LOCK).stat().st_mtime_ns
        except FileNotFoundError:
            return 0

    def close(self) -> None:
        for process in self.started:
            process.kill()
            process.wait()
        shutil.rmtree(self.home, ignore_errors=True)


def wait_until(condition) -> bool:
    end = time.monotonic() + LONGEST
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.02)
    return True


def check_untouched(figures: Figures, bench: Bench, before: State, lock: bytes, what: str) -> None:
    if bench.lock_text() != lock:
        figures.fail("lost", f"{what}: the lock is another: {bench.lock_text()!r} instead of {lock!r}")
    if not same(before, bench.library.state()):
        figures.fail("lost", f"{what}: {difference(before, bench.library.state())}")


def hand_over(figures: Figures, bench: Bench, name: str, spent: int, *arguments: pathlib.Path) -> None:
    second = bench.start(name, spent, *arguments)
    figures.count("second starts")
    if not wait_until(lambda: second.poll() is not None) or second.returncode != 0:
        figures.fail("not handed over", f"the start in the sandbox {name}: {second.returncode}")


def first_in_a_sandbox(figures: Figures, bench: Bench) -> subprocess.Popen[bytes]:
    before = bench.library.state()
    first = bench.start("one", 40)
    wait_until(lambda: bench.lock_text().count(b"\n") > 1)
    lock = bench.lock_text()
    # In the first of these sandboxes nobody has the holder's process id, in the second somebody has.
    for spent in (0, 45):
        done = bench.library.run("set", str(before.patches[0].id), "--comment", "no", prefix=bench.sandbox("two", spent))
        figures.count("commands")
        if done.returncode != REFUSED or "in use" not in done.stderr:
            figures.fail("refused badly", f"{done.returncode}, {done.stderr.strip()!r}")
        check_untouched(figures, bench, before, lock, "a command in another sandbox")
    hand_over(figures, bench, "two", 0)
    hand_over(figures, bench, "three", 40, bench.home / "missing.prst")
    check_untouched(figures, bench, before, lock, "a window in another sandbox")
    if first.poll() is not None:
        figures.fail("lost", f"the first window ended with {first.returncode}")
    return first


def killed_in_a_sandbox(figures: Figures, bench: Bench, first: subprocess.Popen[bytes]) -> None:
    """The next sandbox gives the same process id to the next window."""
    lock, made = bench.lock_text(), bench.lock_made()
    first.kill()
    first.wait()
    if bench.lock_text() != lock:
        figures.fail("lost", "the killed window has left no lock")
    bench.start("two", 40)
    if not wait_until(lambda: bench.lock_made() not in (0, made)):
        figures.fail("not taken over", "the next window has no lock")
    hand_over(figures, bench, "three", 40)
    if bench.lock_text() != lock:
        figures.fail("not taken over", f"the process id is not the same: {lock!r}, {bench.lock_text()!r}")
    patch = bench.library.state().patches[0]
    for process in bench.started:
        process.kill()
        process.wait()
    done = bench.library.run("set", str(patch.id), "--comment", "yes", prefix=bench.sandbox("two", 0))
    figures.count("commands")
    if done.returncode != 0:
        figures.fail("not taken over", f"by a command: {done.returncode}, {done.stderr.strip()!r}")


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--velgor", type=pathlib.Path, required=True)
    parser.add_argument("--window", type=pathlib.Path, required=True)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    if not shutil.which("unshare") or subprocess.run([*namespaces(), "true"], capture_output=True).returncode != 0:
        skip("two sandboxes", "this user cannot make a sandbox here")
    figures = Figures("two sandboxes", "lost", "refused badly", "not handed over", "not taken over")
    bench = Bench(arguments.velgor.resolve(), arguments.window.resolve(), arguments.seed)
    try:
        killed_in_a_sandbox(figures, bench, first_in_a_sandbox(figures, bench))
    finally:
        bench.close()
    figures.finish()


if __name__ == "__main__":
    main()
