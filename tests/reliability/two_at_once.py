#!/usr/bin/env python3
"""Several programs on one library: the window twice, commands beside it, many commands at once, and locks that nobody
holds any more. Nothing that was reported as done is lost, and who has to stay away says so."""

from __future__ import annotations

import argparse
import pathlib
import random
import shutil
import subprocess
import tempfile

import two_at_once_locks
import two_at_once_windows
from harness import Figures, Library, State, Velgor, difference, random_presets, same

AT_ONCE = 10
REFUSED = 2


class Bench:
    """A home directory with a library in it, and the programs."""

    def __init__(self, velgor: pathlib.Path, window: pathlib.Path, seed: int) -> None:
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="velgor-two-"))
        self.velgor = Velgor(velgor)
        self.window = window
        self.chance = random.Random(seed)
        documents = self.home / "Documents"
        documents.mkdir()
        contents = random_presets(self.chance, AT_ONCE + 5)
        self.library = Library.create(self.velgor, documents / "VelgorLibrary", contents)
        self.library.command("set", str(self.library.state().patches[0].id), "--default")

    def start(self, *arguments: str) -> subprocess.Popen[str]:
        """A command on the library, that is not waited for."""
        return subprocess.Popen(
            [self.velgor.executable, *map(str, self.library.arguments(*arguments))],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            env=self.velgor.environment,
            text=True,
        )

    def close(self) -> None:
        shutil.rmtree(self.home, ignore_errors=True)


def commands_at_once(figures: Figures, bench: Bench, round_: int) -> None:
    """Each command edits a patch of its own; a reader looks on."""
    before = bench.library.state()
    patches = before.patches[:AT_ONCE]
    comments = [f"round {round_}, command {number}" for number in range(len(patches))]
    running = [
        bench.start("set", str(patch.id), "--comment", comment)
        for patch, comment in zip(patches, comments)
    ]
    while any(process.poll() is None for process in running):
        look_on(figures, bench, before, comments)
    expected = before
    done = 0
    for patch, comment, process in zip(patches, comments, running):
        said = process.communicate()[1].strip()
        if process.returncode == 0:
            done += 1
            expected = expected.replaced(patch.id, patch.changed(comment=comment))
        elif process.returncode != REFUSED or str(bench.library.directory) not in said:
            figures.fail("refused badly", f"status {process.returncode}, said {said!r}")
    found = bench.library.state()
    if not same(expected, found):
        figures.fail("lost", f"round {round_}: {difference(expected, found)}")
    if not done:
        figures.fail("refused badly", f"round {round_}: not one of {len(running)} commands was done")
    litter = bench.library.leftovers(found) + bench.library.dated_copies()
    if litter:
        figures.fail("leftovers", f"round {round_}: {', '.join(litter)}")
    figures.count("commands at once", len(running))
    figures.count("done", done)


def look_on(figures: Figures, bench: Bench, before: State, comments: list[str]) -> None:
    """What is read during changes is a library, with each patch as it was or as it will be."""
    figures.count("looks")
    try:
        found = bench.library.state()
    except Exception as problem:
        figures.fail("read wrongly", str(problem))
        return
    for number, old in enumerate(before.patches):
        possible = [old] + [old.changed(comment=comment) for comment in comments[number : number + 1]]
        if number >= len(found.patches) or found.patches[number] not in possible:
            figures.fail("read wrongly", f"patch {number} while commands run")
            return


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--velgor", type=pathlib.Path, required=True)
    parser.add_argument("--window", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=20, help="rounds of commands at once")
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    figures = Figures("two at once", "lost", "refused badly", "read wrongly", "leftovers", "not taken over")
    bench = Bench(arguments.velgor.resolve(), arguments.window.resolve(), arguments.seed)
    try:
        for round_ in range(arguments.rounds):
            commands_at_once(figures, bench, round_)
        two_at_once_locks.run(figures, bench)
        two_at_once_windows.run(figures, bench)
    finally:
        bench.close()
    figures.finish()


if __name__ == "__main__":
    main()
