# SPDX-License-Identifier: MIT
"""A notification service, as a desktop has it. Run as a program on the private bus.

It answers requests on standard input with one JSON object per line:
{"ask": "shown"} the messages that are shown, the oldest first;
{"ask": "press", "id": 7, "action": "key"} a click on a message's button, which closes it.
"""

import json
import sys
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402  (the version has to be named first)

SERVICE = "org.freedesktop.Notifications"
PATH = "/org/freedesktop/Notifications"
_INTERFACE = """
<node><interface name="org.freedesktop.Notifications">
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
    <arg type="u" direction="out"/>
  </method>
  <method name="CloseNotification"><arg type="u" direction="in"/></method>
  <signal name="ActionInvoked"><arg type="u"/><arg type="s"/></signal>
  <signal name="NotificationClosed"><arg type="u"/><arg type="u"/></signal>
</interface></node>
"""
_DISMISSED, _WITHDRAWN = 2, 3


class Service:
    def __init__(self):
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self._shown = {}
        self._last = 0
        node = Gio.DBusNodeInfo.new_for_xml(_INTERFACE)
        self._bus.register_object(PATH, node.interfaces[0], self._called, None, None)
        Gio.bus_own_name_on_connection(self._bus, SERVICE, Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: _say("ready"), None)

    def answer(self, request):
        if request["ask"] == "shown":
            return list(self._shown.values())
        if request["ask"] == "press":
            self._signal("ActionInvoked", GLib.Variant("(us)", (request["id"], request["action"])))
            self._close(request["id"], _DISMISSED)
            return True
        raise ValueError(request["ask"])

    def _called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        if method == "CloseNotification":
            self._close(arguments.unpack()[0], _WITHDRAWN)
            invocation.return_value(None)
            return
        name, replaced, _icon, title, body, actions, hints, _expires = arguments.unpack()
        number = replaced
        if number not in self._shown:
            self._last += 1
            number = self._last
        self._shown[number] = {
            "id": number, "application": name, "title": title, "body": body,
            "actions": dict(zip(actions[::2], actions[1::2])),
            "entry": hints.get("desktop-entry")}
        invocation.return_value(GLib.Variant("(u)", (number,)))

    def _close(self, number, reason):
        if self._shown.pop(number, None) is not None:
            self._signal("NotificationClosed", GLib.Variant("(uu)", (number, reason)))

    def _signal(self, name, arguments):
        self._bus.emit_signal(None, PATH, SERVICE, name, arguments)


def _say(answer):
    print(json.dumps({"answer": answer}), flush=True)


def _listen(service):
    for line in sys.stdin:
        GLib.idle_add(lambda asked: _say(service.answer(asked)), json.loads(line))


def _main():
    service = Service()
    threading.Thread(target=_listen, args=(service,), daemon=True).start()
    GLib.MainLoop().run()


if __name__ == "__main__":
    _main()
