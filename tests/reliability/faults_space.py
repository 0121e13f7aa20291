"""Disks that fill up at any point, and a limit to the size of files."""

from __future__ import annotations

import contextlib
import errno
import os
import pathlib
import subprocess
import typing

from faults_scenarios import Case, Scenario
from harness import Figures

TOO_LARGE = (os.strerror(errno.EFBIG),)
FULL = (os.strerror(errno.ENOSPC),)
PLENTY = 4 * 1024 * 1024
# Further steps after the first with which a command succeeded: more space must not be less.
STEPS_BEYOND = 3
MOST_STEPS = 200
FILE_SIZES = (0, 1, 50, 100, 200, 500, 1000, 2000, 3000, 5000, 8000, 20_000)


@contextlib.contextmanager
def memory_disk(place: pathlib.Path) -> typing.Iterator[None]:
    """A file system of its own at `place`. Raises CalledProcessError where that is not allowed."""
    place.mkdir(exist_ok=True)
    options = ["-o", f"size={PLENTY},mode=0755"]
    subprocess.run(["mount", "-t", "tmpfs", *options, "velgor-test", str(place)], check=True, capture_output=True)
    try:
        yield
    finally:
        subprocess.run(["umount", "--lazy", str(place)], check=True)


class Filler:
    """Leaves so many pages free at `place`, until the end of the with statement in which it is entered."""

    def __init__(self, place: pathlib.Path, free_pages: int) -> None:
        self.file = place / "filler"
        status = os.statvfs(place)
        with open(self.file, "wb") as file:
            os.posix_fallocate(file.fileno(), 0, max((status.f_bavail - free_pages) * status.f_bsize, 1))

    def __enter__(self) -> None:
        self.file.unlink()

    def __exit__(self, *_: object) -> None:
        pass


def run_full_disk(figures: Figures, scenarios: list[Scenario], step: int) -> None:
    """Every scenario with no page free, then one step more, until it succeeds."""
    for scenario in scenarios:
        beyond = 0
        for pages in range(0, MOST_STEPS * step, step):
            scenario.prepare()
            filler = Filler(scenario.place, pages)
            done = scenario.run()
            case = Case(scenario, f"{pages} pages free", FULL)
            figures.count("full disks")
            found = case.check(figures, done, filler)
            beyond += found == "new" and done.returncode == 0
            if beyond and found != "new":
                figures.fail("wrong status", f"{scenario.name}: {pages} pages are too few, fewer were enough")
            if beyond > STEPS_BEYOND:
                break
        else:
            figures.fail("wrong status", f"{scenario.name}: does not succeed with {MOST_STEPS * step} free pages")


def run_file_sizes(figures: Figures, scenarios: list[Scenario]) -> None:
    for scenario in scenarios:
        for size in FILE_SIZES:
            scenario.prepare()
            done = scenario.run(["prlimit", f"--fsize={size}", "--"])
            figures.count("size limits")
            Case(scenario, f"no file beyond {size} bytes", TOO_LARGE).check(figures, done)
