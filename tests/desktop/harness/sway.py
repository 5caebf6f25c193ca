# SPDX-License-Identifier: MIT
"""A private Wayland desktop with an X server inside."""

import json
import os
import pwd
import shutil
import signal
import sys

from .desktop import PrivateDesktop
from .sway_windows import SwayWindows
from .waiting import PATIENCE, wait_for
from .wayland_clipboard import WaylandClipboard
from .wayland_devices import WaylandKeyboard, WaylandPointer
from .wayland_wire import Wire

_CONFIGURATION = """
{outputs}
xwayland {xwayland}
default_border none
exec sh -c 'env >"{told}.new" && mv "{told}.new" "{told}"'
"""


def leave_root():
    """This compositor refuses to run as root, and its X server lets in only its own user. So an
    administrator's test begins anew as somebody else."""
    if os.getuid() != 0:
        return
    numbers = [entry.pw_uid for entry in pwd.getpwall() if 1000 <= entry.pw_uid < 60000]
    user = numbers[0] if numbers else 1  # one without a name is let in nowhere
    reading = "+dac_override,+dac_read_search"  # of the program, wherever an administrator built it
    os.execvp("setpriv", ["setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups",
                          f"--inh-caps={reading}", f"--ambient-caps={reading}", *sys.orig_argv])


class SwayDesktop(PrivateDesktop):
    """The same as the other one. The keyboard and the pointer reach windows of both kinds; the
    windows that can be asked for are the program's own. Further outputs of the same size stand to
    the right of the first one."""

    clipboard_class = WaylandClipboard
    windows_class = SwayWindows
    windows_take_keys_late = True
    seconds_of_a_key = 2 * PATIENCE  # a command is started, and a screen reader is told

    def __init__(self, *, xwayland=True, outputs=1, output_scale=1, **options):
        super().__init__(window_manager=None, **options)
        self._xwayland = xwayland
        self._outputs = outputs
        self._output_scale = output_scale
        self._wire = None
        self._compositor = None
        self.env["XDG_SESSION_TYPE"] = "wayland"
        self.env["XDG_CURRENT_DESKTOP"] = "sway"
        del self.env["QT_QPA_PLATFORM"]  # applications find out by themselves

    def sway(self, *command):
        """Asks the compositor; answers what it says."""
        answer = self.run(["swaymsg", "--raw", *command])
        answer.check_returncode()
        return json.loads(answer.stdout or b"null")

    def open_window(self, app_id):
        """A Wayland window of that application, which has the keyboard when this returns; `end`
        ends it."""
        return Bystander(self, app_id)

    def front(self):
        """The application id of the window in front, or the class of an X11 one."""
        window = self.windows.front()
        return window.app_id if window else None

    def bring_to_front(self, app_id):
        self.sway(f"[app_id={app_id}] focus")
        wait_for(f"{app_id} in front", lambda: self.front() == app_id)

    def close_window(self, app_id):
        """As its user does."""
        self.sway(f"[app_id={app_id}] kill")

    def fill_screen(self):
        """With the window in front."""
        self.sway("fullscreen enable")

    def terminal(self, script, *options):
        return ["foot", *options, "sh", "-c", script], "foot"

    def bind_shortcut(self, chord, program):
        """As the user's configuration does; a desktop of this kind keeps all keys to itself."""
        keys = chord.replace("Super", "Mod4")
        bus = self.env["DBUS_SESSION_BUS_ADDRESS"]  # which the compositor was started before
        self.sway(f"bindsym --to-code {keys} exec env DBUS_SESSION_BUS_ADDRESS={bus} "
                  f"{program} --toggle")

    def screenshot(self, path, output="HEADLESS-1"):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        self.run(["grim", "-o", output, path]).check_returncode()

    def picture(self, output="HEADLESS-1"):
        """What an output shows, as (width, height, bytes of three per pixel)."""
        taken = self.run(["grim", "-t", "ppm", "-o", output, "-"])
        taken.check_returncode()
        _, width, height, _, pixels = taken.stdout.split(maxsplit=4)
        return int(width), int(height), pixels

    def take_screen_away(self):
        self.processes.stop(self._compositor, signal.SIGKILL)

    def close(self):
        if self._wire is not None:
            self._wire.close()
        super().close()

    def _start(self):
        super()._start()
        self._wire = Wire(self.env)
        width, height = (side / self._output_scale for side in self.size)
        self.keyboard = WaylandKeyboard(self._wire)
        self.pointer = WaylandPointer(self._wire, (round(width * self._outputs), round(height)))
        self.pointer.move(2, 2)
        self.windows = self.windows_class(self)

    def _start_x_server(self):
        told = os.path.join(self.base, "compositor.env")
        headless = {"WLR_BACKENDS": "headless", "WLR_HEADLESS_OUTPUTS": str(self._outputs),
                    "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"}
        command = self._command(told)
        self._compositor = self.processes.start(command[0], [shutil.which(command[0]), *command[1:]],
                                                {**self.env, **headless})
        wait_for("the compositor", lambda: os.path.exists(told))
        with open(told, encoding="utf-8") as file:
            lines = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        for name in ("WAYLAND_DISPLAY", "SWAYSOCK", "DISPLAY"):
            if name in lines:
                self.env[name] = lines[name]

    def _command(self, told):
        """What starts the compositor, configured to leave its environment in that file."""
        configuration = os.path.join(self.base, "sway.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(_CONFIGURATION.format(
                outputs="\n".join(self._output_lines()), told=told,
                xwayland="enable" if self._xwayland else "disable"))
        return ["sway", "-c", configuration]

    def _output_lines(self):
        width, height = self.size
        for number in range(self._outputs):
            yield (f"output HEADLESS-{number + 1} mode {width}x{height}@60Hz "
                   f"scale {self._output_scale} "
                   f"position {round(number * width / self._output_scale)} 0")


class Bystander:
    """A window of an application that does nothing but write down what it is typed."""

    def __init__(self, desktop, app_id):
        self._desktop = desktop
        self._path = os.path.join(desktop.files, f"typed-{app_id}")
        script = f"stty -icanon; exec cat > '{self._path}'"
        self.process = desktop.start(app_id, ["foot", f"--app-id={app_id}", "sh", "-c", script])
        wait_for(f"a window of {app_id} in front", lambda: desktop.front() == app_id)
        wait_for(f"{app_id} to listen", lambda: os.path.exists(self._path))

    def typed(self):
        with open(self._path, encoding="utf-8") as file:
            return file.read()

    def end(self):
        self._desktop.processes.stop(self.process)
