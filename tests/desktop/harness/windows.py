# SPDX-License-Identifier: MIT
"""What stands on the screen: windows by title and class, their places, their pixels."""

import collections
import time

from Xlib import X, Xatom, error
from Xlib.protocol import event as xevent

from .waiting import wait_for

Frame = collections.namedtuple("Frame", "x y width height")


class Windows:
    """The windows of one display, seen from outside."""

    def __init__(self, display):
        self._display = display
        self._root = display.screen().root

    def all(self, visible=True):
        """Every window that carries a title, top-level or inside a window manager's frame."""
        found = []
        self._collect(self._root, visible, found)
        return found

    def titled(self, title, visible=True):
        """The windows with exactly this title."""
        return [window for window in self.all(visible) if self.title(window) == title]

    def with_class(self, name, visible=True):
        """Windows whose class or instance is `name`, letters' case ignored."""
        return [window for window in self.all(visible)
                if name.lower() in [part.lower() for part in self.wm_class(window)]]

    def titles(self):
        return [self.title(window) for window in self.all()]

    def wait_for_title(self, title, limit=20):
        return wait_for(f"a window titled {title!r}", lambda: self.titled(title), limit,
                        self.titles)[0]

    def wait_for_title_containing(self, part, limit=20):
        return wait_for(
            f"a window whose title contains {part!r}",
            lambda: [window for window in self.all() if part in (self.title(window) or "")],
            limit, self.titles)[0]

    def wait_gone(self, title, limit=20):
        wait_for(f"no window titled {title!r}", lambda: not self.titled(title), limit, self.titles)

    def wait_window_gone(self, window, limit=20):
        wait_for(f"window {window.id:#x} to be gone", lambda: not self.exists(window.id), limit)

    def title(self, window):
        return self._text(window, "_NET_WM_NAME") or self._text(window, "WM_NAME")

    def wm_class(self, window):
        try:
            return window.get_wm_class() or ()
        except error.XError:
            return ()

    def pid(self, window):
        answer = self._property(window, "_NET_WM_PID")
        return answer[0] if answer else None

    def frame(self, window):
        """Where the window's own area (no title bar) is on the screen."""
        geometry = window.get_geometry()
        place = self._root.translate_coords(window, 0, 0)
        return Frame(place.x, place.y, geometry.width, geometry.height)

    def exists(self, number):
        """Whether the server knows a window of this number."""
        try:
            self._display.create_resource_object("window", number).get_attributes()
        except error.XError:
            return False
        return True

    def is_viewable(self, window):
        try:
            return window.get_attributes().map_state == X.IsViewable
        except error.XError:
            return False

    def is_for_a_tray(self, window):
        """Whether it was made to be taken in by a tray: the toolkit's windows tell window managers
        of what type they are."""
        return (self._property(window, "_XEMBED_INFO") is not None
                and self._property(window, "_NET_WM_WINDOW_TYPE") is None)

    def on_every_desktop(self, window):
        return list(self._property(window, "_NET_WM_DESKTOP") or []) == [0xFFFFFFFF]

    def is_utility(self, window):
        """Whether it is an accessory of others, which taskbars leave out."""
        utility = self._display.intern_atom("_NET_WM_WINDOW_TYPE_UTILITY")
        return list(self._property(window, "_NET_WM_WINDOW_TYPE") or [])[:1] == [utility]

    def active(self):
        answer = self._property(self._root, "_NET_ACTIVE_WINDOW")
        return answer[0] if answer else 0

    def state_active(self, number):
        """Writes down a window as the active one, past the window manager."""
        self._root.change_property(self._display.intern_atom("_NET_ACTIVE_WINDOW"), Xatom.WINDOW,
                                   32, [number])
        self._display.sync()

    def focus(self):
        """The id of the window with the keyboard's focus."""
        focus = self._display.get_input_focus().focus
        return focus if isinstance(focus, int) else focus.id

    def activate(self, window):
        """Brings a window to the front as a pager does, and waits until it is."""
        asked = []

        def in_front():
            # A window that is just being shown may take the place again: so it is asked for again.
            if not asked or time.monotonic() - asked[-1] > 1:
                asked.append(time.monotonic())
                self._ask_root(window, "_NET_ACTIVE_WINDOW", [2, X.CurrentTime, 0, 0, 0])
            return self.active() == window.id and self.has_focus(window)

        wait_for(f"window {self.title(window)!r} to be in front", in_front, 20,
                 lambda: f"active {self.active():#x}, focus {self.focus():#x}")

    def wait_active(self, window, limit=20):
        wait_for(f"window {self.title(window)!r} to be in front",
                 lambda: self.active() == window.id and self.has_focus(window), limit,
                 lambda: f"active {self.active():#x}, focus {self.focus():#x}")

    def has_focus(self, window):
        """Whether the focus is on the window or somewhere inside it."""
        return self._is_inside(self.focus(), window.id)

    def menu_has_keyboard(self, _):
        """Whether somebody has grabbed the keyboard, as menus do."""
        # Seldom, since looking takes the keyboard itself for a moment.
        time.sleep(0.05)
        status = self._root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
        self._display.ungrab_keyboard(X.CurrentTime)
        self._display.sync()
        return status == X.AlreadyGrabbed

    def close(self, window):
        """Asks the window's application to close it, as a title bar's button does."""
        self._ask_root(window, "_NET_CLOSE_WINDOW", [X.CurrentTime, 2, 0, 0, 0])

    def set_state(self, window, name):
        """Asks the window manager to set a state of a window, and waits until it is set."""
        state = self._display.intern_atom(f"_NET_WM_STATE_{name}")
        self._ask_root(window, "_NET_WM_STATE", [1, state, 0, 1, 0])
        wait_for(f"the state {name}",
                 lambda: state in (self._property(window, "_NET_WM_STATE") or []))

    def set_desktops(self, count):
        """Asks the window manager for as many virtual desktops, and waits for them."""
        self._ask_root(self._root, "_NET_NUMBER_OF_DESKTOPS", [count, 0, 0, 0, 0])
        wait_for(f"{count} virtual desktops",
                 lambda: list(self._property(self._root, "_NET_NUMBER_OF_DESKTOPS")) == [count])

    def switch_desktop(self, number):
        """Goes to a virtual desktop, counted from 0, as a pager does."""
        self._ask_root(self._root, "_NET_CURRENT_DESKTOP", [number, X.CurrentTime, 0, 0, 0])
        wait_for(f"virtual desktop {number}",
                 lambda: list(self._property(self._root, "_NET_CURRENT_DESKTOP")) == [number])

    def show_background(self, shown=True):
        """Puts every window out of sight, or back, as a button on a taskbar does."""
        self._ask_root(self._root, "_NET_SHOWING_DESKTOP", [int(shown), 0, 0, 0, 0])
        wait_for("the desktop's background" if shown else "windows before the background",
                 lambda: list(self._property(self._root, "_NET_SHOWING_DESKTOP")) == [int(shown)])

    def pixel(self, x, y):
        """(red, green, blue) at a place on the screen."""
        image = self._root.get_image(int(x), int(y), 1, 1, X.ZPixmap, 0xffffffff)
        blue, green, red = image.data[0], image.data[1], image.data[2]
        return red, green, blue

    def pixels(self, frame):
        """The screen's bytes within a frame, four to a pixel: blue, green, red, unused."""
        return self._root.get_image(frame.x, frame.y, frame.width, frame.height, X.ZPixmap,
                                    0xffffffff).data

    def distinct_colours(self, frame):
        """How many colours a frame of the screen shows: one or two mean that nothing is drawn."""
        data = self.pixels(frame)
        return len({data[place:place + 3] for place in range(0, len(data), 4)})

    def screen_size(self):
        screen = self._display.screen()
        return screen.width_in_pixels, screen.height_in_pixels

    def _ask_root(self, window, name, data):
        message = xevent.ClientMessage(window=window, client_type=self._display.intern_atom(name),
                                       data=(32, data))
        self._root.send_event(message,
                              event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self._display.sync()

    def _is_inside(self, inner, outer):
        for _ in range(32):
            if inner == outer:
                return True
            if inner in (0, 1, self._root.id):
                return False
            try:
                parent = self._display.create_resource_object("window", inner).query_tree().parent
            except error.XError:
                return False
            inner = parent.id if parent else 0
        return False

    def _collect(self, window, visible, found):
        try:
            children = window.query_tree().children
        except error.XError:
            return
        for child in children:
            try:
                if visible and child.get_attributes().map_state != X.IsViewable:
                    continue
                if self.title(child):
                    found.append(child)
            except error.XError:
                continue
            self._collect(child, visible, found)

    def _property(self, window, name):
        try:
            answer = window.get_full_property(self._display.intern_atom(name), X.AnyPropertyType)
        except error.XError:
            return None
        return answer.value if answer is not None else None

    def _text(self, window, name):
        value = self._property(window, name)
        if value is None:
            return None
        return value.decode("utf-8", "replace") if isinstance(value, bytes) else value
