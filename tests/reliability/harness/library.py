"""A library directory on disk, and the command line that works on it."""

from __future__ import annotations

import json
import os
import pathlib
import re
import shutil
import subprocess

from . import presets
from .state import Patch, State

LIBRARY_FILE = "velgorlibrary.json"
DATED_COPY = re.compile(r"velgorlibrary-\d{8}T\d{6}-\d{2,}\.json")
LOSS = re.compile(r"left out|cannot|could not|error|not a complete|no library file", re.IGNORECASE)
KEPT = re.compile(r"was kept as")
SLOWEST = 60  # seconds; a command that takes longer hangs


class LibraryBroken(Exception):
    """The library does not open, or tells of a loss."""


class Velgor:
    """The command line program."""

    def __init__(self, executable: pathlib.Path | str) -> None:
        self.executable = str(executable)
        self.environment = {**os.environ, "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen"}

    def run(self, *arguments: str | pathlib.Path, prefix: list[str] | None = None) -> subprocess.CompletedProcess[str]:
        """`prefix` is a command that starts the program, like strace with its options."""
        return subprocess.run(
            [*(prefix or []), self.executable, *map(str, arguments)],
            capture_output=True,
            text=True,
            encoding="utf-8",
            errors="replace",
            env=self.environment,
            timeout=SLOWEST,
        )

    def start(self, *arguments: str | pathlib.Path) -> subprocess.Popen[bytes]:
        return subprocess.Popen(
            [self.executable, *map(str, arguments)],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            env=self.environment,
        )


class Library:
    def __init__(self, velgor: Velgor, directory: pathlib.Path) -> None:
        self.velgor = velgor
        self.directory = directory
        self.scratch = directory.parent / (directory.name + ".read.prst")

    @classmethod
    def create(cls, velgor: Velgor, directory: pathlib.Path, contents: list[presets.Preset]) -> Library:
        file = directory.parent / (directory.name + ".add.prst")
        file.write_bytes(presets.encode(contents))
        library = cls(velgor, directory)
        library.command("add", file)
        file.unlink()
        return library

    def arguments(self, *arguments: str | pathlib.Path) -> list[str | pathlib.Path]:
        return ["library", *arguments, "--library", self.directory]

    def run(self, *arguments: str | pathlib.Path, prefix: list[str] | None = None) -> subprocess.CompletedProcess[str]:
        return self.velgor.run(*self.arguments(*arguments), prefix=prefix)

    def command(self, *arguments: str | pathlib.Path) -> subprocess.CompletedProcess[str]:
        """A command that has to succeed without a word of loss."""
        done = self.run(*arguments)
        lost = [line for line in done.stderr.splitlines() if LOSS.search(line) and not KEPT.search(line)]
        if done.returncode != 0 or lost:
            told = "; ".join(dict.fromkeys(lost or done.stderr.splitlines()))
            raise LibraryBroken(f"library {arguments[0]}: status {done.returncode}: {told}")
        return done

    def state(self) -> State:
        """What the program reads from the directory, which stays as it is. An absent directory is an empty library."""
        if not self.directory.exists():
            return State()
        document = json.loads(self.command("list", "--json").stdout)
        entries = [entry for entry in document["patches"] if not entry["empty"]]
        if len(entries) != document["total"]:
            raise LibraryBroken(f"{document['total']} patches are counted, {len(entries)} are listed")
        digests = self._digests([entry["id"] for entry in entries])
        patches = []
        for entry, digest in zip(entries, digests):
            id, name, date = int(entry.pop("id")), entry.pop("name"), entry.pop("date")
            patches.append(Patch(id, name, date, tuple(sorted(entry.items())), digest))
        default = document["defaultPatch"]
        return State(tuple(patches), None if default is None else int(default))

    def _digests(self, ids: list[str]) -> list[str]:
        if not ids:
            return []
        self.command("export", *ids, "-o", self.scratch)
        contents = presets.decode(self.scratch.read_bytes())
        self.scratch.unlink()
        if len(contents) != len(ids):
            raise LibraryBroken(f"{len(ids)} patches asked for, {len(contents)} exported")
        return [content.digest for content in contents]

    def tidy(self) -> None:
        """The next start of a program that may write, without a change: it sets a default patch anew, or none."""
        state = self.state()
        if not state.patches:
            # Nothing can be set in an empty library; a removal of nothing known still opens it for writing.
            self.run("remove", "1")
        elif state.default is not None:
            self.command("set", str(state.default), "--default")
        else:
            first = state.patches[0]
            self.command("set", str(first.id), "--comment", first.field("comment"))

    def leftovers(self, state: State) -> list[str]:
        """What is in the directory beside the library file, the files of these patches and dated copies."""
        if not self.directory.exists():
            return []
        expected = {LIBRARY_FILE} | {patch_file(patch) for patch in state.patches}
        names = os.listdir(self.directory)
        return sorted(name for name in names if name not in expected and not DATED_COPY.fullmatch(name))

    def dated_copies(self) -> list[str]:
        return sorted(filter(DATED_COPY.fullmatch, os.listdir(self.directory)))

    def missing_files(self, state: State) -> list[str]:
        """Files of patches that are not there under their name."""
        names = set(os.listdir(self.directory)) if self.directory.exists() else set()
        return sorted({patch_file(patch) for patch in state.patches} - names)

    def copy_to(self, directory: pathlib.Path) -> Library:
        """Another directory with the same files, in the place of whatever is there."""
        shutil.rmtree(directory, ignore_errors=True)
        if self.directory.exists():
            shutil.copytree(self.directory, directory, symlinks=True)
        return Library(self.velgor, directory)


def patch_file(patch: Patch) -> str:
    """For names that need no shortening."""
    return f"lib-{(patch.name or '').replace('/', '$')}.{patch.id}.prst"
