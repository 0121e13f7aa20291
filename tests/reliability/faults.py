#!/usr/bin/env python3
"""Saves, first starts and exports while the system refuses something: the library is the old one or the new one, the
program says which file and why, and the next try brings everything."""

from __future__ import annotations

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import faults_injected
import faults_reads
import faults_rights
import faults_space
from faults_scenarios import COUNTS, scenarios
from harness import Figures, Velgor

PARTS = ("calls", "reads", "disk", "sizes", "rights")
IN_NAMESPACE = "VELGOR_MOUNTS_ARE_PRIVATE"


def with_private_mounts() -> None:
    """Starts this script again where its mounts are seen by nothing else and go with it."""
    if os.environ.get(IN_NAMESPACE) or os.geteuid() != 0 or shutil.which("unshare") is None:
        return
    if subprocess.run(["unshare", "--mount", "true"], capture_output=True).returncode == 0:
        os.environ[IN_NAMESPACE] = "yes"
        os.execvp("unshare", ["unshare", "--mount", sys.executable, "-B", *sys.argv])


def left_out(part: str, reason: str) -> None:
    print(f"faults: {part} skipped: {reason}", flush=True)


def run(arguments: argparse.Namespace, scratch: pathlib.Path, figures: Figures) -> None:
    velgor = Velgor(arguments.velgor)
    place = scratch / "place"

    def made(count: int, names: tuple[str, ...] = ()) -> list[faults_injected.Scenario]:
        own = pathlib.Path(tempfile.mkdtemp(dir=scratch))
        own.chmod(0o755)
        all_of_them = scenarios(velgor, own, place, arguments.seed, count)
        return [one for one in all_of_them if one.name in (arguments.only or names or (one.name,))]

    if "calls" in arguments.parts:
        reason = faults_injected.why_not()
        if reason:
            left_out("failing system calls", reason)
        else:
            faults_injected.run(figures, made(6), scratch, arguments.long)
    if "reads" in arguments.parts and not faults_injected.why_not():
        faults_reads.run(figures, made(6, faults_reads.SCENARIOS), scratch)
    if "sizes" in arguments.parts:
        faults_space.run_file_sizes(figures, made(10))
    if "rights" in arguments.parts:
        cases = made(6)
        reason = faults_rights.why_not(cases)
        if reason:
            left_out("missing rights", reason)
        else:
            faults_rights.run_rights(figures, cases)
    if "disk" in arguments.parts:
        if not os.environ.get(IN_NAMESPACE):
            left_out("full and read-only disks", "only root can mount a file system for it")
            return
        with faults_space.memory_disk(place):
            faults_rights.run_read_only_disk(figures, made(6))
            faults_space.run_full_disk(figures, made(60), 1 if arguments.long else 2)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--velgor", type=pathlib.Path, required=True)
    parser.add_argument("--window", type=pathlib.Path, help="not used")
    parser.add_argument("--long", action="store_true", help="every error at every call; every size of a full disk")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--parts", nargs="+", choices=PARTS, default=PARTS)
    parser.add_argument("--only", nargs="+", help="names of scenarios")
    arguments = parser.parse_args()
    arguments.velgor = arguments.velgor.resolve()
    with_private_mounts()
    figures = Figures("faults", *COUNTS)
    scratch = pathlib.Path(tempfile.mkdtemp(prefix="velgor-faults-"))
    scratch.chmod(0o755)
    try:
        run(arguments, scratch, figures)
    finally:
        shutil.rmtree(scratch, ignore_errors=True)
    figures.finish()


if __name__ == "__main__":
    main()
