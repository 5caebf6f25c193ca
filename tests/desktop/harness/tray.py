"""The desktop's tray, and the program's item in it."""

import json
import os
import subprocess
import sys

from .waiting import wait_for

_PROCESS = os.path.join(os.path.dirname(__file__), "tray_process.py")


class Tray:
    """A tray that is there from when this is made until it is stopped."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._process = desktop.start("tray", [sys.executable, _PROCESS], stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE)
        self._read()

    def stop(self):
        self._desktop.processes.stop(self._process)

    def item(self):
        """The registered item's properties, or nothing."""
        return self._ask({"ask": "item"})

    def wait_for_item(self):
        return wait_for("the program's item in the tray", self.item)

    def rows(self):
        """The menu's visible rows from top to bottom, separators left out."""
        menu = self._ask({"ask": "menu"})
        return [row for row in menu["rows"] if row["visible"] and not row["separator"]]

    def labels(self):
        return [row["label"] for row in self.rows()]

    def row(self, *labels):
        """A row by its label, or by the labels of the menus above it and its own."""
        rows = self.rows()
        for label in labels:
            found = [row for row in rows if row["label"] == label and row["visible"]]
            if not found:
                raise AssertionError(f"no row {label!r} among {[row['label'] for row in rows]}")
            rows = found[0]["rows"]
        return found[0]

    def click(self, *labels):
        self._ask({"ask": "click", "id": self.row(*labels)["id"]})

    def activate(self):
        """A left click on the item."""
        self._ask({"ask": "activate"})

    def _ask(self, request):
        self._process.stdin.write(json.dumps(request).encode() + b"\n")
        self._process.stdin.flush()
        return self._read()

    def _read(self):
        line = self._process.stdout.readline()
        if not line:
            raise AssertionError("the tray ended")
        answer = json.loads(line)
        if "problem" in answer:
            raise AssertionError(answer["problem"])
        return answer["answer"]
