"""Every system call with which a library is read fails once. What could not be read is told of, and stays on the disk:
the library file as a copy, the files of the patches as they are."""

from __future__ import annotations

import pathlib

from faults_injected import LINE
from faults_scenarios import REFUSED, Scenario
from harness import Figures

CALLS = "openat,read,pread64,getdents64"
ERRORS = ("EIO", "EACCES", "EMFILE")
SCENARIOS = ("edit", "rename", "remove", "export over a file")


def reading_calls(scenario: Scenario, trace: pathlib.Path) -> list[tuple[str, int]]:
    """Name and number of each call that reads in the library of the scenario."""
    scenario.prepare()
    scenario.run(["strace", "-f", "-y", "-o", str(trace), "-e", f"trace={CALLS}"])
    counts: dict[str, int] = {}
    calls = []
    for line in trace.read_text(errors="replace").splitlines():
        match = LINE.match(line)
        if match is None:
            continue
        name, arguments = match.groups()
        counts[name] = counts.get(name, 0) + 1
        is_writing = name == "openat" and "O_RDONLY" not in arguments
        if str(scenario.library.directory) in arguments and not is_writing:
            calls.append((name, counts[name]))
    return calls


def is_kept(scenario: Scenario) -> bool:
    """Everything is there still but what was asked to go, the library file perhaps under another name."""
    before, now = scenario.pristine / "library", scenario.library.directory
    old = (before / "velgorlibrary.json").read_bytes()
    library_files = [now / name for name in ["velgorlibrary.json", *scenario.library.dated_copies()]]
    contents = {file.read_bytes() for file in now.glob("lib-*.prst")}
    patch_files = [file for patch in scenario.operation.after.patches for file in before.glob(f"lib-*.{patch.id}.prst")]
    is_library_there = any(file.read_bytes() == old for file in library_files)
    return is_library_there and all(file.read_bytes() in contents for file in patch_files)


def run(figures: Figures, scenarios: list[Scenario], scratch: pathlib.Path) -> None:
    trace = scratch / "trace"
    turn = 0
    for scenario in scenarios:
        for name, number in reading_calls(scenario, trace):
            error = ERRORS[turn % len(ERRORS)]
            turn += 1
            scenario.prepare()
            inject = f"inject={name}:error={error}:when={number}"
            done = scenario.run(["strace", "-f", "-o", str(trace), "-e", f"trace={CALLS}", "-e", inject])
            figures.count("failing reads")
            label = f"{scenario.name}, {error} at {name} {number}"
            found = scenario.found()
            said = done.stderr.strip()
            if found == "old" and done.returncode != REFUSED or done.returncode not in (0, REFUSED):
                figures.fail("wrong status", f"{label}: status {done.returncode} with the {found} state, said {said!r}")
            if found not in ("old", "new"):
                figures.count("of them incomplete")
                if "warning" not in said or str(scenario.place) not in said:
                    figures.fail("said too little", f"{label}: {said!r}")
                if not is_kept(scenario):
                    figures.fail("neither old nor new", f"{label}: {found}, and what was there is not kept")
