# SPDX-License-Identifier: MIT
"""A program that is nothing but windows: of any kind, in any state, stating anything of itself.

Run as a program. It is told what to do by one JSON object a line on its standard input, and says
what happens to it by one JSON object a line on its standard output. It is told:
{"do": "open", "name": "canvas", ...}, {"do": "close", "name": "canvas"},
{"do": "copy", "name": "canvas", "text": "..."},
{"do": "give-focus-away", "name": "canvas", "to": 4194311}, {"do": "answer", "name": "canvas"}.
It says {"event": "ready", "first": 4194304}, the number that its windows are counted from;
{"event": "opened", "name": "canvas", "window": 4194305}, {"event": "closed", ...},
{"event": "chord", "name": "canvas", "chord": "Ctrl+v"}, and, after a chord that pastes,
{"event": "pasted", "name": "canvas", "text": "what the clipboard held then"}.
"""

import argparse
import json
import os
import select
import socket
import sys

from Xlib import XK, X, Xatom, Xutil, display
from Xlib import error as xerror
from Xlib.protocol import event as xevent

# The chords by which programs paste, and the selection that each of them takes.
_PASTES = {"Ctrl+v": "CLIPBOARD", "Ctrl+Shift+v": "CLIPBOARD", "Shift+Insert": "PRIMARY"}
_MODIFIERS = ((X.ControlMask, "Ctrl"), (X.Mod1Mask, "Alt"), (X.Mod4Mask, "Super"),
              (X.ShiftMask, "Shift"))
_SILENT = ("Shift", "Control", "Alt", "Super", "Meta", "Caps", "Num", "ISO")


