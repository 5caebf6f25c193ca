# SPDX-License-Identifier: MIT
"""The windows of a desktop of sway: other programs' as the compositor tells of them, the program's
own by what it tells a screen reader."""

import collections

from .waiting import wait_for
from .wayland_windows import WaylandWindows
from .windows import Frame

SwayWindow = collections.namedtuple("SwayWindow", "id app_id title focused")


class SwayWindows(WaylandWindows):
    """With the face of the X11 desktop's windows, as far as both have it."""

    def __init__(self, desktop):
        super().__init__(desktop)
        self._desktop = desktop

    def with_class(self, name):
        """Windows of the application of that name, or X11 ones of that class, letters' case
        ignored."""
        return [window for window in self._all() if (window.app_id or "").lower() == name.lower()]

    def front(self):
        """The window in front, or nothing: none has the keyboard while the program's panel does."""
        return next((window for window in self._all() if window.focused), None)

    def active(self):
        front = self.front()
        return front.id if front else 0

    def activate(self, window):
        """Brings a window to the front as a taskbar does, and waits until it is."""
        self._desktop.sway(f"[con_id={window.id}] focus")
        self.wait_active(window)

    def wait_active(self, window, limit=20):
        wait_for(f"window {window.title!r} to be in front", lambda: self.active() == window.id,
                 limit, self.front)

    def has_focus(self, window):
        if isinstance(window, SwayWindow):
            return self.active() == window.id
        return super().has_focus(window)

    def close(self, window):
        """Asks the window's application to close it, as a title bar's button does."""
        self._desktop.sway(f"[con_id={window.id}] kill")

    def frame(self, window):
        if not isinstance(window, SwayWindow):
            return super().frame(window)
        place = next(node["rect"] for node in nodes_of(self._tree()) if node["id"] == window.id)
        return Frame(place["x"], place["y"], place["width"], place["height"])

    def pixel(self, x, y):
        """(red, green, blue) at a place on the first output."""
        width, _, pixels = self._desktop.picture()
        return tuple(pixels[3 * (int(y) * width + int(x)):][:3])

    def pixels(self, frame):
        """The first output's bytes within a frame, three to a pixel: red, green, blue."""
        width, _, pixels = self._desktop.picture()
        rows = range(frame.y, frame.y + frame.height)
        return b"".join(pixels[3 * (row * width + frame.x):][:3 * frame.width] for row in rows)

    def distinct_colours(self, frame):
        """How many colours a frame of the screen shows: one or two mean that nothing is drawn."""
        data = self.pixels(frame)
        return len({data[place:place + 3] for place in range(0, len(data), 3)})

    def screen_size(self):
        return self._desktop.size

    def _all(self):
        return [SwayWindow(node["id"], _application(node), node["name"], node["focused"])
                for node in nodes_of(self._tree()) if node.get("pid")]

    def _tree(self):
        return self._desktop.sway("-t", "get_tree")


def nodes_of(tree):
    """A node of the compositor's tree and all below it."""
    yield tree
    for node in tree.get("nodes", []) + tree.get("floating_nodes", []):
        yield from nodes_of(node)


def _application(node):
    return node.get("app_id") or node.get("window_properties", {}).get("class")
