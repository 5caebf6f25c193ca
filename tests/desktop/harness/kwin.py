# SPDX-License-Identifier: MIT
"""A private desktop of KDE's compositor, with an X server inside."""

import os
import shutil

from .desktop import PrivateDesktop
from .waiting import wait_for
from .wayland_clipboard import WaylandClipboard
from .wayland_devices import FakePointer, WaylandKeyboard
from .wayland_windows import WaylandWindows
from .wayland_wire import Wire, offered

_TELL = """#!/bin/sh
env >"{told}.new" && mv "{told}.new" "{told}"
"""
_ENTRY = """[Desktop Entry]
Type=Application
Name={name}
Exec={program}
NoDisplay=true
X-KDE-Wayland-Interfaces={interfaces}
"""
# What a cache of installed programs is made of.
_MENU = """<!DOCTYPE Menu PUBLIC "-//freedesktop//DTD Menu 1.0//EN"
 "http://www.freedesktop.org/standards/menu-spec/1.0/menu.dtd">
<Menu><Name>Applications</Name><DefaultAppDirs/><DefaultDirectoryDirs/>
<Include><All/></Include></Menu>
"""
_INTERFACES = ("org_kde_plasma_window_management", "org_kde_kwin_fake_input",
               "org_kde_kwin_keystate")


class KwinDesktop(PrivateDesktop):
    """As far as X11 programs see it the same as the others. `granted` names programs, the tests' own
    among them, that are installed as KWin wants it, for what it gives to no others; None: it gives
    all to everyone."""

    clipboard_class = WaylandClipboard

    def __init__(self, *, granted=None, xkb_layout="us", **options):
        super().__init__(window_manager=None, **options)
        self._granted = granted
        self._xkb_layout = xkb_layout
        self._wire = None
        self._program = None
        self.env["XDG_SESSION_TYPE"] = "wayland"
        self.env["XDG_CURRENT_DESKTOP"] = "KDE"

    def lets_go_for_programs(self):
        """Whether a program can let go the keys of another one, as versions before 6 let it."""
        return b" 5." in self.run([self._program, "--version"]).stdout

    def close(self):
        if self._wire is not None:
            self._wire.close()
        super().close()

    def _start(self):
        self.bus.start(self.env)  # before the compositor, which has services on it
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.bus.address
        self._start_kwin()
        self.keyring.start(self.keyring_state, self.env)
        self._start_on_x_server()
        self._wire = Wire(self.env)
        self.keyboard = WaylandKeyboard(self._wire)
        self.pointer = FakePointer(self._wire)  # an X11 one moves over X11 windows alone from 6 on
        self.windows = WaylandWindows(self)

    def _start_kwin(self):
        with open(self.path(".config", "kxkbrc"), "w", encoding="utf-8") as file:
            file.write(f"[Layout]\nUse=true\nLayoutList={self._xkb_layout}\n")
        told = os.path.join(self.base, "kwin.env")
        tell = os.path.join(self.base, "tell")
        with open(tell, "w", encoding="utf-8") as file:
            file.write(_TELL.format(told=told))
        os.chmod(tell, 0o700)
        self._make_folder_of_x_servers()
        # It comes with a capability, which it need not have, and without which it does not start in
        # most containers.
        self._program = shutil.copy(shutil.which("kwin_wayland"), self.base)
        environment = {**self.env, "KWIN_COMPOSE": "Q", "QT_QPA_PLATFORM": ""}
        if self._granted is None:
            environment["KWIN_WAYLAND_NO_PERMISSION_CHECKS"] = "1"
        self.processes.start(
            "kwin", [self._program, "--virtual", "--width", str(self.size[0]), "--height",
                     str(self.size[1]), "--xwayland", "--socket", "wayland-1", "--no-lockscreen",
                     tell], environment)
        wait_for("the compositor", lambda: os.path.exists(told))
        with open(told, encoding="utf-8") as file:
            lines = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        for name in ("WAYLAND_DISPLAY", "DISPLAY", "XAUTHORITY"):
            if name in lines:
                self.env[name] = lines[name]
        if self._granted is not None:
            self._install(self._granted)

    def _install(self, programs):
        applications = os.path.join(self.env["XDG_DATA_HOME"], "applications")
        menus = os.path.join(self.env["XDG_CONFIG_HOME"], "menus")
        for directory in (applications, menus):
            os.makedirs(directory, exist_ok=True)
        for program in programs:
            # In the place of what the program's package has installed: KWin 6 looks at one alone.
            path = os.path.join(applications, f"{os.path.basename(program)}.desktop")
            with open(path, "w", encoding="utf-8") as file:
                file.write(_ENTRY.format(name=os.path.basename(program), program=program,
                                         interfaces=",".join(_INTERFACES)))
        with open(os.path.join(menus, "applications.menu"), "w", encoding="utf-8") as file:
            file.write(_MENU)
        wait_for("the compositor to know them", self._knows_them, 60)

    def _knows_them(self):
        # One that is made within the second of the one before goes unnoticed.
        maker = next(filter(shutil.which, ("kbuildsycoca6", "kbuildsycoca5")))  # the compositor's
        self.run([maker, "--noincremental"]).check_returncode()
        return "org_kde_kwin_fake_input" in offered(self.env)
