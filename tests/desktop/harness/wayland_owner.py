# SPDX-License-Identifier: MIT
"""An owner of a Wayland clipboard: a polite one, or one that misbehaves in a chosen way."""

import math
import os
import selectors
import struct
import threading
import time

from .owner import Owner
from .wayland_wire import Wire, packed, unpacked

_MANAGERS = ("ext_data_control_manager_v1", "zwlr_data_control_manager_v1")
# What programs of this desktop call what those of the other one call so.
_NAMES = {"UTF8_STRING": "text/plain;charset=utf-8"}
_CALLED = {name: target for target, name in _NAMES.items()}
_CHUNK = 64 * 1024


def form(target):
    """The name of a form on this desktop."""
    return _NAMES.get(target, target)


class WaylandOwner(Owner):
    """A client of the compositor with a thread of its own and without a window. Its manners are
    those of owner_process that there are here: a client's contents go through a pipe, and its list
    of forms is told by the compositor, so that nobody asks for it."""

    def __init__(self, env, manners, offers, targets=(), delays=None):
        super().__init__()
        self._wire = Wire(env)
        self._manners = manners
        self._offers = offers
        self._targets = targets
        self._delays = {} if delays is None else delays
        self._waiting = []  # (when, pipe, contents)
        self._open = set()
        self._selector = selectors.DefaultSelector()
        self._ended = False
        self._rung, self._bell = os.pipe()
        self._manager = self._wire.bind(next(name for name in _MANAGERS
                                             if name in self._wire.offered))
        seat, self._device = self._wire.bind("wl_seat"), self._wire.new_id()
        self._wire.send(self._manager, 1, struct.pack("=2I", self._device, seat))
        self._own()
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()

    def wait_until_known(self):
        self.wait_until_owned()  # the compositor tells everybody when it is told itself

    def stop(self):
        if self._thread.is_alive():
            os.write(self._bell, b".")
        self._thread.join(5)

    def _own(self):
        source = self._wire.new_id(self._told)
        self._wire.send(self._manager, 0, struct.pack("=I", source))
        names = [form(target) for target in (*self._offers, *self._targets)]
        if self._manners == "lies-about-targets":
            names = [f"x-made-up/{number}" for number in range(3000)] + names
        for name in names:
            self._wire.send(source, 0, packed(name))
        self._wire.send(self._device, 0, struct.pack("=I", source))
        self._wire.wait()
        self._say("owned")

    def _say(self, name, **more):
        self.events.append({"event": name, **more})

    def _run(self):
        self._selector.register(self._rung, selectors.EVENT_READ, self._end)
        self._selector.register(self._wire, selectors.EVENT_READ, self._wire.receive)
        try:
            while not self._ended:
                next_one = min((when for when, _, _ in self._waiting), default=math.inf)
                patience = None if next_one == math.inf else max(0, next_one - time.monotonic())
                for key, _ in self._selector.select(patience):
                    if not self._ended:
                        key.data()
                self._answer_what_is_due()
        except ConnectionError:  # the desktop is being closed, or the compositor has had enough
            self._say("disconnected")
        finally:
            self._give_up()

    def _end(self):
        self._ended = True

    def _told(self, event, body):
        if event == 1:
            self._say("lost")
            if self._manners == "clings":
                self._own()
            return
        pipe = self._wire.descriptor()
        self._open.add(pipe)
        os.set_blocking(pipe, False)
        target = _CALLED.get(unpacked(body), unpacked(body))
        self._say("request", target=target)
        delay = self._delays.get(target, 1 if self._manners == "hangs-for-a-second" else 0)
        when = math.inf if delay is None else time.monotonic() + delay
        self._waiting.append((when, pipe, self._offers.get(target, b"")))

    def _answer_what_is_due(self):
        now = time.monotonic()
        due = [entry for entry in self._waiting if entry[0] <= now]
        self._waiting = [entry for entry in self._waiting if entry[0] > now]
        for _, pipe, contents in due:
            self._answer(pipe, contents)

    def _answer(self, pipe, contents):
        manners = self._manners
        if manners in ("silent", "stalls"):
            return
        if manners == "refuses":
            self._close(pipe)
        elif manners in ("dies", "dies-in-contents"):
            self._end()
        elif manners in ("stalls-midway", "dies-midway"):
            os.write(pipe, contents[:_CHUNK // 2])
            if manners == "dies-midway":
                self._end()
        else:
            left = memoryview(contents)
            self._selector.register(pipe, selectors.EVENT_WRITE,
                                    lambda: self._pour(pipe, left))

    def _pour(self, pipe, left):
        try:
            written = os.write(pipe, left[:_CHUNK]) if left else 0
        except BrokenPipeError:  # enough of it
            left = left[:0]
            written = 0
            self._say("cut off")
        rest = left if self._manners == "endless" and left else left[written:]
        if rest:
            self._selector.modify(pipe, selectors.EVENT_WRITE, lambda: self._pour(pipe, rest))
        else:
            self._selector.unregister(pipe)
            self._close(pipe)

    def _close(self, pipe):
        self._open.discard(pipe)
        os.close(pipe)

    def _give_up(self):
        """All at once, as the end of a process does."""
        self._selector.close()
        self._wire.close()
        for pipe in (*self._open, self._rung, self._bell):
            os.close(pipe)
