# SPDX-License-Identifier: MIT
"""The installed package: used, upgraded while it runs, removed, installed again and purged. `installed`
starts it, on a machine that is thrown away."""

import os
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "desktop"))

from harness import applications  # noqa: E402  (found through the path above)
from harness.case import VantorelTestCase  # noqa: E402
from harness.waiting import wait_for  # noqa: E402

ID = "com.vantorel.Vantorel"
SERVICE = f"/usr/share/dbus-1/services/{ID}.service"
CLONE = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))


def dpkg(*arguments):
    done = subprocess.run(["dpkg", *arguments], check=False, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    assert done.returncode == 0, done.stdout


def status():
    """What the package system knows: "1.0 install ok installed", nothing when it knows nothing."""
    done = subprocess.run(["dpkg-query", "--show", "--showformat=${Version} ${Status}", "vantorel"],
                          check=False, capture_output=True, text=True)
    return done.stdout


def traces():
    """Files of this program outside of homes and of the clone."""
    found = []
    for place, folders, files in os.walk("/"):
        folders[:] = [folder for folder in folders if os.path.join(place, folder) not in
                      ("/proc", "/sys", "/dev", "/tmp", "/root", "/home", CLONE)]
        found += [os.path.join(place, name) for name in folders + files
                  if "vantorel" in name.lower()]
    return found


class Installed(VantorelTestCase):
    autostart = False

    def setUp(self):
        if not os.path.exists("/made-by-fresh"):
            self.fail("not on this machine")
        dpkg("--install", os.environ["VANTOREL_PACKAGE"])
        super().setUp()

    def test_the_desktop_has_what_the_package_brings_along(self):
        done = self.desktop.run(["vantorel", "--check"])
        text = done.stdout.decode()
        self.assertEqual(done.returncode, 0, text)
        self.assertIn("read in eng, heb", text)

    def test_the_bus_starts_it(self):
        services = os.path.join(self.desktop.runtime, "dbus-services")
        shutil.copy(SERVICE, services)
        self.desktop.bus_call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus.ReloadConfig")
        self.vantorel.set_defaults({})
        answer = self.desktop.bus_call(ID, "/com/vantorel/Vantorel",
                                       "org.freedesktop.Application.Activate", "{}")
        self.assertEqual(answer.strip(), "()")
        self.vantorel.wait_for_panel()
        self.assertEqual(self.vantorel.command("--quit").returncode, 0)
        wait_for("it to leave the bus", lambda: not self.vantorel.is_on_bus())

    def test_a_life_with_it(self):
        self.vantorel.start()
        self.vantorel.copy("kept through all of this")
        self.vantorel.command("--toggle-launch-at-login")
        self.vantorel.wait_for_notice("Vantorel will launch at login.")
        self._paste("kept through all of this")
        self._find_in_a_picture()

        dpkg("--install", os.environ["VANTOREL_NEWER_PACKAGE"])
        self.assertIn("+1 install ok installed", status())
        self.assertTrue(self.vantorel.is_running(), "an upgrade ends nothing")
        self.vantorel.copy("copied after the upgrade")
        settings = self.vantorel.defaults()
        self._restart()
        self.assertEqual(self.vantorel.defaults(), settings)
        self._assert_history()

        self.assertEqual(self.vantorel.quit(), 0)
        entry = self.desktop.path(".config", "autostart", f"{ID}.desktop")
        dpkg("--remove", "vantorel")
        self.assertFalse(os.path.exists("/usr/bin/vantorel"))
        with open(entry, encoding="utf-8") as file:
            self.assertIn("\nTryExec=/usr/bin/vantorel\n", file.read())
        self._assert_history()

        dpkg("--install", os.environ["VANTOREL_PACKAGE"])
        self.vantorel.start()
        self._assert_history()
        self.assertEqual(self.vantorel.quit(), 0)

        dpkg("--purge", "vantorel")
        self.assertEqual((status(), traces()), ("", []))
        self._assert_history()
        self.assertTrue(os.path.exists(entry))

    def _paste(self, text):
        editor = applications.gtk_editor(self.desktop, self.path("reply.txt"))
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        editor.wait_for_text(text)
        editor.kill()

    def _find_in_a_picture(self):
        self.clipboard.copy_as("image/png", self.desktop.picture_of("Invoice 2024 zebra umbrella"))
        wait_for("the picture", lambda: self.vantorel.newest().get("kind") == "image")
        self.vantorel.open_panel()
        self.desktop.keyboard.type("zebra")
        wait_for("the picture by its words", lambda: len(self.vantorel.rows()) == 1, 60,
                 self.vantorel.row_titles)
        self.vantorel.press_shortcut()
        self.vantorel.wait_until_hidden()

    def _restart(self):
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()

    def _assert_history(self):
        self.assertEqual(self.vantorel.history.texts(),
                         ["copied after the upgrade", "kept through all of this"])
        self.assertIn("image", self.vantorel.history.kinds())


if __name__ == "__main__":
    unittest.main()
