#!/usr/bin/python3
"""Help without a network, by keys and menu: help.py PROGRAM VELGOR SAMPLES ARTIFACTS

The program as it was built opens the guide of the sources; installed under a prefix and moved elsewhere, it opens the
one that was moved along. A program in the place of the desktop's opener writes down what it is asked for."""

import os
import pathlib
import subprocess
import tempfile
import urllib.parse

from session import LIBRARY, check_equal, run

OPENER = """#!/bin/sh
printf '%s\\n' "$1" >>"$HOME/opened"
"""


def put_opener(session):
    place = session.home / "bin"
    place.mkdir()
    opener = place / "xdg-open"
    opener.write_text(OPENER)
    opener.chmod(0o755)
    session.variables = {"PATH": f"{place}:{os.environ['PATH']}"}


def wait_opened(session, count):
    """The files that were opened so far."""
    record = session.home / "opened"

    def lines():
        found = record.read_text().splitlines() if record.exists() else []
        return found if len(found) == count else None

    urls = session.desktop.wait(lines, f"{count} opened pages")
    return [pathlib.Path(urllib.parse.unquote(urllib.parse.urlsplit(url).path)) for url in urls]


def check_opened(session, guide, *names):
    files = wait_opened(session, len(names))
    check_equal([file.name for file in files], list(names), "opened pages")
    for file in files:
        check_equal(file.parent.resolve(), guide.resolve(), "the place of the guide")
        check_equal(file.is_file(), True, f"whether there is {file}")


def install(build, prefix):
    subprocess.run(["cmake", "--install", build, "--prefix", prefix, "--strip"], check=True, stdout=subprocess.DEVNULL)


def program_and_guide(prefix):
    guides = list(prefix.glob("share/doc/*/guide"))
    check_equal(len(guides), 1, "installed guides")
    return prefix / "bin" / "velgor-library-manager", guides[0]


def script(session):
    put_opener(session)
    sources = session.samples.parent / "docs" / "guide"
    program = session.start(session.demo)
    program.press("F1")
    check_opened(session, sources, "slots.html")
    program.tab_to("list", LIBRARY)
    program.press("F1")
    check_opened(session, sources, "slots.html", "library.html")
    program.menu("Help", "Help for This Column")
    check_opened(session, sources, "slots.html", "library.html", "library.html")
    program.menu("Help", "Online help")
    check_opened(session, sources, "slots.html", "library.html", "library.html", "index.html")
    session.quit()

    (session.home / "opened").unlink()
    with tempfile.TemporaryDirectory() as place:
        prefix, moved = pathlib.Path(place, "first"), pathlib.Path(place, "second place")
        install(session.executable.parents[2], prefix)
        prefix.rename(moved)
        session.executable, guide = program_and_guide(moved)
        program = session.start()
        program.press("F1")
        check_opened(session, guide, "slots.html")
        session.quit()


if __name__ == "__main__":
    run(script)
