# SPDX-License-Identifier: MIT
"""What tests of the program in Wayland sessions share."""

from .case import VantorelTestCase
from .vantorel import SHORTCUT, program_path
from .sway import SwayDesktop, leave_root
from .wayland_devices import WaylandKeyboard
from .wayland_wire import Wire


class OnSway:
    """In front of a case's other classes: the same on the other desktop. A module's cases of both run
    one class at a time: what is begun as an administrator begins anew as somebody else."""

    desktop_class = SwayDesktop

    @classmethod
    def setUpClass(cls):
        leave_root()
        super().setUpClass()

    def new_desktop(self, **options):
        desktop = super().new_desktop(**options)
        desktop.bind_shortcut(SHORTCUT, program_path())
        return desktop


def on_sway(*cases):
    """These, each with a name that ends in OnSway."""
    return [type(f"{case.__name__}OnSway", (OnSway, case), {"__module__": case.__module__})
            for case in cases]


class PastingTestCase(VantorelTestCase):
    """The program runs in a session whose keyboard is the seat's."""

    def plug_in(self, layout):
        """A further keyboard of that seat."""
        wire = Wire(self.desktop.env)
        self.addCleanup(wire.close)
        return WaylandKeyboard(wire, layout)

    def copy(self, *texts):
        for text in texts:
            self.vantorel.copy(text)

    def choose(self, *keys):
        """Opens the panel and chooses in it."""
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        for key in keys:
            self.desktop.keyboard.chord(key)
