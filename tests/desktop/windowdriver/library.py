"""What the program left on disk, read with the command line."""

import json
import subprocess


class Velgor:
    def __init__(self, executable):
        self.executable = str(executable)

    def _json(self, *arguments):
        done = subprocess.run([self.executable, *map(str, arguments), "--json"], capture_output=True, check=False)
        return json.loads(done.stdout) if done.returncode == 0 and done.stdout else {"patches": []}

    def library(self, directory):
        """The patches of a library directory in their order; none when it cannot be read."""
        return self._json("--library", directory, "library", "list")["patches"]

    def patches(self, file):
        return self._json("list", file)["patches"]

    def check(self, file):
        """Exit status and output of the strict check."""
        done = subprocess.run([self.executable, "check", str(file)], capture_output=True, check=False, text=True)
        return done.returncode, done.stdout + done.stderr
