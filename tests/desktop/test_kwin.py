# SPDX-License-Identifier: MIT
"""The program in KDE's Wayland session."""

import os
import sys
import unittest

from harness.compositor_programs import Konsole, KWrite, Mousepad
from harness.kwin import KwinDesktop
from harness.sway import leave_root
from harness.vantorel import NO_TARGET_NOTICE, program_path
from harness.waiting import wait_for
from harness.wayland_case import PastingTestCase

NO_KEYS_NOTICE = "Copied. Enable Accessibility for automatic paste."
TESTS = os.path.realpath(sys.executable)
META_SHIFT_P = 0x12000050  # as KDE writes keys


class KwinTestCase(PastingTestCase):
    """As an ordinary user: an administrator's compositor sees more of other processes."""

    desktop_class = KwinDesktop

    @classmethod
    def setUpClass(cls):
        leave_root()
        super().setUpClass()

    def check(self):
        return self.vantorel.command("--check").stdout.decode()

    def assert_pastes(self, program):
        self.copy("first", "second")
        self.choose("Down", "Return")
        program.wait_for_text("first")


class Session(KwinTestCase):
    def test_check_says_what_there_is(self):
        text = self.check()
        self.assertRegex(text, "yes  Applications .*org_kde_plasma_window_management 16")
        self.assertRegex(text, "yes  Pasting .*window in front .*org_kde_kwin_fake_input 4")

    def test_the_shortcut_is_plasmas_own(self):
        self.assertRegex(self.check(), "yes  Shortcut .* running Vantorel .org.kde.kglobalaccel.")
        self.vantorel.open_panel()

    def test_a_copy_is_of_the_application_in_front(self):
        KWrite(self)
        self.copy("a note")
        self.assertEqual(self.vantorel.newest()["sourceBundleIdentifier"], "org.kde.kwrite")

    def test_an_excluded_application_is_not_read(self):
        self.vantorel.quit()
        self.vantorel.set_defaults({"privacy.excludedBundleIDs": ["org.kde.kwrite"]})
        self.vantorel.start()
        editor = KWrite(self)
        self.clipboard.copy("excluded")
        editor.process.terminate()
        Konsole(self)
        self.copy("included")
        self.assertNotIn("excluded", self.vantorel.history.texts())


class Pasting(KwinTestCase):
    def test_an_entry_arrives_in_a_qt_editor(self):
        self.assert_pastes(KWrite(self))

    def test_an_entry_arrives_in_a_gtk_editor(self):
        self.assert_pastes(Mousepad(self))

    def test_an_entry_arrives_in_a_terminal(self):
        self.assert_pastes(Konsole(self))

    def test_several_in_a_row_arrive_in_their_order(self):
        texts = [f"entry {number};" for number in range(5)]
        editor = KWrite(self)
        self.copy(*texts)
        for number in range(5):
            self.choose(*["Down"] * (4 - number), "Return")
            editor.wait_for_text("".join(texts[:number + 1]))

    def choose_while_holding(self, *keys):
        self.copy("first", "second")
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        row = self.vantorel.wait_for_row("first")
        for key in keys:
            self.desktop.keyboard.down(key)
        self.desktop.pointer.click(*row.centre)

    def let_go(self, *keys):
        for key in keys:
            self.desktop.keyboard.up(key)

    def test_what_the_user_holds_is_waited_for(self):
        terminal = Konsole(self)
        self.choose_while_holding("Super", "Shift")
        self.vantorel.wait_until_hidden()
        self.let_go("Shift", "Super")
        terminal.wait_for_text("first")

    def test_what_the_user_goes_on_holding_does_not_spoil_it(self):
        pasted = "first" if self.desktop.lets_go_for_programs() else ""
        terminal = Konsole(self)
        self.choose_while_holding("Super", "Shift")
        if pasted:
            terminal.wait_for_text(pasted)
        else:
            self.vantorel.wait_for_notice(NO_TARGET_NOTICE)
        self.let_go("Shift", "Super")
        self.desktop.keyboard.tap("a")
        terminal.wait_for_text(f"{pasted}a")


class Shortcut(KwinTestCase):
    autostart = False

    def assert_opens(self, chord):
        wait_for("the program to have its keys", lambda: "true" in self.desktop.bus_call(
            "org.kde.kglobalaccel", "/component/com_vantorel_Vantorel",
            "org.kde.kglobalaccel.Component.isActive"))
        self.desktop.keyboard.chord(chord)
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.tap("Escape")
        self.vantorel.wait_until_hidden()

    def choose_in_the_settings(self, keys):
        self.desktop.bus_call("org.kde.kglobalaccel", "/kglobalaccel",
                              "org.kde.KGlobalAccel.setForeignShortcut",
                              "['com.vantorel.Vantorel', 'toggle', '', '']", f"[{keys}]")

    def test_a_digit_with_shift_opens_the_panel(self):
        self.vantorel.set_defaults({"shortcut.keyCode": 18, "shortcut.modifiers": 0x100 | 0x200,
                                    "shortcut.keyLabel": "1"})
        self.vantorel.start()
        self.assert_opens("Super+Shift+1")

    def test_keys_chosen_in_the_desktops_settings_hold(self):
        self.vantorel.start()
        self.assert_opens("Super+Shift+v")
        self.choose_in_the_settings(META_SHIFT_P)
        self.assert_opens("Super+Shift+p")
        self.vantorel.quit()
        self.vantorel.start()
        self.assert_opens("Super+Shift+p")


class WithoutLatinLetters(KwinTestCase):
    desktop_options = {"xkb_layout": "il"}

    def test_an_entry_arrives_in_a_terminal(self):
        terminal = Konsole(self)
        self.copy("first", "second")
        self.choose("Down", "Return")
        wait_for("the entry in the terminal", lambda: terminal.text().endswith("first"),
                 describe=terminal.text)


class Installed(KwinTestCase):
    """KWin gives what it gives to installed programs alone, among them this one."""

    desktop_options = {"granted": (program_path(), TESTS)}

    def test_an_entry_arrives(self):
        self.assertRegex(self.check(), "yes  Pasting .*org_kde_kwin_fake_input 4")
        self.assert_pastes(KWrite(self))


class NotInstalled(KwinTestCase):
    desktop_options = {"granted": (TESTS,)}

    def test_it_says_so(self):
        text = self.check()
        self.assertIn("This compositor tells them to installed programs alone: install Vantorel.",
                      text)
        self.assertIn("this compositor takes keys from installed programs alone", text)

    def test_a_chosen_entry_is_there_to_be_pasted(self):
        KWrite(self)
        self.copy("first", "second")
        self.choose("Down", "Return")
        wait_for("the entry on the clipboard", lambda: self.clipboard.text() == "first",
                 describe=self.clipboard.text)
        self.vantorel.wait_for_notice(NO_KEYS_NOTICE)


if __name__ == "__main__":
    unittest.main()
