# SPDX-License-Identifier: MIT
"""The clipboard of a Wayland desktop as its programs use it, with the face of the other one."""

import subprocess

from .wayland_owner import WaylandOwner, form


class WaylandClipboard:
    """For compositors that let programs without a window copy and paste. Targets have the names of
    the X11 desktop; what is called otherwise here is translated."""

    def __init__(self, desktop):
        self._desktop = desktop

    def copy(self, text):
        """Copies text with an ordinary command-line tool, which owns the clipboard then."""
        self.copy_as("UTF8_STRING", text.encode())

    def copy_as(self, target, data):
        """Copies bytes under one name; the tool adds other names of text."""
        self._desktop.run(["wl-copy", "--type", form(target)], stdin=None, input=data,
                          capture_output=False, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).check_returncode()

    def own(self, manners="polite", offers=None, targets=(), delays=None):
        """Starts an owner of our own; see owner_process.py for the manners. `delays` are the seconds
        that it takes for a target; none: for ever."""
        return WaylandOwner(self._desktop.env, manners, offers or {}, targets, delays)

    def read(self, target="UTF8_STRING", limit=20):
        """The contents under a target; nothing when the owner has none."""
        if form(target) not in self._names():
            return None  # the tool would take a similar one
        try:
            answer = self._desktop.run(["wl-paste", "--no-newline", "--type", form(target)],
                                       limit=limit)
        except subprocess.TimeoutExpired:
            return None
        return answer.stdout if answer.returncode == 0 else None

    def text(self):
        data = self.read()
        return None if data is None else data.decode(errors="replace")

    def selected(self):
        """The text that is selected somewhere, which leaves the clipboard alone."""
        answer = self._desktop.run(["wl-paste", "--primary", "--no-newline"])
        return answer.stdout.decode() if answer.returncode == 0 else ""

    def select(self, text):
        self._desktop.run(["wl-copy", "--primary"], stdin=None, input=text.encode(),
                          capture_output=False, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).check_returncode()

    def targets(self):
        names = self._names()
        return names + [target for target in ("UTF8_STRING",)
                        if form(target) in names and target not in names]

    def _names(self):
        answer = self._desktop.run(["wl-paste", "--list-types"])
        return answer.stdout.decode().split("\n")[:-1] if answer.returncode == 0 else []
