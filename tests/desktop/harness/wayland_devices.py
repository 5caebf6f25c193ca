# SPDX-License-Identifier: MIT
"""The keyboard and the pointer of a Wayland seat: what its user does reaches every window, not X11
ones alone."""

import ctypes
import itertools
import os
import struct
import time

from .keyboard import PHYSICAL, press_chord
from .waiting import wait_for
from .wayland_wire import packed

_X11_DISTANCE = 8  # between the kernel's codes and those that X11 has for the same keys
_MODIFIERS = {"Shift": 1, "Ctrl": 4, "Alt": 8, "Super": 64}  # bits of the keymap's real ones
_CHARACTERS = {" ": "Space", "\n": "Return", ">": "Shift+."}
_BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}
_WHEEL = {4: -1, 5: 1}
_NOTCH = 15  # as far as a wheel's notch moves, in the protocol's units
_VIRTUAL = "zwp_virtual_keyboard_manager_v1"
_FAKE = "org_kde_kwin_fake_input"


class WaylandKeyboard:
    """Presses keys at their physical places. Its layout is its own where the compositor has virtual
    keyboards, else the seat's. To be there before the first window: programs miss the first keys of
    a keyboard that a seat without one gets."""

    def __init__(self, wire, layout="us"):
        self._wire = wire
        self._held = 0
        if _VIRTUAL in wire.offered:
            self._plug_in(layout)
        else:
            self._device = None
            self._fake = _asked(wire)
        wire.wait()

    def down(self, key):
        self._key(key, 1)

    def up(self, key):
        self._key(key, 0)

    def tap(self, key):
        self.down(key)
        self.up(key)

    def chord(self, text):
        """Presses a chord as a hand does: "Super+Shift+v", in order down and back up."""
        press_chord(self, text)

    def type(self, text):
        """Types characters of the American layout."""
        for letter in text:
            key = _CHARACTERS.get(letter, letter)
            self.chord(f"Shift+{key.lower()}" if letter.isupper() else key)

    def _plug_in(self, layout):
        self._device = _made(self._wire, _VIRTUAL)
        keymap = _keymap(layout)
        file = os.memfd_create("keymap")
        try:
            os.write(file, keymap)
            self._wire.send(self._device, 0, struct.pack("=2I", 1, len(keymap)), file)
        finally:
            os.close(file)

    def _key(self, key, state):
        code = PHYSICAL[key] - _X11_DISTANCE
        if self._device is None:
            self._wire.send(self._fake, 10, struct.pack("=2I", code, state))
        else:
            self._wire.send(self._device, 1, struct.pack("=3I", _now(), code, state))
            bit = _MODIFIERS.get(key, 0)
            self._held = self._held | bit if state else self._held & ~bit
            self._wire.send(self._device, 2, struct.pack("=4I", self._held, 0, 0, 0))
        self._wire.wait()


class WaylandPointer:
    """Moves and clicks at places on outputs side by side, which are `size` together, where the
    compositor has virtual pointers."""

    def __init__(self, wire, size):
        self._wire = wire
        self._size = size
        self._device = _made(wire, "zwlr_virtual_pointer_manager_v1")

    def move(self, x, y):
        """As a hand does, which never comes to rest in one step: what it enters hears of a motion."""
        for step in (1, 0):
            self._tell(1, "=5I", _now(), max(0, round(x) - step), round(y), *self._size)

    def click(self, x, y, button=1):
        self.move(x, y)
        if button in _WHEEL:
            self._scroll(_WHEEL[button])
        else:
            self._button(button, 1)
            self._button(button, 0)

    def drag(self, start, end, steps=8):
        """Presses at `start`, moves in steps as a hand does, releases at `end`."""
        self.move(*start)
        self._button(1, 1)
        for step in range(1, steps + 1):
            self.move(start[0] + (end[0] - start[0]) * step / steps,
                      start[1] + (end[1] - start[1]) * step / steps)
        self._button(1, 0)

    def carry(self, start, end, there):
        """Drags what follows only once its program has noticed: until `there()` is true."""
        self.move(*start)
        self._button(1, 1)
        steps = itertools.count(1)

        def follows():
            part = min(next(steps) / 20, 1)
            self.move(start[0] + (end[0] - start[0]) * part, start[1] + (end[1] - start[1]) * part)
            return there()

        try:
            wait_for("what is dragged to follow", follows)
        finally:
            self._button(1, 0)

    def _button(self, button, state):
        self._tell(2, "=3I", _now(), _BUTTONS[button], state)

    def _scroll(self, notches):
        distance = notches * _NOTCH * 256
        self._wire.send(self._device, 5, struct.pack("=I", 0))
        self._tell(7, "=2I2i", _now(), 0, distance, notches)

    def _tell(self, request, form, *numbers):
        """One request, and the end of the frame that it is in."""
        self._wire.send(self._device, request, struct.pack(form, *numbers))
        self._wire.send(self._device, 4)
        self._wire.wait()


class FakePointer(WaylandPointer):
    """The same where KWin lets a program be one."""

    def __init__(self, wire):
        self._wire = wire
        self._device = _asked(wire)

    def move(self, x, y):
        self._tell(9, "=2i", round(x * 256), round(y * 256))

    def _button(self, button, state):
        self._tell(2, "=2I", _BUTTONS[button], state)

    def _scroll(self, notches):
        self._tell(3, "=Ii", 0, notches * _NOTCH * 256)

    def _tell(self, request, form, *numbers):
        self._wire.send(self._device, request, struct.pack(form, *numbers))
        self._wire.wait()


def _asked(wire):
    """KWin's devices for programs, which it has been asked for."""
    fake = wire.bind(_FAKE, 4)
    wire.send(fake, 0, packed("tests") + packed("pressing keys"))
    return fake


def _made(wire, manager):
    """A device for the seat, by a request that is the first of its manager."""
    seat, bound, made = wire.bind("wl_seat"), wire.bind(manager), wire.new_id()
    wire.send(bound, 0, struct.pack("=2I", seat, made))
    return made


def _now():
    return int(time.monotonic() * 1000) & 0xffffffff


class _Names(ctypes.Structure):
    _fields_ = [(name, ctypes.c_char_p)
                for name in ("rules", "model", "layout", "variant", "options")]


def _keymap(layout):
    xkb = ctypes.CDLL("libxkbcommon.so.0")
    xkb.xkb_context_new.restype = ctypes.c_void_p
    xkb.xkb_keymap_new_from_names.restype = ctypes.c_void_p
    xkb.xkb_keymap_get_as_string.restype = ctypes.c_char_p
    context = ctypes.c_void_p(xkb.xkb_context_new(0))
    names = _Names(b"evdev", b"pc105", layout.encode(), b"", b"")
    keymap = ctypes.c_void_p(xkb.xkb_keymap_new_from_names(context, ctypes.byref(names), 0))
    return xkb.xkb_keymap_get_as_string(keymap, 1) + b"\0"
