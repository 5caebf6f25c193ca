# SPDX-License-Identifier: MIT
"""A private desktop of labwc, whose windows stack."""

import os
import re
import signal

from .sway import SwayDesktop
from .waiting import wait_for
from .wayland_windows import WaylandWindows

# Every window fills the output. No key and no place of the bare desktop does anything.
_CONFIGURATION = """<?xml version="1.0"?>
<labwc_config>
  <keyboard>{keys}<keybind key="W-S-F12"><action name="None"/></keybind></keyboard>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
  <windowRules>
    <windowRule identifier="*" serverDecoration="no"><action name="Maximize"/></windowRule>
  </windowRules>
</labwc_config>
"""
_AUTOSTART = """{outputs}
env >"{told}.new" && mv "{told}.new" "{told}"
"""


class LabwcDesktop(SwayDesktop):
    """The same as sway's, but that windows that can be asked for are the program's own."""

    windows_class = WaylandWindows

    def __init__(self, **options):
        super().__init__(**options)
        self.env["XDG_CURRENT_DESKTOP"] = "labwc:wlroots"

    def front(self):
        found = self.run(["wlrctl", "toplevel", "list", "state:active"]).stdout.decode()
        return found.partition(": ")[0] or None

    def bring_to_front(self, app_id):
        self.run(["wlrctl", "toplevel", "focus", f"app_id:{app_id}"]).check_returncode()
        wait_for(f"{app_id} in front", lambda: self.front() == app_id)

    def close_window(self, app_id):
        self.run(["wlrctl", "toplevel", "close", f"app_id:{app_id}"]).check_returncode()

    def fill_screen(self):
        self.run(["wlrctl", "toplevel", "fullscreen", "state:active"]).check_returncode()

    def bind_shortcut(self, chord, program):
        """By the line that the program tells its user."""
        told = self.run([program, "--check"]).stdout.decode()
        line = re.search("Add this to <keyboard> in labwc's rc.xml: (<keybind .*</keybind>)", told)
        # The compositor was started before this desktop's bus.
        bus = f"env DBUS_SESSION_BUS_ADDRESS={self.env['DBUS_SESSION_BUS_ADDRESS']} "
        self._configure("rc.xml", _CONFIGURATION.format(
            keys=line[1].replace(program, bus + program)))
        os.kill(self._compositor.pid, signal.SIGHUP)  # has it read again

    def _command(self, told):
        self._configure("rc.xml", _CONFIGURATION.format(keys=""))
        self._configure("autostart",
                        _AUTOSTART.format(outputs="\n".join(self._output_lines()), told=told))
        return ["labwc"]

    def _configure(self, name, contents):
        path = self.path(".config", "labwc", name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(contents)

    def _output_lines(self):
        width, height = self.size
        for number in range(self._outputs):
            yield (f"wlr-randr --output HEADLESS-{number + 1} --custom-mode {width}x{height} "
                   f"--scale {self._output_scale} "
                   f"--pos {round(number * width / self._output_scale)},0")
