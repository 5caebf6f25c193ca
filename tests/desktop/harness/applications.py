# SPDX-License-Identifier: MIT
"""Real applications, driven by real keys."""

import os
import time

from .waiting import wait_for


class Application:
    """A program with a window.

    It is ready once that window is in front; a desktop of icons, which stays behind everything,
    is once it is on the screen.
    """

    def __init__(self, desktop, name, argv, window_class, env=None, comes_to_front=True,
                 limit=30):
        self.desktop = desktop
        self._comes_to_front = comes_to_front
        self._before = {window.id for window in desktop.windows.with_class(window_class)}
        self.process = desktop.start(name, argv, env)
        self.name = name
        self.window = wait_for(f"{name}'s window", lambda: self._new_window(window_class), limit,
                               desktop.windows.titles)
        if comes_to_front:
            desktop.windows.wait_active(self.window)

    def to_front(self):
        self.desktop.windows.activate(self.window)

    def close(self):
        """Closes the window and waits until the program has ended, its clipboard with it."""
        self.desktop.windows.close(self.window)
        wait_for(f"{self.name} to end", lambda: self.process.poll() is not None)

    def kill(self):
        self.desktop.processes.stop(self.process)

    def is_in_front(self):
        return self.desktop.windows.active() == self.window.id

    def _new_window(self, window_class):
        for window in self.desktop.windows.with_class(window_class):
            if window.id in self._before:
                continue
            if not self._comes_to_front or self.desktop.windows.active() == window.id:
                return window
        return None


class Editor(Application):
    """A text editor with a file open; its text is read by saving it."""

    def __init__(self, desktop, name, argv, window_class, path, env=None):
        self.path = path
        self._pressed = 0.0
        # Where keys come late, who is saving may not notice what is pasted.
        self._pause = 0.3 if desktop.windows_take_keys_late else 0
        with open(path, "a", encoding="utf-8"):
            pass
        super().__init__(desktop, name, argv, window_class, env)
        if desktop.windows_take_keys_late:
            self._wait_until_it_takes_keys()

    def text(self):
        """The text as it stands in the window: saved, then read."""
        if time.monotonic() - self._pressed >= self._pause:
            self.desktop.keyboard.chord("Ctrl+s")
            self._pressed = time.monotonic()
        return self._saved()

    def wait_for_text(self, expected, limit=20):
        """Waits until the text is this one, final line break aside."""
        self._pressed = time.monotonic() if self._pause else 0.0
        wait_for(f"the text {_short(expected)} in {self.name}",
                 lambda: self.text().rstrip("\n") == expected.rstrip("\n"), limit,
                 lambda: _short(self.text()))

    def assert_empty(self):
        """Fails when anything was typed or pasted into it, which is seen once a letter of our own
        has come behind it."""
        self.desktop.keyboard.tap("z")
        wait_for(f"a letter in {self.name}", lambda: self.text().rstrip("\n").endswith("z"), 20,
                 lambda: _short(self.text()))
        if self._saved().rstrip("\n") != "z":
            raise AssertionError(f"{self.name} was given {_short(self._saved())}")

    def select_all_and_copy(self):
        self.desktop.keyboard.chord("Ctrl+a")
        self.desktop.keyboard.chord("Ctrl+c")

    def paste(self):
        self.desktop.keyboard.chord("Ctrl+v")

    def _saved(self):
        with open(self.path, encoding="utf-8", errors="replace") as file:
            return file.read()

    def _wait_until_it_takes_keys(self):
        """By letters that are taken away again."""
        before = len(self._saved())
        self._press_until("a letter", "x", lambda text: len(text) > before)
        self._press_until("no letter", "BackSpace", lambda text: len(text) == before)

    def _press_until(self, what, key, there):
        looks = []  # one may find the file while it is being written

        def seen_twice():
            if time.monotonic() - self._pressed >= self._pause:
                if looks and there(self._saved()):
                    looks.append("again")
                else:
                    looks[:] = ["first"]
                    self.desktop.keyboard.tap(key)
                self.text()
            return len(looks) > 2

        wait_for(f"{what} in {self.name}", seen_twice, describe=self._saved)


def gtk_editor(desktop, path, contents="", launcher=()):
    """A GTK text editor; `launcher` is a command in front of its own."""
    _write(path, contents)
    return Editor(desktop, "mousepad", [*launcher, "mousepad", "--disable-server", path],
                  "mousepad", path)


def qt_editor(desktop, path, contents="", launcher=()):
    """A Qt text editor; `launcher` is a command in front of its own."""
    _write(path, contents)
    # So that what is typed to see whether it takes keys can be taken away without a trace.
    settings = os.path.join(desktop.env["XDG_CONFIG_HOME"], "featherpad", "fp.conf")
    os.makedirs(os.path.dirname(settings), exist_ok=True)
    _write(settings, "[text]\nappendEmptyLine=false\n")
    return Editor(desktop, "featherpad", [*launcher, "featherpad", "--standalone", path],
                  "featherpad", path)


class Terminal(Application):
    """A terminal emulator that writes what it is given into a file."""

    def __init__(self, desktop, path, options=()):
        self.path = path
        self._tried = 0
        # Without line editing every character reaches the file as soon as it arrives.
        argv, window_class = desktop.terminal(f"stty -icanon; exec cat > '{path}'", *options)
        super().__init__(desktop, window_class, argv, window_class)
        wait_for("the terminal's program to listen", lambda: os.path.exists(path))
        if desktop.windows_take_keys_late:
            self._wait_until_it_takes_keys()

    def wait_for_text(self, expected, limit=20):
        """Waits until exactly this text has arrived."""
        wait_for(f"the text {_short(expected)} in the terminal",
                 lambda: self.text().rstrip("\n") == expected, limit,
                 lambda: _short(self.text()))

    def text(self):
        with open(self.path, encoding="utf-8") as file:
            return file.read()[self._tried:]

    def _wait_until_it_takes_keys(self):
        wait_for("a line in the terminal",
                 lambda: self.desktop.keyboard.tap("Return") or self.text())
        self.desktop.keyboard.tap("x")  # behind the last of them
        wait_for("a letter in the terminal", lambda: self.text().endswith("x"))
        self._tried = len(self.text())


class FileManager(Application):
    """A file manager that shows one folder."""

    def __init__(self, desktop, folder):
        self.folder = folder
        super().__init__(desktop, "pcmanfm", ["pcmanfm", "--new-win", folder], "pcmanfm")

    def copy_everything(self):
        self.desktop.keyboard.chord("Ctrl+a")
        self.desktop.keyboard.chord("Ctrl+c")

    def wait_for_file(self, name, limit=20):
        path = os.path.join(self.folder, name)
        wait_for(f"{name} in {self.folder}", lambda: os.path.exists(path), limit,
                 lambda: os.listdir(self.folder))
        return path


def _write(path, contents):
    with open(path, "w", encoding="utf-8") as file:
        file.write(contents)


def _short(text):
    return repr(text if len(text) <= 120 else f"{text[:100]}… ({len(text)} characters)")
