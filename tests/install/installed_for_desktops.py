"""What a desktop reads is well-formed, fits together and works: installed_for_desktops.py PREFIX SOURCES ID VERSION"""

import configparser
import os
import pathlib
import re
import shutil
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

from checks import check, finish, output, quiet

PREFIX, SOURCES = (pathlib.Path(argument) for argument in sys.argv[1:3])
ID, VERSION = sys.argv[3:]
TYPE = "application/x-velgor-presets"
SHARE = PREFIX / "share"
ENTRY = SHARE / "applications" / f"{ID}.desktop"
METAINFO = SHARE / "metainfo" / f"{ID}.metainfo.xml"


def check_entry():
    quiet("desktop-file-validate", ENTRY)
    entry = configparser.ConfigParser(interpolation=None, delimiters="=")
    entry.optionxform = str
    entry.read(ENTRY, encoding="utf-8")
    main = entry["Desktop Entry"]
    check(main["Exec"].endswith(" %f"), "the desktop entry takes no file")
    check(main["Icon"] == ID, "the desktop entry names another icon")
    check(TYPE in main["MimeType"].split(";"), "the desktop entry does not open preset files")
    actions = [action for action in main["Actions"].split(";") if action]
    check(actions == ["new-list"], f"the desktop entry has the actions {actions}")
    for section in ("Desktop Entry", "Desktop Action new-list"):
        program = PREFIX / "bin" / entry[section]["Exec"].split()[0]
        check(os.access(program, os.X_OK), f"{program} is not installed")
    words = entry["Desktop Action new-list"]["Exec"].split()[1:]
    help_text = output(program, "--help")
    check(words and all(word in help_text for word in words), f"the program does not know {words}")


def check_metainfo():
    quiet("xmllint", "--noout", METAINFO)
    told = output("appstreamcli", "validate", "--no-net", "--no-color", METAINFO)
    check("successful" in told and not re.search(r"^[EWI]:", told, re.MULTILINE), told)
    root = ElementTree.parse(METAINFO).getroot()
    check(root.findtext("id") == ID, "the metainfo has another id")
    check(root.findtext("launchable") == ENTRY.name, "the metainfo starts something else")
    check(root.findtext("provides/mediatype") == TYPE, "the metainfo names another type of files")
    for binary in root.findall("provides/binary"):
        check((PREFIX / "bin" / binary.text).exists(), f"the metainfo names {binary.text}, which is not installed")
    for image in root.findall("screenshots/screenshot/image"):
        name = image.text.rsplit("/", 1)[1]
        check((SOURCES / "docs" / "screenshots" / name).exists(), f"the metainfo shows {name}, which there is not")
    changelog = (SOURCES / "CHANGELOG.md").read_text()
    released = re.findall(r"^## ([\d.]+) \(([\d-]+)\)", changelog, re.MULTILINE)
    found = [(one.get("version"), one.get("date"), one.get("type")) for one in root.findall("releases/release")]
    if VERSION not in dict(released):
        check(found and found[0][0] == VERSION and found[0][2] == "development", f"{VERSION} is none of {found}")
        found = found[1:]
    check(found == [(*release, None) for release in released], f"releases: {found} instead of {released}")
    for one in root.findall("releases/release"):
        check((one.findtext("description/p") or "").strip(), f"{one.get('version')} says nothing")


def check_type_of_files():
    package = SHARE / "mime" / "packages" / f"{ID}.xml"
    quiet("xmllint", "--noout", package)
    with tempfile.TemporaryDirectory() as directory:
        share = pathlib.Path(directory) / "share"
        (share / "mime" / "packages").mkdir(parents=True)
        shutil.copy(package, share / "mime" / "packages")
        # Without the types of the user, who may have ours already.
        desktop = os.environ | {"XDG_DATA_DIRS": f"{share}:/usr/share", "XDG_DATA_HOME": directory}
        quiet("update-mime-database", share / "mime", env=desktop)
        presets = (SOURCES / "samples" / "demo.prst").read_bytes()
        for name, content, expected in (
            ("list.prst", presets, TYPE),
            ("LIST.PRST", presets, TYPE),
            ("renamed", presets, TYPE),
            ("other bytes", b"TSR-" + presets[4:], "application/octet-stream"),
            ("other place", b" " + presets, "application/octet-stream"),
        ):
            file = pathlib.Path(directory) / name
            file.write_bytes(content)
            told = output("gio", "info", "--attributes=standard::content-type,standard::icon", file, env=desktop)
            check(f"content-type: {expected}\n" in told, f'"{name}" is not of the type {expected}: {told}')
            check(expected != TYPE or TYPE.replace("/", "-") in told, f'"{name}" has another icon: {told}')


def check_icons():
    icons = SHARE / "icons" / "hicolor"
    for drawing in icons.glob("scalable/*/*.svg"):
        quiet("xmllint", "--noout", drawing)
    for size in (16, 22, 24, 32, 48, 64, 128, 256):
        for name in (f"apps/{ID}", f"mimetypes/{TYPE.replace('/', '-')}"):
            check((icons / f"{size}x{size}" / f"{name}.png").exists(), f"{name} lacks the size {size}")


check_entry()
check_metainfo()
check_type_of_files()
check_icons()
finish()
