# SPDX-License-Identifier: MIT
"""A connection to a Wayland compositor that speaks the protocol's bytes itself."""

import array
import collections
import os
import socket
import struct

_DISPLAY = 1
_ENOUGH = 65536
_LIMIT_SECONDS = 20


class Wire:
    """Requests go out at once; what the compositor tells is taken by whoever listens, else by
    nobody. For one thread."""

    def __init__(self, env):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(_LIMIT_SECONDS)
        self._socket.connect(os.path.join(env["XDG_RUNTIME_DIR"], env["WAYLAND_DISPLAY"]))
        self._arrived = b""
        self._descriptors = collections.deque()
        self._last = _DISPLAY
        self._listeners = {_DISPLAY: self._told_by_the_display}
        self.offered = {}  # the number of each interface
        registry = self._registry = self.new_id(self._told_of_an_interface)
        self.send(_DISPLAY, 1, struct.pack("=I", registry))
        self.wait()

    def close(self):
        self._socket.close()
        while self._descriptors:
            os.close(self._descriptors.popleft())

    def fileno(self):
        return self._socket.fileno()

    def new_id(self, listener=None):
        """The number of a thing to be; `listener` is called with each event's number and body."""
        self._last += 1
        if listener is not None:
            self._listeners[self._last] = listener
        return self._last

    def bind(self, interface, version=1):
        bound = self.new_id()
        self.send(self._registry, 0, struct.pack("=I", self.offered[interface])
                  + packed(interface) + struct.pack("=2I", version, bound))
        return bound

    def send(self, thing, request, body=b"", descriptor=None):
        message = struct.pack("=2I", thing, (8 + len(body)) << 16 | request) + body
        passed = [] if descriptor is None else [
            (socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [descriptor]))]
        self._socket.sendmsg([message], passed)

    def wait(self):
        """Until the compositor has dealt with all that it was told."""
        answered = []
        callback = self.new_id(lambda *_: answered.append(True))
        self.send(_DISPLAY, 0, struct.pack("=I", callback))
        while not answered:
            self.receive()

    def receive(self):
        """Waits for something from the compositor and hands on every whole event."""
        data, passed, _, _ = socket.recv_fds(self._socket, _ENOUGH, 28)
        self._descriptors.extend(passed)
        if not data:
            raise ConnectionError("the compositor has gone")
        self._arrived += data
        while len(self._arrived) >= 8:
            thing, rest = struct.unpack_from("=2I", self._arrived)
            size, event = rest >> 16, rest & 0xffff
            if len(self._arrived) < size:
                return
            body, self._arrived = self._arrived[8:size], self._arrived[size:]
            if thing in self._listeners:
                self._listeners[thing](event, body)

    def descriptor(self):
        """The one that came with the event that is being told."""
        return self._descriptors.popleft()

    @staticmethod
    def _told_by_the_display(event, body):
        if event == 0:
            raise ConnectionError(f"the compositor refuses: {body[12:].decode(errors='replace')}")

    def _told_of_an_interface(self, event, body):
        if event == 0:
            self.offered[unpacked(body[4:])] = struct.unpack_from("=I", body)[0]


def packed(text):
    """A text as requests carry it."""
    encoded = text.encode() + b"\0"
    return struct.pack("=I", len(encoded)) + encoded + b"\0" * (-len(encoded) % 4)


def unpacked(body):
    """The text that an event's body begins with."""
    length, = struct.unpack_from("=I", body)
    return body[4:4 + length - 1].decode()


def offered(env):
    """What the compositor offers this process, by its names."""
    wire = Wire(env)
    wire.close()
    return wire.offered
