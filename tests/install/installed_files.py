"""Just the expected files are installed, and as they have to be: installed_files.py PREFIX SOURCES ID VERSION"""

import fnmatch
import pathlib
import struct
import sys

from checks import check, finish, output

prefix, sources = (pathlib.Path(argument) for argument in sys.argv[1:3])
files = sorted(path.relative_to(prefix).as_posix() for path in prefix.rglob("*") if not path.is_dir())

lines = (pathlib.Path(__file__).parent / "installed_files.txt").read_text().splitlines()
patterns = [line for line in lines if line and not line.startswith("#")]
for file in files:
    check(any(fnmatch.fnmatchcase(file, pattern) for pattern in patterns), f"{file} is installed, but not expected")
for pattern in patterns:
    check(fnmatch.filter(files, pattern), f"{pattern} is not installed")
check(not [path for path in prefix.parent.iterdir() if path != prefix], "something is installed beside the prefix")

for file in files:
    is_program = file.startswith("bin/")
    mode = (prefix / file).stat().st_mode & 0o777
    check(mode == (0o755 if is_program else 0o644), f"{file} has the mode {mode:o}")
    if is_program:
        dynamic = output("readelf", "--dynamic", "--wide", prefix / file)
        check("(NEEDED)" in dynamic, f"{file} is not linked dynamically")
        check("RUNPATH" not in dynamic and "RPATH" not in dynamic, f"{file} has a path of libraries")
    if file.endswith(".png") and "/hicolor/" in file:
        width, height = struct.unpack(">II", (prefix / file).read_bytes()[16:24])
        check(f"/{width}x{height}/" in file, f"{file} has {width} by {height} pixels")

licence = prefix / "share/doc/velgor-library-manager/LICENSE"
check(licence.exists() and licence.read_bytes() == (sources / "LICENSE").read_bytes(), "the licence is another one")

finish()
