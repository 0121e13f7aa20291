#!/usr/bin/python3
"""Runs every command that README and the user guide show, and compares what they show of its output: commands.py SOURCE
VELGOR"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml

HTML = "{http://www.w3.org/1999/xhtml}"
SHOWN_HOME = "/home/you"
# What stands outside of the home in the guide.
SHOWN_STICK = "/media/stick"
# These pages speak of a library that is there already.
WITH_LIBRARY = {"check.html", "computers.html", "folder.html"}
FEWEST = {"README.md": 10, "guide": 15}

source, velgor = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
problems = []
counts = dict.fromkeys(FEWEST, 0)


class Place:
    """A home directory with the demonstration lists in it, where commands run as in a terminal."""

    def __init__(self, name, home, is_library_there=False):
        self.name, self.home = name, home
        for file in (source / "samples").glob("*.prst"):
            shutil.copy(file, home)
        if is_library_there:
            for option in ([], ["--library", str(home / "stick" / "VelgorLibrary")]):
                self.run(" ".join(["velgor", *option, "library", "add", "demo.prst"]), "stick")

    def run(self, command, what):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("XDG_")}
        environment |= {"HOME": str(self.home), "PATH": f"{velgor.parent}:{os.environ['PATH']}", "LANG": "C.UTF-8"}
        counts[what] = counts.get(what, 0) + 1
        ended = subprocess.run(
            ["bash", "-o", "pipefail", "-c", command.replace(SHOWN_STICK, str(self.home / "stick"))],
            cwd=self.home, env=environment, text=True, capture_output=True,
        )
        if ended.returncode != 0:
            problems.append(f"{self.name}: {command}\n    ended with {ended.returncode}: {ended.stderr}")
        return ended.stdout.replace(str(self.home), SHOWN_HOME).splitlines()

    def expect(self, command, found, shown):
        """A line of "..." stands for any number of lines."""
        pattern = "".join("(?:.*\\n)*" if line == "..." else re.escape(line + "\n") for line in shown)
        if not re.fullmatch(pattern, "".join(line + "\n" for line in found)):
            problems.append(f"{self.name}: {command}\n    shown: {shown}\n    found: {found[:10]}")

    def check_name(self, text):
        """That a command of which only the name is mentioned is one."""
        words = re.match(r"velgor ((?:library )?[a-z]+)", text)
        if words:
            self.run(f"velgor help {words[1]}", "names")


def check_guide_page(page, home):
    place = Place(page.name, home, page.name in WITH_LIBRARY)
    for node in xml.parse(page).iter():
        text = "".join(node.itertext())
        if node.tag == HTML + "code":
            place.check_name(text)
        elif node.tag == HTML + "pre" and node.get("class") == "file":
            file = pathlib.Path(node.get("title").replace("~", str(home)))
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text.replace(SHOWN_HOME, str(home)) + "\n")
        elif node.tag == HTML + "pre":
            for part in re.split(r"^\$ ", text, flags=re.MULTILINE)[1:]:
                command, *shown = part.splitlines()
                place.expect(command, place.run(command, "guide"), shown)


def check_readme(home):
    text = (source / "README.md").read_text()
    place = Place("README.md", home)
    outputs, shown = [], []
    for block in re.findall(r"(?:^    .*\n(?:\n(?=    ))?)+", text, re.MULTILINE):
        lines = [line.removeprefix("    ") for line in block.splitlines() if line]
        if lines[0].startswith("velgor"):
            outputs += [place.run(line, "README.md") for line in lines]
        elif lines[0].startswith("./"):
            for line in lines:
                script = source / line.split()[0]
                if not os.access(script, os.X_OK):
                    problems.append(f"README.md: {script} cannot be run")
        else:
            shown.append(lines)
    last_two, listed = shown
    place.expect("the last two", outputs[-2] + outputs[-1], last_two)
    place.expect("velgor list gig.prst", place.run("velgor list gig.prst", "README.md"), listed)
    for name in re.findall(r"`(velgor [^`]*)`", text):
        place.check_name(name)


with tempfile.TemporaryDirectory() as directory:
    pages = sorted((source / "docs" / "guide").glob("*.html"))
    for page in pages:
        home = pathlib.Path(directory, page.stem)
        home.mkdir()
        check_guide_page(page, home)
    home = pathlib.Path(directory, "readme")
    home.mkdir()
    check_readme(home)

for what, fewest in FEWEST.items():
    if counts[what] < fewest:
        problems.append(f"{what}: only {counts[what]} commands found")
print("\n".join(problems) or f"{sum(counts.values())} commands run as shown")
sys.exit(1 if problems else 0)
