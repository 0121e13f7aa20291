"""What the process tests of reliability share: generated presets, a library on disk and its state, operations with
the state they lead to, and the figures printed in the end. Standard library only."""

from .checks import check_after_stop, check_next_export, check_next_start
from .figures import Figures, skip
from .library import Library, LibraryBroken, Velgor
from .operations import Operation, random_operation
from .presets import Preset, decode, encode, random_presets
from .state import Patch, State, difference, same

__all__ = [
    "Figures",
    "Library",
    "LibraryBroken",
    "Operation",
    "Patch",
    "Preset",
    "State",
    "Velgor",
    "check_after_stop",
    "check_next_export",
    "check_next_start",
    "decode",
    "difference",
    "encode",
    "random_operation",
    "random_presets",
    "same",
    "skip",
]
