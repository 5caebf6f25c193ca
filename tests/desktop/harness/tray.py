# SPDX-License-Identifier: MIT
"""The desktop's tray, and the program's item in it."""

import json
import os
import signal
import subprocess
import sys

from .waiting import wait_for

_PROCESS = os.path.join(os.path.dirname(__file__), "tray_process.py")


class Tray:
    """A tray that is there from when this is made until it is stopped; without a host its items are
    collected and not shown."""

    def __init__(self, desktop, host=True):
        self._desktop = desktop
        argv = [sys.executable, _PROCESS] + ([] if host else ["--without-host"])
        self._process = desktop.start("tray", argv, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._read()

    def stop(self):
        self._desktop.processes.stop(self._process)

    def fall_silent(self):
        """Stays on the bus and answers nothing any more."""
        os.kill(self._process.pid, signal.SIGSTOP)

    def speak_again(self):
        """Answers what it was asked meanwhile, too."""
        os.kill(self._process.pid, signal.SIGCONT)

    def set_host(self, there):
        """Somebody who shows the items comes, or goes."""
        self._ask({"ask": "host", "there": there})

    def item(self):
        """The registered item's properties, or nothing."""
        return self._ask({"ask": "item"})

    def wait_for_item(self):
        return wait_for("the program's item in the tray", self.item)

    def registrations(self):
        return self._ask({"ask": "registrations"})

    def wait_for_tool_tip(self, text, limit=20):
        wait_for(f"the tool tip {text!r}", lambda: self._tool_tip() == text, limit, self._tool_tip)

    def _tool_tip(self):
        try:
            return (self.item() or {}).get("toolTip")
        except AssertionError:
            return None  # the item's program has ended

    def signals(self):
        """What the item has announced since this was last asked."""
        return self._ask({"ask": "signals"})

    def all_rows(self):
        """The menu's rows from top to bottom, separators too."""
        return self._ask({"ask": "menu"})["rows"]

    def rows(self):
        """The menu's visible rows from top to bottom, separators left out."""
        return [row for row in self.all_rows() if row["visible"] and not row["separator"]]

    def labels(self):
        return [row["label"] for row in self.rows()]

    def row(self, *labels):
        """A row by its label, or by the labels of the menus above it and its own."""
        return _find(self.rows(), labels)

    def row_without_notice(self, *labels):
        """The same in a tray that does not say that it is about to show the menu."""
        return _find(self._ask({"ask": "stale menu"})["rows"], labels)

    def click(self, *labels):
        self.click_row(self.row(*labels))

    def click_row(self, row):
        """A click on a row that was seen before."""
        self._ask({"ask": "click", "id": row["id"]})

    def activate(self):
        """A left click on the item."""
        self._call("Activate", 0, 0)

    def activate_secondary(self):
        """A click with the middle button."""
        self._call("SecondaryActivate", 0, 0)

    def want_menu(self, x, y):
        """A right click, in a tray that shows no menus itself."""
        self._call("ContextMenu", x, y)

    def _call(self, method, x, y):
        self._ask({"ask": "call", "method": method, "x": x, "y": y})

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


def _find(rows, labels):
    found = []
    for label in labels:
        found = [row for row in rows if row["label"] == label and row["visible"]]
        if not found:
            raise AssertionError(f"no row {label!r} among {[row['label'] for row in rows]}")
        rows = found[0]["rows"]
    return found[0]
