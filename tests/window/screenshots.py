#!/usr/bin/python3
"""Pictures of the window for its documentation, light and dark: screenshots.py PROGRAM VELGOR SAMPLES DIRECTORY"""

import json
import pathlib
import subprocess
import sys
import tempfile

from session import CONTENT, LIBRARY, Session

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
}
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


def take_pictures(desktop, scheme, pictures, *paths):
    def take(name):
        left, top, width, height = program.find("frame", None).rectangle
        picture = desktop.still_screenshot().crop((left, top, left + width, top + height))
        picture.save(pictures / f"{name}-{scheme}.png", optimize=True)

    session = new_session(desktop, scheme, *paths)
    program = session.start()
    park(desktop)
    take("first-start")
    program.end()

    session = new_session(desktop, scheme, *paths)
    program = session.start(prepare_library(session))
    program.row(CONTENT, 0)
    shown = next(name for name in program.rows_of(LIBRARY) if name.startswith(SHOWN))
    program.click(program.row(LIBRARY, shown))
    park(desktop)
    take("main")

    program.press("ctrl+Delete")
    dialog = program.dialog()
    take("alert")
    program.press("Escape")
    program.wait_closed(dialog)

    program.click(program.button("Select"))
    for index in TICKED:
        program.click(program.row(LIBRARY, index))
        program.press("space")
    source, target = program.row(LIBRARY, TICKED[1]), program.row(CONTENT, 6)
    program.drag(source, target, cancel=True, over_target=lambda: take("ticking"))
    program.end()

    session = new_session(desktop, scheme, *paths)
    prepare_library(session)
    leave_traces(session)
    # The message comes before the window takes any keys.
    program = desktop.start([session.executable], session.home, **session.variables)
    program.answer("Some patches of the library could not be loaded", "Check Library...")
    program.dialog("Check Library")
    program.wait(lambda: program.rows_of("Findings"), "the findings")
    program.press("End")
    park(desktop)
    take("library-check")
    program.end()


def main():
    executable, command_line, samples, directory = sys.argv[1:]
    with tempfile.TemporaryDirectory() as artifacts, Desktop(artifacts, is_composited=True) as desktop:
        for scheme in SCHEMES:
            take_pictures(desktop, scheme, pathlib.Path(directory), executable, command_line, samples)


if __name__ == "__main__":
    main()
