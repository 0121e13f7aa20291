"""How packagers configure: configured_elsewhere.py CMAKE SOURCES DIRECTORY

Cross-building, no program of the target runs here unless it can; and no build compiles through ccache unasked."""

import pathlib
import shutil
import subprocess
import sys

from checks import check, finish

CMAKE, SOURCES, DIRECTORY = sys.argv[1:]
CROSS = ["-DCMAKE_SYSTEM_NAME=Linux", "-DCMAKE_SYSTEM_PROCESSOR=other"]


def configure(*options):
    """The commands of the build, one a line."""
    shutil.rmtree(DIRECTORY, ignore_errors=True)
    done = subprocess.run(
        [CMAKE, "-S", SOURCES, "-B", DIRECTORY, "-G", "Ninja", "-DBUILD_TESTING=OFF", *options],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False,
    )
    if done.returncode != 0:
        raise SystemExit(done.stdout)
    build = (pathlib.Path(DIRECTORY) / "build.ninja").read_text()
    rules = (pathlib.Path(DIRECTORY) / "CMakeFiles" / "rules.ninja").read_text()
    install = (pathlib.Path(DIRECTORY) / "src" / "cli" / "cmake_install.cmake").read_text()
    commands = [line for line in build.splitlines() if "COMMAND = " in line and "velgor-documents " in line]
    return commands, rules, install


commands, rules, install = configure()
check(len(commands) == 1 and "velgor.1" in install, f"the build here makes its documents by {commands}")
check("ccache" not in rules, "the build compiles through ccache")

commands, rules, install = configure("-DVELGOR_CCACHE=ON")
check("ccache" in rules or not shutil.which("ccache"), "ccache is not used where it is asked for")

commands, rules, install = configure(*CROSS)
check(commands == [], f"a cross-build runs {commands}")
check("velgor.1" not in install and "_velgor" not in install, "a cross-build installs documents that it does not make")

commands, rules, install = configure(*CROSS, "-DCMAKE_CROSSCOMPILING_EMULATOR=/usr/bin/env")
check(len(commands) == 1 and "/usr/bin/env " in commands[0], f"a cross-build with an emulator runs {commands}")

commands, rules, install = configure(*CROSS, "-DVELGOR_DOCUMENTS_PROGRAM=/native/velgor-documents")
check(len(commands) == 1 and " /native/velgor-documents " in commands[0], f"a cross-build with a native program runs {commands}")
check("velgor.1" in install, "a cross-build with a native program installs no man page")

finish()
