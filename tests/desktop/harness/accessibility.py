# SPDX-License-Identifier: MIT
"""What a screen reader is told about a program."""

import json
import os
import subprocess
import sys

from .waiting import wait_for

_READER = os.path.join(os.path.dirname(__file__), "accessibility_reader.py")


class Element:
    """One accessible object as it was when it was read."""

    def __init__(self, data, path=()):
        self.role = data["role"]
        self.name = data["name"]
        self.description = data["description"]
        self.showing = data["showing"]
        self.enabled = data["enabled"]
        self.selected = data["selected"]
        self.focused = data["focused"]
        self.active = data["active"]
        self.checked = data["checked"]
        self.extents = data["extents"]
        self.text = data["text"]
        self.path = path
        self.children = [Element(child, (*path, index))
                         for index, child in enumerate(data["children"])]

    def __repr__(self):
        return f"<{self.role} {self.name!r}>"

    def walk(self):
        yield self
        for child in self.children:
            yield from child.walk()

    def find(self, role=None, name=None, showing=True):
        """Every object below with this role and this name; either may be left open."""
        return [element for element in self.walk()
                if (role is None or element.role == role)
                and (name is None or element.name == name)
                and (element.showing or not showing)]

    def centre(self):
        x, y, width, height = self.extents
        return x + width // 2, y + height // 2


class Accessibility:
    """The reader's process of one desktop."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._process = None

    def program(self, name, depth=24):
        """The accessible tree of a running program down to some depth, or nothing."""
        answer = self._ask({"read": name, "depth": depth})
        return None if answer is None else Element(answer)

    def press(self, name, element):
        """Performs an element's first action, as a screen reader's user does."""
        return self._ask({"press": [name, list(element.path)]})

    def focused(self):
        """The names of what readers were sent to since the last call; the first one begins."""
        return self._ask({"focused": True})

    def notified(self):
        """The notifications that readers say by themselves, since the last call; the first one
        begins."""
        return self._ask({"notified": True})

    def _ask(self, request):
        self._start()

        problems = []

        def asked():
            self._process.stdin.write(json.dumps(request).encode() + b"\n")
            self._process.stdin.flush()
            answer = json.loads(self._process.stdout.readline())
            problems.append(answer.get("problem"))
            return answer if "answer" in answer else None

        return wait_for(f"an answer of the accessibility bus to {request}", asked, 10,
                        lambda: problems[-1])["answer"]

    def _start(self):
        if self._process is None:
            self._process = self._desktop.start(
                "accessibility", [sys.executable, _READER], {"NO_AT_BRIDGE": "0"},
                stdin=subprocess.PIPE, stdout=subprocess.PIPE)
