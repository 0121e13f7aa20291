"""What the build finds out of the commit that its sources are of: commit.py CMAKE SCRIPT"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

CMAKE, SCRIPT = sys.argv[1:]
SOURCES = pathlib.Path(SCRIPT).parent.parent


def check(condition, what):
    if not condition:
        raise SystemExit(f"commit: {what}")


def git(directory, *arguments):
    who = ["-c", "user.name=Somebody", "-c", "user.email=somebody@example.org", "-c", "commit.gpgsign=false"]
    done = subprocess.run(["git", *who, *arguments], cwd=directory, capture_output=True, text=True, check=True)
    return done.stdout.strip()


def commit_of(sources, named=""):
    """The text in the source file that is written for a directory, and the file."""
    file = sources.parent / f"{sources.name}.cpp"
    arguments = [f"-DCOMMIT={named}", f"-DGIT={shutil.which('git') or ''}", f"-DSOURCE={sources}", f"-DFILE={file}"]
    subprocess.run([CMAKE, *arguments, "-P", SCRIPT], capture_output=True, text=True, check=True)
    return re.search(r'QStringLiteral\("(.*)"\)', file.read_text())[1], file


with tempfile.TemporaryDirectory(prefix="velgor-") as place:
    outer = pathlib.Path(place) / "outer"
    inner = outer / "unpacked tarball"
    inner.mkdir(parents=True)
    check(commit_of(inner)[0] == "", "sources without a repository have no commit")
    (inner / "cmake").mkdir()
    shutil.copy(SOURCES / "cmake" / "archived-commit.txt", inner / "cmake")
    check(commit_of(inner)[0] == "", "nor have those that are no archive")
    check(commit_of(inner, "1a2b3c+ds")[0] == "1a2b3c+ds", "who packages them can name it")
    check(commit_of(inner, 'x");\n#error "')[0] == "xerror", "what is named is no code")
    if shutil.which("git") is None:
        raise SystemExit(0)
    git(outer, "init", "-q", "-b", "main")
    (outer / "file").write_text("text")
    git(outer, "add", "file")
    git(outer, "commit", "-q", "-m", "First")
    git(outer, "tag", "-a", "-m", "Release", "v1")
    first = git(outer, "rev-parse", "HEAD")[:10]
    found, file = commit_of(outer)
    check(found == first, f"the commit is {found}, not {first}")
    check(commit_of(inner)[0] == "", "a repository around the sources is not theirs")
    os.utime(file, (1, 1))
    check(commit_of(outer)[0] == first and file.stat().st_mtime == 1, "what did not change is not written again")
    shutil.copytree(SOURCES / "cmake", outer / "cmake")
    shutil.copy(SOURCES / ".gitattributes", outer)
    git(outer, "add", ".")
    git(outer, "commit", "-q", "-m", "What archives need")
    git(outer, "archive", "--format=tar", f"--output={place}/archive.tar", "HEAD")
    archived = pathlib.Path(place) / "archived"
    shutil.unpack_archive(f"{place}/archive.tar", archived)
    first = git(outer, "rev-parse", "HEAD")[:10]
    check(commit_of(archived)[0] == first, "an archive says which commit it is of")
    check(commit_of(outer)[0] == first, "sources with a repository ask that")
    (outer / "file").write_text("another text")
    check(commit_of(outer)[0] == f"{first}-dirty", "changed sources are said to be")
    git(outer, "commit", "-q", "-a", "-m", "Second")
    second = git(outer, "rev-parse", "HEAD")[:10]
    check(second != first and commit_of(outer)[0] == second, "the next commit is found")
    check(commit_of(outer, "named")[0] == "named", "what is named goes before what Git says")
    git(outer, "worktree", "add", "-q", str(outer.parent / "tree"))
    check(commit_of(outer.parent / "tree")[0] == second, "a further working tree has its commit")
