# SPDX-License-Identifier: MIT
"""Trays of the older kind, which take a window of each program in, and the program's icon in them."""

import os

from Xlib import X
from Xlib import error as xerror

from .waiting import wait_for

_SELECTION = "_NET_SYSTEM_TRAY_S0"
_CLASS = ("vantorel", "Vantorel")
_LIMIT_OF_DIFFERENCE = 24  # of a channel's 255: what antialiasing leaves of a background

_TINT2 = """
rounded = 0
border_width = 0
background_color = {colour} {opacity}
border_color = #000000 0
panel_items = S
panel_size = 100% {height}
panel_position = {position} center horizontal
panel_background_id = 1
panel_dock = 0
systray_padding = 4 3 4
systray_background_id = 0
systray_icon_size = {icon}
"""


class EmbeddingTray:
    """One of `NAMES`, there from when this is made until it is stopped. `height` is in pixels, and
    `icon` the largest icon, 0 for one that fits."""

    NAMES = ("tint2", "trayer")

    def __init__(self, desktop, name, *, colour="#202326", position="bottom", height=30, icon=0,
                 opacity=100):
        self._desktop = desktop
        self._argv = getattr(self, f"_{name}")(colour, position, height, icon, opacity)
        self._process = None
        self.start()

    def start(self):
        self._process = self._desktop.start("embedding-tray", self._argv)
        wait_for("a tray", self._owner)

    def stop(self):
        self._desktop.processes.stop(self._process)
        wait_for("no tray", lambda: not self._owner())

    def _owner(self):
        display = self._desktop.display
        return display.get_selection_owner(display.intern_atom(_SELECTION)) != X.NONE

    def _tint2(self, colour, position, height, icon, opacity):
        path = os.path.join(self._desktop.files, "tint2rc")
        with open(path, "w", encoding="utf-8") as file:
            file.write(_TINT2.format(colour=colour, position=position, height=height, icon=icon,
                                     opacity=opacity))
        return ["tint2", "-c", path]

    @staticmethod
    def _trayer(colour, position, height, _icon, _opacity):
        return ["trayer", "--edge", position, "--align", "right", "--widthtype", "request",
                "--height", str(height), "--heighttype", "pixel", "--transparent", "true",
                "--alpha", "0", "--tint", colour.replace("#", "0x"), "--SetDockType", "true"]

    def icons(self):
        """The program's icons in a tray, each the frame of a window that is seen."""
        return [frame for window in self._windows() if (frame := self._seen(window))]

    def icon(self):
        """The frame of the program's one icon."""
        def alone():
            frames = self.icons()
            return frames[0] if len(frames) == 1 else None
        return wait_for("the program's icon in the tray", alone, 20, self.icons)

    def wait_gone(self):
        wait_for("no icon", lambda: not self.icons())

    def title(self):
        """What the icon's window is called, which is what trays show of it in words."""
        display = self._desktop.display
        for window in self._windows():
            name = window.get_full_property(display.intern_atom("_NET_WM_NAME"), X.AnyPropertyType)
            if name:
                return name.value.decode()
        return None

    def picture(self):
        """Rows of the icon's pixels as (red, green, blue), as the screen shows them."""
        x, y, width, height = self.icon()
        image = self._desktop.display.screen().root.get_image(x, y, width, height, X.ZPixmap,
                                                              0xffffffff)
        return [[tuple(image.data[4 * (row * width + column) + shift] for shift in (2, 1, 0))
                 for column in range(width)] for row in range(height)]

    def shape(self):
        """The icon as rows of what differs from its own corner."""
        picture = self.picture()
        paper = picture[0][0]
        return [[max(abs(a - b) for a, b in zip(pixel, paper)) > _LIMIT_OF_DIFFERENCE
                 for pixel in row] for row in picture]

    def wait_for_shape(self):
        """Waits until something is drawn, and answers it."""
        return wait_for("a picture in the tray",
                        lambda: (shape := self.shape()) and any(map(any, shape)) and shape)

    def ink(self):
        """The colour that differs most from the background, and the background."""
        picture = self.picture()
        paper = picture[0][0]
        pixels = [pixel for row in picture for pixel in row]
        return max(pixels, key=lambda pixel: abs(sum(pixel) - sum(paper))), paper

    def centre(self):
        x, y, width, height = self.icon()
        return x + width // 2, y + height // 2

    def click(self, button=1):
        self._desktop.pointer.click(*self.centre(), button)

    def _windows(self):
        root = self._desktop.display.screen().root
        found, waiting = [], [root]
        while waiting:
            window = waiting.pop()
            try:
                if window.get_wm_class() == _CLASS and self._desktop.windows.is_for_a_tray(window):
                    found.append(window)
                waiting += window.query_tree().children
            except xerror.XError:
                pass  # it has ended meanwhile
        return found

    def _seen(self, window):
        root = self._desktop.display.screen().root
        try:
            if window.get_attributes().map_state != X.IsViewable:
                return None
            size = window.get_geometry()
            place = root.translate_coords(window, 0, 0)
        except xerror.XError:
            return None
        return place.x, place.y, size.width, size.height
