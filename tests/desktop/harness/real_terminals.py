# SPDX-License-Identifier: MIT
"""Terminal emulators."""

import os
import signal

from .real_program import RealProgram
from .waiting import wait_for


class _Terminal(RealProgram):
    """Its program prints the text and then writes down what it is given."""

    def before_start(self):
        self.received = self.case.path("work", "received.txt")
        self.pid_file = self.case.path("work", "pid")

    def script(self):
        # A screen full of it: a triple click anywhere takes one line.
        return (f"yes \"$(cat '{self.path}')\" | head -n 100; stty -icanon -echo; "
                f"sh -c 'echo $$ > {self.pid_file}; exec cat > {self.received}'; exit 0")

    def wait_until_ready(self):
        wait_for("the terminal's program to listen", lambda: os.path.exists(self.received), 30)

    def press(self, keys):
        if keys == self.copy_keys:
            frame = self.desktop.windows.frame(self.window)
            for _ in range(3):
                self.desktop.pointer.click(frame.x + 30, frame.y + frame.height // 2)
            self.copy_selected()
            self.desktop.pointer.move(2, 2)

    def copy_selected(self):
        self.desktop.keyboard.chord("Ctrl+Shift+c")

    def text_after_paste(self, expected, limit=10):
        wait_for(f"{expected!r} in {self.package}", lambda: expected in self._text(), limit,
                 self._text)
        return self._text()

    def close(self):
        with open(self.pid_file, encoding="utf-8") as file:
            os.kill(int(file.read()), signal.SIGTERM)  # the terminal ends with its program
        self.wait_until_gone()

    def _text(self):
        with open(self.received, encoding="utf-8") as file:
            return file.read()


class XTerm(_Terminal):
    package = "xterm"
    window_class = "xterm"
    source = "debian-xterm"

    def command(self):
        # As it comes it copies to where a middle click pastes from; many set this.
        return ["xterm", "-xrm", "*selectToClipboard: true", "-e", "sh", "-c", self.script()]

    def copy_selected(self):
        pass


class Konsole(_Terminal):
    package = "konsole"
    window_class = "konsole"
    source = "org.kde.konsole"
    rich = ("htmlData",)

    def command(self):
        return ["konsole", "--nofork", "-e", "sh", "-c", self.script()]


class GnomeTerminal(_Terminal):
    package = "gnome-terminal"
    window_class = "gnome-terminal"
    source = "org.gnome.Terminal"

    def before_start(self):
        super().before_start()
        self.desktop.start("gnome-terminal-server", ["/usr/libexec/gnome-terminal-server"])
        wait_for("the terminal's server", lambda: "true" in self.desktop.bus_call(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner",
            "org.gnome.Terminal"))

    def command(self):
        return ["gnome-terminal", "--wait", "--", "sh", "-c", self.script()]
