"""Cuts the power at random moments of real work: the file system is shut down without writing what it still holds in
memory. What a finished command has written must be there afterwards, and what was cut is the old state or the new."""

from __future__ import annotations

import dataclasses
import pathlib
import random
import subprocess
import time

from harness import Figures, Library, Operation, State, Velgor, disk, options, skip
from harness import check_after_stop, check_next_export, check_next_start, operations, random_presets

MOST_BEFORE = 4  # operations that finish before one is cut


class Cutter:
    def __init__(self, velgor: Velgor, chance: random.Random, scratch: pathlib.Path, figures: Figures) -> None:
        self.chance, self.figures = chance, figures
        self.disk = disk.Disk(scratch)
        self.velgor = velgor
        self.usual = 0.05  # seconds that an operation takes
        self.begin_library()

    def begin_library(self) -> None:
        number = self.figures.counts["libraries"]
        self.figures.count("libraries")
        directory = self.disk.mount_point / f"library-{number}"
        self.library = Library.create(self.velgor, directory, random_presets(self.chance, 25))
        self.state = self.library.state()

    def operation(self) -> Operation:
        return operations.random_operation(self.chance, self.state, self.disk.mount_point, most=60)

    def finish_some(self) -> Operation | None:
        """The last of them, when nothing else is going on as the power goes."""
        operation = None
        for _ in range(self.chance.randrange(MOST_BEFORE + 1)):
            operation = self.operation()
            begin = time.monotonic()
            self.library.command(*operation.arguments)
            self.usual += 0.2 * (time.monotonic() - begin - self.usual)
            self.figures.count("finished")
            self.state = self.library.state()
        return operation

    def cut_once(self) -> None:
        if self.chance.random() < 0.1:
            self.begin_library()
            last: Operation | None = Operation("first start", [], self.state)
        else:
            last = self.finish_some()
        finished = last is not None and (last.name == "first start" or self.chance.random() < 0.3)
        if last and finished:
            # The state was read from memory; the ids and names that the program chose have to come back too.
            operation = dataclasses.replace(last, after=self.state)
            self.disk.cut_power()
        else:
            operation, finished = self.cut_during()
        where = f"cut {self.figures.counts['cuts']}, {operation.name}{', finished' if finished else ''}"
        self.figures.count("cuts")
        self.disk.unmount()
        self.disk.mount()
        found = check_after_stop(self.library, self.state, operation, self.figures, where, finished)
        if found is None:
            self.begin_library()
            return
        check_next_start(self.library, found, self.figures, where)
        check_next_export(self.library, operation, self.figures, where)
        self.state = found

    def cut_during(self) -> tuple[Operation, bool]:
        operation = self.operation()
        if operation.target:
            # The old file of the test's own making has to be on the disk.
            subprocess.run(["sync", "-f", str(self.disk.mount_point)], check=True)
        process = self.velgor.start(*self.library.arguments(*operation.arguments))
        try:
            process.wait(self.chance.uniform(0, 1.2 * self.usual))
        except subprocess.TimeoutExpired:
            pass
        finished = process.poll() == 0
        self.disk.cut_power()
        process.kill()
        process.wait()
        return operation, finished


def main() -> None:
    parser = options.parser(__doc__ or "")
    parser.add_argument("--cuts", type=int, default=20)
    arguments = parser.parse_args()
    disk.with_private_mounts()
    with options.scratch(arguments) as directory:
        scratch = pathlib.Path(directory)
        reason = disk.why_not(scratch)
        if reason:
            skip("power cut", reason)
        chance = options.chance(arguments, "power cut")
        figures = Figures("power cut", "cuts", "lost", "leftovers", "libraries", "finished", "old", "new")
        cutter = Cutter(Velgor(arguments.velgor), chance, scratch, figures)
        try:
            while figures.counts["cuts"] < arguments.cuts:
                cutter.cut_once()
        finally:
            cutter.disk.remove()
    figures.finish()


if __name__ == "__main__":
    main()
