# SPDX-License-Identifier: MIT
"""The private desktop as a whole."""

import os
import shutil
import tempfile

from Xlib import display as xdisplay
from Xlib import X
from Xlib import error as xerror

from .clipboard import Clipboard
from .keyboard import Keyboard, Pointer
from .keyring import Keyring, KeyringState
from .processes import Processes
from .session_bus import SessionBus
from .waiting import wait_for
from .window_manager import WindowManager
from .window_program import WindowProgram
from .windows import Windows

# Without an address programs look for a bus where they choose, or start one.
_NO_BUS = "unix:path=/nonexistent/bus"
_PASSED_ON = ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS",
              "VANTOREL_TEST_PATIENCE")


class PrivateDesktop:
    """A context manager: everything starts on entry and is ended on exit, whatever happened.

    `home` may name a directory that an earlier desktop left, which is how a restart of the whole
    machine is played; without it a fresh one is made and removed at the end. `window_manager` is a
    name of `window_manager.NAMES`; True stands for the lightest of them, None for no one at all.
    """

    clipboard_class = Clipboard
    # Whether windows are in front before their programs take keys.
    windows_take_keys_late = False
    # What it may take until the shortcut has reached the program and the panel has been seen.
    seconds_of_a_key = 0

    def __init__(self, *, size=(1280, 800), scale=1, keyring=KeyringState.UNLOCKED,
                 compositor=False, window_manager=True, dark=False, layout="us", home=None,
                 logs=None):
        self.size = size
        self.scale = scale
        self.keyring_state = keyring
        self.with_compositor = compositor
        self.with_window_manager = "openbox" if window_manager is True else window_manager
        self.dark = dark
        self.layout = layout
        self.base = tempfile.mkdtemp(prefix="vantorel-desktop-")
        self.home = home or os.path.join(self.base, "home")
        self.runtime = os.path.join(self.base, "runtime")
        self.logs = logs or os.path.join(self.base, "logs")
        self.files = os.path.join(self.base, "files")  # what tests hand to other programs
        for directory, mode in ((self.home, 0o700), (self.runtime, 0o700), (self.logs, 0o755),
                                (self.files, 0o700)):
            os.makedirs(directory, mode=mode, exist_ok=True)
        os.chmod(self.runtime, 0o700)
        self.processes = Processes(self.logs)
        self.env = self._environment()
        self.bus = SessionBus(self.processes, self.runtime)
        self.keyring = Keyring(self.processes, self.bus_call)
        self.display = None
        self.x_server = None
        self.window_manager = WindowManager(self)
        self.keep = False

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends every process; removes the directories unless they are wanted for a look."""
        if self.display is not None:
            try:
                self.display.close()
            except (OSError, xerror.ConnectionClosedError):
                pass
            self.display = None
        self.processes.stop_all()
        if self.keep:
            print(f"kept: {self.base}")
        else:
            shutil.rmtree(self.base, ignore_errors=True)

    def start(self, name, argv, env=None, **options):
        """Starts a program on this desktop."""
        return self.processes.start(name, argv, {**self.env, **(env or {})}, **options)

    def run(self, argv, env=None, **options):
        """Runs a program on this desktop to its end."""
        return self.processes.run(argv, {**self.env, **(env or {})}, **options)

    def bus_call(self, name, path, method, *arguments, limit=10):
        """A call over the session bus; answers its printed result, "" when it failed."""
        answer = self.run(["gdbus", "call", "--session", "--timeout", str(limit), "-d", name, "-o",
                           path, "-m", method, *arguments], limit=limit + 10)
        return answer.stdout.decode()

    def terminal(self, script, *options):
        """The command line of a terminal that runs a script, and the class of its window."""
        return ["xterm", *options, "-e", "sh", "-c", script], "xterm"

    def open_window(self, application):
        """A window of that application, which has the keyboard when this returns; `end` ends it."""
        program = WindowProgram(self, application)
        program.open(application)
        return program

    def path(self, *parts):
        """A path below the private home."""
        return os.path.join(self.home, *parts)

    def screenshot(self, path):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        self.run(["import", "-window", "root", path]).check_returncode()

    def take_screen_away(self):
        """As the end of the session does, or a crash of what shows windows."""
        self.display.close()
        self.display = None
        self.processes.stop(self.x_server)

    def picture_of(self, text, font="DejaVu Sans 9", paper="white", ink="black"):
        """The bytes of a picture that shows lines of text as the toolkits of this desktop draw them,
        right-to-left ones too."""
        path = self.path("drawn.png")
        self.run(["pango-view", "--no-display", "--text", text, "--font", font, "--dpi", "96",
                  "--margin", "24", "--background", paper, "--foreground", ink,
                  "--output", path]).check_returncode()
        with open(path, "rb") as file:
            picture = file.read()
        os.remove(path)
        return picture

    def set_layout(self, layout, option=None):
        """Changes the keyboard layout as a settings program does, and waits until it holds."""
        argv = ["setxkbmap", "-layout", layout, "-option", ""]
        if option:
            argv += ["-option", option]
        self.run(argv).check_returncode()
        wait_for(f"the layout {layout}", lambda: self._active_layout() == layout)
        self.keyboard.refresh_mapping()

    def set_background(self, path):
        self.run(["display", "-window", "root", path]).check_returncode()

    def _start(self):
        self._start_x_server()
        self.bus.start(self.env)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.bus.address
        self.keyring.start(self.keyring_state, self.env)
        if "DISPLAY" in self.env:
            self._start_on_x_server()

    def _start_on_x_server(self):
        self.display = xdisplay.Display(self.env["DISPLAY"])
        self.keyboard = Keyboard(self.display)
        self.pointer = Pointer(self.display)
        self.windows = Windows(self.display)
        # Out of the way: a pointer within the panel keeps its list from changing.
        self.pointer.move(2, 2)
        if self.layout != "us":
            self.set_layout(self.layout)
        if self.scale != 1:
            self._set_resources(f"Xft.dpi: {96 * self.scale}\n")
        if self.with_window_manager:
            self.window_manager.start(self.with_window_manager)
        if self.with_compositor:
            self._start_compositor()

    def _start_x_server(self):
        read_end, write_end = os.pipe()
        width, height = self.size[0] * self.scale, self.size[1] * self.scale
        try:
            self.x_server = self.processes.start(
                "xvfb",
                ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{width}x{height}x24",
                 "-dpi", str(96 * self.scale), "-nolisten", "tcp", "-noreset"],
                self.env, pass_fds=(write_end,))
        finally:
            os.close(write_end)
        with os.fdopen(read_end, "r", encoding="utf-8") as stream:
            number = stream.readline().strip()
        if not number:
            raise RuntimeError("the X server did not start")
        self.env["DISPLAY"] = f":{number}"

    @staticmethod
    def _make_folder_of_x_servers():
        """As a login makes it: without it compositors have no X server, newer ones with any other
        mode neither."""
        folder = "/tmp/.X11-unix"
        if not os.path.exists(folder):
            os.mkdir(folder)
            os.chmod(folder, 0o1777)

    def _start_compositor(self):
        self.start("picom", ["picom", "--backend", "xrender", "--config", "/dev/null"])
        atom = self.display.intern_atom("_NET_WM_CM_S0")
        wait_for("a compositor", lambda: self.display.get_selection_owner(atom) != X.NONE)

    def _set_resources(self, text):
        self.run(["xrdb", "-merge", "-"], input=text.encode(), stdin=None).check_returncode()

    def _active_layout(self):
        answer = self.run(["setxkbmap", "-query"]).stdout.decode()
        for line in answer.splitlines():
            if line.startswith("layout:"):
                return line.split(":", 1)[1].strip()
        return None

    def _environment(self):
        env = {name: os.environ[name] for name in _PASSED_ON if name in os.environ}
        env.update({
            "HOME": self.home,
            "XDG_RUNTIME_DIR": self.runtime,
            "XDG_CONFIG_HOME": os.path.join(self.home, ".config"),
            "XDG_DATA_HOME": os.path.join(self.home, ".local", "share"),
            "XDG_CACHE_HOME": os.path.join(self.home, ".cache"),
            "XDG_SESSION_TYPE": "x11",
            "LANG": "C.UTF-8",
            "LC_ALL": "C.UTF-8",
            "TMPDIR": self.runtime,
            "DBUS_SESSION_BUS_ADDRESS": _NO_BUS,  # until ours has started
            "DBUS_SYSTEM_BUS_ADDRESS": _NO_BUS,
            "GIO_USE_VFS": "local",
            "GSETTINGS_BACKEND": "memory",
            "GTK_USE_PORTAL": "0",
            "NO_AT_BRIDGE": "1",
            "QT_QPA_PLATFORM": "xcb",
        })
        if self.dark:
            env["GTK_THEME"] = "Adwaita:dark"
        if self.scale != 1:
            # The resource Xft.dpi scales the letters already.
            env["GDK_SCALE"] = str(self.scale)
            env["GDK_DPI_SCALE"] = str(1 / self.scale)
        for name in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
            os.makedirs(env[name], mode=0o700, exist_ok=True)
        return env

