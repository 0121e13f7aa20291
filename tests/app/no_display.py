"""What the application answers without a window comes without a display too: no_display.py WINDOW VERSION"""

import os
import subprocess
import sys

WINDOW, VERSION = sys.argv[1:]
DISPLAY_VARIABLES = ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")


def check(condition, what):
    if not condition:
        raise SystemExit(f"no_display: {what}")


def run(*arguments, **variables):
    environment = {name: value for name, value in os.environ.items() if name not in DISPLAY_VARIABLES}
    return subprocess.run(
        [WINDOW, *arguments], env=environment | variables, capture_output=True, text=True, timeout=60, check=False
    )


for words in (["--version"], ["-v"], ["-V"], ["a.prst", "--version"], ["-platform", "xcb", "--version"]):
    done = run(*words)
    check(done.returncode == 0, f"{words} ended with {done.returncode}: {done.stderr}")
    check(done.stdout == f"Velgor Library Manager {VERSION}\n", f"{words} said {done.stdout!r}")

for words in (["--help"], ["-h"], ["-reverse", "--help"]):
    done = run(*words)
    check(done.returncode == 0, f"{words} ended with {done.returncode}: {done.stderr}")
    check("[FILE]" in done.stdout and "--version" in done.stdout, f"{words} said {done.stdout!r}")

for words in ([b"caf\xe9.prst"], [b"a.prst", b"-platform", b"\xe9"], [b"--", b"\xff.prst"]):
    done = run(*words, **{"LC_ALL": "C.UTF-8"})
    check(done.returncode == 2, f"{words} ended with {done.returncode}: {done.stderr}")
    expected = "velgor-library-manager: an argument is not valid UTF-8: "
    check(done.stderr.startswith(expected) and done.stderr.count("\n") == 1, f"{words} said {done.stderr!r}")

# Options of the window system are known only where there is one.
offscreen = {"QT_QPA_PLATFORM": "offscreen"}
for words, variables in (
    (["a.prst", "b.prst"], {}),
    (["--", "-a.prst", "b.prst", "c.prst"], {}),
    (["-style", "fusion", "a.prst", "b.prst"], offscreen),
    (["a.prst", "b.prst"], offscreen),
):
    done = run(*words, **variables)
    check(done.returncode == 2, f"{words} ended with {done.returncode}: {done.stderr}")
    count = len([word for word in words if word.endswith(".prst")])
    expected = f"velgor-library-manager: one preset file can be opened at a time, not {count}\n"
    # The window system may have said something before.
    check(done.stderr.endswith(expected), f"{words} said {done.stderr!r}")

both = run("--new-list", "a.prst", **offscreen)
check(both.returncode == 2, f"a new list and a file ended with {both.returncode}")
check(both.stderr.endswith("velgor-library-manager: --new-list opens no file\n"), f"and said {both.stderr!r}")

unknown = run("--nonsense", **offscreen)
check(unknown.returncode == 2 and "nonsense" in unknown.stderr, f"an unknown option ended with {unknown.returncode}")
