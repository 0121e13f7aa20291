"""Kills the programs at random moments of real work, and looks at what they leave.

Three kills of four hit the command line, in the middle of one operation, often on top of what the last kill left. The
fourth hits a program that edits without end through the window's delayed and background save."""

from __future__ import annotations

import os
import pathlib
import random
import subprocess
import time

from harness import Figures, Library, LibraryBroken, Operation, Velgor, options
from harness import check_after_stop, check_next_export, check_next_start, random_operation, random_presets

KILLS_A_LIBRARY = 40


class Killer:
    def __init__(self, velgor: Velgor, chance: random.Random, scratch: pathlib.Path, figures: Figures) -> None:
        self.velgor, self.chance, self.scratch, self.figures = velgor, chance, scratch, figures
        self.usual = 0.02  # seconds that an operation takes
        self.begin_library()

    def begin_library(self) -> None:
        size = self.chance.choice((3, 10, 40, 100, 200))
        self.number = self.figures.counts["libraries"]
        self.figures.count("libraries")
        self.library = Library.create(
            self.velgor, self.scratch / f"library-{self.number}", random_presets(self.chance, size)
        )
        self.state = self.library.state()

    def run_killed(self, operation: Operation, where: str) -> bool:
        """True when the operation was faster."""
        begin = time.monotonic()
        process = self.velgor.start(*self.library.arguments(*operation.arguments))
        try:
            process.wait(self.chance.uniform(0, 1.2 * self.usual))
        except subprocess.TimeoutExpired:
            process.kill()
        status = process.wait()
        if status > 0:
            names = sorted(name for name in os.listdir(self.library.directory) if not name.startswith("lib-"))
            self.figures.fail("refused", f"{where}: status {status}; there are {names}")
        if status == 0:
            self.usual += 0.2 * (time.monotonic() - begin - self.usual)
        else:
            # Otherwise a machine that was slow for a moment would be waited for ever after.
            self.usual *= 1.01
        return status == 0

    def kill_once(self) -> None:
        operation = random_operation(self.chance, self.state, self.scratch)
        where = f"kill {self.figures.counts['kills']}, {operation.name} in {self.library.directory.name}"
        finished = self.run_killed(operation, where)
        self.figures.count("finished before" if finished else "kills")
        found = check_after_stop(self.library, self.state, operation, self.figures, where, finished)
        if found is None:
            self.begin_library()
            return
        if self.chance.random() < 0.4:
            check_next_start(self.library, found, self.figures, where)
            check_next_export(self.library, operation, self.figures, where)
        self.state = found


def kill_editing(program: pathlib.Path, chance: random.Random, scratch: pathlib.Path, figures: Figures) -> None:
    """One kill of the program that edits, in a directory that goes through many of them."""
    directory = scratch / "edited"
    directory.mkdir(exist_ok=True)
    log = scratch / "edits.txt"
    with log.open("wb") as output:
        process = subprocess.Popen(
            [program, "edit", directory, str(chance.getrandbits(31))], stdout=output, stderr=subprocess.DEVNULL
        )
        try:
            status = process.wait(chance.uniform(0.02, 0.7))
            figures.fail("lost", f"the editing program ended by itself with {status}")
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
    figures.count("kills")
    hashes: dict[int, str] = {}
    saved = 0
    for line in log.read_text().splitlines():
        kind, number, *rest = line.split()
        if kind == "saved":
            saved = int(number)
        elif rest and len(rest[0]) == 40:
            hashes[int(number)] = rest[0]
    figures.count("edits", len(hashes))
    loaded = subprocess.run([program, "state", directory], capture_output=True, text=True)
    allowed = {text: number for number, text in hashes.items() if number >= saved}
    if loaded.returncode != 0:
        told = "; ".join(loaded.stderr.split("\n"))
        figures.fail("lost", f"what was edited does not load: {told}")
    elif hashes and loaded.stdout.strip() not in allowed:
        old = [number for number, text in hashes.items() if text == loaded.stdout.strip()]
        figures.fail("lost", f"edits {sorted(allowed.values())} expected, found {old or 'a state that never was'}")


def main() -> None:
    parser = options.parser(__doc__ or "")
    parser.add_argument("--kills", type=int, default=150)
    parser.add_argument("--edits-only", action="store_true", help="kills only the program that edits")
    arguments = parser.parse_args()
    chance = options.chance(arguments, "kill")
    figures = Figures("kill", "kills", "lost", "leftovers", "refused", "libraries", "old", "new", "finished before", "edits")
    with options.scratch(arguments) as directory:
        scratch = pathlib.Path(directory)
        killer = Killer(Velgor(arguments.velgor), chance, scratch, figures)
        while figures.counts["kills"] < arguments.kills:
            if arguments.edits_only or arguments.edit_process and figures.counts["kills"] % 4 == 3:
                kill_editing(arguments.edit_process, chance, scratch, figures)
            else:
                killer.kill_once()
            if figures.counts["kills"] >= KILLS_A_LIBRARY * figures.counts["libraries"]:
                killer.begin_library()
        if arguments.edit_process:
            check_edited(Library(killer.velgor, scratch / "edited"), figures)
    figures.finish()


def check_edited(library: Library, figures: Figures) -> None:
    try:
        check_next_start(library, library.state(), figures, "the edited library")
    except LibraryBroken as broken:
        figures.fail("lost", f"the edited library: {broken}")


if __name__ == "__main__":
    main()
