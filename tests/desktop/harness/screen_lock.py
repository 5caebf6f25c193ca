# SPDX-License-Identifier: MIT
"""The lock of the screen, so far as programs hear of it."""

import os
import subprocess
import sys

from .session_bus import SessionBus

_PROCESS = os.path.join(os.path.dirname(__file__), "screen_lock_process.py")


class ScreenLock:
    """One that says whether the screen is locked, from when this is made until it is stopped."""

    def __init__(self, desktop, name, bus=None):
        self._desktop = desktop
        env = {"DBUS_SESSION_BUS_ADDRESS": bus} if bus else {}
        self._process = desktop.start("screen-lock", [sys.executable, _PROCESS, name], env,
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._read()

    def stop(self):
        self._desktop.processes.stop(self._process)

    def lock(self):
        self._perform("lock")

    def unlock(self):
        self._perform("unlock")

    def _perform(self, order):
        self._process.stdin.write(order.encode() + b"\n")
        self._process.stdin.flush()
        self._read()

    def _read(self):
        if not self._process.stdout.readline():
            raise AssertionError("who says that the screen is locked has ended")


def start_system_bus(desktop):
    """A bus beside the session's, which programs of this desktop find as the system's; its
    address."""
    directory = os.path.join(desktop.runtime, "system")
    os.makedirs(directory)
    bus = SessionBus(desktop.processes, directory)
    bus.start(desktop.env)
    desktop.env["DBUS_SYSTEM_BUS_ADDRESS"] = bus.address
    return bus.address
