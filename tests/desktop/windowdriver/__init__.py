"""Drives the program from outside, as a user does: real key and mouse events on an X server of its own, and the
accessibility bus to read what is on the screen. Runs with Debian's own Python and the packages of the group "window"
in scripts/packages.txt."""

from .accessible import Accessible
from .desktop import Desktop
from .errors import Failure, Gone
from .library import Velgor
from .program import Program

__all__ = ["Accessible", "Desktop", "Failure", "Gone", "Program", "Velgor"]
