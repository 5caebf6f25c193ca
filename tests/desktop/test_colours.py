# SPDX-License-Identifier: MIT
"""Light and dark: the panel is drawn in what the desktop is drawn in, and follows it."""

import subprocess
import sys
import unittest

from harness.panel_case import PanelTestCase
from harness.waiting import wait_for

_PORTAL = """
import os, sys, gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib
XML = '''<node><interface name="org.freedesktop.portal.Settings">
<method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>'''
PATH, NAME = "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings"
scheme = int(sys.argv[1])
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
def called(_bus, sender, _path, _interface, _method, arguments, invocation):
    process = bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                            "GetConnectionUnixProcessID", GLib.Variant("(s)", (sender,)), None,
                            Gio.DBusCallFlags.NONE, 5000, None)[0]
    try:  # as portals look who asks
        os.close(os.open(f"/proc/{process}/root", os.O_PATH))
    except PermissionError as error:
        return invocation.return_dbus_error("org.freedesktop.DBus.Error.AccessDenied", str(error))
    invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", GLib.Variant("u", scheme)),)))
bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0], called, None, None)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE,
                               lambda *_: print("ready", flush=True), None)
def change(*_):
    global scheme
    scheme = int(sys.stdin.readline())
    bus.emit_signal(None, PATH, NAME, "SettingChanged",
                    GLib.Variant("(ssv)", ("org.freedesktop.appearance", "color-scheme",
                                           GLib.Variant("u", scheme))))
    return True
GLib.io_add_watch(GLib.IOChannel.unix_new(0), GLib.IO_IN, change)
GLib.MainLoop().run()
"""
DARK, LIGHT = 1, 2


class Portal:
    """The settings portal of a desktop."""

    def __init__(self, desktop, scheme):
        self._desktop = desktop
        self._process = desktop.start("portal", [sys.executable, "-c", _PORTAL, str(scheme)],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        assert self._process.stdout.readline() == b"ready\n"

    def stop(self):
        self._desktop.processes.stop(self._process)

    def change(self, scheme):
        self._process.stdin.write(b"%d\n" % scheme)
        self._process.stdin.flush()


class ColoursCase(PanelTestCase):
    texts = ("apple",)

    def wait_for_panel_in(self, dark):
        wait_for("a dark panel" if dark else "a light panel",
                 lambda: ColoursCase.panel_is_dark(self) == dark)

    def panel_is_dark(self):
        frame = self.desktop.windows.frame(self.vantorel.wait_for_panel())
        return sum(self.desktop.windows.pixel(frame.x + frame.width // 2, frame.y + 6)) < 300


class ThemeColours(ColoursCase):
    desktop_options = {"dark": True}

    def test_a_dark_theme_makes_the_panel_dark(self):
        self.vantorel.open_panel()
        self.wait_for_panel_in(dark=True)


class PortalColours(ColoursCase):
    def test_without_a_preference_the_panel_is_light(self):
        self.vantorel.open_panel()
        self.wait_for_panel_in(dark=False)

    def test_the_open_panel_follows_the_portal(self):
        self.vantorel.open_panel()
        self.wait_for_panel_in(dark=False)
        portal = Portal(self.desktop, DARK)
        self.wait_for_panel_in(dark=True)
        portal.change(LIGHT)
        self.wait_for_panel_in(dark=False)
        portal.change(DARK)
        self.wait_for_panel_in(dark=True)

    def test_the_open_panel_follows_the_portal_of_a_bus_that_came_back(self):
        self.vantorel.open_panel()
        self.desktop.bus.stop()
        self.desktop.bus.start(self.desktop.env)
        self.vantorel.wait_until_on_bus()
        portal = Portal(self.desktop, DARK)
        self.wait_for_panel_in(dark=True)
        portal.change(LIGHT)
        self.wait_for_panel_in(dark=False)


if __name__ == "__main__":
    unittest.main()
