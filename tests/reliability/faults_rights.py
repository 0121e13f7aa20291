"""Directories and files that may not be written, for an ordinary user, and a disk that is mounted for reading only."""

from __future__ import annotations

import contextlib
import errno
import os
import pathlib
import shutil
import subprocess
import typing

from faults_scenarios import Case, Scenario
from harness import Figures

NOBODY = 65534
DENIED = (os.strerror(errno.EACCES), os.strerror(errno.EPERM))
READ_ONLY = (os.strerror(errno.EROFS),)
READ_ONLY_DIRECTORY, READ_ONLY_FILE = 0o555, 0o444


def as_ordinary_user() -> list[str]:
    """What a command has to begin with, for rights to mean something."""
    if os.geteuid() != 0:
        return []
    return ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", "--"]


def why_not(scenarios: list[Scenario]) -> str:
    """Why an ordinary user cannot run the program here; empty when he can."""
    if os.geteuid() == 0 and shutil.which("setpriv") is None:
        return "setpriv is not installed"
    velgor = scenarios[0].library.velgor
    with contextlib.suppress(OSError):
        if velgor.run("--version", prefix=as_ordinary_user()).returncode == 0:
            return ""
    return "an ordinary user cannot run the program where it is"


@contextlib.contextmanager
def _given_back(path: pathlib.Path, mode: int) -> typing.Iterator[None]:
    path.chmod(mode)
    yield


def _targets(scenario: Scenario) -> list[pathlib.Path]:
    """What is taken from the user, one at a time."""
    if scenario.is_export:
        return [scenario.place / "exports"]
    if scenario.name == "first start":
        return [scenario.place]
    return [scenario.library.directory, scenario.library.directory / "velgorlibrary.json"]


def run_rights(figures: Figures, scenarios: list[Scenario]) -> None:
    prefix = as_ordinary_user()
    owner = NOBODY if prefix else None
    for scenario in scenarios:
        for target in _targets(scenario):
            scenario.prepare(owner)
            usual = target.stat().st_mode & 0o777
            target.chmod(READ_ONLY_DIRECTORY if target.is_dir() else READ_ONLY_FILE)
            done = scenario.run(prefix)
            case = Case(scenario, f"{target.relative_to(scenario.place.parent)} may not be written", DENIED, prefix)
            figures.count("missing rights")
            case.check(figures, done, _given_back(target, usual))


@contextlib.contextmanager
def _writable_again(place: pathlib.Path) -> typing.Iterator[None]:
    _remount(place, "rw")
    yield


def _remount(place: pathlib.Path, mode: str) -> None:
    subprocess.run(["mount", "-o", f"remount,{mode}", str(place)], check=True, capture_output=True)


def run_read_only_disk(figures: Figures, scenarios: list[Scenario]) -> None:
    """`place` of the scenarios is a file system of its own."""
    for scenario in scenarios:
        scenario.prepare()
        _remount(scenario.place, "ro")
        done = scenario.run()
        figures.count("read-only disks")
        Case(scenario, "mounted for reading only", READ_ONLY).check(figures, done, _writable_again(scenario.place))
