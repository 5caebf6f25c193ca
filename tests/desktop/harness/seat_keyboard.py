# SPDX-License-Identifier: MIT
"""The keyboard of a Wayland seat: what its user presses reaches every window, not X11 ones alone."""

import array
import ctypes
import os
import socket
import struct
import time

from .keyboard import PHYSICAL

_DISPLAY = 1
_PLACE_OF_KERNEL_KEYS = 8  # X counts from there
# Bits of the keymap's real modifiers.
_MODIFIERS = {"Shift": 1, "Ctrl": 4, "Alt": 8, "Super": 64}
_VIRTUAL = "zwp_virtual_keyboard_manager_v1"
_FAKE = "org_kde_kwin_fake_input"


class SeatKeyboard:
    """A keyboard that stays plugged in until it is closed; its layout is its own where the
    compositor has virtual keyboards, else the seat's. To be there before the first window: programs
    miss the first keys of a keyboard that a seat without one gets."""

    def __init__(self, env, layout="us"):
        self._connection = _Connection(env)
        self._held = 0
        if _VIRTUAL in self._connection.offered:
            self._plug_in(layout)
        else:
            self._ask()
        self._connection.catch_up()

    def close(self):
        self._connection.close()

    def down(self, key):
        self._send(key, 1)

    def up(self, key):
        self._send(key, 0)

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

    def _plug_in(self, layout):
        connection = self._connection
        seat = connection.bind("wl_seat", 1)
        manager = connection.bind(_VIRTUAL, 1)
        self._keyboard = connection.new_id()
        connection.send(manager, 0, struct.pack("=II", seat, self._keyboard))
        text = _keymap(layout)
        file = os.memfd_create("keymap")
        try:
            os.write(file, text)
            connection.send(self._keyboard, 0, struct.pack("=II", 1, len(text)), file)
        finally:
            os.close(file)

    def _ask(self):
        self._keyboard = None
        self._fake = self._connection.bind(_FAKE, 4)
        self._connection.send(self._fake, 0, _text("tests") + _text("pressing keys"))

    def _send(self, key, state):
        code = PHYSICAL[key] - _PLACE_OF_KERNEL_KEYS
        if self._keyboard is None:
            self._connection.send(self._fake, 10, struct.pack("=II", code, state))
        else:
            stamp = int(time.monotonic() * 1000) & 0xFFFFFFFF
            self._connection.send(self._keyboard, 1, struct.pack("=III", stamp, code, state))
            bit = _MODIFIERS.get(key, 0)
            self._held = self._held | bit if state else self._held & ~bit
            self._connection.send(self._keyboard, 2, struct.pack("=IIII", self._held, 0, 0, 0))
        self._connection.catch_up()


def offered(env):
    """What the compositor offers this process, by its names."""
    connection = _Connection(env)
    connection.close()
    return connection.offered


class _Connection:
    """As little of a client as pressing keys needs."""

    def __init__(self, env):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(20)
        self._socket.connect(os.path.join(env["XDG_RUNTIME_DIR"], env["WAYLAND_DISPLAY"]))
        self._arrived = b""
        self._last = _DISPLAY
        self._answered = set()
        self.offered = {}  # the number of each interface
        self._registry = self.new_id()
        self.send(_DISPLAY, 1, struct.pack("=I", self._registry))
        self.catch_up()

    def close(self):
        self._socket.close()

    def new_id(self):
        self._last += 1
        return self._last

    def bind(self, interface, version):
        bound = self.new_id()
        self.send(self._registry, 0, struct.pack("=I", self.offered[interface]) + _text(interface)
                  + struct.pack("=II", version, bound))
        return bound

    def send(self, target, request, arguments, file=None):
        message = struct.pack("=II", target, (8 + len(arguments)) << 16 | request) + arguments
        control = [] if file is None else [
            (socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [file]))]
        self._socket.sendmsg([message], control)

    def catch_up(self):
        """Waits until the compositor has done what was asked of it."""
        callback = self.new_id()
        self.send(_DISPLAY, 0, struct.pack("=I", callback))
        while callback not in self._answered:
            received = self._socket.recv(65536)
            if not received:
                raise ConnectionError("the compositor has hung up")
            self._arrived += received
            self._handle()

    def _handle(self):
        while len(self._arrived) >= 8:
            target, rest = struct.unpack_from("=II", self._arrived)
            size, event = rest >> 16, rest & 0xFFFF
            if len(self._arrived) < size:
                return
            arguments, self._arrived = self._arrived[8:size], self._arrived[size:]
            if target == _DISPLAY and event == 0:
                raise ConnectionError(f"the compositor refuses: {arguments!r}")
            if target == self._registry and event == 0:
                number, length = struct.unpack_from("=II", arguments)
                self.offered[arguments[8:8 + length - 1].decode()] = number
            else:
                self._answered.add(target)


def _text(text):
    encoded = text.encode() + b"\0"
    return struct.pack("=I", len(encoded)) + encoded + b"\0" * (-len(encoded) % 4)


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
