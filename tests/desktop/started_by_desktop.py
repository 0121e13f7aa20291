#!/usr/bin/python3
"""What the desktop knows the window by, and the action of its entry: started_by_desktop.py PROGRAM VELGOR SAMPLES
ARTIFACTS"""

import configparser
import subprocess

from session import check_equal, content_title, run
from Xlib import X

UNEXPORTED = "The list has changes that were not exported"
ICON_SIZES = {16, 22, 24, 32, 48, 64, 128, 256}


def desktop_entry(session):
    (file,) = (session.executable.parents[2] / "data").glob("*.desktop")
    entry = configparser.ConfigParser(interpolation=None, delimiters="=")
    entry.optionxform = str
    entry.read(file, encoding="utf-8")
    return entry


def main_window(session):
    screen = session.desktop.screen
    clients = screen.screen().root.get_full_property(screen.intern_atom("_NET_CLIENT_LIST"), X.AnyPropertyType)
    (window,) = clients.value
    return screen.create_resource_object("window", window)


def check_identity(session, entry):
    screen = session.desktop.screen
    window = main_window(session)
    check_equal(entry["StartupWMClass"] in window.get_wm_class(), True, f"{window.get_wm_class()} has the entry's class")
    icon = window.get_full_property(screen.intern_atom("_NET_WM_ICON"), X.AnyPropertyType)
    numbers, sizes = list(icon.value), set()
    while numbers:
        width, height = numbers[:2]
        check_equal(width, height, "the height of an icon")
        sizes.add(width)
        numbers = numbers[2 + width * height:]
    check_equal(sizes, ICON_SIZES, "the sizes of the window's icon")


def prepare_library(session):
    command = [session.velgor.executable, "--library", session.library_directory, "library"]
    subprocess.run([*command, "add", session.demo], check=True, capture_output=True)
    first = session.velgor.library(session.library_directory)[0]
    subprocess.run([*command, "set", first["id"], "--default"], check=True, capture_output=True)


def check_new_list(session, options):
    """A start of its own, and one while the window is open, whose list is not lost unasked."""
    prepare_library(session)
    program = session.start(*options)
    program.find("label", content_title(99))

    second = session.desktop.start([session.executable, *options], session.home)
    check_equal(second.wait_exit(), 0, "exit status of the second start")
    program.answer(UNEXPORTED, "Cancel")
    program.find("label", content_title(99))
    program.terminate()
    check_equal(program.wait_exit(), 0, "exit status")


def started_by_desktop(session):
    entry = desktop_entry(session)
    session.start()
    check_identity(session, entry["Desktop Entry"])
    session.quit()
    check_new_list(session, entry["Desktop Action new-list"]["Exec"].split()[1:])


run(started_by_desktop)
