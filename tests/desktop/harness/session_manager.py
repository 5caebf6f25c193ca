# SPDX-License-Identifier: MIT
"""The session that programs on the desktop belong to."""

import json
import os
import queue
import subprocess
import sys
import threading

_PROCESS = os.path.join(os.path.dirname(__file__), "session_manager_process.py")


class SessionManager:
    """A session that programs join which are started after this was made."""

    def __init__(self, desktop):
        self._process = desktop.start("session-manager", [sys.executable, _PROCESS],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._events = queue.Queue()
        threading.Thread(target=self._listen, daemon=True).start()
        desktop.env["SESSION_MANAGER"] = self._next()["address"]

    def end(self):
        """Logs out: programs are asked to save what they have, then told to end."""
        self._process.stdin.write(b"end\n")
        self._process.stdin.flush()

    def wait_for(self, event):
        """Waits for an event by its name; answers it and those that came before."""
        seen = []
        while not seen or seen[-1].get("event") != event:
            seen.append(self._next())
        return seen

    def _next(self):
        try:
            return self._events.get(timeout=20)
        except queue.Empty:
            raise AssertionError("the session manager told nothing") from None

    def _listen(self):
        for line in self._process.stdout:
            self._events.put(json.loads(line))
