#!/usr/bin/env python3
"""Writes the tables of docs/performance.md from what the benchmarks printed.

    report.py BENCHMARKS.json WINDOW.jsonl DOCUMENT

The first is Google Benchmark's file, the second has one JSON object a line. What stands between the two marks of the
document is replaced. Ends with 1 when a target is missed, after the tables are written."""

from __future__ import annotations

import datetime
import json
import os
import pathlib
import platform
import sys
import typing

Row = dict[str, typing.Any]

BEGIN = "<!-- figures: written by scripts/benchmark -->"
END = "<!-- end of the figures -->"


def figure(value: float | None, unit: str = "") -> str:
    """Three digits that count, and thousands with commas."""
    if value is None:
        return ""
    digits = 0 if value >= 100 else 1 if value >= 10 else 2 if value >= 1 else 3
    return f"{value:,.{digits}f}{unit}"


def process_rows(path: pathlib.Path) -> list[Row]:
    rows = []
    for result in json.loads(path.read_text())["benchmarks"]:
        name, patches = result["name"].split("/")[:2]
        rows.append({**result, "row": name, "patches": int(patches)})
    return rows


def window_rows(path: pathlib.Path) -> list[Row]:
    return [json.loads(line) for line in path.read_text().splitlines() if line.startswith("{")]


def held_against(row: Row) -> list[tuple[float, float]]:
    """What is measured against targets, each with its target."""
    pairs = [(row.get("ratio"), row.get("target")), (row.get("growth_per_tenfold"), row.get("growth_target"))]
    if row.get("target_of"):
        pairs.append((row.get(row["target_of"]), row.get("target_ms")))
    return [(value, target) for value, target in pairs if value is not None and target is not None]


def is_missed(row: Row) -> bool:
    return any(value > target for value, target in held_against(row))


def with_target(value: float | None, target: float | None, unit: str = "") -> str:
    if value is None or target is None:
        return figure(value)
    return f"{figure(value)} (at most {target:g}{unit}{', missed' if value > target else ''})"


def table(head: list[str], lines: list[list[str]]) -> list[str]:
    rule = ["---"] * len(head)
    return ["| " + " | ".join(line) + " |" for line in [head, rule, *lines]] + [""]


def pair_table(rows: list[Row], unit: str) -> list[str]:
    """Without the column of the growth where there is one size of each row."""
    has_growth = any("growth_per_tenfold" in row for row in rows)
    lines = []
    for row in rows:
        line = [row["row"], f"{row['patches']:,}"]
        line += [figure(row[f"{side}_{unit}"]) for side in ("ours", "baseline")]
        line.append(with_target(row["ratio"], row.get("target")))
        if has_growth:
            line.append(with_target(row.get("growth_per_tenfold"), row.get("growth_target")))
        lines.append(line)
    name = "MB" if unit == "mb" else unit
    head = ["row", "patches", f"ours, {name}", f"baseline, {name}", "ratio"]
    return table([*head, "growth per tenfold"] if has_growth else head, lines)


def growth_table(rows: list[Row]) -> list[str]:
    by_name: dict[str, dict[int, Row]] = {}
    for row in rows:
        by_name.setdefault(row["row"], {})[row["patches"]] = row
    sizes = sorted({row["patches"] for row in rows})
    lines = []
    for name, measured in by_name.items():
        times = [figure(measured[size]["ours_ms"]) if size in measured else "" for size in sizes]
        growth = [
            with_target(row["growth_per_tenfold"], row.get("growth_target"))
            for row in measured.values()
            if "growth_per_tenfold" in row
        ]
        lines.append([name, *times, "; ".join(growth)])
    return table(["row", *[f"{size:,}, ms" for size in sizes], "growth per tenfold"], lines)


def window_table(rows: list[Row]) -> list[str]:
    lines = []
    for row in rows:
        line = [row["row"].removeprefix("window, "), f"{row['patches']:,}"]
        for key in ("ours_ms", "p95_ms", "gap_ms"):
            line.append(with_target(row.get(key), row["target_ms"] if row.get("target_of") == key else None))
        lines.append(line)
    return table(["action", "patches", "median, ms", "19 of 20 below, ms", "longest gap, ms"], lines)


def machine() -> str:
    model = next(
        (line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "unknown"
    )
    return (
        f"{datetime.date.today():%-d %B %Y}; {os.cpu_count()} cores of {model}; {platform.system()} "
        f"{platform.release().split('-')[0]}; load of the machine at the end {os.getloadavg()[0]:.1f}."
    )


def main() -> int:
    processes = process_rows(pathlib.Path(sys.argv[1]))
    window = window_rows(pathlib.Path(sys.argv[2]))
    document = pathlib.Path(sys.argv[3])
    pairs = [row for row in processes if "ratio" in row]
    growth = [row for row in processes if "ratio" not in row]
    whole = [row for row in window if row.get("ratio") is not None]
    lines = [machine(), "", "### Beside a plain way of doing the same", "", *pair_table(pairs, "ms")]
    lines += ["### Growth", "", *growth_table(growth)]
    lines += ["### Whole programs", ""]
    lines += pair_table([row for row in whole if row.get("ours_ms") is not None], "ms")
    lines += pair_table([row for row in whole if row.get("ours_mb") is not None], "mb")
    lines += ["### The window", "", *window_table([row for row in window if row.get("ratio") is None])]
    text = document.read_text()
    before, rest = text.split(BEGIN)
    after = rest.split(END)[1]
    document.write_text(before + BEGIN + "\n\n" + "\n".join(lines) + "\n" + END + after)
    missed = [f"{row['row']} at {row['patches']:,}" for row in [*processes, *window] if is_missed(row)]
    print(f"{document} is written; " + (f"targets missed: {'; '.join(missed)}" if missed else "all targets are met"))
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
