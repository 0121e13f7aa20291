#!/usr/bin/env python3
"""Measures whole processes in turns: processes.py BUILD [PATCHES]

BUILD is the directory of a release build with the benchmarks. Prints one JSON object a line: ours and the baseline
(medians), the ratio (median of the pairs' ratios) and the largest ratio that is meant to be. Needs no display.
"""

import json
import os
import signal
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PAIRS = 9
MEGABYTE = 2**20


class Home:
    """A user with nothing of their own but a library directory, which may be empty."""

    def __init__(self, place: Path, library: Path):
        runtime = place / "runtime"
        settings = place / "config" / "velgor" / "velgor-library-manager.conf"
        for directory in (runtime, settings.parent, library):
            directory.mkdir(parents=True)
        runtime.chmod(0o700)
        settings.write_text(f"[General]\nlibraryDirectory={library}\n", encoding="utf-8")
        self.environment = {
            **os.environ,
            "HOME": str(place),
            "XDG_CONFIG_HOME": str(place / "config"),
            "XDG_DATA_HOME": str(place / "data"),
            "XDG_RUNTIME_DIR": str(runtime),
            "QT_QPA_PLATFORM": "offscreen",
        }


def milliseconds(command: list, home: Home) -> float:
    """From the start of a process until it writes its line."""
    start = time.perf_counter()
    with subprocess.Popen(
        command, env=home.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True
    ) as process:
        is_done = any(line == "done\n" for line in process.stdout)
        taken = time.perf_counter() - start
        process.stdout.read()
    if not is_done or process.returncode != 0:
        sys.exit(f"failed: {command}")
    return taken * 1000


def whole_milliseconds(command: list, home: Home) -> float:
    """From the start of a process to its end, whatever it prints."""
    start = time.perf_counter()
    subprocess.run(command, env=home.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
    return (time.perf_counter() - start) * 1000


def whole_peak_megabytes(command: list, home: Home) -> float:
    """The most memory that a process had which ends by itself."""
    with subprocess.Popen(command, env=home.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command} ended with {process.returncode}")
    return usage.ru_maxrss * 1024 / MEGABYTE


def processor_time(pid: int) -> int:
    fields = Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


def peak_megabytes(program: Path, home: Home) -> float:
    """The most memory that the program had from its start until it has nothing left to do, and ends."""
    quiet = 1.0
    with subprocess.Popen([program], env=home.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
        before = -1
        while before != (now := processor_time(process.pid)):
            before = now
            time.sleep(quiet)
        process.send_signal(signal.SIGTERM)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{program} ended with {process.returncode}")
    return usage.ru_maxrss * 1024 / MEGABYTE


def bytes_below(directory: Path) -> int:
    return sum(file.stat().st_size for file in directory.rglob("*") if file.is_file())


def pairs(ours, baseline, rounds: int) -> tuple:
    """Medians of both, and of the ratios of the pairs, the first of which does not count."""
    ours(), baseline()
    measured = []
    for number in range(rounds):
        if number % 2 == 0:
            first = ours()
            measured.append((first, baseline()))
        else:
            second = baseline()
            measured.append((ours(), second))
    return (
        statistics.median(pair[0] for pair in measured),
        statistics.median(pair[1] for pair in measured),
        statistics.median(pair[0] / pair[1] for pair in measured),
    )


def report(row: str, patches: int, unit: str, measured: tuple, target: float | None) -> None:
    ours, baseline, ratio = measured
    line = {"row": row, "patches": patches, "ours_ms": None, "baseline_ms": None, "ours_mb": None, "baseline_mb": None}
    line |= {f"ours_{unit}": round(ours, 3), f"baseline_{unit}": round(baseline, 3)}
    print(json.dumps(line | {"ratio": round(ratio, 3), "target": target}), flush=True)


def measure_command_line(build: Path, place: Path) -> None:
    """`velgor library list --json`, and `set`, of 10,000 patches."""
    patches = 10_000
    velgor = build / "src" / "cli" / "velgor"
    library = place / "command-library"
    home = Home(place / "command-home", library)
    empty = Home(place / "command-empty", place / "command-empty-library")
    make = build / "benchmarks" / "window" / "window_process"
    subprocess.run([make, "make", library, str(patches)], env=home.environment, stdout=subprocess.DEVNULL, check=True)
    payload = bytes_below(library) / MEGABYTE

    def reading() -> float:
        return whole_milliseconds([build / "benchmarks" / "window" / "read_files", library], home)

    def listing() -> float:
        return whole_milliseconds([velgor, "library", "list", "--json"], home)

    report("command line, library list --json", patches, "ms", pairs(listing, reading, 2 * PAIRS), 2.2)

    ids = subprocess.run(
        [velgor, "library", "list", "--ids"], env=home.environment, capture_output=True, text=True, check=True
    ).stdout.split()
    comments = iter(range(1000))

    def setting() -> float:
        return whole_milliseconds([velgor, "library", "set", ids[0], "--comment", str(next(comments))], home)

    report("command line, library set of one patch", patches, "ms", pairs(setting, reading, 2 * PAIRS), None)

    def above_empty() -> float:
        command = [velgor, "library", "list", "--json"]
        return whole_peak_megabytes(command, home) - whole_peak_megabytes(command, empty)

    report("command line, peak memory of list --json", patches, "mb", pairs(above_empty, lambda: payload, 3), 1.6)


def main() -> None:
    build = Path(sys.argv[1]).resolve()
    patches = int(sys.argv[2]) if len(sys.argv) > 2 else 100_000
    process = build / "benchmarks" / "window" / "window_process"
    bare = build / "benchmarks" / "window" / "bare_window"
    program = build / "src" / "app" / "velgor-library-manager"
    with tempfile.TemporaryDirectory(prefix="velgor-") as name:
        place = Path(name)
        empty = Home(place / "empty", place / "empty-library")
        report(
            "window, first paint of an empty library",
            0,
            "ms",
            pairs(lambda: milliseconds([process, "window"], empty), lambda: milliseconds([bare], empty), 2 * PAIRS),
            1.8,
        )
        library = place / "library"
        home = Home(place / "home", library)
        subprocess.run(
            [process, "make", library, str(patches)], env=home.environment, stdout=subprocess.DEVNULL, check=True
        )

        def shown() -> float:
            return milliseconds([process, "rows"], home)

        def records() -> float:
            return milliseconds([process, "records", library], home)

        report("window, first paint with all patches", patches, "ms", pairs(shown, records, PAIRS), 1.3)
        payload = bytes_below(library) / MEGABYTE

        def above_empty() -> float:
            return peak_megabytes(program, home) - peak_megabytes(program, empty)

        report("window, peak memory above an empty library", patches, "mb", pairs(above_empty, lambda: payload, 3), 1.4)
        measure_command_line(build, place)


if __name__ == "__main__":
    main()