class Program:
    """The windows of one connection to the server."""

    def __init__(self, window_class):
        self.window_class = window_class
        self.display = display.Display()
        self.atom = self.display.intern_atom
        self.root = self.display.screen().root
        self.windows = {}
        self.focus_goes_to = {}
        self.copied = b""

    def run(self):
        commands = b""
        _say(event="ready", first=self.display.display.info.resource_id_base)
        while True:
            self._handle_pending()
            self.display.flush()
            if self.display.pending_events():  # sending reads, too
                continue
            ready = select.select([sys.stdin, self.display], [], [])[0]
            if sys.stdin in ready:
                piece = os.read(sys.stdin.fileno(), 65536)
                if not piece:
                    return
                *lines, commands = (commands + piece).split(b"\n")
                for line in lines:
                    self._obey(json.loads(line))

    def _handle_pending(self):
        while self.display.pending_events():
            self._handle(self.display.next_event())

    def _obey(self, command):
        what, name = command.pop("do"), command.pop("name")
        if what == "open":
            self._open(name, **command)
        elif what == "close":
            self._close(name)
        elif what == "copy":
            self._copy(name, command["text"])
        elif what == "give-focus-away":
            self.focus_goes_to[name] = command["to"]
            _say(event="gives-focus-away", name=name)
        elif what == "answer":
            # What came before it, keys among it, has been taken by then.
            self.display.sync()
            self._handle_pending()
            _say(event="answered")

    def _open(self, name, kind="NORMAL", states=(), transient_for=None, pid=None,
              user_time=None, unmanaged=False, place=None):
        x, y, width, height = place or (60 + 90 * len(self.windows), 80 + 60 * len(self.windows),
                                        260, 160)
        window = self.root.create_window(
            x, y, width, height, 0, X.CopyFromParent, background_pixel=0x406080,
            override_redirect=unmanaged, event_mask=X.KeyPressMask | X.FocusChangeMask)
        window.set_wm_class(self.window_class.lower(), self.window_class)
        window.set_wm_name(name)
        window.set_wm_hints(flags=Xutil.InputHint | Xutil.StateHint, input=1,
                            initial_state=Xutil.NormalState)
        window.set_wm_protocols([self.atom("WM_DELETE_WINDOW")])
        window.set_wm_normal_hints(flags=Xutil.PPosition | Xutil.PSize)
        window.set_wm_client_machine(socket.gethostname())
        self._set_cardinal(window, "_NET_WM_PID", os.getpid() if pid is None else pid)
        if user_time is not None:
            self._set_cardinal(window, "_NET_WM_USER_TIME", user_time)
        self._set_atoms(window, "_NET_WM_WINDOW_TYPE", [f"_NET_WM_WINDOW_TYPE_{kind}"])
        if states:
            self._set_atoms(window, "_NET_WM_STATE", [f"_NET_WM_STATE_{one}" for one in states])
        if transient_for:
            window.set_wm_transient_for(self.windows[transient_for])
        window.map()
        self.display.sync()
        self.windows[name] = window
        _say(event="opened", name=name, window=window.id)

    def _close(self, name):
        self.windows.pop(name).destroy()
        self.display.sync()
        _say(event="closed", name=name)

    def _copy(self, name, text):
        self.copied = text.encode()
        self.windows[name].set_selection_owner(self.atom("CLIPBOARD"), X.CurrentTime)
        self.display.sync()
        _say(event="copied", name=name)

    def _handle(self, event):
        if event.type == X.KeyPress:
            self._take_key(self._name_of(event.window), event)
        elif event.type == X.SelectionNotify:
            self._take_pasted(self._name_of(event.requestor), event)
        elif event.type == X.SelectionRequest:
            self._answer(event)
        elif event.type == X.FocusIn and event.mode in (X.NotifyNormal, X.NotifyWhileGrabbed):
            self._pass_focus_on(self._name_of(event.window))
        elif event.type == X.ClientMessage:
            name = self._name_of(event.window)
            if name and event.data[1][0] == self.atom("WM_DELETE_WINDOW"):
                self._close(name)

    def _take_key(self, name, event):
        keysym = self.display.keycode_to_keysym(event.detail, 0)
        key = _key_name(keysym)
        if key.startswith(_SILENT):
            return
        chord = "+".join([word for mask, word in _MODIFIERS if event.state & mask] + [key])
        _say(event="chord", name=name, chord=chord)
        if chord in _PASTES:
            event.window.convert_selection(self.atom(_PASTES[chord]), self.atom("UTF8_STRING"),
                                           self.atom("PASTED"), event.time)

    def _take_pasted(self, name, event):
        text = None
        if event.property != X.NONE:
            answer = event.requestor.get_full_property(event.property, X.AnyPropertyType)
            text = answer.value.decode() if answer else None
            event.requestor.delete_property(event.property)
        _say(event="pasted", name=name, text=text)

    def _answer(self, request):
        name = self.display.get_atom_name(request.target)
        place = request.property or request.target
        if name == "TARGETS":
            request.requestor.change_property(place, Xatom.ATOM, 32,
                                              [request.target, self.atom("UTF8_STRING")])
        elif name == "UTF8_STRING":
            request.requestor.change_property(place, request.target, 8, self.copied)
        else:
            place = X.NONE
        _say(event="asked", target=name)
        request.requestor.send_event(xevent.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=place))

    def _pass_focus_on(self, name):
        other = self.focus_goes_to.get(name)
        if other is not None:
            self.display.create_resource_object("window", other).set_input_focus(
                X.RevertToParent, X.CurrentTime)
            _say(event="gave-focus-away", name=name)

    def _name_of(self, window):
        return next((name for name, one in self.windows.items() if one.id == window.id), None)

    def _set_cardinal(self, window, name, value):
        window.change_property(self.atom(name), Xatom.CARDINAL, 32, [value])

    def _set_atoms(self, window, name, values):
        window.change_property(self.atom(name), Xatom.ATOM, 32, [self.atom(one) for one in values])


def _key_name(keysym):
    if 0x20 < keysym < 0x7f:
        return chr(keysym)
    return next((name[3:] for name in dir(XK)
                 if name.startswith("XK_") and getattr(XK, name) == keysym), hex(keysym))


def _say(**what):
    print(json.dumps(what), flush=True)


def _main():
    parser = argparse.ArgumentParser()
    parser.add_argument("window_class")
    try:
        Program(parser.parse_args().window_class).run()
    except xerror.ConnectionClosedError:
        pass


if __name__ == "__main__":
    _main()
