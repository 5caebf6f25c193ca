# SPDX-License-Identifier: MIT
"""A private desktop of GNOME's shell, with an X server inside."""

import json
import os

from .desktop import PrivateDesktop
from .waiting import wait_for

_SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>{address}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""
_KEYBOARD = """
const {Clutter, GLib} = imports.gi;
globalThis.userKeyboard ??= Clutter.get_default_backend().get_default_seat()
    .create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
const press = (key, state) =>
    globalThis.userKeyboard.notify_keyval(GLib.get_monotonic_time(), Clutter[`KEY_${key}`], state);
"""


class GnomeDesktop(PrivateDesktop):
    """As far as X11 programs see it the same as the others. The shell may be told what to do."""

    def __init__(self, **options):
        super().__init__(window_manager=None, **options)
        self.env["XDG_SESSION_TYPE"] = "wayland"
        self.env["XDG_CURRENT_DESKTOP"] = "GNOME"
        del self.env["GSETTINGS_BACKEND"]  # several programs share the settings

    def shell(self, script):
        """Runs a script within the shell; answers what it comes to, nothing when it failed."""
        answer = self.bus_call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Eval",
                               script)
        if not answer.startswith("(true, "):
            return None
        told = answer[len("(true, '"):-len("')\n")]
        return json.loads(told) if told else None

    def press(self, *keys):
        """Presses keys together on the user's keyboard, by their names in the shell's toolkit."""
        downs = [f"press('{key}', Clutter.KeyState.PRESSED);" for key in keys]
        ups = [f"press('{key}', Clutter.KeyState.RELEASED);" for key in reversed(keys)]
        self.shell("(() => {" + _KEYBOARD + "".join(downs + ups) + "return 0; })()")

    def copy(self, text):
        """Copies in a Wayland program that has no window of its own."""
        self.run(["wl-copy", "--type", "text/plain;charset=utf-8"], stdin=None,
                 input=text.encode(), capture_output=False).check_returncode()

    def start_media_keys(self):
        """The service that runs commands by the user's own keys."""
        self.start("media-keys", ["/usr/libexec/gsd-media-keys"])

    def _start(self):
        self.bus.start(self.env)  # before the shell, which has services on it
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.bus.address
        self.keyring.start(self.keyring_state, {**self.env, "GSETTINGS_BACKEND": "memory"})
        self._start_system_bus()
        self._start_shell()
        self._start_on_x_server()

    def _start_system_bus(self):
        """The shell does not start without one, though nobody needs to be there."""
        address = f"unix:path={self.runtime}/system-bus"
        configuration = os.path.join(self.runtime, "system-bus.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(_SYSTEM_BUS.format(address=address))
        self.processes.start("system-bus", ["dbus-daemon", f"--config-file={configuration}",
                                            "--nofork", "--nopidfile"], self.env)
        self.env["DBUS_SYSTEM_BUS_ADDRESS"] = address
        wait_for("a system bus", lambda: os.path.exists(f"{self.runtime}/system-bus"))

    def _start_shell(self):
        self._make_folder_of_x_servers()
        self.processes.start(
            "gnome-shell", ["gnome-shell", "--headless", "--virtual-monitor",
                            f"{self.size[0]}x{self.size[1]}", "--wayland", "--wayland-display",
                            "wayland-1", "--unsafe-mode"],
            {**self.env, "LIBGL_ALWAYS_SOFTWARE": "1", "QT_QPA_PLATFORM": ""})
        ready = "Main.layoutManager._startingUp === false"
        wait_for("the shell", lambda: self.shell(ready), 60)
        for name in ("DISPLAY", "XAUTHORITY"):
            self.env[name] = self.shell(f"imports.gi.GLib.getenv('{name}')")
        self.env["WAYLAND_DISPLAY"] = "wayland-1"
        self.press("Shift_L")  # a seat without a keyboard lets nobody copy
        self.shell("Main.overview.hide()")  # in it windows get no keys
        os.environ["XAUTHORITY"] = self.env["XAUTHORITY"]  # where the tests look at windows
        wait_for("the windows", lambda: self.shell("Main.overview.visible") is False)
