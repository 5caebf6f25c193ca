# SPDX-License-Identifier: MIT
"""A program that people copy from and paste into, driven by its own keys."""

import time

from .applications import Application
from .waiting import wait_for

START_LIMIT = 90  # an office program's first start on a busy machine
ASK_AGAIN = 0.5


class RealProgram:
    """A program with a text in it: everything can be copied out of it, and more pasted behind it.

    Each kind says in class attributes what it is called and which keys it takes.
    """

    package = ""
    window_class = ""
    source = ""  # what the history calls it
    suffix = "txt"
    copy_keys = ("Ctrl+a", "Ctrl+c")
    select_keys = ("Ctrl+a",)
    end_keys = ("Ctrl+End",)  # from a selection of everything to a place where a paste adds
    rich = ()  # the forms beside the text that its copies bring into the history

    def __init__(self, case, text):
        self.case = case
        self.desktop = case.desktop
        self.path = case.file("work", f"text.{self.suffix}", contents=self.contents(text))
        self.before_start()
        self.application = Application(self.desktop, self.package, self.command(),
                                       self.window_class, self.environment(), limit=START_LIMIT)
        self.wait_until_ready()

    # What differs from program to program

    def contents(self, text):
        return text.encode()

    def command(self):
        raise NotImplementedError

    def environment(self):
        return {}

    def before_start(self):
        pass

    def wait_until_ready(self):
        pass

    # What is done with it

    @property
    def window(self):
        return self.application.window

    def press(self, keys):
        for chord in keys:
            self.desktop.keyboard.chord(chord)

    def copy_until(self, condition, what, limit=30):
        """Copies everything with its keys, again and again until this condition holds.

        It may still be loading, or taking what was pasted.
        """
        asked = []

        def holds():
            if not asked or time.monotonic() - asked[-1] > ASK_AGAIN:
                asked.append(time.monotonic())
                self.press(self.copy_keys)
            return self.owns_the_clipboard() and condition()

        wait_for(f"{self.package} to have copied {what}", holds, limit,
                 lambda: self.desktop.windows.titles())

    def owns_the_clipboard(self):
        return self.case.clipboard.owned_by(self.window)

    def go_to_end(self):
        self.press(self.end_keys)

    def text_after_paste(self, expected, limit=10):
        """Everything in it, once it contains this.

        It is read by selecting it: a copy would take the clipboard from under the paste.
        """
        asked = [time.monotonic()]  # not at once: a selection would be pasted over

        def there():
            if time.monotonic() - asked[-1] > ASK_AGAIN:
                asked.append(time.monotonic())
                self.press(self.select_keys)
            return expected in self.case.clipboard.selected()

        wait_for(f"{expected!r} in {self.package}", there, limit, self.case.clipboard.selected)
        return self.case.clipboard.selected()

    def close(self):
        """Ends it as its user does, and waits until its windows are gone."""
        self.desktop.windows.close(self.window)
        self.wait_until_gone()

    def wait_until_gone(self):
        wait_for(f"{self.package} to end", lambda: self.application.process.poll() is not None, 30,
                 self.desktop.windows.titles)
