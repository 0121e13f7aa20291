"""What a library holds, as far as its user would miss it."""

from __future__ import annotations

import dataclasses
import typing


@dataclasses.dataclass(frozen=True)
class Patch:
    """One patch with everything the library says of it. None for an id, a name or a date that cannot be foretold."""

    id: int | None
    name: str | None
    date: float | None
    fields: tuple[tuple[str, typing.Any], ...]  # every other key of the library file
    digest: str  # of the preset data

    def field(self, key: str) -> typing.Any:
        return dict(self.fields)[key]

    def changed(self, **fields: typing.Any) -> Patch:
        unknown = fields.keys() - dict(self.fields).keys()
        if unknown:
            raise KeyError(f"no such key: {unknown}")
        return dataclasses.replace(self, fields=tuple(sorted({**dict(self.fields), **fields}.items())))


@dataclasses.dataclass(frozen=True)
class State:
    patches: tuple[Patch, ...] = ()
    default: int | None = None

    def patch(self, id: int) -> Patch:
        return next(patch for patch in self.patches if patch.id == id)

    def replaced(self, id: int, patch: Patch) -> State:
        patches = tuple(patch if one.id == id else one for one in self.patches)
        return dataclasses.replace(self, patches=patches)


def _same_patch(expected: Patch, found: Patch) -> bool:
    return (
        expected.id in (None, found.id)
        and expected.name in (None, found.name)
        and expected.date in (None, found.date)
        and expected.fields == found.fields
        and expected.digest == found.digest
    )


def same(expected: State, found: State) -> bool:
    """In order, with every key and every byte."""
    return (
        expected.default == found.default
        and len(expected.patches) == len(found.patches)
        and len({patch.id for patch in found.patches}) == len(found.patches)
        and all(map(_same_patch, expected.patches, found.patches))
    )


def difference(expected: State, found: State) -> str:
    """For people: the first thing that differs."""
    if expected.default != found.default:
        return f"default {found.default} instead of {expected.default}"
    for index, (one, other) in enumerate(zip(expected.patches, found.patches)):
        if not _same_patch(one, other):
            return f"patch {index}: {other} instead of {one}"
    return f"{len(found.patches)} patches instead of {len(expected.patches)}"
