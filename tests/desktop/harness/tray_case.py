# SPDX-License-Identifier: MIT
"""The ground for tests of the status menu."""

import os

from .case import VantorelTestCase
from .tray import Tray
from .waiting import wait_for

HELP = "About Vantorel"
MENU = "Vantorel Menu"
RECORDER = "Keyboard Shortcut"
QUESTION = "Clear Clipboard History?"
PINNED_TOO = "Also delete pinned clips"

ALWAYS = ["Open Vantorel", "Search & Filter…", "Pause History", "Ignore Password Managers",
          "Launch at Login", "Keyboard Shortcut…", "Clear History…", "About Vantorel",
          "Quit Vantorel"]


class StatusMenuTestCase(VantorelTestCase):
    """What a test of the menu's commands looks at."""

    def setUp(self):
        super().setUp()
        self.autostart_entry = os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "autostart",
                                            "com.vantorel.Vantorel.desktop")

    def control(self, name):
        """A shown control of any of the program's windows."""
        def there():
            program = self.vantorel.accessibility.program("vantorel")
            return [element for element in (program.walk() if program else [])
                    if element.name == name and element.showing and element.extents]
        return wait_for(f"the control {name!r}", there)[0]

    def wait_for_menu(self):
        """Waits until our own menu is shown and has the keyboard; answers its frame."""
        menu = self.desktop.windows.wait_for_title(MENU)
        wait_for("the menu to have the keyboard",
                 lambda: self.desktop.windows.menu_has_keyboard(menu))
        return self.desktop.windows.frame(menu)

    def dismiss_menu(self):
        self.wait_for_menu()
        self.desktop.keyboard.tap("Escape")
        self.desktop.windows.wait_gone(MENU)

    def answer_question(self, button):
        self.desktop.windows.wait_for_title(QUESTION)
        self.desktop.pointer.click(*self.control(button).centre())
        self.desktop.windows.wait_gone(QUESTION)

    def paused_for(self):
        """Seconds from now to the end of the stored pause, nothing without one."""
        from datetime import datetime, timezone
        stored = self.vantorel.defaults().get("privacy.pausedUntil")
        if stored is None:
            return None
        end = datetime.fromisoformat(stored.replace("Z", "+00:00"))
        return (end - datetime.now(timezone.utc)).total_seconds()

    def read_autostart_entry(self):
        with open(self.autostart_entry, encoding="utf-8") as file:
            return file.read()

    def pin(self, text):
        """Copies a text and pins it."""
        self.vantorel.copy(text)
        self.vantorel.open_panel()
        self.desktop.keyboard.chord("Ctrl+p")
        wait_for("the pin", lambda: [item for item in self.vantorel.history.items()
                                     if item.get("isPinned") and item.get("text") == text])
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()


class TrayTestCase(StatusMenuTestCase):
    """A tray that is there before the program."""

    autostart = False

    def setUp(self):
        super().setUp()
        self.tray = Tray(self.desktop)
        self.start_program()

    def start_program(self):
        self.vantorel.start()
        self.tray.wait_for_item()

    def wait_for_row(self, *labels):
        def there():
            try:
                return self.tray.row(*labels)
            except AssertionError:
                return None
        return wait_for(f"the row {labels}", there, 20, self.tray.labels)
