# SPDX-License-Identifier: MIT
"""The clipboard as other programs use it: copying, asking, owning well and owning badly."""

import json
import os
import subprocess
import sys
import threading

from Xlib import X
from Xlib.protocol import request

from .owner import Owner
from .waiting import wait_for

_OWNER = os.path.join(os.path.dirname(__file__), "owner_process.py")
TEXT_TARGETS = ("UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT")


class Clipboard:
    """The CLIPBOARD selection of one desktop."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._files = 0

    def copy(self, text):
        """Copies text with an ordinary command-line tool and waits until that owns the selection."""
        return self.copy_as("UTF8_STRING", text.encode())

    def copy_as(self, target, data):
        """Copies bytes under one target (TARGETS is always offered beside it)."""
        before = self.owner()
        self._desktop.run(["xclip", "-selection", "clipboard", "-t", target, "-i",
                           self._file(data)], capture_output=False,
                          stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).check_returncode()
        return wait_for("the new owner of the clipboard",
                        lambda: self.owner() not in (0, before) and self.owner())

    def own(self, manners="polite", offers=None, targets=(), window_class=None, title=None,
            delays=None):
        """Starts an owner of our own; see owner_process.py for the manners. `delays` are the seconds
        that it takes for a target; none: for ever."""
        argv = [sys.executable, _OWNER, "--manners", manners]
        for target, data in (offers or {}).items():
            argv += ["--offer", f"{target}={self._file(data)}"]
        for target in targets:
            argv += ["--target", target]
        for target, seconds in (delays or {}).items():
            argv += ["--delay", f"{target}={'inf' if seconds is None else seconds}"]
        if window_class:
            argv += ["--window-class", window_class]
        if title:
            argv += ["--title", title]
        owner = OwnerProcess(self._desktop, argv)
        owner.wait_until_owned()
        return owner

    def read(self, target="UTF8_STRING", limit=20):
        """The selection's contents under a target; nothing when the owner has none."""
        try:
            answer = self._desktop.run(["xclip", "-selection", "clipboard", "-o", "-t", target],
                                       limit=limit)
        except subprocess.TimeoutExpired:
            return None
        return answer.stdout if answer.returncode == 0 else None

    def text(self):
        data = self.read()
        # There are owners that give a picture out as text.
        return None if data is None else data.decode(errors="replace")

    def selected(self):
        """The text that is selected somewhere, which leaves the clipboard alone."""
        answer = self._desktop.run(["xclip", "-selection", "primary", "-o", "-t", "UTF8_STRING"])
        return answer.stdout.decode() if answer.returncode == 0 else ""

    def select(self, text):
        self._desktop.run(["xclip", "-selection", "primary", "-i"], input=text.encode(),
                          stdin=None, capture_output=False, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).check_returncode()

    def targets(self):
        data = self.read("TARGETS")
        return data.decode().split() if data else []

    def owner(self):
        """The id of the owner's window, 0 when there is none."""
        display = self._desktop.display
        owner = display.get_selection_owner(display.intern_atom("CLIPBOARD"))
        return owner if isinstance(owner, int) else owner.id

    def owned_by(self, window):
        """Whether the owner is of the program that this window belongs to."""
        display = self._desktop.display
        mask = display.display.info.resource_id_mask
        return self.owner() & ~mask == window.id & ~mask

    def disown(self):
        """Empties the selection on purpose, as programs do that clear a clipboard."""
        display = self._desktop.display
        request.SetSelectionOwner(display=display.display, window=X.NONE,
                                  selection=display.intern_atom("CLIPBOARD"), time=X.CurrentTime)
        display.sync()

    def _file(self, data):
        self._files += 1
        path = os.path.join(self._desktop.files, f"copied-{self._files}")
        with open(path, "wb") as file:
            file.write(data)
        return path


class OwnerProcess(Owner):
    """One owner and what it said."""

    def __init__(self, desktop, argv):
        super().__init__()
        self._desktop = desktop
        self.process = desktop.start("owner", argv, stdout=subprocess.PIPE)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def wait_until_known(self):
        self.wait_until_asked("TARGETS")

    def stop(self):
        self._desktop.processes.stop(self.process)
        self._reader.join(5)

    def _read(self):
        try:
            for line in self.process.stdout:
                self.events.append(json.loads(line))
        except ValueError:
            return
