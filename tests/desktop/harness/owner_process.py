# SPDX-License-Identifier: MIT
"""A selection owner of its own process: a polite one, or one that misbehaves in a chosen way.

Run as a program. It says on its standard output, one JSON object per line, what happens to it:
{"event": "owned"}, {"event": "request", "target": "UTF8_STRING"}, {"event": "lost"}. So a test can
also prove that something was never asked for.
"""

import argparse
import json
import math
import os
import select
import signal
import sys
import time

from Xlib import X, Xatom, display
from Xlib.protocol import event as xevent

_INCR_ABOVE = 200_000
_CHUNK = 64 * 1024


class Owner:
    """Owns CLIPBOARD and answers requests according to its manners."""

    def __init__(self, arguments):
        self.manners = arguments.manners
        self.offers = {}
        for offer in arguments.offer:
            target, path = offer.rsplit("=", 1)
            with open(path, "rb") as file:
                self.offers[target] = file.read()
        self.extra_targets = arguments.target
        self.delays = {target: float(seconds) for target, seconds in
                       (delay.rsplit("=", 1) for delay in arguments.delay)}
        self.delayed = []
        self.display = display.Display()
        self.atom = self.display.intern_atom
        self.transfers = {}
        self.window = self._make_window(arguments)
        self.clipboard = self.atom("CLIPBOARD")
        # An application whose window is on the screen outlives its place on the clipboard.
        self.window_stays = bool(arguments.window_class)

    def run(self):
        self._own()
        while True:
            event = self._next_event()
            if event.type == X.SelectionRequest:
                self._answer(event)
            elif event.type == X.SelectionClear:
                _say(event="lost")
                if self.manners == "clings":
                    self._own()
                elif not self.window_stays:
                    return
            elif event.type == X.PropertyNotify and event.state == X.PropertyDelete:
                self._continue_transfer(event.window, event.atom)

    def _next_event(self):
        """The next event; answers what has been delayed for long enough meanwhile."""
        while not self.display.pending_events():
            now = time.monotonic()
            due = [entry for entry in self.delayed if entry[0] <= now]
            self.delayed = [entry for entry in self.delayed if entry[0] > now]
            for _, request, name in due:
                self._answer_now(request, name)
            left = [max(0, entry[0] - now) for entry in self.delayed if entry[0] < math.inf]
            if not due:
                select.select([self.display.fileno()], [], [], min(left, default=None))
        return self.display.next_event()

    def _own(self):
        self.window.set_selection_owner(self.clipboard, X.CurrentTime)
        self.display.sync()
        if self.display.get_selection_owner(self.clipboard) != self.window:
            _say(event="failed")
            sys.exit(1)
        _say(event="owned", window=self.window.id)

    def _make_window(self, arguments):
        root = self.display.screen().root
        window = root.create_window(40, 40, 320, 200, 0, X.CopyFromParent,
                                    background_pixel=0xa0a0c0, event_mask=X.PropertyChangeMask)
        if arguments.window_class:
            window.set_wm_class(arguments.window_class.lower(), arguments.window_class)
            window.set_wm_name(arguments.title or arguments.window_class)
            window.change_property(self.atom("_NET_WM_PID"), Xatom.CARDINAL, 32, [os.getpid()])
            window.map()
            self.display.sync()
        return window

    def _answer(self, request):
        name = self.display.get_atom_name(request.target)
        _say(event="request", target=name)
        if self.manners == "silent":
            return
        if self.manners == "refuses":
            self._notify(request, X.NONE)
            return
        if self.manners == "dies":
            os.kill(os.getpid(), signal.SIGKILL)
        if name in self.delays:
            self.delayed.append((time.monotonic() + self.delays[name], request, name))
            return
        self._answer_now(request, name)

    def _answer_now(self, request, name):
        if name == "TARGETS":
            self._answer_targets(request)
        else:
            self._answer_contents(request, name)

    def _answer_targets(self, request):
        if self.manners == "lies-about-types":
            # The answer is said to be atoms and is text of an odd length.
            self._put(request, self.atom("ATOM"), 8, b"UTF8_STRING,junk!")
            return
        names = ["TARGETS", "TIMESTAMP", *self.offers, *self.extra_targets]
        if self.manners == "lies-about-targets":
            names = [f"x-made-up/{number}" for number in range(3000)] + names
        self._put(request, Xatom.ATOM, 32, [self.atom(name) for name in names])

    def _answer_contents(self, request, name):
        data = self.offers.get(name)
        manners = self.manners
        if manners == "targets-only":
            return
        if manners == "dies-in-contents":
            os.kill(os.getpid(), signal.SIGKILL)
        if manners == "hangs-for-a-second":
            time.sleep(1)
        if manners == "lies-about-size" and data is not None:
            # A transfer in pieces that is announced as four gigabytes and never brings a piece.
            self._begin_transfer(request, data, announced=0xffffffff, stalled=True)
            return
        if manners in ("stalls", "stalls-midway", "dies-midway") and data is not None:
            self._begin_transfer(request, data, stalled=manners == "stalls")
            return
        if manners == "endless" and data is not None:
            self._begin_transfer(request, data)
            return
        if manners == "wrong-property" and data is not None:
            # Says that it is done, and has put nothing there.
            self._notify(request, request.property)
            return
        if manners == "wrong-type" and data is not None:
            self._put(request, Xatom.INTEGER, 32, [1, 2, 3])
            return
        if data is None:
            self._notify(request, X.NONE)
        elif len(data) > _INCR_ABOVE:
            self._begin_transfer(request, data)
        else:
            self._put(request, self.atom(name), 8, data)

    def _begin_transfer(self, request, data, announced=None, stalled=False):
        requestor, place = request.requestor, request.property
        requestor.change_attributes(event_mask=X.PropertyChangeMask)
        if not stalled:
            self.transfers[(requestor.id, place)] = [data, 0, request.target]
        size = announced if announced is not None else len(data)
        requestor.change_property(place, self.atom("INCR"), 32, [size])
        self._notify(request, place)

    def _continue_transfer(self, window, place):
        transfer = self.transfers.get((window.id, place))
        if transfer is None:
            return
        data, sent, target = transfer
        if self.manners == "stalls-midway" and sent > 0:
            return
        if self.manners == "dies-midway" and sent > 0:
            os.kill(os.getpid(), signal.SIGKILL)
        piece = data[sent:sent + _CHUNK]
        if self.manners == "endless":
            piece = data[:_CHUNK]
        window.change_property(place, target, 8, piece)
        transfer[1] = sent + len(piece)
        if not piece:
            del self.transfers[(window.id, place)]
            _say(event="transferred", bytes=len(data))
        self.display.flush()

    def _put(self, request, kind, size, data):
        request.requestor.change_property(request.property, kind, size, data)
        self._notify(request, request.property)

    def _notify(self, request, place):
        answer = xevent.SelectionNotify(time=request.time, requestor=request.requestor,
                                        selection=request.selection, target=request.target,
                                        property=place)
        request.requestor.send_event(answer)
        self.display.flush()


def _say(**what):
    what["at"] = time.monotonic()
    print(json.dumps(what), flush=True)


def _main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--manners", default="polite")
    parser.add_argument("--offer", action="append", default=[], help="TARGET=FILE")
    parser.add_argument("--target", action="append", default=[], help="a target offered besides")
    parser.add_argument("--delay", action="append", default=[], help="TARGET=SECONDS")
    parser.add_argument("--window-class", help="show a window of this class")
    parser.add_argument("--title")
    Owner(parser.parse_args()).run()


if __name__ == "__main__":
    _main()
