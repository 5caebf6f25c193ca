# SPDX-License-Identifier: MIT
"""Programs of windows whose every property a test chooses; what they do stands in window_process."""

import json
import os
import subprocess
import sys
import threading

from .waiting import wait_for

_PROGRAM = os.path.join(os.path.dirname(__file__), "window_process.py")


class WindowProgram:
    """One such process. Its windows paste as an entry field does, and say what they got."""

    def __init__(self, desktop, window_class="Canvas"):
        self.desktop = desktop
        self.window_class = window_class
        self.process = desktop.start(f"windows-{window_class}",
                                     [sys.executable, _PROGRAM, window_class],
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.windows = {}
        self.events = []
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        # The number that its windows are counted from.
        self.first = wait_for(f"{window_class} to run", lambda: self._event("ready", 0))["first"]

    def open(self, name, in_front=True, **how):
        """Opens a window and, unless told otherwise, brings it to the front."""
        said = self.tell("opened", do="open", name=name, **how)
        window = self.desktop.display.create_resource_object("window", said["window"])
        self.windows[name] = window
        if in_front:
            self.to_front(name)
        return window

    def to_front(self, name):
        wait_for(f"{name} to be on the screen", lambda: self._is_viewable(name))
        self.desktop.windows.activate(self.windows[name])

    def close(self, name):
        """Destroys a window, as its program does by itself."""
        self.tell("closed", do="close", name=name)
        del self.windows[name]

    def copy(self, name, text):
        self.tell("copied", do="copy", name=name, text=text)

    def give_focus_away(self, name, to):
        """From now on, whenever the window is given the focus, it hands it on to `to`."""
        self.tell("gives-focus-away", do="give-focus-away", name=name, to=to.id)

    def settle(self):
        """Waits until it has taken every key and every answer that was under way."""
        self.tell("answered", do="answer", name=None)

    def tell(self, answer, **command):
        """Sends a command and waits for the event that answers it."""
        before = len(self.events)
        self.process.stdin.write(json.dumps(command).encode() + b"\n")
        self.process.stdin.flush()
        return wait_for(f"{self.window_class} to say {answer!r}",
                        lambda: self._event(answer, before), 20, lambda: self.events[before:])

    def end(self):
        """Ends the process as a crash or a kill does; the server takes its windows away."""
        ids = [window.id for window in self.windows.values()]
        self.desktop.processes.stop(self.process)
        self._reader.join(5)
        wait_for(f"the windows of {self.window_class} to be gone",
                 lambda: not any(self.desktop.windows.exists(one) for one in ids))
        self.windows.clear()

    def chords(self):
        """What each window was pressed: ("canvas", "Ctrl+v"), in order."""
        return [(one["name"], one["chord"]) for one in list(self.events) if one["event"] == "chord"]

    def typed(self):
        """The same without the names of windows, as one text."""
        self.settle()
        return "".join(chord for _, chord in self.chords())

    def pasted(self):
        """What arrived in which window: ("canvas", "the text"), in order."""
        return [(one["name"], one["text"]) for one in list(self.events) if one["event"] == "pasted"]

    def requests(self):
        """The targets that its copies were asked for."""
        return [one["target"] for one in list(self.events) if one["event"] == "asked"]

    def has_said(self, name):
        return any(one["event"] == name for one in list(self.events))

    def _event(self, name, since):
        return next((one for one in self.events[since:] if one["event"] == name), None)

    def _is_viewable(self, name):
        return self.desktop.windows.is_viewable(self.windows[name])

    def _read(self):
        try:
            for line in self.process.stdout:
                self.events.append(json.loads(line))
        except ValueError:
            return
