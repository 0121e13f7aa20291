#!/usr/bin/env python3
"""The programs need Qt's shared libraries of what they use, and no others: shared_libraries.py APPLICATION COMMAND"""

import re
import subprocess
import sys

COMMAND = {"libQt6Core"}
# Svg draws the icons, Network hands a second start over to the first, DBus knows whether the desktop is light or dark.
APPLICATION = COMMAND | {"libQt6Gui", "libQt6Widgets", "libQt6Svg", "libQt6Network", "libQt6DBus"}


def needed(program):
    text = subprocess.run(["readelf", "--dynamic", "--wide", program], check=True, capture_output=True, text=True).stdout
    return {name.split(".so")[0] for name in re.findall(r"\(NEEDED\).*\[(libQt.+)\]", text)}


def main():
    application, command = sys.argv[1:]
    unexpected = {"application": needed(application) - APPLICATION, "command": needed(command) - COMMAND}
    for program, libraries in unexpected.items():
        for library in sorted(libraries):
            print(f"the {program} needs {library}")
    # A program that is not linked dynamically would pass otherwise.
    if "libQt6Core" not in needed(application) & needed(command):
        print("no shared libraries were found")
        return 1
    return 1 if any(unexpected.values()) else 0


sys.exit(main())
