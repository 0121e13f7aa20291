#!/usr/bin/python3
"""Pictures of the window, light and dark: screenshots.py PROGRAM VELGOR SAMPLES DIRECTORY

DIRECTORY gets the folders screenshots, for README and the like, and guide/pictures, for the user guide."""

import json
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image
from session import CONTENT, DISCLAIMER, LIBRARY, Session

from windowdriver import Desktop, Velgor

SCHEMES = {"light": 2, "dark": 1}
# The plain X11 platform knows only one font size; the settings of this desktop are read without being installed.
FONT_VARIABLES = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}
FONT_SETTINGS = "[General]\nfont=DejaVu Sans,10,-1,5,50,0,0,0,0,0\n"

SHOWN = "Blues Breakup"
USED_AGAIN = ["2.1", "5.2", "28.1"]
COMMENT = (
    "Neck pickup, volume at 8. The delay wobbles at 380 ms, so tap the tempo before the second chorus.\n\n"
    "Sits well over the keys; roll the tone back for the ballad."
)
CLASSIFIED = {
    SHOWN: ["guitar", "crunch", "solo"],
    "Warm Jazz Box": ["guitar", "clean", "rythm"],
    "Dub Deep": ["bass", "clean"],
    "Bass Crunch": ["bass", "crunch"],
    "Black Ice Lead": ["guitar", "higain", "solo"],
    "Breakup Neck PU": ["guitar", "crunch", "solo"],
    "Brown Paper": ["guitar", "crunch", "rythm"],
    "Edge of Dawn": ["guitar", "crunch", "solo"],
    "Stadium Solo": ["guitar", "crunch", "solo"],
}
FILTERED = ["Crunch", "Solo"]
MARGIN = 8
TICKED = [3, 5, 8, 15, 16]
# Seconds from the start of 2001 to a day that is the same in every picture.
IMPORTED = 780_000_000.0


def velgor(session, *arguments):
    command = [session.velgor.executable, "--library", str(session.library_directory), "library", *map(str, arguments)]
    subprocess.run(command, check=True, capture_output=True)


def prepare_library(session):
    """Both demonstration lists, sorted and partly classified; returns a list that uses one patch several times."""
    velgor(session, "add", session.demo, session.samples / "demo-new-firmware.prst")
    ids = {patch["name"]: patch["id"] for patch in session.velgor.library(session.library_directory)}
    for name, flags in CLASSIFIED.items():
        velgor(session, "set", ids[name], *(argument for flag in flags for argument in (f"--{flag}", "on")))
    velgor(session, "set", ids[SHOWN], "--comment", COMMENT)
    stored = session.library_directory / "velgorlibrary.json"
    library = json.loads(stored.read_text())
    library["patches"].sort(key=lambda patch: patch["name"].casefold())
    for patch in library["patches"]:
        patch["date"] = IMPORTED
    stored.write_text(json.dumps(library))
    composed = session.home / "Tour.prst"
    places = [argument for place in USED_AGAIN for argument in ("--slot", f"{place}={ids[SHOWN]}")]
    velgor(session, "compose", "--from", session.demo, "-o", composed, *places)
    return composed


def leave_traces(session):
    """What a disk that ran out of order and a careless copy may leave: a lost file, an unknown one, a former library."""
    stored = session.library_directory / "velgorlibrary.json"
    library = json.loads(stored.read_text())
    former = session.library_directory / "velgorlibrary-20260910T093105-00.json"
    patches = [patch | {"comment": ""} for patch in library["patches"] if patch["name"] != "Warm Jazz Box"]
    former.write_text(json.dumps(library | {"patches": patches}))
    lost, unknown = library["patches"][2], library["patches"][5]
    library["patches"].remove(unknown)
    stored.write_text(json.dumps(library))
    next(session.library_directory.glob(f"lib-*.{lost['id']}.prst")).unlink()


def new_session(desktop, scheme, executable, command_line, samples):
    session = Session(desktop, executable, Velgor(command_line), pathlib.Path(samples))
    session.variables = FONT_VARIABLES
    settings = session.home / "config" / "velgor" / "velgor-library-manager.conf"
    settings.parent.mkdir(parents=True)
    settings.write_text(f"[General]\ncolorScheme={SCHEMES[scheme]}\n")
    (session.home / "config" / "kdeglobals").write_text(FONT_SETTINGS)
    return session


def park(desktop):
    """Moves the pointer beside the window, where it lights nothing."""
    desktop.mouse.move(1, 1)


