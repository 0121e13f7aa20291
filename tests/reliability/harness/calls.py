"""System calls of a program that change files, and stopping it at one of them. Needs strace and the right to trace."""

from __future__ import annotations

import collections
import dataclasses
import pathlib
import re
import shutil
import subprocess

CHANGING = (
    "open openat creat write writev pwrite64 fsync fdatasync syncfs sync rename renameat renameat2 unlink unlinkat rmdir"
    " ftruncate truncate fallocate copy_file_range sendfile mkdir mkdirat fchmod chmod fchmodat link linkat symlink"
    " symlinkat close"
).split()
LINE = re.compile(r"(\d+) +(\w+)\(")
# With the filter in the kernel, no other call stops the program on its way. Signals get lost with it.
TRACER = ["strace", "-f", "--seccomp-bpf"]


@dataclasses.dataclass(frozen=True)
class Call:
    """The `number`th call of this name in its thread."""

    name: str
    number: int
    text: str


def why_not() -> str:
    """Why nothing can be traced on this machine; empty when it can."""
    if not shutil.which("strace"):
        return "there is no strace"
    done = subprocess.run([*TRACER, "-o", "/dev/null", "true"], capture_output=True, text=True)
    return "" if done.returncode == 0 else f"strace cannot trace: {done.stderr.strip()}"


def recorder(log: pathlib.Path) -> list[str]:
    """To stand before the command that is recorded."""
    return [*TRACER, "-y", "-s", "16", "-o", str(log), "-e", "trace=" + ",".join("?" + one for one in CHANGING)]


def recorded(log: pathlib.Path, directory: pathlib.Path) -> list[Call]:
    """What changes something at or below `directory`, or makes such a change last."""
    counts: collections.Counter[tuple[str, str]] = collections.Counter()
    calls = []
    for line in log.read_text(errors="replace").splitlines():
        found = LINE.match(line)
        if not found:
            continue
        counts[found.groups()] += 1
        thread, name = found.groups()
        reads_only = name in ("open", "openat") and not re.search(r"O_(WRONLY|RDWR|CREAT|TRUNC)", line)
        if str(directory) in line and not reads_only:
            calls.append(Call(name, counts[thread, name], line[len(thread) :].strip()))
    return calls


def killer(call: Call) -> list[str]:
    """To stand before the command that is killed when it is about to make this call."""
    return [
        *["strace", "-f", "-o", "/dev/null", "-e", f"trace={call.name}"],
        *["-e", f"inject={call.name}:signal=KILL:when={call.number}"],
    ]
