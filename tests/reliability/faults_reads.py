"""Every system call with which a library is read fails once. What could not be read is told of and stays in the library:
once the cause is gone, every patch is there again with all that was said about it, and with the change."""

from __future__ import annotations

import collections
import pathlib

from faults_injected import LINE
from faults_scenarios import REFUSED, Scenario
from harness import Figures
from harness.calls import TRACER

CALLS = "openat,read,pread64,getdents64"
ERRORS = ("EIO", "EACCES", "EMFILE")
SCENARIOS = ("edit", "rename", "add", "remove", "export over a file")


def reading_calls(scenario: Scenario, trace: pathlib.Path) -> list[tuple[str, int]]:
    """Name of each call that reads in the library of the scenario, and its number in its thread."""
    scenario.prepare()
    scenario.run([*TRACER, "-y", "-o", str(trace), "-e", f"trace={CALLS}"])
    counts: collections.Counter[tuple[str, str]] = collections.Counter()
    calls = []
    for line in trace.read_text(errors="replace").splitlines():
        match = LINE.match(line)
        if match is None:
            continue
        thread, name, arguments = match.groups()
        counts[thread, name] += 1
        is_writing = name == "openat" and "O_RDONLY" not in arguments
        if str(scenario.library.directory) in arguments and not is_writing:
            calls.append((name, counts[thread, name]))
    # Two threads may have the same; it fails in both then.
    return list(dict.fromkeys(calls))


def run(figures: Figures, scenarios: list[Scenario], scratch: pathlib.Path) -> None:
    trace = scratch / "trace"
    turn = 0
    for scenario in scenarios:
        for name, number in reading_calls(scenario, trace):
            error = ERRORS[turn % len(ERRORS)]
            turn += 1
            _inject(figures, scenario, name, number, error, trace)


def _inject(figures: Figures, scenario: Scenario, name: str, number: int, error: str, trace: pathlib.Path) -> None:
    scenario.prepare()
    inject = f"inject={name}:error={error}:when={number}"
    done = scenario.run([*TRACER, "-y", "-o", str(trace), "-e", f"trace={CALLS}", "-e", inject])
    figures.count("failing reads")
    hit = next(line for line in trace.read_text(errors="replace").splitlines() if "(INJECTED)" in line)
    label = f"{scenario.name}, {error} at {hit.split(None, 1)[1].replace(str(scenario.place), '...')[:120]}"
    found = scenario.found()
    said = done.stderr.strip()
    if found not in ("old", "new"):
        figures.fail("neither old nor new", f"{label}: {found} (status {done.returncode}, said {said!r})")
    elif done.returncode not in ((REFUSED,) if found == "old" else (0, REFUSED)):
        figures.fail("wrong status", f"{label}: status {done.returncode} with the {found} state, said {said!r}")
    if "/lib-" in hit and str(scenario.place) not in said:
        figures.fail("said too little", f"{label}: {said!r}")
    if scenario.library.dated_copies():
        figures.fail("leftovers", f"{label}: a copy was kept of a library file that has lost nothing")
    # A file may have moved to the new name of its patch already; what it holds must be there.
    gone = [file.name for file in patch_files(scenario.pristine / "library") if file.read_bytes() not in contents(scenario)]
    if found == "old" and gone:
        figures.fail("neither old nor new", f"{label}: nothing was done, and these files are gone: {gone}")


def patch_files(directory: pathlib.Path) -> list[pathlib.Path]:
    return sorted(directory.glob("lib-*.prst"))


def contents(scenario: Scenario) -> set[bytes]:
    return {file.read_bytes() for file in patch_files(scenario.library.directory)}
