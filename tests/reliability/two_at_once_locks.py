"""Lock files that stand in the way, or only seem to."""

from __future__ import annotations

import os
import pathlib
import socket
import subprocess
import typing

from harness import Figures

LOCK = ".velgorlibrary.lock"
REFUSED = 2


def _id_of(path: str) -> str:
    file = pathlib.Path(path)
    return file.read_text().strip().replace("-", "") if file.exists() else ""


def lock_text(process: int, application: str = "velgor", host: str | None = None, machine: str | None = None) -> bytes:
    """What a program writes into the lock that it holds."""
    lines = [str(process), application, host or socket.gethostname(), machine or _id_of("/etc/machine-id")]
    return "\n".join([*lines, pathlib.Path("/proc/sys/kernel/random/boot_id").read_text().strip(), ""]).encode()


def _ended_process() -> int:
    with subprocess.Popen(["true"]) as process:
        return process.pid


def _locks() -> typing.Iterator[tuple[str, bytes, bool]]:
    """What is in the lock file, and whether its holder may still be there."""
    yield "empty", b"", False
    yield "garbage", b"\x00\xff\xfe garbage", False
    yield "lines of garbage", b"one\ntwo\nthree\nfour\nfive\n", False
    yield "cut", lock_text(_ended_process())[:9], False
    yield "of a program that is gone", lock_text(_ended_process()), False
    yield "of a number that another program has now", lock_text(os.getpid()), False
    yield "of another computer", lock_text(_ended_process(), host="elsewhere", machine="0" * 32), True


def run(figures: Figures, bench: typing.Any) -> None:
    library = bench.library
    lock = library.directory / LOCK
    patch = library.state().patches[1]
    for number, (name, text, is_held) in enumerate(_locks()):
        lock.write_bytes(text)
        comment = f"lock {number}"
        done = library.run("set", str(patch.id), "--comment", comment)
        figures.count("lock files")
        expected = comment if done.returncode == 0 else f"lock {number - 1}"
        if library.state().patch(patch.id).field("comment") != expected:
            figures.fail("lost", f"lock file {name}: status {done.returncode}, and the edit is another")
        if is_held:
            if done.returncode != REFUSED or str(library.directory) not in done.stderr or LOCK not in done.stderr:
                figures.fail("refused badly", f"lock file {name}: {done.returncode}, {done.stderr.strip()!r}")
            if not lock.exists() or lock.read_bytes() != text:
                figures.fail("refused badly", f"lock file {name}: it was touched")
            lock.unlink(missing_ok=True)
        elif done.returncode != 0:
            figures.fail("not taken over", f"lock file {name}: {done.returncode}, {done.stderr.strip()!r}")
        litter = library.leftovers(library.state())
        if litter:
            figures.fail("leftovers", f"lock file {name}: {', '.join(litter)}")
            lock.unlink(missing_ok=True)
