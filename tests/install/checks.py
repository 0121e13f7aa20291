"""What the checks of the installed files have in common."""

import subprocess
import sys

problems = []


def check(condition, what):
    if not condition:
        problems.append(what)


def quiet(*command, **options):
    """Runs a tool that has to end well and to say nothing."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)
    check(done.returncode == 0 and not done.stdout.strip(), f"{' '.join(map(str, command))}: {done.stdout}")


def output(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def finish():
    print("\n".join(problems))
    sys.exit(1 if problems else 0)
