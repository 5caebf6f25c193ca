# SPDX-License-Identifier: MIT
"""A tray for one status item, as a desktop's panel has it. Run as a program on the private bus.

It owns the watcher's name, and answers requests on standard input with one JSON object per line:
{"ask": "item"} the registered item's properties, null while there is none;
{"ask": "menu"} the item's menu as nested objects, as it is once it is about to be shown;
{"ask": "stale menu"} the same for a tray that does not say that it is about to show it;
{"ask": "click", "id": 7} a click on a row of the menu;
{"ask": "call", "method": "Activate", "x": 0, "y": 0} a click on the item;
{"ask": "signals"} the names of the signals that came from the item since the last such request;
{"ask": "registrations"} how often an item was registered;
{"ask": "host", "there": true} somebody who shows the items has come, or gone.

With the argument --without-host nobody shows them at first.
"""

import json
import sys
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402  (the version has to be named first)

WATCHER = "org.kde.StatusNotifierWatcher"
_INTERFACE = """
<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
  <signal name="StatusNotifierHostUnregistered"/>
</interface></node>
"""
_ITEM = "org.kde.StatusNotifierItem"
_MENU = "com.canonical.dbusmenu"
_LIMIT_MS = 5000


class Tray:
    """The watcher and the one item that registered with it."""

    def __init__(self):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.item = None
        self.registrations = 0
        self.signals = []
        self.has_host = "--without-host" not in sys.argv
        node = Gio.DBusNodeInfo.new_for_xml(_INTERFACE)
        self.bus.register_object("/StatusNotifierWatcher", node.interfaces[0], self._called,
                                 self._property, None)
        Gio.bus_own_name_on_connection(self.bus, WATCHER, Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: _say("ready"), None)

    def answer(self, request):
        what = request["ask"]
        if what == "host":
            return self._host(request["there"])
        if self.item is None:
            return None
        if what == "item":
            return self._properties()
        if what == "menu":
            self._call(_MENU, self._menu_path(), "AboutToShow", GLib.Variant("(i)", (0,)))
            return self._menu()
        if what == "stale menu":
            return self._menu()
        if what == "click":
            return self._click(request["id"])
        if what == "call":
            self._call(_ITEM, self.item[1], request["method"],
                       GLib.Variant("(ii)", (request["x"], request["y"])))
            return True
        if what == "signals":
            heard, self.signals = self.signals, []
            return heard
        if what == "registrations":
            return self.registrations
        raise ValueError(what)

    def _host(self, there):
        self.has_host = there
        self.bus.emit_signal(None, "/StatusNotifierWatcher", WATCHER,
                             "StatusNotifierHost" + ("Registered" if there else "Unregistered"),
                             None)
        return True

    def _called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            name, = arguments.unpack()
            self.item = (sender, name) if name.startswith("/") else (name, "/StatusNotifierItem")
            self.registrations += 1
            self.bus.signal_subscribe(self.item[0], None, None, None, None,
                                      Gio.DBusSignalFlags.NONE, self._heard)
        invocation.return_value(None)

    def _heard(self, _bus, _sender, _path, interface, signal, _arguments):
        if interface in (_ITEM, _MENU):
            self.signals.append(signal)

    def _property(self, _bus, _sender, _path, _interface, name):
        return {
            "RegisteredStatusNotifierItems": GLib.Variant("as", ["".join(self.item or ())]),
            "IsStatusNotifierHostRegistered": GLib.Variant("b", self.has_host),
            "ProtocolVersion": GLib.Variant("i", 0),
        }[name]

    def _call(self, interface, path, method, arguments):
        return self.bus.call_sync(self.item[0], path, interface, method, arguments, None,
                                  Gio.DBusCallFlags.NONE, _LIMIT_MS, None).unpack()

    def _properties(self):
        values, = self._call("org.freedesktop.DBus.Properties", self.item[1], "GetAll",
                             GLib.Variant("(s)", (_ITEM,)))
        pictures = values.get("IconPixmap", [])
        return {name: value for name, value in values.items()
                if isinstance(value, (str, bool, int))} | {
                    "toolTip": values["ToolTip"][2],
                    "sizes": [[width, height] for width, height, _ in pictures],
                    "lengths": [len(pixels) for _, _, pixels in pictures],
                    "colours": sorted({tuple(pixels[place + 1:place + 4])
                                       for _, _, pixels in pictures
                                       for place in range(0, len(pixels), 4) if pixels[place]}),
                    "picture": bytes(pictures[0][2]).hex() if pictures else ""}

    def _menu_path(self):
        return self._properties()["Menu"]

    def _menu(self):
        _, layout = self._call(_MENU, self._menu_path(), "GetLayout",
                               GLib.Variant("(iias)", (0, -1, [])))
        return _row(layout)

    def _click(self, number):
        self._call(_MENU, self._menu_path(), "Event",
                   GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("s", ""), 0)))
        return True


def _row(layout):
    number, properties, children = layout
    return {
        "id": number,
        "label": _plain(properties.get("label", "")),
        "separator": properties.get("type") == "separator",
        "enabled": properties.get("enabled", True),
        "visible": properties.get("visible", True),
        "checked": properties.get("toggle-state", -1) == 1,
        "switch": properties.get("toggle-type") == "checkmark",
        "shortcut": properties.get("shortcut", []),
        "rows": [_row(child) for child in children],
    }


def _plain(label):
    """A single underscore marks the letter behind it, two are one."""
    return "_".join(part.replace("_", "") for part in label.split("__"))


def _say(answer):
    print(json.dumps({"answer": answer}), flush=True)


def _listen(tray):
    for line in sys.stdin:
        GLib.idle_add(_answer, tray, json.loads(line))


def _answer(tray, request):
    try:
        _say(tray.answer(request))
    except (GLib.Error, KeyError) as problem:
        print(json.dumps({"problem": str(problem)}), flush=True)
    return False


def _main():
    tray = Tray()
    threading.Thread(target=_listen, args=(tray,), daemon=True).start()
    GLib.MainLoop().run()


if __name__ == "__main__":
    _main()
