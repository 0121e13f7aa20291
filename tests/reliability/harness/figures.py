"""Counts, failures and the line printed in the end."""

from __future__ import annotations

import collections
import sys
import typing


def skip(what: str, reason: str) -> typing.NoReturn:
    """The machine cannot run this test, which is no failure."""
    print(f"{what}: skipped: {reason}")
    sys.exit(0)


class Figures:
    """The failures that matter have their counts named from the start, so that a line says "0 lost"."""

    def __init__(self, what: str, *names: str, most_shown: int = 20) -> None:
        self.what = what
        self.counts = collections.Counter(dict.fromkeys(names, 0))
        self.failures = 0
        self.most_shown = most_shown

    def count(self, name: str, number: int = 1) -> None:
        self.counts[name] += number

    def fail(self, name: str, message: str) -> None:
        """Counts under `name`, and tells at once what was found."""
        self.counts[name] += 1
        self.failures += 1
        if self.failures <= self.most_shown:
            print(f"{self.what}: {name}: {message}", flush=True)

    def finish(self) -> typing.NoReturn:
        print(f"{self.what}: " + ", ".join(f"{number} {name}" for name, number in self.counts.items()), flush=True)
        sys.exit(1 if self.failures else 0)
