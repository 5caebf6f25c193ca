# SPDX-License-Identifier: MIT
"""What tests of the panel share: an editor in front, and entries in the history."""

from . import applications
from .case import VantorelTestCase
from .waiting import stays_true, wait_for

FRUITS = ("apple", "banana", "cherry")  # in the order they are copied


class PanelTestCase(VantorelTestCase):
    """An editor in front and three texts in the history."""

    texts = FRUITS

    def setUp(self):
        super().setUp()
        self.editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        for text in self.texts:
            self.vantorel.copy(text)

    def press(self, *chords):
        for chord in chords:
            self.desktop.keyboard.chord(chord)

    def open_with_pins(self, count):
        """Opens the panel and pins its first `count` rows."""
        self.vantorel.open_panel()
        for number in range(count):
            self.press("Ctrl+p", "Down")
            wait_for(f"{number + 1} pins", lambda n=number + 1: self.pins() == n)
        self.press(*["Up"] * count)

    def pins(self):
        return sum(1 for item in self.vantorel.history.items() if item.get("isPinned"))

    def menu_item(self, name):
        """The shown row of an open menu with this title, or nothing."""
        program = self.vantorel.accessibility.program("vantorel")
        found = [element for element in program.walk() if element.name == name and element.showing
                 and "menu item" in element.role]
        return found[0] if found else None

    def menu_titles(self):
        """The titles of an open menu's rows from top to bottom."""
        program = self.vantorel.accessibility.program("vantorel")
        found = [element for element in program.walk()
                 if element.showing and "menu item" in element.role]
        return [element.name for element in sorted(found, key=lambda one: one.extents[1])]

    def choose(self, name):
        """Waits for the row of an open menu and clicks it."""
        item = wait_for(f"the menu's row {name!r}", lambda: self.menu_item(name), 20,
                        self.menu_titles)
        self.desktop.pointer.click(*item.centre())

    def open_menu_of(self, title):
        """A right click on the row with this title."""
        row = self.vantorel.wait_for_row(title)
        self.desktop.pointer.click(*row.centre, button=3)
        wait_for("the row's menu", lambda: self.menu_item("Delete"))

    def preview(self):
        """The frame of the shown preview, or nothing."""
        shown = self.desktop.windows.titled("Preview")
        return self.desktop.windows.frame(shown[0]) if shown else None

    def wait_for_preview(self, limit=20):
        return wait_for("a preview", self.preview, limit, self.desktop.windows.titles)

    def wait_for_no_preview(self):
        wait_for("no preview", lambda: self.preview() is None)

    def assert_rows_stay(self, titles, seconds=0.3):
        """Fails when the list becomes another one within the next `seconds`."""
        # While the tree is being told anew it may be read as empty.
        stays_true(f"the rows {titles}",
                   lambda: self.vantorel.row_titles() in (list(titles), []), seconds)
        self.vantorel.wait_for_rows(titles)
