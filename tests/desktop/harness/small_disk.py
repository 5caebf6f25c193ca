# SPDX-License-Identifier: MIT
"""A disk with little room under one directory."""

import os
import resource
import subprocess


def small_disk(vantorel):
    """A small file system for the history; where mounting is not allowed, a limit on file sizes.

    To be called before the program is started.
    """
    directory = vantorel.history.directory
    os.makedirs(directory, mode=0o700, exist_ok=True)
    mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1m,mode=0700", "none", directory],
                             capture_output=True, check=False)
    if mounted.returncode == 0:
        return _SmallMount(directory)
    print("mounting is not allowed here: the limit is one on the size of files")
    return _SmallFiles(vantorel)


class _SmallMount:
    def __init__(self, directory):
        self._directory = directory

    def limit(self, _pid, size):
        self._remount(size)

    def widen(self, _pid):
        self._remount(256 * 1024 * 1024)

    def remove(self):
        # Lazily, since a program that is just being ended may still hold it.
        subprocess.run(["umount", "-l", self._directory], check=True)

    def _remount(self, size):
        subprocess.run(["mount", "-o", f"remount,size={size}", self._directory], check=True)


class _SmallFiles:
    """Writing fails beyond a size, as on a full disk, with another error number."""

    def __init__(self, vantorel):
        # The signal that comes with the limit would end the program; ignoring it is inherited.
        vantorel.launcher = ["sh", "-c", 'trap "" XFSZ; exec "$@"', "sh"]

    def limit(self, pid, size):
        _, hard = resource.prlimit(pid, resource.RLIMIT_FSIZE)
        resource.prlimit(pid, resource.RLIMIT_FSIZE, (size, hard))

    def widen(self, pid):
        _, hard = resource.prlimit(pid, resource.RLIMIT_FSIZE)
        resource.prlimit(pid, resource.RLIMIT_FSIZE, (hard, hard))

    def remove(self):
        pass
