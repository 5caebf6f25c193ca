# SPDX-License-Identifier: MIT
"""The keyboard and the pointer of a Wayland desktop: devices that compositors of the wlroots kind
let a program make."""

import array
import socket
import struct
import tempfile
import time

from .keyboard import PHYSICAL

_KEYMAP = """xkb_keymap {
  xkb_keycodes { include "evdev+aliases(qwerty)" };
  xkb_types { include "complete" };
  xkb_compat { include "complete" };
  xkb_symbols { include "pc+us+inet(evdev)" };
};"""

_X11_DISTANCE = 8  # between the kernel's codes and those that X11 has for the same keys
_LETTERS = {letter: code for row, first in (("qwertyuiop", 16), ("asdfghjkl", 30), ("zxcvbnm", 44),
                                            ("1234567890", 2))
            for code, letter in enumerate(row, first)}
_MODIFIERS = {"Shift": 1, "Ctrl": 4, "Alt": 8, "Super": 64}
_BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}
_DISPLAY = 1


class Wire:
    """A connection to the compositor that speaks the protocol's bytes itself."""

    def __init__(self, display):
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._socket.connect(display)
        self._arrived = b""
        self._last = _DISPLAY
        self._globals = {}
        self._registry = self._new()
        self.send(_DISPLAY, 1, struct.pack("=I", self._registry))
        self.wait()
        self.seat = self._bind("wl_seat")

    def close(self):
        self._socket.close()

    def make(self, manager):
        """A device for the seat, by a request that is the first of its manager."""
        bound, made = self._bind(manager), self._new()
        self.send(bound, 0, struct.pack("=2I", self.seat, made))
        return made

    def send(self, thing, opcode, body=b"", descriptor=None):
        message = struct.pack("=2I", thing, (8 + len(body)) << 16 | opcode) + body
        passed = [] if descriptor is None else [
            (socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [descriptor]))]
        self._socket.sendmsg([message], passed)

    def wait(self):
        """Until the compositor has dealt with all that it was told."""
        callback = self._new()
        self.send(_DISPLAY, 0, struct.pack("=I", callback))
        thing = None
        while thing != callback:
            thing, opcode, body = self._receive()
            if thing == _DISPLAY and opcode == 0:
                raise ConnectionError(body[12:].decode(errors="replace"))
            if thing == self._registry and opcode == 0:
                number, length = struct.unpack_from("=2I", body)
                self._globals[body[8:8 + length - 1].decode()] = number

    def _receive(self):
        while len(self._arrived) < 8 or len(self._arrived) < self._length():
            data = self._socket.recv(65536)
            if not data:
                raise ConnectionError("the compositor has gone")
            self._arrived += data
        thing, rest = struct.unpack_from("=2I", self._arrived)
        body, self._arrived = self._arrived[8:rest >> 16], self._arrived[rest >> 16:]
        return thing, rest & 0xffff, body

    def _length(self):
        return struct.unpack_from("=I", self._arrived, 4)[0] >> 16

    def _new(self):
        self._last += 1
        return self._last

    def _bind(self, interface):
        name = interface.encode() + b"\0"
        padding = b"\0" * (-len(name) % 4)
        made = self._new()
        self.send(self._registry, 0, struct.pack("=2I", self._globals[interface], len(name)) + name
                  + padding + struct.pack("=2I", 1, made))
        return made


class WaylandKeyboard:
    """Presses keys at their physical places, with a layout of its own."""

    def __init__(self, wire):
        self._wire = wire
        self._device = wire.make("zwp_virtual_keyboard_manager_v1")
        self._held = 0
        data = _KEYMAP.encode() + b"\0"
        with tempfile.TemporaryFile() as file:
            file.write(data)
            file.flush()
            wire.send(self._device, 0, struct.pack("=2I", 1, len(data)), file.fileno())
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
        keys = text.split("+")
        for key in keys:
            self.down(key)
        for key in reversed(keys):
            self.up(key)

    def type(self, text):
        for letter in text:
            key = {" ": "Space"}.get(letter, letter)
            self.chord(f"Shift+{key.lower()}" if letter.isupper() else key)

    def _key(self, key, state):
        code = _LETTERS.get(key) or PHYSICAL[key] - _X11_DISTANCE
        self._wire.send(self._device, 1, struct.pack("=3I", _now(), code, state))
        bit = _MODIFIERS.get(key, 0)
        if bit:
            self._held = self._held | bit if state else self._held & ~bit
            self._wire.send(self._device, 2, struct.pack("=4I", self._held, 0, 0, 0))
        self._wire.wait()


class WaylandPointer:
    """Moves and clicks at places on the first output."""

    def __init__(self, wire, size):
        self._wire = wire
        self._size = size
        self._device = wire.make("zwlr_virtual_pointer_manager_v1")

    def move(self, x, y):
        self._wire.send(self._device, 1,
                        struct.pack("=5I", _now(), round(x), round(y), *self._size))
        self._frame()

    def click(self, x, y, button=1):
        self.move(x, y)
        for state in (1, 0):
            self._wire.send(self._device, 2, struct.pack("=3I", _now(), _BUTTONS[button], state))
            self._frame()

    def _frame(self):
        self._wire.send(self._device, 4)
        self._wire.wait()


def _now():
    return int(time.monotonic() * 1000) & 0xffffffff
