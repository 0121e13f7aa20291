"""What the scripts here have in common: the names of the window's parts, and steps that several of them take."""

import itertools
import pathlib
import sys

from windowdriver import Desktop, Failure, Velgor

CONTENT = "Content"
LIBRARY = "Library"
DISCLAIMER = (
    "I know that this file has not been created by a genuine Ostrel product and I assume taking the risk of using it."
)


def check_equal(found, expected, what):
    if found == expected:
        return
    if isinstance(found, list) and isinstance(expected, list):
        # Of long lists, what differs.
        pairs = [pair for pair in itertools.zip_longest(found, expected) if pair[0] != pair[1]]
        found, expected = [one for one, _ in pairs], [other for _, other in pairs]
    raise Failure(f"{what}: found {found!r} instead of {expected!r}")


def content_title(count):
    return f"Selection for your Velgor ({count} elements)"


def count_line(shown, count):
    return f"Showing: {shown} element{'s' if shown >= 2 else ''} out of {count}"


def spoken(name, has_user_ir, place=""):
    return f"{place}{name}{', user IR' if has_user_ir else ''}"


class Session:
    """A home directory, and the program that is started in it."""

    def __init__(self, desktop, executable, velgor, samples):
        self.desktop, self.executable, self.velgor, self.samples = desktop, executable, velgor, samples
        self.home = desktop.new_home()
        self.demo = samples / "demo.prst"
        self.demo_patches = velgor.patches(self.demo)
        self.program = None
        self.variables = {}

    @property
    def library_directory(self):
        return self.home / "Documents" / "VelgorLibrary"

    def start(self, *arguments):
        self.program = self.desktop.start([self.executable, *arguments], self.home, **self.variables)
        self.program.wait_window()
        return self.program

    def quit(self):
        self.program.press("ctrl+q")
        check_equal(self.program.wait_exit(), 0, "exit status")

    def import_file(self, file):
        self.program.press("ctrl+o")
        self.program.choose_file(file)

    def import_demo(self):
        self.import_file(self.demo)
        self.program.find("label", content_title(99))

    def export(self, file):
        """From the disclaimer on."""
        self.program.answer(DISCLAIMER, "OK")
        self.program.choose_file(file)

    def demo_rows(self):
        """How the slots read after the import of the demonstration list."""
        return [spoken(p["name"], p["hasUserIR"], f"{p['bank']}.{p['number']} ") for p in self.demo_patches]

    def wait_rows(self, view, expected):
        """Waits until the list reads as expected."""
        try:
            self.desktop.wait(lambda: self.program.rows_of(view) == expected, f'the list "{view}"', 10)
        except Failure:
            check_equal(self.program.rows_of(view), expected, f'the list "{view}"')

    def wait_saved(self, is_meant):
        """Waits until the patches of the library on disk are as `is_meant` says, and returns them."""

        def saved():
            patches = self.velgor.library(self.library_directory)
            return patches if is_meant(patches) else None

        return self.desktop.wait(saved, "the library on disk")


def run(script):
    """Runs a script with what the command line gives: PROGRAM VELGOR SAMPLES ARTIFACTS."""
    executable, velgor, samples, artifacts = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    with Desktop(artifacts) as desktop:
        script(Session(desktop, executable, Velgor(velgor), samples))
