# SPDX-License-Identifier: MIT
"""The ground that the tests stand on."""

import os
import re
import shutil
import subprocess
import sys
import unittest

from .desktop import PrivateDesktop
from .vantorel import Vantorel, program_path


# What the toolkit says where nothing is wrong.
HARMLESS = (
    # Of a window that is shown again before the server has told of its hiding, as when the shortcut
    # is pressed very fast. It goes on as if it had not.
    "setNetWmStateOnUnmappedWindow() called on mapped window",
    # Newer ones, where there is no portal; and of readers who are newer, or ask for what has gone.
    "The name org.freedesktop.portal.Desktop was not provided by any .service files",
    'does not implement "GetApplicationBusAddress"',
    "qt.accessibility.atspi: Could not find accessible on path",
)


class DesktopTestCase(unittest.TestCase):
    """Gives each test a private desktop of its own; a failed test leaves its logs in the output."""

    desktop_class = PrivateDesktop
    desktop_options = {}

    def setUp(self):
        self.desktop = self.new_desktop(**self.desktop_options)
        self.clipboard = self.desktop.clipboard_class(self.desktop)

    def new_desktop(self, **options):
        """A further desktop, closed at the end like the first one."""
        desktop = self.desktop_class(**options)
        self.addCleanup(self._close, desktop)
        desktop.__enter__()
        return desktop

    def path(self, *parts):
        """A path below the private home, its folder made."""
        path = self.desktop.path(*parts)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        return path

    def file(self, *parts, contents=b""):
        """A file below the private home."""
        path = self.path(*parts)
        with open(path, "wb") as file:
            file.write(contents)
        return path

    def _close(self, desktop):
        if self._failed():
            self._show_logs(desktop)
            desktop.keep = bool(os.environ.get("VANTOREL_KEEP_DESKTOPS"))
        desktop.close()

    def _failed(self):
        result = self._outcome.result
        return any(getattr(test, "test_case", test) is self  # of a part of a test: its whole
                   for test, _ in result.failures + result.errors)

    @staticmethod
    def _show_logs(desktop):
        for name in ("vantorel.log", "owner.log"):
            path = os.path.join(desktop.logs, name)
            if os.path.exists(path) and os.path.getsize(path):
                with open(path, encoding="utf-8", errors="replace") as file:
                    print(f"--- {name}\n{file.read()[-6000:]}", file=sys.stderr)


class VantorelTestCase(DesktopTestCase):
    """A private desktop with the program ready to be started; with `autostart` it runs already.

    The program must end in order at the end of each test, so that no test passes over a crash,
    and must have printed no warning of its toolkit or of a sanitizer.
    """

    autostart = True

    def setUp(self):
        if not os.access(program_path(), os.X_OK):
            self.fail(f"there is no program at {program_path()}")
        super().setUp()
        self.vantorel = Vantorel(self.desktop)
        self.addCleanup(self._end_program)
        self.addCleanup(self._show_what_it_does)
        if self.autostart:
            self.vantorel.start()

    def _show_what_it_does(self):
        """Where each thread of the program is when a test has failed; only an administrator may
        look into it."""
        if not self._failed() or not self.vantorel.is_running() or not shutil.which("eu-stack"):
            return
        process = self.vantorel.process.pid
        stacks = subprocess.run(["eu-stack", "-p", str(process)], timeout=60, capture_output=True,
                                text=True, errors="replace", check=False)
        named = re.sub(r"(?m)^TID (\d+):$", lambda found: f"{found[0]} {_name(process, found[1])}",
                       stacks.stdout)
        print(f"--- threads of the program\n{named[-20000:]}{stacks.stderr[-500:]}",
              file=sys.stderr)

    def _end_program(self):
        if self.vantorel.is_running():
            self.assertEqual(self.vantorel.quit(), 0, "the program did not end in order")
        elif self.vantorel.process is not None:
            self.assertIn(self.vantorel.process.returncode, (0, -9), "the program crashed")
        self._check_log()

    def _check_log(self):
        path = os.path.join(self.desktop.logs, "vantorel.log")
        if not os.path.exists(path):
            return
        for line in self.vantorel.log().splitlines():
            if any(words in line for words in HARMLESS):
                continue
            if any(sign in line for sign in ("ERROR: AddressSanitizer", "runtime error:",
                                             "ERROR: LeakSanitizer", "QObject::", "QWidget::",
                                             "qt.", "terminate called")):
                self.fail(f"the program printed: {line}")


def _name(process, thread):
    try:
        with open(f"/proc/{process}/task/{thread}/comm", encoding="utf-8") as file:
            return file.read().strip()
    except OSError:
        return "(ended)"
