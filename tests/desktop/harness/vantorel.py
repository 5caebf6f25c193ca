# SPDX-License-Identifier: MIT
"""The program under test, started and used as a user does."""

import collections
import json
import os
import signal

from .accessibility import Accessibility
from .history import History
from .waiting import wait_for

SHORTCUT = "Super+Shift+v"
PANEL = "Vantorel"
STORAGE_NOTICE = "Secure storage is unavailable. Clipboard monitoring is paused."
SETTINGS_NOTICE = "Settings could not be read. History is paused until you resume it."
NO_TARGET_NOTICE = "Copied to clipboard. Press Ctrl+V to paste."
GONE_NOTICE = "This item is no longer available."

_APPLICATION = "vantorel"
_WELCOMED = "didShowOnboardingV2"
_SEPARATOR = "  ·  "  # stands between the parts of a row's second line

Row = collections.namedtuple("Row", "title metadata selected centre element")


def program_path():
    """The program's path, from the environment or from where the build puts it."""
    named = os.environ.get("VANTOREL_PROGRAM")
    if named:
        return named
    root = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", "..", ".."))
    return os.path.join(root, "build", "release", "vantorel")


class Vantorel:
    """One installation on one private desktop; it may be started again and again."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.clipboard = desktop.clipboard_class(desktop)
        self.history = History(desktop.env["XDG_DATA_HOME"], desktop.keyring.key)
        self.accessibility = Accessibility(desktop)
        self.defaults_file = os.path.join(desktop.env["XDG_CONFIG_HOME"], "vantorel",
                                          "defaults.json")
        self.launcher = []  # a command in front of the program's
        self.process = None

    # Starting and ending

    def start(self, *arguments, capturing=True, accessible=True, welcome=False, plain=False):
        """Starts it; with `capturing`, waits until it notices copies. Without `welcome` it has been
        started before, so that no help covers what is tested; without `plain`, or another command,
        as a log-in starts it, so that no panel does."""
        if not arguments and not plain and not welcome:
            arguments = ("--background",)
        if not welcome and not os.path.exists(self.defaults_file):
            self.set_defaults({})
        self.process = self.desktop.start(
            "vantorel", [*self.launcher, program_path(), *arguments],
            {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"} if accessible else {})
        if capturing:
            self.wait_until_capturing()
        return self

    def command(self, *arguments, limit=20):
        """Runs the program as a command to its end; answers the completed process."""
        return self.desktop.run([program_path(), *arguments], limit=limit)

    def wait_until_capturing(self, limit=20):
        """Offers blanks, which are read and never kept, until the program asks for them."""
        attempts = []

        def asked():
            if self.process.poll() is not None:
                raise AssertionError(f"the program ended with {self.process.returncode}: "
                                     f"{self.log()[-2000:]}")
            if attempts and attempts[-1].contents_requested():
                return True
            if not attempts or attempts[-1].age() > 0.6:
                attempts.append(self.clipboard.own(offers={"UTF8_STRING": b"  \n"}))
            return False

        try:
            wait_for("the program to capture", asked, limit)
        finally:
            for owner in attempts:
                owner.stop()

    def wait_until_on_bus(self, limit=20):
        """Waits until the running instance can be asked for something."""
        wait_for("the program's name on the bus", self.is_on_bus, limit)

    def is_on_bus(self):
        return "true" in self.desktop.bus_call(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner",
            "com.vantorel.Vantorel")

    def is_running(self):
        return self.process is not None and self.process.poll() is None

    def quit(self, sign=signal.SIGTERM, limit=20):
        """Ends it by a signal and answers its exit status."""
        os.kill(self.process.pid, sign)
        wait_for("the program to end", lambda: self.process.poll() is not None, limit)
        return self.process.returncode

    def kill(self):
        os.kill(self.process.pid, signal.SIGKILL)
        self.process.wait(10)

    def workers(self, program):
        """The processes of that program that this one has started and that still run."""
        found = []
        for name in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{name}/stat", encoding="utf-8", errors="replace") as file:
                    known_as, _, rest = file.read().rpartition(")")
            except OSError:
                continue
            state, parent = rest.split()[:2]
            # The system cuts names.
            is_named_so = known_as.endswith(f"({program[:15]}")
            if is_named_so and parent == str(self.process.pid) and state != "Z":
                found.append(int(name))
        return found

    def log(self):
        with open(os.path.join(self.desktop.logs, "vantorel.log"), encoding="utf-8",
                  errors="replace") as file:
            return file.read()

    def clear_by_keys(self, pinned_too=False):
        """Says yes to the question before clearing, which begins on its Cancel."""
        question = self.desktop.windows.wait_for_title("Clear Clipboard History?")
        wait_for("the keyboard", lambda: self.desktop.windows.has_focus(question))
        for key in ("Tab", "Space", "Tab", "Return") if pinned_too else ("Tab", "Tab", "Return"):
            self.desktop.keyboard.tap(key)

    # Settings

    def set_defaults(self, values):
        """Merges settings into the defaults file; the program must not be running."""
        current = {_WELCOMED: True, **self.defaults(), **values}
        os.makedirs(os.path.dirname(self.defaults_file), mode=0o700, exist_ok=True)
        with open(self.defaults_file, "w", encoding="utf-8") as file:
            json.dump(current, file)
        os.chmod(self.defaults_file, 0o600)

    def defaults(self):
        if not os.path.exists(self.defaults_file):
            return {}
        with open(self.defaults_file, encoding="utf-8") as file:
            return json.load(file)

    # Copying into the history

    def copy(self, text, limit=20):
        """Copies text and waits until it is the newest unpinned entry on disk."""
        self.clipboard.copy(text)
        self.wait_for_newest(text, limit)

    def wait_for_newest(self, text, limit=20):
        wait_for(f"{_short(text)} to be the newest entry on disk",
                 lambda: self.newest().get("text") == text, limit,
                 lambda: [_short(one) for one in self.history.texts()[:5]])

    def newest(self):
        """The first entry that is not pinned, as it is on disk."""
        for item in self.history.items():
            if not item.get("isPinned"):
                return item
        return {}

    def wait_for_texts(self, expected, limit=20):
        wait_for(f"the texts on disk to be {[_short(one) for one in expected]}",
                 lambda: self.history.texts() == list(expected), limit,
                 lambda: [_short(one) for one in self.history.texts()])

    # The panel

    def panel(self):
        """The panel's window if it is shown."""
        windows = self.desktop.windows
        shown = [each for each in windows.titled(PANEL) if not windows.is_for_a_tray(each)]
        return shown[0] if shown else None

    def press_shortcut(self):
        self.desktop.keyboard.chord(SHORTCUT)

    def open_panel(self, limit=20):
        """Presses the shortcut and waits until the panel has the keyboard."""
        self.press_shortcut()
        return self.wait_for_panel(limit)

    def wait_for_panel(self, limit=20):
        panel = wait_for("the panel", self.panel, limit, self.desktop.windows.titles)
        wait_for("the panel to have the keyboard",
                 lambda: self.desktop.windows.has_focus(panel), limit,
                 lambda: hex(self.desktop.windows.focus()))
        return panel

    def wait_until_hidden(self, limit=20):
        wait_for("the panel to be hidden", lambda: self.panel() is None, limit)

    def panel_tree(self):
        """The accessible tree of the panel, or nothing while it is not shown."""
        program = self.accessibility.program(_APPLICATION)
        if program is None:
            return None
        for window in program.children:
            if window.name == PANEL and window.showing:
                return window
        return None

    def rows(self):
        """The rows of the shown panel from top to bottom, as a screen reader is told of them."""
        tree = self.panel_tree()
        if tree is None:
            return []
        found = [element for element in tree.find(role="push button")
                 if _SEPARATOR in element.name]
        found.sort(key=lambda element: element.extents[1])
        return [_row(element) for element in found]

    def row_titles(self):
        return [row.title for row in self.rows()]

    def wait_for_rows(self, titles, limit=20):
        wait_for(f"the rows {[_short(title) for title in titles]}",
                 lambda: self.row_titles() == list(titles), limit,
                 lambda: [_short(title) for title in self.row_titles()])

    def wait_for_row(self, title, limit=20):
        """Waits for a row with this title and answers it."""
        def found():
            return [row for row in self.rows() if row.title == title]
        return wait_for(f"a row {_short(title)}", found, limit, self.row_titles)[0]

    def click_row(self, title):
        self.desktop.pointer.click(*self.wait_for_row(title).centre)

    def wait_for_words(self, words, limit=20):
        """Waits until something in the panel says exactly this."""
        wait_for(f"the words {words!r} in the panel",
                 lambda: (self.panel_tree() or _Nothing()).find(name=words), limit)

    def control(self, name):
        """A control of the panel by its accessible name."""
        return wait_for(f"the control {name!r}",
                        lambda: [element for element in (self.panel_tree() or _Nothing()).find(
                            name=name)], 20)[0]

    def search_text(self):
        """The text of the shown search field, nothing when it is hidden."""
        tree = self.panel_tree()
        fields = [] if tree is None else [
            element for element in tree.walk()
            if element.showing and element.role in ("text", "entry", "editbar")]
        return fields[0].text if fields else None

    def wait_for_notice(self, message, limit=20):
        """Waits until the notice with exactly this message is shown."""
        return self.desktop.windows.wait_for_title(message, limit)


class _Nothing:
    def find(self, **_):
        return []


def _row(element):
    # A name is the title, ", ", the second line; the date in that line may hold commas too.
    head, separator, tail = element.name.partition(_SEPARATOR)
    title, _, beginning = head.rpartition(", ")
    return Row(title, beginning + separator + tail, element.selected, element.centre(), element)


def _short(text):
    return repr(text if len(text) <= 80 else f"{text[:60]}… ({len(text)} characters)")
