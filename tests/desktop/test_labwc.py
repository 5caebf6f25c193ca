# SPDX-License-Identifier: MIT
"""The program under labwc: what is asked of it under sway, and its line for the shortcut."""

import shutil
import unittest

import test_wayland
from harness.labwc import LabwcDesktop
from harness.vantorel import program_path


def setUpModule():
    for program in ("labwc", "wlr-randr", "wlrctl"):
        if shutil.which(program) is None:
            raise unittest.SkipTest(f"{program} is not installed")


class Session(test_wayland.SwayTestCase):
    desktop_class = LabwcDesktop

    def test_check_says_what_there_is(self):
        text = self.desktop.run([program_path(), "--check"]).stdout.decode()
        self.assertRegex(text, "yes  Display           Wayland, on .*zwlr_layer_shell_v1 [45]")
        self.assertRegex(text, "yes  Clipboard         the compositor's .*_data_control_manager_v1")
        self.assertRegex(text, "no   Shortcut          only the compositor has keys")
        self.assertIn("yes  Pasting           into the window in front (zwp_virtual_keyboard", text)
        self.assertRegex(text, "yes  Applications .*foreign_toplevel_manager_v1 3")

    def test_the_line_for_its_configuration_opens_the_panel(self):
        self.vantorel.start()
        self.desktop.open_window("org.acme.Notes")
        self.vantorel.open_panel()


class Clipboards(test_wayland.Clipboards):
    desktop_class = LabwcDesktop


class Pasting(test_wayland.Pasting):
    desktop_class = LabwcDesktop


class MorePrograms(test_wayland.MorePrograms):
    desktop_class = LabwcDesktop


class Panel(test_wayland.Panel):
    desktop_class = LabwcDesktop


class Dark(test_wayland.Dark):
    desktop_class = LabwcDesktop


if __name__ == "__main__":
    unittest.main()
