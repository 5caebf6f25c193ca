# SPDX-License-Identifier: MIT
"""The windows of the program where no other program is told of them: by what it tells a screen
reader, which has a window's place from where the program put it."""

from .accessibility import Accessibility
from .waiting import wait_for
from .windows import Frame


class WaylandWindows:
    """As much of the X11 desktop's windows as can be had here."""

    def __init__(self, desktop, program="vantorel"):
        self._accessibility = Accessibility(desktop)
        self._program = program

    def shown(self):
        program = self._accessibility.program(self._program, depth=1)
        return [] if program is None else [each for each in program.children if each.showing]

    def titled(self, title):
        return [window for window in self.shown() if window.name == title]

    def titles(self):
        return [window.name for window in self.shown()]

    def wait_for_title(self, title, limit=20):
        return wait_for(f"a window titled {title!r}", lambda: self.titled(title), limit,
                        self.titles)[0]

    def wait_gone(self, title, limit=20):
        wait_for(f"no window titled {title!r}", lambda: not self.titled(title), limit, self.titles)

    def has_focus(self, window):
        return any(each.active for each in self.titled(window.name))

    def menu_has_keyboard(self, menu):
        return self.has_focus(menu)

    def focus(self):
        """A number, for messages: of the window that has the keyboard, among those shown."""
        return next((number for number, each in enumerate(self.shown()) if each.active), -1)

    def is_for_a_tray(self, _):
        return False

    def frame(self, window):
        return Frame(*window.extents)
