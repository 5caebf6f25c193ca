# SPDX-License-Identifier: MIT
"""An owner of the clipboard that ends as programs with windows do.

Run as a program. It owns CLIPBOARD, says "owned" on its standard output, and waits for a line on its
standard input. Then it asks the clipboard manager to save (unless --unasked), says "saved" or "refused"
or "nobody", clears the clipboard, says "cleared", and ends. With --toolkit it is a program of a common
toolkit, which says only "owned" and "cleared".
"""

import argparse
import sys

from Xlib import X, Xatom, display
from Xlib.protocol import event, request


def _say(word):
    print(word, flush=True)


class Bare:
    """Speaks the protocol itself, and clears whoever owns the clipboard by then."""

    def __init__(self, offers):
        self.display = display.Display()
        self.atom = self.display.intern_atom
        self.offers = offers
        self.window = self.display.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.window.set_selection_owner(self.atom("CLIPBOARD"), X.CurrentTime)
        self.display.sync()

    def save(self):
        manager = self.atom("CLIPBOARD_MANAGER")
        if not self.display.get_selection_owner(manager):
            return "nobody"
        self.window.convert_selection(manager, self.atom("SAVE_TARGETS"), self.atom("SAVING"),
                                      X.CurrentTime)
        while True:
            arrived = self.display.next_event()
            if arrived.type == X.SelectionRequest:
                self._answer(arrived)
            elif arrived.type == X.SelectionNotify:
                return "refused" if arrived.property == X.NONE else "saved"

    def clear(self):
        request.SetSelectionOwner(display=self.display.display, window=X.NONE,
                                  selection=self.atom("CLIPBOARD"), time=X.CurrentTime)
        self.display.sync()

    def serve_until(self, descriptor):
        import select
        while True:
            while self.display.pending_events():
                arrived = self.display.next_event()
                if arrived.type == X.SelectionRequest:
                    self._answer(arrived)
            self.display.flush()
            if descriptor in select.select([descriptor, self.display.fileno()], [], [])[0]:
                return

    def _answer(self, asked):
        name, place = self.display.get_atom_name(asked.target), asked.property
        if name == "TARGETS":
            asked.requestor.change_property(place, Xatom.ATOM, 32,
                                            [self.atom(each) for each in ("TARGETS", *self.offers)])
        elif name in self.offers:
            asked.requestor.change_property(place, asked.target, 8, self.offers[name])
        else:
            place = X.NONE
        asked.requestor.send_event(event.SelectionNotify(
            time=asked.time, requestor=asked.requestor, selection=asked.selection,
            target=asked.target, property=place))
        self.display.flush()


def _bare(arguments):
    offers = dict(offer.split("=", 1) for offer in arguments.offer)
    owner = Bare({name: text.encode() for name, text in offers.items()})
    _say("owned")
    owner.serve_until(sys.stdin.fileno())
    if not arguments.unasked:
        _say(owner.save())
    owner.clear()
    _say("cleared")


def _toolkit(text):
    import gi
    gi.require_version("Gdk", "3.0")
    gi.require_version("Gtk", "3.0")
    from gi.repository import Gdk, GLib, Gtk
    clipboard = Gtk.Clipboard.get(Gdk.SELECTION_CLIPBOARD)
    clipboard.set_text(text, -1)
    clipboard.set_can_store(None)

    def end(*_):
        clipboard.store()
        clipboard.clear()
        _say("cleared")
        Gtk.main_quit()
        return False

    GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN, end)
    GLib.idle_add(_say, "owned")
    Gtk.main()


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--offer", action="append", default=[], help="TARGET=TEXT")
    parser.add_argument("--unasked", action="store_true")
    parser.add_argument("--toolkit", help="the text to be copied")
    given = parser.parse_args()
    _toolkit(given.toolkit) if given.toolkit else _bare(given)
