"""What a user does to a library with one command, and the state that has to come of it."""

from __future__ import annotations

import dataclasses
import pathlib
import random
import typing

from . import presets
from .state import Patch, State

FLAGS = ("guitar", "bass", "clean", "crunch", "drive", "higain", "rythm", "solo")


@dataclasses.dataclass
class Operation:
    """`arguments` follow "velgor library"; `after` is the state they lead to. Of an export, `target` is the file,
    `old` what was there before and `exported` what has to be in it afterwards."""

    name: str
    arguments: list[str | pathlib.Path]
    after: State
    target: pathlib.Path | None = None
    old: bytes | None = None
    exported: list[presets.Preset] = dataclasses.field(default_factory=list)


def edit(chance: random.Random, state: State, _: pathlib.Path) -> Operation:
    patch = chance.choice(state.patches)
    comment = f"take {chance.getrandbits(40)} – ärger \"{chance.choice(presets.NAME_WORDS)}\""
    flags = {flag: chance.random() < 0.5 for flag in chance.sample(FLAGS, chance.randrange(4))}
    options = [text for flag, on in flags.items() for text in (f"--{flag}", "on" if on else "off")]
    after = state.replaced(_known(patch), patch.changed(comment=comment, **flags))
    return Operation("edit", ["set", str(patch.id), "--comment", comment, *options], after)


def rename(chance: random.Random, state: State, _: pathlib.Path) -> Operation:
    patch = chance.choice(state.patches)
    name = f"{chance.choice(presets.NAME_WORDS)} {chance.getrandbits(24)}"
    after = state.replaced(_known(patch), dataclasses.replace(patch, name=name))
    return Operation("rename", ["set", str(patch.id), "--name", name], after)


def add(chance: random.Random, state: State, scratch: pathlib.Path) -> Operation:
    contents = presets.random_presets(chance, chance.randrange(2, 7))
    file = scratch / "more.prst"
    file.write_bytes(presets.encode(contents))
    return Operation("add", ["add", file], added(state, contents))


def added(state: State, contents: list[presets.Preset]) -> State:
    """The state after these new presets were added at the end."""
    plain: dict[str, typing.Any] = {"comment": "", "version": "V1.20", "empty": False} | dict.fromkeys(FLAGS, False)
    patches = [
        Patch(None, one.name, None, tuple(sorted({**plain, "hasUserIR": bool(one.response)}.items())), one.digest)
        for one in contents
    ]
    return dataclasses.replace(state, patches=(*state.patches, *patches))


def remove(chance: random.Random, state: State, _: pathlib.Path) -> Operation:
    ids = [_known(patch) for patch in chance.sample(state.patches, chance.randrange(1, min(5, len(state.patches))))]
    left = tuple(patch for patch in state.patches if patch.id not in ids)
    default = None if state.default in ids else state.default
    return Operation("remove", ["remove", *map(str, ids)], State(left, default))


def duplicate(chance: random.Random, state: State, _: pathlib.Path) -> Operation:
    patch = chance.choice(state.patches)
    # The program chooses the copy's name and id.
    copy = dataclasses.replace(patch, id=None, name=None, date=None)
    after = dataclasses.replace(state, patches=(*state.patches, copy))
    return Operation("duplicate", ["duplicate", str(patch.id)], after)


def set_default(chance: random.Random, state: State, _: pathlib.Path) -> Operation:
    patch = chance.choice(state.patches)
    return Operation("default", ["set", str(patch.id), "--default"], dataclasses.replace(state, default=patch.id))


def export(chance: random.Random, state: State, scratch: pathlib.Path, exists: bool | None = None) -> Operation:
    chosen = chance.sample(state.patches, chance.randrange(1, len(state.patches) + 1))
    directory = scratch / "exports"
    directory.mkdir(exist_ok=True)
    target = directory / "mine.prst"
    old = None
    if chance.random() < 0.5 if exists is None else exists:
        old = presets.encode(presets.random_presets(chance, 20))
        target.write_bytes(old)
    else:
        target.unlink(missing_ok=True)
    operation = Operation("export", ["export", *(str(one.id) for one in chosen), "-o", target], state, target, old)
    # Contents are compared by their digests, which the state has; names that are cut are none of this test's matter.
    operation.exported = [presets.Preset(one.name or "", one.digest.encode()) for one in chosen]
    return operation


def export_problem(operation: Operation, finished: bool) -> str:
    """Whether the target is the old file or the new one, to the last byte; empty when it is."""
    if operation.target is None:
        return ""
    found = operation.target.read_bytes() if operation.target.exists() else None
    if found == operation.old and not finished:
        return ""
    try:
        digests = [one.digest for one in presets.decode(found or b"")]
    except Exception as problem:
        return f"the export is neither the old file nor the new one: {problem}"
    expected = [one.data.decode() for one in operation.exported]
    return "" if digests == expected else "the exported file holds other patches"


Maker = typing.Callable[[random.Random, State, pathlib.Path], Operation]
OPERATIONS: dict[str, Maker] = {
    "edit": edit,
    "rename": rename,
    "add": add,
    "remove": remove,
    "duplicate": duplicate,
    "default": set_default,
    "export": export,
}


def random_operation(chance: random.Random, state: State, scratch: pathlib.Path, most: int = 200) -> Operation:
    """Keeps a library between 3 and about `most` patches."""
    kinds = list(OPERATIONS)
    if len(state.patches) < 6:
        kinds.remove("remove")
        kinds += ["add"]
    if len(state.patches) >= most:
        kinds = [kind for kind in kinds if kind not in ("add", "duplicate")] + ["remove"]
    return OPERATIONS[chance.choice(kinds)](chance, state, scratch)


def _known(patch: Patch) -> int:
    if patch.id is None:
        raise ValueError("an operation needs a state that was read")
    return patch.id
