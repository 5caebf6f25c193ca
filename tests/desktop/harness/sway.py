"""A private Wayland desktop with an X server inside."""

import json
import os
import pwd
import shutil
import sys

from .desktop import PrivateDesktop
from .waiting import wait_for

_CONFIGURATION = """
output HEADLESS-1 mode {width}x{height}@60Hz
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
    """The same as the other one, as far as X11 programs see it. What is Wayland's has names of its
    own."""

    def __init__(self, *, xwayland=True, **options):
        super().__init__(window_manager=None, **options)
        self._xwayland = xwayland
        self.env["XDG_SESSION_TYPE"] = "wayland"
        self.env["XDG_CURRENT_DESKTOP"] = "sway"

    def sway(self, *command):
        """Asks the compositor; answers what it says."""
        answer = self.run(["swaymsg", "--raw", *command])
        answer.check_returncode()
        return json.loads(answer.stdout or b"null")

    def copy(self, text, mime="text/plain;charset=utf-8"):
        """Copies in a Wayland program that has no window."""
        self.run(["wl-copy", "--type", mime], stdin=None, input=text.encode(),
                 capture_output=False).check_returncode()

    def read(self, mime="text/plain;charset=utf-8"):
        """What a Wayland program would paste; nothing when there is none."""
        answer = self.run(["wl-paste", "--no-newline", "--type", mime])
        return answer.stdout.decode() if answer.returncode == 0 else None

    def open_window(self, app_id):
        """A Wayland window of that application, which has the keyboard when this returns."""
        self.start(app_id, ["foot", f"--app-id={app_id}", "sleep", "1000"])
        wait_for(f"a window of {app_id} in front", lambda: self.front() == app_id)

    def front(self):
        """The application id of the window in front, or the class of an X11 one."""
        found = [window for window in _windows(self.sway("-t", "get_tree")) if window["focused"]]
        if not found:
            return None
        return found[0].get("app_id") or found[0].get("window_properties", {}).get("class")

    def bring_to_front(self, app_id):
        self.sway(f"[app_id={app_id}] focus")
        wait_for(f"{app_id} in front", lambda: self.front() == app_id)

    def _start_x_server(self):
        configuration = os.path.join(self.base, "sway.conf")
        told = os.path.join(self.base, "sway.env")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(_CONFIGURATION.format(
                width=self.size[0], height=self.size[1], told=told,
                xwayland="enable" if self._xwayland else "disable"))
        headless = {"WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman",
                    "WLR_LIBINPUT_NO_DEVICES": "1"}
        self.processes.start("sway", [shutil.which("sway"), "-c", configuration],
                             {**self.env, **headless})
        wait_for("the compositor", lambda: os.path.exists(told))
        with open(told, encoding="utf-8") as file:
            lines = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        for name in ("WAYLAND_DISPLAY", "SWAYSOCK", "DISPLAY"):
            if name in lines:
                self.env[name] = lines[name]


def _windows(node):
    for child in (*node.get("nodes", ()), *node.get("floating_nodes", ())):
        yield from _windows(child)
    if node.get("pid"):
        yield node
