#!/usr/bin/env python3
"""The hook checks what is committed, and nothing else: pre_commit.py HOOK"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

# Stands in for the checks. What git tells a hook would send them to the repository again.
LINT = """#!/bin/sh
cd "$(dirname "$0")/.." || exit 1
test "$1" = quick && test -z "$GIT_INDEX_FILE$GIT_DIR" && ! grep bad text
"""


def commit(repository, staged, left):
    """Commits one text while another is in the working tree. True when the hook let it pass."""
    text = repository / "text"
    text.write_text(staged)
    git(repository, "add", "text")
    text.write_text(left)
    done = git(repository, "commit", "--message", staged, check=False)
    if text.read_text() != left:
        sys.exit("the hook changed the working tree")
    return done.returncode == 0


def git(repository, *arguments, check=True):
    environment = {name: value for name, value in os.environ.items() if not name.startswith("GIT_")}
    environment.update(HOME=str(repository.parent), GIT_CONFIG_NOSYSTEM="1", TMPDIR=str(repository.parent / "scratch"))
    return subprocess.run(["git", *arguments], cwd=repository, env=environment, capture_output=True, check=check)


def main():
    hook = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory(prefix="velgor-hook-") as place:
        repository, scratch = pathlib.Path(place) / "repository", pathlib.Path(place) / "scratch"
        (repository / "scripts").mkdir(parents=True)
        scratch.mkdir()
        lint = repository / "scripts" / "lint"
        lint.write_text(LINT)
        lint.chmod(0o755)
        git(repository, "init", "--quiet")
        git(repository, "config", "user.name", "Nobody")
        git(repository, "config", "user.email", "nobody@example.org")
        (repository / ".githooks").mkdir()
        shutil.copy(hook, repository / ".githooks" / "pre-commit")
        git(repository, "config", "core.hooksPath", ".githooks")
        git(repository, "add", ".")
        cases = [("good 1", "good 1", True), ("good 2", "bad", True), ("bad", "good", False), ("bad", "bad", False)]
        wrong = [case for case in cases if commit(repository, *case[:2]) != case[2]]
        for staged, left, passes in wrong:
            print(f'"{staged}" with "{left}" in the working tree: {"refused" if passes else "let pass"}')
        if list(scratch.iterdir()):
            print("the hook leaves files behind")
            return 1
    return 1 if wrong else 0


sys.exit(main())
