# SPDX-License-Identifier: MIT
"""Pastes into windows of real programs that are not an application's one main window."""

import os
import time
import unittest

from harness import applications
from harness.case import VantorelTestCase
from harness.vantorel import NO_TARGET_NOTICE
from harness.waiting import wait_for

TEXT = "PASTED"


class TargetProgramTestCase(VantorelTestCase):
    def paste(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        self.vantorel.wait_until_hidden()

    def wait_for_field(self, window, text):
        """Waits until the field with the keyboard holds this text, by copying it out of the field.

        An empty field copies nothing, so until then the clipboard is not its program's.
        """
        asked = []

        def copied():
            if not asked or time.monotonic() - asked[-1] > 0.2:
                asked.append(time.monotonic())
                self.desktop.keyboard.chord("Ctrl+a")
                self.desktop.keyboard.chord("Ctrl+c")
            return self.clipboard.owned_by(window)

        wait_for(f"the text {text!r} in the field", copied, 5)
        self.assertEqual(self.clipboard.text(), text)

    def terminal(self, name):
        return applications.Terminal(self.desktop, self.path(f"{name}.txt"))


class FindAndReplace(TargetProgramTestCase):
    desktop_options = {"window_manager": "metacity"}

    def test_the_dialog_gets_the_text_and_the_document_stays_as_it_is(self):
        self.vantorel.copy(TEXT)
        editor = applications.gtk_editor(self.desktop, self.path("doc.txt"), "doc\n")
        self.desktop.keyboard.chord("Ctrl+r")
        wait_for("the dialog in front",
                 lambda: self.desktop.windows.active() not in (0, editor.window.id))
        dialog = self.desktop.windows.active()
        self.paste()
        self.wait_for_field(editor.window, TEXT)
        self.assertEqual(self.desktop.windows.active(), dialog)
        editor.to_front()
        self.assertEqual(editor.text(), "doc\n")


class Dialogs(TargetProgramTestCase):
    def test_sixteen_dialogs_in_a_row_each_get_the_text(self):
        self.vantorel.copy(TEXT)
        for number in range(16):
            with self.subTest(number=number):
                zenity = applications.Application(
                    self.desktop, "zenity", ["zenity", "--entry", "--text", "?"], "zenity")
                self.paste()
                try:
                    self.wait_for_field(zenity.window, TEXT)
                finally:
                    zenity.kill()


class Terminals(TargetProgramTestCase):
    def setUp(self):
        super().setUp()
        self.vantorel.copy(TEXT)
        self.first = self.terminal("first")
        self.second = self.terminal("second")

    def test_one_that_is_in_no_taskbar_gets_the_text_before_another(self):
        self.desktop.windows.set_state(self.second.window, "SKIP_TASKBAR")
        self.first.to_front()
        self.second.to_front()
        self.paste()
        self.second.wait_for_text(TEXT, 5)
        self.assertEqual(self.first.text(), "")

    def test_one_that_is_left_does_not_get_what_was_meant_for_the_closed_one(self):
        self.first.to_front()
        self.vantorel.open_panel()
        self.first.kill()
        self.desktop.windows.wait_window_gone(self.first.window)
        self.desktop.keyboard.tap("Return")
        wait_for("the notice", lambda: self.desktop.windows.titled(NO_TARGET_NOTICE), 5,
                 lambda: self.second.text())
        self.assertEqual(self.second.text(), "")
        self.assertEqual(self.clipboard.text(), TEXT)


class DesktopIcons(TargetProgramTestCase):
    def test_files_are_pasted_on_the_desktop_and_nowhere_else(self):
        path = self.file("folder", "a file.txt", contents=b"1")
        folder = os.path.dirname(self.path("Desktop", "x"))
        self.clipboard.own(offers={
            "text/uri-list": b"file://" + path.replace(" ", "%20").encode() + b"\r\n"})
        wait_for("an entry of files", lambda: self.vantorel.newest().get("filePaths") == [path])
        icons = applications.Application(self.desktop, "pcmanfm", ["pcmanfm", "--desktop"],
                                         "pcmanfm", comes_to_front=False)
        terminal = self.terminal("behind")
        icons.to_front()
        self.paste()
        wait_for("the file on the desktop", lambda: os.listdir(folder) == ["a file.txt"], 5,
                 terminal.text)
        self.assertEqual(terminal.text(), "")


if __name__ == "__main__":
    unittest.main()
