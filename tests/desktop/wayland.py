#!/usr/bin/python3
"""The window on Wayland, and what a second start does to it: wayland.py PROGRAM SAMPLES ARTIFACTS"""

import pathlib
import sys

from compositor import Client, WaylandDesktop
from session import check_equal
from windowdriver import Failure

APPLICATION_ID = "org.example.VelgorLibraryManager"


class Job:
    def __init__(self, desktop, executable, samples):
        self.desktop, self.executable, self.samples = desktop, executable, samples
        self.clients = []

    def start(self, home, *arguments, **variables):
        client = Client(self.desktop, [self.executable, *arguments], home, **variables)
        self.clients.append(client)
        return client

    def start_in_front(self, home, *arguments, **variables):
        client = self.start(home, *arguments, **variables)
        client.wait_window(lambda window: window["focused"], "the window in front")
        return client

    def hand_over(self, home, *arguments, **variables):
        second = self.start(home, *arguments, **variables)
        check_equal(second.wait_exit(), 0, "exit status of the second start")


def title(file):
    return f"{file.name} - Velgor Library Manager"


def has_title(file):
    return lambda window: window["name"] == title(file)


def check_drawn(job, client):
    """The window is on the screen, with more than a plain area."""

    def is_drawn():
        place = client.window["rect"]
        left, top = place["x"], place["y"]
        picture = job.desktop.picture("window.png").crop((left, top, left + place["width"], top + place["height"]))
        count = picture.width * picture.height
        colours = picture.getcolors(count)
        return len(colours) >= 50 and max(number for number, _ in colours) < 0.9 * count

    job.desktop.wait(is_drawn, "a picture in the window")


def check_second_starts(job, home, first):
    """A second start opens its file in the first window, and brings that to the front if the desktop let it."""
    one, other = home / "one.prst", home / "other.prst"
    for file in (one, other):
        file.write_bytes((job.samples / "demo.prst").read_bytes())
    over = job.start_in_front(job.desktop.new_home())
    check_equal((first.window["focused"], first.window["visible"]), (False, False), "the first window is behind")

    job.hand_over(home, one)
    first.wait_window(has_title(one), "the file of a start without a token")
    job.hand_over(home, XDG_ACTIVATION_TOKEN="made-up")
    job.hand_over(home, other, XDG_ACTIVATION_TOKEN="made up with blanks")
    first.wait_window(has_title(other), "the file of a start with a token that is none")
    check_equal(first.window["focused"], False, "the first window comes to the front without a token")
    check_equal(over.window["visible"], True, "the other window is in front")

    job.hand_over(home, one, XDG_ACTIVATION_TOKEN=job.desktop.activation_token())
    first.wait_window(lambda window: window["focused"] and window["visible"], "the first window in front")
    first.wait_window(has_title(one), "the file of a start with a token")
    check_equal(over.window["visible"], False, "the other window is in front")
    check_equal(len(job.desktop.windows()), 2, "windows after the second starts")

    def is_other_in_front():
        # Qt asks for the keyboard once more when it has just come, which may be after this.
        job.desktop.tell(f"[pid={over.process.pid}]", "focus")
        return over.window["focused"]

    # By a launcher that knows X11's name of a start alone.
    job.desktop.wait(is_other_in_front, "the other window in front again")
    job.hand_over(home, DESKTOP_STARTUP_ID=job.desktop.activation_token())
    first.wait_window(lambda window: window["focused"], "the first window in front again")
    check_equal(over.quit(), 0, "exit status of the other window")


def check_environment_of_programs(job, home, first, tools):
    """What the window starts must not believe that the token is meant for it."""
    job.hand_over(home, XDG_ACTIVATION_TOKEN=job.desktop.activation_token())
    job.desktop.press("-M", "alt", "l", "-m", "alt")
    job.desktop.press("f")
    record = tools / "environment"
    job.desktop.wait(lambda: record.exists() and "END" in record.read_text(), "the program that shows the folder")
    names = {line.split("=")[0] for line in record.read_text().splitlines()}
    check_equal("HOME" in names, True, "the environment is recorded")
    check_equal(names & {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}, set(), "tokens left in the environment")


def check_first_start(job):
    """A desktop that puts new windows behind the one in use lets those with a token to the front."""
    front = job.start_in_front(job.desktop.new_home())
    job.desktop.tell("no_focus", f'[app_id="{APPLICATION_ID}"]')
    home = job.desktop.new_home()
    file = home / "list.prst"
    file.write_bytes((job.samples / "demo.prst").read_bytes())
    behind = job.start(home, file)
    behind.wait_window(has_title(file), "the file of a start without a token")
    check_equal((behind.window["focused"], front.window["focused"]), (False, True), "a start without a token")
    check_equal(behind.quit(), 0, "exit status of the window behind")
    with_token = job.start(home, XDG_ACTIVATION_TOKEN=job.desktop.activation_token())
    with_token.wait_window(lambda window: window["focused"], "the window of a start with a token in front")
    for client in (with_token, front):
        check_equal(client.quit(), 0, "exit status")


def wayland(job):
    home, tools = job.desktop.new_home(), job.desktop.new_home()
    opener = tools / "xdg-open"
    opener.write_text(f'#!/bin/sh\nenv >"{tools}/environment"\necho END >>"{tools}/environment"\n')
    opener.chmod(0o755)
    path = f"{tools}:{job.desktop.environment['PATH']}"
    token = job.desktop.activation_token()
    first = job.start_in_front(home, PATH=path, XDG_ACTIVATION_TOKEN=token, DESKTOP_STARTUP_ID=token)
    check_equal(first.window["app_id"], APPLICATION_ID, "application id")
    check_drawn(job, first)
    check_environment_of_programs(job, home, first, tools)
    check_second_starts(job, home, first)
    check_equal(first.quit(), 0, "exit status")
    check_first_start(job)
    for client in job.clients:
        check_equal(client.errors, "", "warnings and errors that were printed")


def main():
    executable, samples, artifacts = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    with WaylandDesktop(artifacts) as desktop:
        wayland(Job(desktop, executable, samples))


if __name__ == "__main__":
    main()
