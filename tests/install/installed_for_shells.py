"""Shells load the completions and complete what the command line knows, and man shows the pages without a warning:
installed_for_shells.py PREFIX SOURCES ID VERSION"""

import os
import pathlib
import pty
import re
import select
import subprocess
import sys
import tempfile
import time

from checks import check, finish, output

PREFIX = pathlib.Path(sys.argv[1])
VERSION = sys.argv[4]
SHARE = PREFIX / "share"
LONGEST_WAIT = 30

# What stands before the cursor, and all that can be typed there.
COMMANDS = {"list", "check", "copy", "library", "help"}
FILES = {"gig.prst", "backups/"}
EXPECTED = {
    "velgor ": COMMANDS,
    "velgor li": {"list", "library"},
    "velgor lib": {"library"},
    "velgor --library backups lib": {"library"},
    "velgor library d": {"duplicate", "doctor"},
    "velgor library --library backups se": {"set"},
    "velgor library set --gu": {"--guitar"},
    "velgor library set --guitar ": {"on", "off"},
    "velgor library list --sort n": {"name"},
    "velgor help ch": {"check"},
    "velgor list --js": {"--json"},
    "velgor list ": FILES,
    "velgor library add g": {"gig.prst"},
    "velgor library compose -o ": FILES,
    "velgor --library ": {"backups/"},
    "velgor library doctor --restore ": FILES | {"notes.txt"},
    "velgor library duplicate ": set(),
}


def environment(home):
    return {
        "HOME": str(home),
        "LC_ALL": "C.UTF-8",
        "PATH": f"{PREFIX / 'bin'}:{os.environ['PATH']}",
        "TERM": "dumb",
        "XDG_DATA_DIRS": f"{SHARE}:/usr/share",
    }


def with_slashes(home, words):
    """The shells themselves put them behind directories, later."""
    return {f"{word}/" if (home / "work" / word).is_dir() else word for word in words if word}


class Zsh:
    """A zsh with a terminal: it completes only where somebody types."""

    def __init__(self, home):
        (home / ".zshrc").write_text(
            f"fpath=({SHARE / 'zsh' / 'site-functions'} $fpath)\n"
            "autoload -Uz compinit && compinit -u -D\n"
            # What is found is written down too.
            "compadd() {\n"
            "  local -a found\n"
            "  local -A given\n"
            "  zparseopts -E -A given O: A: D:\n"
            "  if (( ! ${#given} )); then builtin compadd -O found \"$@\"; print -rl -- $found >> $HOME/found; fi\n"
            "  builtin compadd \"$@\"\n"
            "}\n"
            "written-down() { : > $HOME/found; zle complete-word; : > $HOME/done }\n"
            "zle -N written-down; bindkey '^X' written-down; zstyle ':completion:*' menu no\n"
            "PS1=ready\n"
        )
        self.home = home
        child, self.terminal = pty.fork()
        if child == 0:
            os.chdir(home / "work")
            os.execvpe("zsh", ["zsh", "-i"], environment(home))
        self.child = child
        self.wait(lambda seen: b"ready" in seen)

    def wait(self, is_seen):
        seen = b""
        end = time.monotonic() + LONGEST_WAIT
        while not is_seen(seen):
            if time.monotonic() > end:
                raise SystemExit(f"zsh does not answer: {seen!r}")
            if select.select([self.terminal], [], [], 0.05)[0]:
                seen += os.read(self.terminal, 65536)

    def completed(self, line):
        done = self.home / "done"
        done.unlink(missing_ok=True)
        os.write(self.terminal, b"\x15" + line.encode() + b"\x18")
        self.wait(lambda _: done.exists())
        return with_slashes(self.home, (self.home / "found").read_text().splitlines())

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.child, 0)


def bash_completed(home, line):
    words = re.split(r" ", line)
    script = (
        "source /usr/share/bash-completion/bash_completion; _completion_loader velgor; "
        'COMP_LINE=$1; shift; COMP_POINT=${#COMP_LINE}; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMP_TYPE=9; '
        "_velgor velgor \"${COMP_WORDS[COMP_CWORD]}\"; printf '%s\\n' \"${COMPREPLY[@]}\""
    )
    done = subprocess.run(
        ["bash", "-c", script, "bash", line, *words], env=environment(home), cwd=home / "work", check=False,
        capture_output=True, text=True,
    )
    # Outside of readline there is nothing that the command compopt could change.
    errors = [one for one in done.stderr.splitlines() if "compopt: not currently executing" not in one]
    check(not errors, f"bash on {line!r}: {errors}")
    return with_slashes(home, done.stdout.splitlines())


def fish_completed(home, line):
    told = output("fish", "--no-config", "-c", f"source {SHARE}/fish/vendor_completions.d/velgor.fish; complete -C '{line}'",
                  env=environment(home), cwd=home / "work")
    return {word.split("\t")[0] for word in told.splitlines()}


def check_completions(home):
    (home / "work" / "backups").mkdir(parents=True)
    for name in ("gig.prst", "notes.txt"):
        (home / "work" / name).touch()
    zsh = Zsh(home)
    for line, expected in EXPECTED.items():
        for shell, found in (
            ("bash", bash_completed(home, line)),
            ("zsh", zsh.completed(line)),
            ("fish", fish_completed(home, line)),
        ):
            check(found == expected, f"{shell} completes {line!r} to {sorted(found)} instead of {sorted(expected)}")
    zsh.close()


def check_man_pages():
    for name in ("velgor", "velgor-library-manager"):
        page = SHARE / "man" / "man1" / f"{name}.1"
        done = subprocess.run(
            ["man", "--warnings", "--encoding=UTF-8", "--local-file", page],
            env=os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "100", "MANROFFOPT": "", "MAN_KEEP_FORMATTING": ""},
            capture_output=True, text=True, check=False,
        )
        check(done.returncode == 0 and not done.stderr, f"{page.name}: {done.stderr}")
        check(VERSION in done.stdout, f"{page.name} does not tell the version")
        check("SEE ALSO" in done.stdout and "FILES" in done.stdout, f"{page.name} lacks a section")


with tempfile.TemporaryDirectory() as directory:
    check_completions(pathlib.Path(directory))
check_man_pages()
finish()
