"""What scripts/run decides: the window where there is a display, the whole job on the command line where there is none.

usage: run_script.py PROJECT VELGOR WINDOW DIRECTORY

Works on a copy of the scripts beside the programs that are built already, with a build that does nothing.
"""

import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import time

PATIENCE = 60
# No server has so high a number, and no other run of this test the same.
UNUSED_DISPLAY = f":{100000 + os.getpid()}"


def check(condition, what):
    if not condition:
        raise SystemExit(f"run_script: {what}")


def write_script(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("#!/bin/sh\n" + text)
    path.chmod(0o755)


class Project:
    """A copy of the project in which nothing is installed or built."""

    def __init__(self, source, velgor, directory):
        shutil.rmtree(directory, ignore_errors=True)
        self.root = directory / "project"
        self.home = directory / "home"
        self.temporary = directory / "tmp"
        self.started = directory / "started"
        for folder in (self.root / "scripts", self.home, self.temporary):
            folder.mkdir(parents=True)
        for name in ("run", "main-job"):
            shutil.copy2(source / "scripts" / name, self.root / "scripts" / name)
        shutil.copytree(source / "samples", self.root / "samples")
        write_script(self.root / "scripts" / "setup", "exit 0\n")
        write_script(directory / "bin" / "cmake", "echo building\n")
        build = self.root / "build" / "run"
        (build / "src" / "cli").mkdir(parents=True)
        (build / "build.ninja").touch()
        (build / "src" / "cli" / "velgor").symlink_to(velgor)
        self.window = build / "src" / "app" / "velgor-library-manager"
        self.results = build / "main-job"
        self.stand_in()
        (self.home / "mine.txt").write_text("mine")
        self.environment = {
            "PATH": f"{directory / 'bin'}:{os.environ['PATH']}",
            "HOME": str(self.home),
            "TMPDIR": str(self.temporary),
            "LC_ALL": "C.UTF-8",
        }
        # Sanitizers find what they need through their own variables.
        self.environment |= {k: v for k, v in os.environ.items() if k.endswith("SAN_OPTIONS")}

    def stand_in(self):
        """In the place of the window, a script that writes down how it was started."""
        self.window.unlink(missing_ok=True)
        write_script(self.window, f'{{ echo "$#"; printf "%s\\n" "$@"; env; }} > {self.started}\n')

    def run(self, *arguments, **variables):
        self.started.unlink(missing_ok=True)
        return subprocess.run(
            [self.root / "scripts" / "run", *arguments],
            env=self.environment | variables,
            cwd=self.root,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=PATIENCE,
            check=False,
        )

    def started_with(self):
        """The arguments and the environment of the window; nothing when it was not started."""
        if not self.started.exists():
            return None
        count, *lines = self.started.read_text().splitlines()
        variables = dict(line.split("=", 1) for line in lines[max(int(count), 1) :] if "=" in line)
        return lines[: int(count)], variables

    def home_files(self):
        return sorted(str(path.relative_to(self.home)) for path in self.home.rglob("*"))


def whole_job_without_a_display(project, velgor):
    for attempt in ("first", "second"):
        done = project.run()
        check(done.returncode == 0, f"{attempt} run ended with {done.returncode}: {done.stderr}")
        check(project.started_with() is None, "the window was started without a display")
        for command in ("list", "library add", "library set", "library compose", "library export", "check"):
            shown = [line for line in done.stdout.splitlines() if line.startswith("$ velgor ") and command in line]
            check(shown, f"'{command}' is not shown")
        check("There is no display" in done.stdout, "the reason is not told")
        check("To see the window" in done.stdout, "the way to the window is not told")
        check(str(project.results) in done.stdout, "the place of the results is not told")
        check("new.prst: ok" in done.stdout, "the check is not shown")
        check("Saving" not in done.stdout + done.stderr, "progress is shown")
        for name in ("new.prst", "solo.prst"):
            checked = subprocess.run([velgor, "check", project.results / name], capture_output=True, check=False)
            check(checked.returncode == 0, f"{name} is no clean preset file")
        check((project.results / "library" / "velgorlibrary.json").exists(), "there is no library")
        check(not (project.results / "diagnostics").exists(), "a file of the script stays")
        check(project.home_files() == ["mine.txt"], f"the home has changed: {project.home_files()}")


def failure_of_the_job_is_told(project):
    samples = project.root / "samples" / "demo.prst"
    good = samples.read_bytes()
    samples.write_bytes(good[:-1])
    done = project.run()
    samples.write_bytes(good)
    check(done.returncode == 2, f"a job that fails ends with {done.returncode}")
    check("velgor: demo.prst: not a complete preset file" in done.stderr, f"the failure is not told: {done.stderr}")


def file_without_a_display(project):
    done = project.run("samples/demo.prst")
    check(done.returncode == 0, f"a file without a display ends with {done.returncode}: {done.stderr}")
    check("Warm Jazz Box" in done.stdout and "To see the window" in done.stdout, "the file is not listed")
    check(project.run("none.prst").returncode == 2, "a file that is not there is no failure")
    check(project.started_with() is None, "the window was started without a display")


def window_with_a_display(project):
    (project.home.parent / "wayland-7").touch()
    wayland = {"XDG_RUNTIME_DIR": str(project.home.parent), "WAYLAND_DISPLAY": "wayland-7"}
    for display in (
        {"DISPLAY": "some"},
        {"DISPLAY": "localhost:10.0"},
        {"DISPLAY": "some", "QT_QPA_PLATFORM": "xcb"},
        wayland,
        {"WAYLAND_DISPLAY": str(project.home.parent / "wayland-7")},
        wayland | {"QT_QPA_PLATFORM": "wayland-egl"},
        wayland | {"DISPLAY": UNUSED_DISPLAY, "QT_QPA_PLATFORM": "xcb;wayland"},
    ):
        for arguments in ([], ["samples/demo.prst"]):
            done = project.run(*arguments, **display)
            check(done.returncode == 0, f"{display} {arguments} ended with {done.returncode}: {done.stderr}")
            check(project.started_with() is not None, f"{display}: the window was not started")
            words, variables = project.started_with()
            check(words == arguments, f"{display}: started with {words}")
            check(variables["HOME"] == str(project.home), f"{display}: started with another home")


def window_on_an_x_server_of_this_machine(project):
    # A server can listen on a name that no file stands for.
    with socket.socket(socket.AF_UNIX) as server:
        server.bind(f"\0/tmp/.X11-unix/X{UNUSED_DISPLAY[1:]}")
        server.listen()
        for display in (UNUSED_DISPLAY, f"{UNUSED_DISPLAY}.0"):
            check(project.run(DISPLAY=display).returncode == 0, f"{display} is a failure")
            check(project.started_with() is not None, f"{display}: the window was not started")
        check(project.run("samples/demo.prst", DISPLAY=UNUSED_DISPLAY[:-1]).returncode == 0, "another is a failure")
        check(project.started_with() is None, "the window was started on another display")


def nothing_to_see_the_window_on(project):
    left_over = {"XDG_RUNTIME_DIR": str(project.home), "WAYLAND_DISPLAY": "wayland-7"}
    for display in (
        {"DISPLAY": UNUSED_DISPLAY},
        {"DISPLAY": f"unix{UNUSED_DISPLAY}.0"},
        left_over,
        {"DISPLAY": "some", "QT_QPA_PLATFORM": "offscreen"},
        {"DISPLAY": "some", "QT_QPA_PLATFORM": "vnc:size=640x480"},
        {"DISPLAY": "some", "QT_QPA_PLATFORM": "wayland"},
        {"QT_QPA_PLATFORM": "xcb"},
        {"QT_QPA_PLATFORM": "minimal"},
        {"QT_QPA_PLATFORM": "linuxfb"},
    ):
        done = project.run("samples/demo.prst", **display)
        check(done.returncode == 0, f"{display} ended with {done.returncode}: {done.stderr}")
        check("Warm Jazz Box" in done.stdout and "To see the window" in done.stdout, f"{display}: no list")
        check(project.started_with() is None, f"{display}: the window was started")


def demonstration_touches_nothing(project):
    done = project.run("--demo", DISPLAY="some", XDG_CONFIG_HOME=str(project.home / "config"))
    check(done.returncode == 0, f"--demo ended with {done.returncode}: {done.stderr}")
    words, variables = project.started_with()
    place = pathlib.Path(variables["XDG_CONFIG_HOME"]).parent
    check(place.parent == project.temporary, f"--demo works in {place}")
    check(str(place) in done.stdout, "--demo does not tell its directory")
    check(words == [str(project.root / "samples" / "demo.prst")], f"--demo opens {words}")
    for name in ("XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"):
        check(pathlib.Path(variables[name]).is_relative_to(place), f"--demo: {name} is {variables[name]}")
    check(variables["HOME"] == str(project.home), "--demo loses the key of the display")
    check(project.home_files() == ["mine.txt"], f"the home has changed: {project.home_files()}")

    without = project.run("--demo")
    check(without.returncode == 0 and "new.prst: ok" in without.stdout, "--demo without a display does not do the job")
    check("./scripts/run --demo" in without.stdout, "--demo without a display does not tell the way to the window")


def demonstration_of_the_real_window(project, window):
    # On no screen, which the script would not choose.
    project.window.unlink()
    write_script(project.window, f'QT_QPA_PLATFORM=offscreen exec {window} "$@"\n')
    before = set(project.temporary.iterdir())
    with subprocess.Popen(
        [project.root / "scripts" / "run", "--demo"],
        env=project.environment | {"DISPLAY": "some"},
        stdin=subprocess.DEVNULL,
        stdout=subprocess.DEVNULL,
    ) as program:
        deadline = time.monotonic() + PATIENCE
        library = None
        while library is None and program.poll() is None and time.monotonic() < deadline:
            new = set(project.temporary.glob("velgor-demo.*")) - before
            library = next((place / "library" for place in new if (place / "library").is_dir()), None)
            time.sleep(0.05)
        program.send_signal(signal.SIGTERM)
        status = program.wait(PATIENCE)
    check(library is not None, "the window made no library in the temporary directory")
    check(status in (0, -signal.SIGTERM), f"the window ended with {status}")
    check(project.home_files() == ["mine.txt"], f"the window has changed the home: {project.home_files()}")
    project.stand_in()


def wrong_usage(project):
    for arguments in (["--dem"], ["a", "b"], ["--demo", "a"]):
        done = project.run(*arguments, DISPLAY="some")
        check(done.returncode == 2 and "usage: " in done.stderr, f"{arguments} ended with {done.returncode}")
        check(project.started_with() is None, f"{arguments} started the window")


def main():
    source, velgor, window, directory = (pathlib.Path(argument) for argument in sys.argv[1:])
    project = Project(source, velgor, directory)
    whole_job_without_a_display(project, velgor)
    failure_of_the_job_is_told(project)
    file_without_a_display(project)
    window_with_a_display(project)
    window_on_an_x_server_of_this_machine(project)
    nothing_to_see_the_window_on(project)
    demonstration_touches_nothing(project)
    demonstration_of_the_real_window(project, window)
    wrong_usage(project)


main()
