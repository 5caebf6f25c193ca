# SPDX-License-Identifier: MIT
"""What an owner of the clipboard tells of what happens to it, on whichever desktop."""

import time

from .waiting import wait_for


class Owner:
    """Its `events` have names: "owned", "request" with the "target" that was asked for, "lost"."""

    def __init__(self):
        self.events = []
        self._began = time.monotonic()

    def requests(self):
        """The names of the targets asked for so far, in order."""
        return [event["target"] for event in list(self.events) if event["event"] == "request"]

    def contents_requested(self):
        """What was asked for beyond the list of targets."""
        return [name for name in self.requests()
                if name not in ("TARGETS", "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS")]

    def wait_until_owned(self):
        wait_for("the owner to own the clipboard", lambda: self._has("owned"))

    def wait_until_known(self):
        """Until its list of forms is known to others, and so is what they may not ask for."""
        raise NotImplementedError

    def wait_until_asked(self, target=None, limit=20):
        """Until it has been asked for that target; for none in particular: for any at all."""
        wait_for(f"a request for {target or 'anything'}",
                 lambda: target in self.requests() if target else self.requests(), limit,
                 self.requests)

    def wait_until_asked_for_contents(self, limit=20):
        return wait_for("a request for contents", self.contents_requested, limit, self.requests)

    def age(self):
        """Seconds since it was started."""
        return time.monotonic() - self._began

    def lost(self):
        return self._has("lost")

    def stop(self):
        """Ends it, and its contents with it."""
        raise NotImplementedError

    def _has(self, name):
        return any(event["event"] == name for event in list(self.events))
