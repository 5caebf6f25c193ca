"""The program in a Wayland session, with the X server that stands inside of it."""

import unittest

from harness.case import VantorelTestCase
from harness.sway import SwayDesktop, leave_root
from harness.vantorel import program_path
from harness.waiting import wait_for


def setUpModule():
    leave_root()


class WaylandTestCase(VantorelTestCase):
    desktop_class = SwayDesktop
    autostart = False


class ThroughXwayland(WaylandTestCase):
    def test_check_says_where_it_is(self):
        text = self.desktop.run([program_path(), "--check"]).stdout.decode()
        self.assertIn("yes  Display           Xwayland in a Wayland session", text)
        self.assertIn("no   Shortcut          only the compositor has keys", text)
        self.assertIn("no   Applications", text)

    def test_the_toolkit_the_user_names_is_not_the_one_for_this_desktop(self):
        self.desktop.env["QT_QPA_PLATFORM"] = "wayland"
        self.vantorel.start(capturing=False)
        self.vantorel.wait_until_on_bus()
        self.assertEqual(self.vantorel.command("--toggle").returncode, 0)
        self.vantorel.wait_for_panel()

    def test_a_copy_of_a_wayland_program_has_no_x11_source(self):
        self.vantorel.start(capturing=False)
        self.vantorel.wait_until_on_bus()
        self.open_x11_window()
        self.desktop.copy("from beyond")
        self.vantorel.wait_for_newest("from beyond")
        self.assertNotIn("sourceBundleIdentifier", self.vantorel.newest())

    def test_new_entries_show_in_the_open_panel_wherever_the_pointer_was_last(self):
        self.vantorel.start(capturing=False)
        self.vantorel.wait_until_on_bus()
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        self.desktop.copy("while it is open")
        self.vantorel.wait_for_row("while it is open")

    def test_no_shortcut_is_promised(self):
        self.vantorel.start(capturing=False)
        self.vantorel.wait_for_notice("Could not enable the keyboard shortcut.")

    def open_x11_window(self):
        self.desktop.start("xterm", ["xterm", "-class", "Plain", "-e", "sleep", "1000"])
        wait_for("an X11 window in front", lambda: self.desktop.front() == "Plain")


class WithoutXServer(WaylandTestCase):
    desktop_options = {"xwayland": False}

    def test_it_says_so_and_ends_in_order(self):
        for arguments in ([], ["--toggle"]):
            done = self.desktop.run([program_path(), *arguments])
            self.assertEqual(done.returncode, 1)
            self.assertEqual(done.stderr.decode(),
                             "vantorel: no X server answers in this Wayland session. Install and "
                             "switch on Xwayland, which the windows need.\n")

    def test_check_says_so_too(self):
        done = self.desktop.run([program_path(), "--check"])
        self.assertEqual(done.returncode, 1)
        self.assertIn("NO   Display           Wayland, without an X server", done.stdout.decode())


if __name__ == "__main__":
    unittest.main()
