"""What has to hold for a library after a program was stopped in the middle."""

from __future__ import annotations

import os

from .figures import Figures
from .library import Library, LibraryBroken
from .operations import Operation, export_problem
from .state import State, difference, same


def check_after_stop(
    library: Library, before: State, operation: Operation, figures: Figures, where: str, finished: bool = False
) -> State | None:
    """The library opens, without a word of loss, as it was before the operation or after it; a finished operation
    leaves no choice. Gives what is there, and nothing where something is lost."""
    lost = figures.counts["lost"]
    try:
        found = library.state()
    except LibraryBroken as broken:
        figures.fail("lost", f"{where}: {broken}")
        return None
    if same(operation.after, found):
        if operation.target is None:
            figures.count("new")
    elif finished:
        figures.fail("lost", f"{where}: finished, and not there: {difference(operation.after, found)}")
    elif same(before, found):
        figures.count("old")
    else:
        old, new = difference(before, found), difference(operation.after, found)
        figures.fail("lost", f"{where}: a third state: not the old one: {old}; not the new one: {new}")
    problem = export_problem(operation, finished)
    if problem:
        figures.fail("lost", f"{where}: {problem}")
    return found if figures.counts["lost"] == lost else None


def check_next_start(library: Library, state: State, figures: Figures, where: str) -> None:
    """The next program that may write changes nothing but what the last one left lying about."""
    try:
        library.tidy()
        found = library.state()
    except LibraryBroken as broken:
        name = "refused" if "in use by another" in str(broken) else "lost"
        figures.fail(name, f"{where}: after the next start: {broken}")
        return
    if not same(state, found):
        figures.fail("lost", f"{where}: changed by the next start: {difference(state, found)}")
    missing = library.missing_files(found)
    if missing:
        figures.fail("lost", f"{where}: no file after the next start: {missing}")
    # Nothing else has written the library file, so there is none to be kept either.
    leftovers = library.leftovers(found) + (library.dated_copies() if library.directory.exists() else [])
    if leftovers:
        figures.fail("leftovers", f"{where}: {leftovers}")
    beside = [name for name in os.listdir(library.directory.parent) if name.endswith(".testfile.txt")]
    if beside:
        figures.fail("leftovers", f"{where}: {beside}")


def check_next_export(library: Library, operation: Operation, figures: Figures, where: str) -> None:
    """The next export into the directory leaves nothing there but its file."""
    if operation.target is None:
        return
    library.command(*operation.arguments)
    problem = export_problem(operation, finished=True)
    if problem:
        figures.fail("lost", f"{where}: exported again: {problem}")
    leftovers = sorted(set(os.listdir(operation.target.parent)) - {operation.target.name})
    if leftovers:
        figures.fail("leftovers", f"{where}: in the directory of exports: {leftovers}")
