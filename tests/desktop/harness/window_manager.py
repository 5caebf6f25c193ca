# SPDX-License-Identifier: MIT
"""The window managers that the program is proved under, none of them with a screen to look at."""

import os
import signal

from Xlib import X
from Xlib import error as xerror

from .waiting import wait_for

_OPENBOX = os.path.join(os.path.dirname(__file__), "openbox.xml")

# The compositors that some of them carry are off: a test that wants one starts one of its own.
_COMMANDS = {
    "openbox": ["openbox", "--replace", "--sm-disable", "--config-file", _OPENBOX],
    "metacity": ["metacity", "--replace", "--sm-disable", "--no-composite"],
    "marco": ["marco", "--replace", "--sm-disable", "--no-composite"],
    "xfwm4": ["xfwm4", "--replace", "--sm-client-disable", "--compositor=off"],
    "kwin_x11": ["kwin_x11", "--replace"],
}
_ENVIRONMENT = {"kwin_x11": {"KWIN_COMPOSE": "N"}}
NAMES = tuple(_COMMANDS)


class WindowManager:
    """The one window manager of a desktop: started, replaced by another, or ended."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.name = None
        self.process = None

    def start(self, name):
        """Starts the one of this name and waits until it manages the screen."""
        before = self._managing()
        self.name = name
        self.process = self._desktop.start(name, _COMMANDS[name], _ENVIRONMENT.get(name))

        def manages():
            if self.process.poll() is not None:
                raise AssertionError(f"{name} ended with {self.process.returncode}")
            return self._managing() not in (0, before)

        wait_for(f"{name} to manage the screen", manages)

    def replace(self, name):
        """Lets another one take the screen over, as a user does who tries one."""
        before = self.process
        self.start(name)
        wait_for("the window manager before to end", lambda: before.poll() is not None)

    def kill(self):
        """Ends it without a chance to tidy up; what it wrote on the root window stays."""
        self._desktop.processes.stop(self.process, signal.SIGKILL)
        wait_for("nobody to manage the screen", lambda: not self._managing())

    def _managing(self):
        """The window by which the one that runs now is known, 0 when there is none."""
        display = self._desktop.display
        atom = display.intern_atom("_NET_SUPPORTING_WM_CHECK")
        stated = _window_in(display.screen().root, atom)
        if not stated:
            return 0
        # It names itself as well: what a dead one left on the root window does not count.
        return stated if _window_in(display.create_resource_object("window", stated),
                                    atom) == stated else 0


def _window_in(window, atom):
    try:
        answer = window.get_full_property(atom, X.AnyPropertyType)
    except xerror.XError:
        return 0
    return answer.value[0] if answer is not None and len(answer.value) else 0
