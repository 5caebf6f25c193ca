# SPDX-License-Identifier: MIT
"""A whole screen reader, and what it says. It has no voice here: its speech is written down."""

import os
import re

from .waiting import wait_for

# What it runs as it starts: every utterance goes to a file at once, and keys are not echoed.
_CUSTOMIZATIONS = """
import logging
import orca.settings
logging.getLogger("speech").addHandler(logging.FileHandler({path!r}))
orca.settings.enableKeyEcho = False
"""
_SPOKEN = re.compile(r"^SPEECH OUTPUT: '(.*)'(?: voice=\w+)?$", re.MULTILINE)


class ScreenReader:
    """Orca on one desktop, started before the program that it is to read."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._log = os.path.join(desktop.logs, "speech.log")
        self._forgotten = 0

    def start(self):
        own = os.path.join(self._desktop.env["XDG_DATA_HOME"], "orca")
        os.makedirs(own, exist_ok=True)
        with open(os.path.join(own, "orca-customizations.py"), "w", encoding="utf-8") as file:
            file.write(_CUSTOMIZATIONS.format(path=self._log))
        # No daemon of a voice is started either.
        self._desktop.start("orca", ["orca"], {"NO_AT_BRIDGE": "0", "SPEECHD_CMD": "/bin/false"})
        self.wait_for("Screen reader on")
        return self

    def forget(self):
        """What was said so far does not count any more."""
        self._forgotten = len(self._all())

    def said(self):
        """What was said since the last `forget`, in order."""
        return self._all()[self._forgotten:]

    def wait_for(self, words, limit=30):
        """Waits until something is said that holds these words; answers all that was said."""
        return wait_for(f"the words {words!r}",
                        lambda: any(words in one for one in self.said()) and self.said(), limit,
                        self.said)

    def _all(self):
        if not os.path.exists(self._log):
            return []
        with open(self._log, encoding="utf-8", errors="replace") as file:
            return _SPOKEN.findall(file.read())
