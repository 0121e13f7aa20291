"""Kills the command line at every single system call with which an operation changes files, one run for each call."""

from __future__ import annotations

import collections
import pathlib
import random
import shutil

from harness import Figures, Library, Operation, State, Velgor, calls, operations, options, presets, skip
from harness import check_after_stop, check_next_export, check_next_start, random_presets
from window_start import kill_window

PATCHES = 8
AFTER_A_KILL = "edit after a kill"


class Scenario:
    """One operation, and everything that is on disk before it. Every run finds the same under the same paths."""

    def __init__(self, name: str, velgor: Velgor, chance: random.Random, scratch: pathlib.Path) -> None:
        self.name = name
        self.work = scratch / name.replace(" ", "-")
        self.work.mkdir()
        self.library = Library(velgor, self.work / "library")
        self.template = Library(velgor, scratch / f"{self.work.name}.template")
        if name == "first start":
            contents = random_presets(chance, 4)
            file = scratch / "first.prst"
            file.write_bytes(presets.encode(contents))
            self.before = State()
            self.operation = Operation("add", ["add", file], operations.added(self.before, contents))
            return
        self.template = Library.create(velgor, self.template.directory, random_presets(chance, PATCHES))
        self.before = self.template.state()
        if name == AFTER_A_KILL:
            # On top of what another kill has left: the lock of a program that is gone.
            self.operation = operations.edit(chance, self.before, scratch)
            ends = [call for call in self.record() if "unlink" in call.name and "velgorlibrary.lock" in call.text]
            self.reset()
            self.library.run(*self.operation.arguments, prefix=calls.killer(ends[-1]))
            self.library.copy_to(self.template.directory)
            self.before = self.template.state()
            self.operation = operations.edit(chance, self.before, scratch)
        elif name.startswith("export"):
            self.operation = operations.export(chance, self.before, self.work, exists=name == "export over a file")
        else:
            # Two files at least, where an operation can have several.
            several = 2 if name == "remove" else 0
            self.operation = operations.OPERATIONS[name](chance, self.before, scratch)
            while len(self.operation.arguments) < several + 1:
                self.operation = operations.OPERATIONS[name](chance, self.before, scratch)

    def reset(self) -> None:
        self.template.copy_to(self.library.directory)
        for file in self.work.glob("*.testfile.txt"):
            file.unlink()
        target = self.operation.target
        if target:
            shutil.rmtree(target.parent)
            target.parent.mkdir()
            if self.operation.old is not None:
                target.write_bytes(self.operation.old)

    def record(self) -> list[calls.Call]:
        self.reset()
        log = self.work.parent / "calls.txt"
        done = self.library.run(*self.operation.arguments, prefix=calls.recorder(log))
        if done.returncode != 0:
            raise RuntimeError(f"{self.name} does not work: {done.stderr}")
        # Of a library, the directory beside which a first start writes counts too.
        return calls.recorded(log, self.work)

    def kill_at(self, call: calls.Call, figures: Figures) -> None:
        where = f"{self.name}, {call.name} {call.number}: {call.text}"
        self.reset()
        done = self.library.run(*self.operation.arguments, prefix=calls.killer(call))
        if done.returncode == 0:
            figures.fail("not killed", where)
            return
        figures.count("kills")
        found = check_after_stop(self.library, self.before, self.operation, figures, where)
        if found is None:
            return
        if self.name != "first start":
            check_next_start(self.library, found, figures, where)
            check_next_export(self.library, self.operation, figures, where)
            return
        self.library.run(*self.operation.arguments)
        found = check_after_stop(self.library, self.before, self.operation, figures, where + ", again", finished=True)
        if found is not None:
            check_next_start(self.library, found, figures, where)


def main() -> None:
    parser = options.parser(__doc__ or "")
    parser.add_argument("--only", help="one kind of operation, or \"window\"")
    parser.add_argument("--long", action="store_true", help="also before files are closed, which changes nothing")
    arguments = parser.parse_args()
    reason = calls.why_not()
    if reason:
        skip("system calls", reason)
    chance = options.chance(arguments, "system calls")
    figures = Figures("system calls", "kills", "lost", "leftovers", "refused", "hung", "not killed", "old", "new")
    names = [name for name in operations.OPERATIONS if name != "export"]
    with options.scratch(arguments) as directory:
        for name in [*names, AFTER_A_KILL, "export", "export over a file", "first start"]:
            if arguments.only not in (None, name):
                continue
            scenario = Scenario(name, Velgor(arguments.velgor), chance, pathlib.Path(directory))
            found = [call for call in scenario.record() if arguments.long or call.name != "close"]
            for call in found:
                scenario.kill_at(call, figures)
            kinds = collections.Counter(call.name for call in found)
            print(f"  {name}: " + ", ".join(f"{number} {kind}" for kind, number in kinds.items()), flush=True)
        if arguments.window and arguments.only in (None, "window"):
            kill_window(arguments.window, Velgor(arguments.velgor), chance, pathlib.Path(directory), figures)
    figures.finish()


if __name__ == "__main__":
    main()
