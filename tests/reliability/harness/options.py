"""Options that the scripts have in common."""

from __future__ import annotations

import argparse
import pathlib
import random
import secrets
import tempfile


def parser(description: str) -> argparse.ArgumentParser:
    options = argparse.ArgumentParser(description=description)
    options.add_argument("--velgor", type=pathlib.Path, required=True, help="the command line program")
    options.add_argument("--window", type=pathlib.Path, help="the window program")
    options.add_argument("--edit-process", type=pathlib.Path, help="the program that edits until it is killed")
    options.add_argument("--seed", type=int, help="repeats the random choices of an earlier run")
    options.add_argument("--directory", type=pathlib.Path, help="works in there instead of the usual temporary place")
    return options


def chance(arguments: argparse.Namespace, what: str) -> random.Random:
    seed = secrets.randbits(32) if arguments.seed is None else arguments.seed
    print(f"{what}: seed {seed}", flush=True)
    return random.Random(seed)


def scratch(arguments: argparse.Namespace) -> tempfile.TemporaryDirectory[str]:
    return tempfile.TemporaryDirectory(prefix="velgor-reliability-", dir=arguments.directory)
