# SPDX-License-Identifier: MIT
"""Reads programs as a screen reader does, over AT-SPI. Run as a program on the private desktop.

One request per line on standard input, one JSON answer per line on standard output:
{"read": "vantorel", "depth": 24} answers the program's accessible tree as nested objects;
{"press": [pid, path]} performs the first action of the object at a path of child indexes;
{"focused": true} answers the names of what readers were sent to since they were asked last, and
begins to note them when it is asked first; {"notified": true} the same of notifications.
A process of its own, since the library binds itself to one bus for its whole life.
"""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version has to be named first)

_RENAMED = {"button": "push button"}  # by newer versions of the library


class _Events:
    """Notes the names of what a kind of event tells of, unless its role has nothing to say."""

    def __init__(self, kind, roles=None):
        self._kind = kind
        self._roles = roles
        self._names = []
        self._listener = None

    def names(self):
        if self._listener is None:
            self._listener = Atspi.EventListener.new(self._note)
            self._listener.register(self._kind)
        while GLib.MainContext.default().iteration(False):
            pass
        names, self._names = self._names, []
        return names

    def _note(self, event):
        if event.detail1 and (self._roles is None or event.source.get_role() in self._roles):
            self._names.append(event.source.get_name())


_focus = _Events("object:state-changed:focused")
_notifications = _Events("object:state-changed:showing",
                         (Atspi.Role.NOTIFICATION, Atspi.Role.ALERT))


def _applications():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None:
            # What the library remembers is kept up by events, which nobody handles here.
            application.set_cache_mask(Atspi.Cache.NONE)
            yield application


def _value(element):
    text = element.get_text_iface()
    return None if text is None else Atspi.Text.get_text(text, 0, -1)


def _describe(element, depth):
    states = element.get_state_set()
    extents = None
    component = element.get_component_iface()
    if component is not None:
        box = component.get_extents(Atspi.CoordType.SCREEN)
        extents = [box.x, box.y, box.width, box.height]
    children = []
    if depth > 0:
        for index in range(min(element.get_child_count(), 400)):
            child = element.get_child_at_index(index)
            if child is not None:
                children.append(_describe(child, depth - 1))
    return {
        "role": _RENAMED.get(element.get_role_name(), element.get_role_name()),
        "name": element.get_name() or "",
        "description": element.get_description() or "",
        "showing": states.contains(Atspi.StateType.SHOWING),
        "enabled": states.contains(Atspi.StateType.ENABLED),
        "selected": states.contains(Atspi.StateType.SELECTED),
        "focused": states.contains(Atspi.StateType.FOCUSED),
        "active": states.contains(Atspi.StateType.ACTIVE),
        "checked": states.contains(Atspi.StateType.CHECKED),
        "extents": extents,
        "text": _value(element),
        "children": children,
    }


def _find(name):
    for application in _applications():
        if (application.get_name() or "").lower() == name.lower():
            return application
    return None


def _answer(request):
    if "read" in request:
        application = _find(request["read"])
        return None if application is None else _describe(application, request["depth"])
    if "focused" in request:
        return _focus.names()
    if "notified" in request:
        return _notifications.names()
    name, path = request["press"]
    element = _find(name)
    for index in path:
        element = element.get_child_at_index(index)
    return element.get_action_iface().do_action(0)


def _serve(loop):
    line = sys.stdin.readline()
    if not line:
        loop.quit()
        return False
    try:
        answer = {"answer": _answer(json.loads(line))}
    except (GLib.Error, AttributeError, TypeError) as problem:
        # The tree may change while it is read: the asker asks again.
        answer = {"problem": str(problem)}
    print(json.dumps(answer), flush=True)
    return True


def _main():
    Atspi.init()
    loop = GLib.MainLoop()
    # Events are looked at as they come: what they tell of may be gone by the next question.
    GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT,
                      GLib.IOCondition.IN | GLib.IOCondition.HUP, lambda *_: _serve(loop))
    loop.run()


if __name__ == "__main__":
    _main()
