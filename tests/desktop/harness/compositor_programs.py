# SPDX-License-Identifier: MIT
"""Editors and terminals as windows of a Wayland compositor, driven by the keyboard of its seat."""

import time

from .waiting import wait_for

_ASK_AGAIN = 0.5
_TRIAL = "x"  # in no text of a test; some of them may arrive late


class _Program:
    """A program whose window is in front and takes keys once it is made."""

    app_id = ""

    def __init__(self, case):
        self.desktop = case.desktop
        self.path = case.file("work", f"{self.app_id}.txt")
        self.process = self.desktop.start(self.app_id, self.command(), self.environment())
        # A window is in front before its program takes keys.
        wait_for(f"{self.app_id} to take keys", self._takes_keys, 60)

    def command(self):
        raise NotImplementedError

    def environment(self):
        return {}

    def wait_for_text(self, expected, limit=20):
        """Waits until exactly this has come since it took keys."""
        asked = [time.monotonic()]  # not at once: who is saving may not notice what is pasted

        def there():
            if time.monotonic() - asked[-1] > _ASK_AGAIN:
                asked.append(time.monotonic())
                self._save()
            return self.text() == expected

        wait_for(f"{expected!r} in {self.app_id}", there, limit,
                 lambda: (self.text(), self.desktop.windows.titles()))

    def text(self):
        """What it has written down."""
        return self._text().replace(_TRIAL, "").strip("\n")

    def _takes_keys(self):
        self.desktop.keyboard.tap(_TRIAL)
        self._save()
        return self._text()

    def _save(self):
        """Has it written to the file, in its own time."""

    def _text(self):
        with open(self.path, encoding="utf-8") as file:
            return file.read().rstrip("\n")


class _Editor(_Program):
    save_key = "Ctrl+s"

    def _save(self):
        self.desktop.keyboard.chord(self.save_key)


class Mousepad(_Editor):
    # Without modifiers: under KWin a chord of the program's lets go of those of the test.
    save_key = "F2"

    def __init__(self, case, backend="wayland"):
        self.app_id = "mousepad" if backend == "wayland" else "Mousepad"
        self._backend = backend
        case.file(".config", "Mousepad", "accels.scm",
                  contents=b'(gtk_accel_path "<Actions>/win.file.save" "F2")\n')
        super().__init__(case)

    def command(self):
        return ["mousepad", "--disable-server", self.path]

    def environment(self):
        return {"GDK_BACKEND": self._backend}


class GnomeTextEditor(_Editor):
    app_id = "org.gnome.TextEditor"

    def command(self):
        return ["gnome-text-editor", "--standalone", self.path]

    def environment(self):
        return {"GDK_BACKEND": "wayland", "GSK_RENDERER": "cairo"}


class _Terminal(_Program):
    """Its program writes down what it is given, without line editing as soon as it arrives."""

    def script(self):
        return ["sh", "-c", f"stty -icanon -echo; exec cat > '{self.path}'"]


class Foot(_Terminal):
    app_id = "foot"

    def command(self):
        return ["foot", *self.script()]


class XTerm(_Terminal):
    app_id = "XTerm"

    def command(self):
        return ["xterm", "-e", *self.script()]


class Konsole(_Terminal):
    app_id = "org.kde.konsole"

    def command(self):
        return ["konsole", "--nofork", "-e", *self.script()]

    def environment(self):
        return {"QT_QPA_PLATFORM": "wayland"}


class KWrite(_Editor):
    app_id = "org.kde.kwrite"
    save_key = "F2"

    def __init__(self, case):
        case.file(".config", "kdeglobals", contents=b"[Shortcuts]\nSave=F2\n")
        super().__init__(case)

    def command(self):
        return ["kwrite", self.path]

    def environment(self):
        return {"QT_QPA_PLATFORM": "wayland"}
