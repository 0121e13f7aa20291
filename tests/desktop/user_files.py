#!/usr/bin/python3
"""Which files the program leaves in an empty home, and nothing else: user_files.py PROGRAM VELGOR SAMPLES ARTIFACTS"""

import os
import shutil

from hard_cases import check_library_move
from session import CONTENT, LIBRARY, Session, check_equal, run

STATE = "state/org.example.VelgorLibraryManager/state.ini"
PREFERENCES = "config/velgor/velgor-library-manager.conf"
# Qt's own file dialog, which keeps its places for all programs with it.
FILE_DIALOG = "config/QtProject.conf"
OLD_STATE = "data/velgor/velgor-library-manager-state.ini"
TEMPORARY = "tmp"


def paths(directory):
    """Everything below, directories only where they are empty."""
    found = []
    for place, directories, files in os.walk(directory):
        below = directories + files
        found += [os.path.join(place, name) for name in files]
        found += [os.path.join(place, name) for name in directories if os.path.islink(os.path.join(place, name))]
        if not below and place != str(directory):
            found.append(place)
    return sorted(os.path.relpath(path, directory) for path in found)


def runtime_files(session):
    """What is ours where sockets are; directories may stay, as the desktop removes them with the session."""
    runtime = session.desktop.environment["XDG_RUNTIME_DIR"]
    return [path for path in paths(runtime) if "velgor" in path.lower() and not os.path.isdir(os.path.join(runtime, path))]


def check_files(session, expected, when):
    check_equal(paths(session.home), sorted(expected), f"files {when}")
    check_equal(runtime_files(session), [], f"sockets and locks {when}")


def library_files(session, directory):
    patches = session.velgor.library(session.home / directory)
    names = ["velgorlibrary.json"] + [f"lib-{patch['name']}.{patch['id']}.prst" for patch in patches]
    return [os.path.join(directory, name) for name in names]


def new_session(session):
    fresh = Session(session.desktop, session.executable, session.velgor, session.samples)
    (fresh.home / TEMPORARY).mkdir()
    fresh.variables["TMPDIR"] = str(fresh.home / TEMPORARY)
    return fresh


def check_first_run(session):
    session.start()
    session.quit()
    check_files(session, [STATE, "Documents/VelgorLibrary", TEMPORARY], "after the first run")


def check_full_session(session):
    program = session.start()
    session.import_demo()
    program.click(program.row(CONTENT, 2))
    program.click(program.row(CONTENT, 4), "ctrl")
    program.drag(program.row(CONTENT, 4), program.find("list", LIBRARY))
    session.wait_saved(lambda patches: len(patches) == 2)
    program.click(program.button("Guitar"))
    program.menu("View", "Color scheme", "Dark")
    exported = session.home / "New list.prst"
    program.press("ctrl+s")
    session.export(exported)
    session.desktop.wait(exported.exists, "the exported file")
    session.wait_saved(lambda patches: len(patches) == 2 and patches[0]["guitar"])
    session.quit()
    kept = ["New list.prst", *library_files(session, "Documents/VelgorLibrary")]
    expected = [*kept, STATE, PREFERENCES, FILE_DIALOG, TEMPORARY]
    check_files(session, expected, "after a session")
    recent = [line for line in (session.home / STATE).read_text().splitlines() if line.startswith("recent=")]
    check_equal(recent, [f"recent={exported}, {session.demo}"], "the files that were used")

    session.start()
    session.quit()
    check_files(session, expected, "after another run")
    return kept


def check_removal(session, kept):
    """What the documents say the program keeps is all that there is beside the user's lists and library."""
    for path in (STATE, PREFERENCES):
        directory = (session.home / path).parent
        shutil.rmtree(directory)
    check_files(session, [*kept, FILE_DIALOG, TEMPORARY, "state"], "after the program's own are removed")


def check_former_state(session):
    """What a former version remembered moves over, and nothing is left in its place."""
    former = session.home / OLD_STATE
    former.parent.mkdir(parents=True)
    former.write_text(f"[files]\nrecent={session.demo}\n")
    program = session.start()
    program.menu("File", "Open Recent", session.demo.name)
    session.wait_rows(CONTENT, session.demo_rows())
    session.quit()
    check_files(session, [STATE, "Documents/VelgorLibrary", TEMPORARY, "data"], "after a former version")


def user_files(session):
    first = new_session(session)
    check_first_run(first)
    check_removal(first, check_full_session(first))
    check_former_state(new_session(session))
    moved = new_session(session)
    check_library_move(moved)
    # The former library stays for the user to remove.
    libraries = library_files(moved, "My Library") + library_files(moved, "sounds")
    check_files(moved, [*libraries, STATE, PREFERENCES, FILE_DIALOG, TEMPORARY], "after a move")


if __name__ == "__main__":
    run(user_files)
