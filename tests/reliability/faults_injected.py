"""Every system call that changes a file fails once, or from there on, with every error that a disk may give."""

from __future__ import annotations

import collections
import dataclasses
import errno
import os
import pathlib
import re
import shutil
import subprocess

from faults_scenarios import Case, Scenario
from harness import Figures
from harness.calls import TRACER

ERRORS = ("ENOSPC", "EIO", "EACCES", "EPERM", "EROFS", "EDQUOT")
CALLS = (
    "openat,creat,write,pwrite64,writev,fsync,fdatasync,syncfs,rename,renameat,renameat2,link,linkat,unlink,unlinkat,"
    "mkdir,mkdirat,ftruncate,fallocate,chmod,fchmod,fchmodat"
)
SYNCHRONISING = ("fsync", "fdatasync", "syncfs")
NOT_THE_LIBRARY = re.compile(r"\.velgorlibrary\.lock|\.testfile\.txt")
# A thread's number, the call and its arguments, of one line of a trace.
LINE = re.compile(r"^(\d+)\s+(\w+)\((.*)$")
IS_CHANGING_OPEN = re.compile(r"O_(WRONLY|RDWR|CREAT|TRUNC)")


@dataclasses.dataclass(frozen=True)
class Call:
    """The `number`-th call of this name in its thread, as faults are counted."""

    name: str
    number: int
    has_begun: bool  # something was written before, so that a failing synchronisation matters


def why_not() -> str:
    """Why nothing can be traced here; empty when it can."""
    if shutil.which("strace") is None:
        return "strace is not installed"
    tried = subprocess.run(["strace", "-e", "inject=mkdir:error=EIO", "-o", os.devnull, "true"], capture_output=True)
    return "" if tried.returncode == 0 else "processes cannot be traced here"


def changing_calls(scenario: Scenario, trace: pathlib.Path) -> list[Call]:
    """The calls of a run without faults that change something in the place of the scenario."""
    scenario.prepare()
    done = scenario.run([*TRACER, "-y", "-o", str(trace), "-e", f"trace={CALLS}"])
    if done.returncode != 0:
        raise RuntimeError(f"{scenario.name} fails without any fault: {done.stderr}")
    counts: collections.Counter[tuple[str, str]] = collections.Counter()
    calls = []
    has_begun = False
    for line in trace.read_text(errors="replace").splitlines():
        match = LINE.match(line)
        if match is None:
            continue
        thread, name, arguments = match.groups()
        counts[thread, name] += 1
        is_reading = name == "openat" and not IS_CHANGING_OPEN.search(arguments)
        if str(scenario.place) in arguments and not is_reading:
            calls.append(Call(name, counts[thread, name], has_begun))
            has_begun = has_begun or (name == "write" and not NOT_THE_LIBRARY.search(arguments))
    return calls


def run(figures: Figures, scenarios: list[Scenario], scratch: pathlib.Path, is_long: bool) -> None:
    trace = scratch / "trace"
    turn = 0
    for scenario in scenarios:
        for call in changing_calls(scenario, trace):
            ways = [(error, last) for error in ERRORS for last in ("", "+")]
            if not is_long:
                # Each call once for good and once in passing, with the errors in turn.
                ways = [(ERRORS[turn % len(ERRORS)], ""), (ERRORS[(turn + 1) % len(ERRORS)], "+")]
            turn += 1
            for error, last in ways:
                # From there on, the program could not say anything either.
                if call.name == "write" and last:
                    continue
                _inject(figures, scenario, call, error, last, trace)


def _inject(figures: Figures, scenario: Scenario, call: Call, error: str, last: str, trace: pathlib.Path) -> None:
    scenario.prepare()
    inject = f"inject={call.name}:error={error}:when={call.number}{last}"
    done = scenario.run([*TRACER, "-y", "-o", str(trace), "-e", f"trace={CALLS}", "-e", inject])
    hit = [line for line in trace.read_text(errors="replace").splitlines() if "(INJECTED)" in line]
    if not any(str(scenario.place) in line for line in hit):
        figures.count("missed")
        return
    where = hit[0].split(None, 1)[1].replace(str(scenario.place), "...")[:160]
    reason = os.strerror(getattr(errno, error))
    case = Case(scenario, f"{error} at {call.name} {call.number}{last} ({where})", (reason,))
    figures.count("faults injected")
    case.check(figures, done)
    if call.name in SYNCHRONISING and call.has_begun and done.returncode == 0:
        figures.fail("wrong status", f"{scenario.name}, {case.fault}: what may not be on the disk is said to be done")
