# SPDX-License-Identifier: MIT
"""Who says that the screen is locked, as a desktop has it. Run as a program on a private bus.

    screen_lock_process.py NAME      one that has that name on the bus of $DBUS_SESSION_BUS_ADDRESS

"org.freedesktop.login1" is the log-in manager, any other name a screen saver. Each line on standard
input, "lock" or "unlock", is answered by the same line once the bus has been told.
"""

import sys
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402  (the version has to be named first)

LOGIN = "org.freedesktop.login1"
_SESSION = f"{LOGIN}.Session"
_PROPERTIES = "org.freedesktop.DBus.Properties"
_SAVER = """<node><interface name="{name}">
  <method name="GetActive"><arg type="b" direction="out"/></method>
  <signal name="ActiveChanged"><arg type="b"/></signal>
</interface></node>"""
_MANAGER = f"""<node><interface name="{_SESSION}">
  <property name="LockedHint" type="b" access="read"/>
</interface></node>"""


class Service:
    def __init__(self, name):
        self._name = name
        self._locked = False
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        manages = name == LOGIN
        xml = _MANAGER if manages else _SAVER.format(name=name)
        self._path = "/" + name.replace(".", "/")
        self._bus.register_object(f"{self._path}/session/auto" if manages else self._path,
                                  Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0], self._called,
                                  lambda *_: GLib.Variant("b", self._locked), None)
        Gio.bus_own_name_on_connection(self._bus, name, Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: print("ready", flush=True), None)

    def perform(self, order):
        self._locked = order == "lock"
        locked = GLib.Variant("b", self._locked)
        if self._name == LOGIN:
            # A session goes by its number, too, and that is how it speaks.
            self._bus.emit_signal(None, f"{self._path}/session/_31", _PROPERTIES,
                                  "PropertiesChanged",
                                  GLib.Variant("(sa{sv}as)", (_SESSION, {"LockedHint": locked}, [])))
        else:
            self._bus.emit_signal(None, self._path, self._name, "ActiveChanged",
                                  GLib.Variant("(b)", (self._locked,)))
        self._bus.flush_sync()
        print(order, flush=True)

    def _called(self, *arguments):
        arguments[-1].return_value(GLib.Variant("(b)", (self._locked,)))


def _listen(service):
    for line in sys.stdin:
        GLib.idle_add(service.perform, line.strip())


if __name__ == "__main__":
    threading.Thread(target=_listen, args=(Service(sys.argv[1]),), daemon=True).start()
    GLib.MainLoop().run()
