"""What is tried under a fault: a directory as it is before, a command, and how the directory may be afterwards."""

from __future__ import annotations

import contextlib
import dataclasses
import os
import pathlib
import random
import shutil
import subprocess

from harness import Figures, Library, LibraryBroken, Operation, State, Velgor, difference, random_presets, same
from harness import operations
from harness.library import patch_file

REFUSED = 2
NOT_MOVED = "Error renaming item"
COUNTS = ("neither old nor new", "wrong status", "said too little", "not brought by the next try", "leftovers", "died")


class Scenario:
    """The library is `place`/library, exports go to `place`/exports; both are made anew for every case."""

    def __init__(self, name: str, velgor: Velgor, scratch: pathlib.Path, place: pathlib.Path, seed: int, count: int):
        self.name, self.place = name, place
        self.pristine = scratch / f"pristine-{name.replace(' ', '-')}"
        self.library = Library(velgor, place / "library")
        # What reads the library must not need what the fault takes away.
        self.library.scratch = scratch / "read.prst"
        chance = random.Random(seed)
        state = State()
        (self.pristine / "exports").mkdir(parents=True)
        if name != "first start":
            prepared = Library.create(velgor, self.pristine / "library", random_presets(chance, count))
            prepared.command("set", str(prepared.state().patches[1].id), "--default")
            state = prepared.state()
        self.before = state
        self.operation = self._operation(chance, scratch)
        # Some operations leave the old export in a directory of their own.
        if self.operation.target is not None:
            self.operation.target.unlink(missing_ok=True)
            self.operation.target = place / "exports" / "mine.prst"
            self.operation.arguments[-1] = self.operation.target
            if self.operation.old is not None:
                (self.pristine / "exports" / "mine.prst").write_bytes(self.operation.old)

    def _operation(self, chance: random.Random, scratch: pathlib.Path) -> Operation:
        own = scratch / self.name.replace(" ", "-")
        own.mkdir()
        if self.name == "first start":
            return operations.add(chance, self.before, own)
        if self.name.startswith("export"):
            return operations.export(chance, self.before, own, exists=self.name == "export over a file")
        return operations.OPERATIONS[self.name](chance, self.before, own)

    def prepare(self, owner: int | None = None) -> None:
        for part in ("library", "exports"):
            shutil.rmtree(self.place / part, ignore_errors=True)
            if (self.pristine / part).exists():
                shutil.copytree(self.pristine / part, self.place / part)
        if owner is not None:
            for path in [self.place, *self.place.rglob("*")]:
                os.chown(path, owner, owner)

    def run(self, prefix: list[str] | None = None) -> subprocess.CompletedProcess[str]:
        return self.library.run(*self.operation.arguments, prefix=prefix)

    @property
    def is_export(self) -> bool:
        return self.operation.target is not None

    def found(self) -> str:
        """"old", "new", or what is wrong."""
        try:
            state = self.library.state()
        except (LibraryBroken, ValueError) as problem:
            return "old" if self._has_only_patch_files(problem) else f"the library does not open: {problem}"
        if self.is_export:
            if not same(self.before, state):
                return f"an export changed the library: {difference(self.before, state)}"
            if not operations.export_problem(self.operation, finished=True):
                return "new"
            return operations.export_problem(self.operation, finished=False) or "old"
        if same(self.operation.after, state):
            return "new"
        return "old" if same(self.before, state) else difference(self.before, state)

    def _has_only_patch_files(self, problem: Exception) -> bool:
        """Whether this is still the empty library of a first start. Patch files are stored even if the library file
        cannot be, because what they hold may be nowhere else; they are told of, and can be added again."""
        count = len(self.operation.after.patches)
        is_told = f"there is no library file, but {count} patch files" in str(problem)
        return self.name == "first start" and is_told

    def litter(self, said: str) -> list[str]:
        """What lies about that neither the library nor the export needs, and that the program does not leave there on
        purpose. `said` is what it told under the fault."""
        state = self.library.state()
        names = self.library.leftovers(state) + [f"missing: {name}" for name in self.library.missing_files(state)]
        if NOT_MOVED in said:
            # A patch whose file cannot be moved to its new name is stored anew; the old file is left to the user.
            former = {patch_file(patch) for patch in self.before.patches}
            names = [name for name in names if name not in former or f"/{name}" not in said]
        names += sorted(set(os.listdir(self.place)) - {"library", "exports"})
        target = self.operation.target
        return names + sorted(set(os.listdir(self.place / "exports")) - {target.name if target else ""})


@dataclasses.dataclass
class Case:
    """One scenario under one fault. `reasons` are the system's texts of which one has to be told."""

    scenario: Scenario
    fault: str
    reasons: tuple[str, ...]
    prefix: list[str] | None = None

    def check(
        self,
        figures: Figures,
        done: subprocess.CompletedProcess[str],
        end_of_fault: contextlib.AbstractContextManager[object] = contextlib.nullcontext(),
    ) -> str:
        """`end_of_fault` is entered before anything is tried again. What was found is returned: "old" or "new"."""
        scenario = self.scenario
        label = f"{scenario.name}, {self.fault}"
        said = done.stderr.strip()
        if done.returncode < 0:
            figures.fail("died", f"{label}: signal {-done.returncode}")
        found = scenario.found()
        if found not in ("old", "new"):
            figures.fail("neither old nor new", f"{label}: {found} (status {done.returncode}, said {said!r})")
        elif done.returncode not in ((REFUSED,) if found == "old" else (0, REFUSED)):
            figures.fail("wrong status", f"{label}: status {done.returncode} with the {found} state, said {said!r}")
        if done.returncode == REFUSED and not self._is_told(said):
            figures.fail("said too little", f"{label}: {said!r}")
        with end_of_fault:
            self._try_again(figures, label, found, said)
        return found

    def _is_told(self, said: str) -> bool:
        return str(self.scenario.place) in said and any(reason in said for reason in self.reasons)

    def _is_tidied(self) -> bool:
        """A start that may write, and changes nothing. It may tell of the former failure."""
        patch = self.scenario.library.state().patches[0]
        comment = ["--comment", patch.field("comment")]
        return self.scenario.library.run("set", str(patch.id), *comment, prefix=self.prefix).returncode == 0

    def _try_again(self, figures: Figures, label: str, found: str, said: str) -> None:
        scenario = self.scenario
        try:
            again = scenario.run(self.prefix) if found != "new" or scenario.is_export else None
            if again is not None and again.returncode != 0:
                figures.fail("not brought by the next try", f"{label}: {again.returncode}, {again.stderr.strip()!r}")
            elif again is None and not self._is_tidied():
                figures.fail("not brought by the next try", f"{label}: the next start fails")
            now = scenario.found()
            if now != "new":
                figures.fail("not brought by the next try", f"{label}: {now}")
            litter = scenario.litter(said)
            if litter:
                figures.fail("leftovers", f"{label}: {', '.join(litter)}")
        except LibraryBroken as problem:
            figures.fail("neither old nor new", f"{label}: afterwards: {problem}")


SCENARIOS = ("edit", "rename", "add", "remove", "first start", "export to a new file", "export over a file")


def scenarios(velgor: Velgor, scratch: pathlib.Path, place: pathlib.Path, seed: int, count: int) -> list[Scenario]:
    place.mkdir(exist_ok=True)
    return [Scenario(name, velgor, scratch, place, seed + n, count) for n, name in enumerate(SCENARIOS)]
