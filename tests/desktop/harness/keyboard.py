# SPDX-License-Identifier: MIT
"""Real keys and a real pointer, through the XTEST extension."""

import itertools

from Xlib import X, XK
from Xlib.ext import xtest

from .waiting import wait_for

# Where keys are, whatever the layout says they carry (evdev keycodes, as Xvfb has them). The letters
# are those of an American keyboard.
PHYSICAL = {
    **{letter: code for row, first in (("1234567890", 10), ("qwertyuiop[", 24), ("asdfghjkl", 38),
                                       ("zxcvbnm", 52)) for code, letter in enumerate(row, first)},
    "Super": 133, "Shift": 50, "Ctrl": 37, "Alt": 64, "CapsLock": 66, "NumLock": 77, "Menu": 135,
    "Return": 36, "KeypadEnter": 104, "Escape": 9, "Delete": 119, "BackSpace": 22, "Space": 65,
    "Up": 111, "Down": 116, "Left": 113, "Right": 114, "Home": 110, "End": 115, "Insert": 118,
    "Tab": 23, "F2": 68, "F4": 70, "F10": 76, ".": 60,
}
MODIFIERS = ("Super", "Ctrl", "Alt", "Shift")

XK.load_keysym_group("hebrew")


def press_chord(keyboard, text):
    """Its keys in order down, and back up."""
    keys = text.split("+")
    for key in keys:
        keyboard.down(key)
    for key in reversed(keys):
        keyboard.up(key)


class Keyboard:
    """Presses keys at their physical places, or finds the key that yields a character."""

    def __init__(self, display):
        self._display = display

    def down(self, key):
        xtest.fake_input(self._display, X.KeyPress, PHYSICAL[key])
        self._display.sync()

    def up(self, key):
        xtest.fake_input(self._display, X.KeyRelease, PHYSICAL[key])
        self._display.sync()

    def tap(self, key):
        self.down(key)
        self.up(key)

    def chord(self, text):
        """Presses a chord as a hand does: "Super+Shift+v", in order down and back up."""
        press_chord(self, text)

    def type(self, text):
        """Types characters of the active layout's first two levels."""
        for character in text:
            self._press_character(character)
        self._display.sync()

    def locked(self):
        """The lock modifiers in force: a mask of X.LockMask and X.Mod2Mask."""
        return self._display.screen().root.query_pointer().mask & (X.LockMask | X.Mod2Mask)

    def refresh_mapping(self):
        """To be called after the layout was changed from outside."""
        info = self._display.display.info
        count = info.max_keycode - info.min_keycode + 1
        self._display._keymap_codes = [()] * 256
        self._display._keymap_syms = {}
        self._display._update_keymap(info.min_keycode, count)

    def _press_character(self, character):
        names = {"\n": "Return", "\t": "Tab", " ": "space"}
        keysym = XK.string_to_keysym(names.get(character, character)) or _keysym(character)
        places = [place for place in self._display.keysym_to_keycodes(keysym) if place[1] in (0, 1)]
        if not places:
            raise ValueError(f"no key of this layout yields {character!r}")
        keycode, level = min(places, key=lambda place: place[1])
        shift = PHYSICAL["Shift"]
        if level == 1:
            xtest.fake_input(self._display, X.KeyPress, shift)
        xtest.fake_input(self._display, X.KeyPress, keycode)
        xtest.fake_input(self._display, X.KeyRelease, keycode)
        if level == 1:
            xtest.fake_input(self._display, X.KeyRelease, shift)


class Pointer:
    """The pointer: moves and clicks at places on the screen."""

    def __init__(self, display):
        self._display = display

    def move(self, x, y):
        xtest.fake_input(self._display, X.MotionNotify, x=int(x), y=int(y))
        self._display.sync()

    def click(self, x, y, button=1):
        self.move(x, y)
        xtest.fake_input(self._display, X.ButtonPress, button)
        xtest.fake_input(self._display, X.ButtonRelease, button)
        self._display.sync()

    def hold(self, x, y, meanwhile):
        """Presses there, and lets go when `meanwhile` has returned."""
        self.move(x, y)
        xtest.fake_input(self._display, X.ButtonPress, 1)
        self._display.sync()
        try:
            meanwhile()
        finally:
            xtest.fake_input(self._display, X.ButtonRelease, 1)
            self._display.sync()

    def drag(self, start, end, steps=8):
        """Presses at `start`, moves in steps as a hand does, releases at `end`."""
        self.move(*start)
        xtest.fake_input(self._display, X.ButtonPress, 1)
        for step in range(1, steps + 1):
            self.move(start[0] + (end[0] - start[0]) * step / steps,
                      start[1] + (end[1] - start[1]) * step / steps)
        xtest.fake_input(self._display, X.ButtonRelease, 1)
        self._display.sync()

    def carry(self, start, end, there):
        """Drags what follows only once its window manager has noticed: until `there()` is true."""
        self.move(*start)
        xtest.fake_input(self._display, X.ButtonPress, 1)
        steps = itertools.count(1)

        def follows():
            part = min(next(steps) / 20, 1)
            self.move(start[0] + (end[0] - start[0]) * part, start[1] + (end[1] - start[1]) * part)
            return there()

        try:
            wait_for("what is dragged to follow", follows)
        finally:
            xtest.fake_input(self._display, X.ButtonRelease, 1)
            self._display.sync()

    def position(self):
        answer = self._display.screen().root.query_pointer()
        return answer.root_x, answer.root_y


def _keysym(character):
    code = ord(character)
    if "א" <= character <= "ת":  # a script whose symbols are older than the rule for the others
        return XK.XK_hebrew_aleph + code - ord("א")
    return code if code < 0x100 else 0x01000000 + code