class Pictures:
    """Takes pictures in one scheme, of the window or of a part of it."""

    def __init__(self, desktop, scheme, directory):
        self.desktop, self.scheme, self.directory = desktop, scheme, directory
        self.program = None

    def take(self, name):
        self._save(self._cut(self.program.find("frame", None).rectangle), "screenshots", name)

    def take_for_guide(self, name, rectangle):
        # A page shows several, and few colours are in them.
        picture = self._cut(rectangle).quantize(256, dither=Image.Dither.NONE)
        self._save(picture, "guide/pictures", name)

    def column(self, view, rows=None):
        """The column of a list, from its top down to its end, or to this row of the list."""
        left, top, width, height = self.program.find("list", view).rectangle
        if rows is not None:
            height = rows * self.program.row(view, 0).rectangle[3] + MARGIN
        return left, self.top, width, top + height - self.top

    @property
    def top(self):
        """Of what stands below the menu bar and its line."""
        _, top, _, height = self.program.menu_bar().rectangle
        return top + height + 1

    def _cut(self, rectangle):
        left, top, width, height = rectangle
        return self.desktop.still_screenshot().crop((left, top, left + width, top + height))

    def _save(self, picture, folder, name):
        picture.save(self.directory / folder / f"{name}-{self.scheme}.png", optimize=True)


def take_for_guide(pictures, program):
    """What the pages of the guide are about, as a part of the window each."""
    left, top, width, height = program.find("frame", None).rectangle
    pictures.take_for_guide("window", (left, top, width, height))
    library_left, _, library_width, _ = program.find("list", LIBRARY).rectangle
    end = library_left + library_width + 1
    below = program.find("label", "Version: ").rectangle
    pictures.take_for_guide("details", (end, pictures.top, left + width - end, below[1] - pictures.top - 20))
    for mark in FILTERED:
        program.click(program.button(f"Filter: {mark}"))
    park(pictures.desktop)
    shown = len(program.rows_of(LIBRARY))
    pictures.take_for_guide("filter", pictures.column(LIBRARY, shown))
    program.click(program.button("Clear"))


def take_placing(pictures, program):
    pictures.take("ticking")
    left = program.find("frame", None).rectangle[0]
    library_left, top, width, height = pictures.column(LIBRARY, 13)
    pictures.take_for_guide("placing", (left, top, library_left + width - left, height))


def take_pictures(desktop, scheme, directory, *paths):
    pictures = Pictures(desktop, scheme, directory)
    take = pictures.take

    session = new_session(desktop, scheme, *paths)
    pictures.program = program = session.start()
    park(desktop)
    take("first-start")
    program.end()

    session = new_session(desktop, scheme, *paths)
    pictures.program = program = session.start(prepare_library(session))
    program.row(CONTENT, 0)
    shown = next(name for name in program.rows_of(LIBRARY) if name.startswith(SHOWN))
    program.click(program.row(LIBRARY, shown))
    park(desktop)
    take("main")
    take_for_guide(pictures, program)

    program.click(program.row(LIBRARY, shown))
    park(desktop)
    program.press("ctrl+Delete")
    dialog = program.dialog()
    take("alert")
    program.press("Escape")
    program.wait_closed(dialog)

    program.press("ctrl+s")
    dialog = program.dialog(DISCLAIMER)
    park(desktop)
    pictures.take_for_guide("risk", dialog.rectangle)
    program.press("Escape")
    program.wait_closed(dialog)

    program.click(program.button("Select"))
    for index in TICKED:
        row = program.row(LIBRARY, index)
        program.click(row)
        program.wait(lambda: row.has("selected"), f"the selection of row {index}")
        program.press("space")
        program.wait(lambda: row.has("checked"), f"the tick of row {index}")
    source, target = program.row(LIBRARY, TICKED[1]), program.row(CONTENT, 6)
    program.drag(source, target, cancel=True, over_target=lambda: take_placing(pictures, program))
    program.end()

    session = new_session(desktop, scheme, *paths)
    prepare_library(session)
    leave_traces(session)
    # The message comes before the window takes any keys.
    pictures.program = program = desktop.start([session.executable], session.home, **session.variables)
    program.answer("Some patches of the library could not be loaded", "Check Library...")
    dialog = program.dialog("Check Library")
    program.wait(lambda: program.rows_of("Findings"), "the findings")
    program.press("End")
    park(desktop)
    take("library-check")
    pictures.take_for_guide("check", dialog.rectangle)
    program.end()


def main():
    executable, command_line, samples, directory = sys.argv[1:]
    for folder in ("screenshots", "guide/pictures"):
        pathlib.Path(directory, folder).mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as artifacts, Desktop(artifacts, is_composited=True) as desktop:
        for scheme in SCHEMES:
            take_pictures(desktop, scheme, pathlib.Path(directory), executable, command_line, samples)


if __name__ == "__main__":
    main()
