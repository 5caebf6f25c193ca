# SPDX-License-Identifier: MIT
"""What the desktop's notification service shows."""

import json
import os
import subprocess
import sys

from .waiting import wait_for

_PROCESS = os.path.join(os.path.dirname(__file__), "notification_process.py")


class NotificationService:
    """A service that is there from when this is made until it is stopped."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._process = desktop.start("notifications", [sys.executable, _PROCESS],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._read()

    def stop(self):
        self._desktop.processes.stop(self._process)

    def shown(self):
        return self._ask({"ask": "shown"})

    def wait_for_title(self, title):
        """The shown message with that title."""
        def found():
            return [message for message in self.shown() if message["title"] == title]
        return wait_for(f"the notification {title!r}", found)[0]

    def wait_until_empty(self):
        wait_for("no notification", lambda: not self.shown())

    def press(self, message):
        """A click on the message's only button."""
        key, = message["actions"]
        self._ask({"ask": "press", "id": message["id"], "action": key})

    def _ask(self, request):
        self._process.stdin.write(json.dumps(request).encode() + b"\n")
        self._process.stdin.flush()
        return self._read()

    def _read(self):
        line = self._process.stdout.readline()
        if not line:
            raise AssertionError("the notification service ended")
        return json.loads(line)["answer"]
