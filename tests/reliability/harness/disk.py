"""A file system of its own in a file, whose power can be cut. For root on Linux only."""

from __future__ import annotations

import fcntl
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import time

SHUT_DOWN = 0x8004587D  # EXT4_IOC_SHUTDOWN
WITHOUT_FLUSHING = 2  # the journal in memory is lost too
MEGABYTES = 64
IN_NAMESPACE = "VELGOR_MOUNTS_ARE_PRIVATE"


def with_private_mounts() -> None:
    """Starts the script again where its mounts are seen by nothing else. A program that starts a namespace of its own
    would hold on to them otherwise, and a file system that was cut comes back as it was while anything holds it."""
    if os.environ.get(IN_NAMESPACE) or os.geteuid() != 0 or not shutil.which("unshare"):
        return
    if subprocess.run(["unshare", "--mount", "true"], capture_output=True).returncode == 0:
        os.environ[IN_NAMESPACE] = "yes"
        os.execvp("unshare", ["unshare", "--mount", sys.executable, "-B", *sys.argv])


class Disk:
    def __init__(self, directory: pathlib.Path) -> None:
        self.image = directory / "disk.image"
        self.mount_point = directory / "disk"
        self.mount_point.mkdir()
        with self.image.open("wb") as image:
            image.truncate(MEGABYTES << 20)
        run("mkfs.ext4", "-q", "-F", str(self.image))
        self.mount()

    def mount(self) -> None:
        """Waits for a file system that really starts anew, while another program may still look at the last one."""
        for _ in range(100):
            run("mount", "-o", "loop", str(self.image), str(self.mount_point))
            try:
                (self.mount_point / "lost+found" / "probe").touch()
                return
            except OSError:
                self.unmount()
                time.sleep(0.2)
        raise RuntimeError(f"{self.image} does not come back")

    def unmount(self) -> None:
        run("umount", str(self.mount_point))

    def cut_power(self) -> None:
        """Nothing that is not on the disk by now gets there any more."""
        handle = os.open(self.mount_point, os.O_RDONLY)
        try:
            fcntl.ioctl(handle, SHUT_DOWN, struct.pack("I", WITHOUT_FLUSHING))
        finally:
            os.close(handle)

    def remove(self) -> None:
        subprocess.run(["umount", str(self.mount_point)], capture_output=True)


def why_not(directory: pathlib.Path) -> str:
    """Why no power can be cut on this machine; empty when it can."""
    if os.geteuid() != 0:
        return "only root can mount a file system"
    missing = [program for program in ("mkfs.ext4", "mount", "umount") if not shutil.which(program)]
    if missing:
        return f"there is no {missing[0]}"
    disk = None
    try:
        disk = Disk(directory)
        disk.cut_power()
        disk.unmount()
        disk.mount()
    except (OSError, subprocess.CalledProcessError) as problem:
        return f"no file system can be mounted and shut down: {getattr(problem, 'stderr', '') or problem}".strip()
    finally:
        if disk:
            disk.remove()
            disk.image.unlink()
            disk.mount_point.rmdir()
    return ""


def run(*command: str) -> None:
    subprocess.run(command, check=True, capture_output=True, text=True)
