# SPDX-License-Identifier: MIT
"""The private desktop itself: what the other tests rely on, checked without the program."""

import os
import signal
import subprocess
import sys
import unittest

from harness import applications, pictures
from harness.case import DesktopTestCase
from harness.desktop import PrivateDesktop
from harness.history import seal, unseal
from harness.keyring import KeyringState
from harness.processes import Processes
from harness.waiting import wait_for
from harness.window_program import WindowProgram


class KeysAndWindows(DesktopTestCase):
    def test_text_copied_in_one_application_is_pasted_into_another_by_real_keys(self):
        text = "copied with keys\nשורה שנייה"
        source = applications.gtk_editor(self.desktop, self.path("source.txt"), text)
        source.select_all_and_copy()
        wait_for("an owner of the clipboard", self.clipboard.owner)
        target = applications.qt_editor(self.desktop, self.path("target.txt"))
        target.paste()
        target.wait_for_text(text)

    def test_typed_characters_arrive_in_a_terminal(self):
        terminal = applications.Terminal(self.desktop, self.path("typed.txt"))
        self.desktop.keyboard.type("Typed {here} & there")
        terminal.wait_for_text("Typed {here} & there")

    def test_typing_follows_the_layout(self):
        self.desktop.set_layout("fr")
        terminal = applications.Terminal(self.desktop, self.path("typed.txt"))
        self.desktop.keyboard.type("azerty")
        terminal.wait_for_text("azerty")

    def test_a_window_is_brought_to_the_front(self):
        first = applications.gtk_editor(self.desktop, self.path("first.txt"))
        second = applications.gtk_editor(self.desktop, self.path("second.txt"))
        self.assertTrue(second.is_in_front())
        first.to_front()
        self.assertFalse(second.is_in_front())

    def test_files_are_copied_in_the_file_manager(self):
        self.file("folder", "one.txt", contents=b"1")
        manager = applications.FileManager(self.desktop, self.desktop.path("folder"))

        def copied():
            manager.copy_everything()
            return "text/uri-list" in self.clipboard.targets()

        wait_for("the file manager to offer files", copied)
        self.assertIn(b"/folder/one.txt", self.clipboard.read("text/uri-list"))

    def test_the_clipboard_dies_with_its_owner(self):
        source = applications.gtk_editor(self.desktop, self.path("source.txt"), "short-lived")
        source.select_all_and_copy()
        wait_for("an owner of the clipboard", self.clipboard.owner)
        source.close()
        wait_for("an empty clipboard", lambda: self.clipboard.owner() == 0)


class WindowManagers(DesktopTestCase):
    desktop_options = {"window_manager": None}

    def test_each_starts_is_replaced_by_the_next_and_killed(self):
        manager = self.desktop.window_manager
        program = WindowProgram(self.desktop)
        program.open("main", in_front=False)
        manager.start("openbox")
        for number, name in enumerate(("metacity", "marco", "xfwm4"), start=1):
            with self.subTest(name):
                manager.replace(name)
                program.to_front("main")
                self.desktop.keyboard.chord("Ctrl+a")
                wait_for("the keys", lambda n=number: len(program.chords()) == n)
        manager.kill()
        manager.start("openbox")
        program.to_front("main")

    def test_a_window_says_what_was_pressed_and_what_it_pasted(self):
        self.desktop.window_manager.start("openbox")
        program = WindowProgram(self.desktop)
        program.open("main")
        self.clipboard.copy("held")
        self.desktop.keyboard.chord("Ctrl+v")
        wait_for("the paste", lambda: program.pasted() == [("main", "held")])
        self.desktop.keyboard.chord("Shift+Insert")
        wait_for("the other chord", lambda: len(program.pasted()) == 2)
        self.assertEqual(program.chords(), [("main", "Ctrl+v"), ("main", "Shift+Insert")])
        program.close("main")
        program.end()

    def test_the_server_gives_a_number_again(self):
        self.desktop.window_manager.start("openbox")
        numbers = []
        for _ in range(8):
            program = WindowProgram(self.desktop)
            numbers.append(program.open("main").id)
            program.end()
        self.assertLess(len(set(numbers)), 4)


class Owners(DesktopTestCase):
    GOOD = {"UTF8_STRING": b"offered"}

    def test_a_polite_owner_serves_every_target_and_tells_what_was_asked(self):
        big = b"0123456789" * 60_000
        owner = self.clipboard.own(offers={"UTF8_STRING": big, "text/html": b"<b>x</b>"})
        self.assertEqual(self.clipboard.read(), big)
        self.assertEqual(self.clipboard.read("text/html"), b"<b>x</b>")
        owner.wait_until_asked("text/html")
        self.assertEqual(owner.requests(), ["UTF8_STRING", "text/html"])

    def test_a_bad_owner_serves_nothing(self):
        for manners in ("silent", "refuses", "targets-only", "stalls", "stalls-midway", "dies",
                        "dies-in-contents", "dies-midway", "lies-about-size", "endless"):
            with self.subTest(manners):
                owner = self.clipboard.own(manners, {"UTF8_STRING": b"y" * 500_000})
                self.assertIsNone(self.clipboard.read(limit=1))
                owner.wait_until_asked("UTF8_STRING")
                owner.stop()

    def test_the_next_copy_after_a_bad_owner_is_sound(self):
        owner = self.clipboard.own("silent", self.GOOD)
        self.clipboard.copy("sound")
        self.assertEqual(self.clipboard.text(), "sound")
        wait_for("the owner to be told", owner.lost)


class KeyringStates(unittest.TestCase):
    def _desktop(self, state):
        desktop = PrivateDesktop(keyring=state, window_manager=False)
        self.addCleanup(desktop.close)
        return desktop.__enter__()

    def test_an_unlocked_keyring_keeps_every_byte_of_a_key(self):
        keyring = self._desktop(KeyringState.UNLOCKED).keyring
        key = b"\0" + bytes(range(200, 230)) + b"\0"
        keyring.store(key)
        self.assertEqual(keyring.key(), key)
        self.assertEqual(keyring.item_count(), 1)
        self.assertEqual(keyring.label(), "Vantorel local history encryption")

    def test_a_locked_keyring_looks_empty_and_still_counts_its_item(self):
        keyring = self._desktop(KeyringState.UNLOCKED).keyring
        keyring.store(b"k" * 32)
        keyring.lock()
        self.assertIsNone(keyring.key())
        self.assertEqual(keyring.item_count(), 1)

    def test_a_keyring_may_lack_a_default_collection(self):
        self.assertEqual(self._desktop(KeyringState.NO_COLLECTION).keyring.default_collection(),
                         "/")

    def test_an_absent_keyring_is_not_started_by_the_bus(self):
        desktop = self._desktop(KeyringState.ABSENT)
        answer = desktop.run(["secret-tool", "lookup", "service", "x"])
        self.assertIn(b"org.freedesktop.secrets", answer.stderr)

    def test_a_stopped_keyring_does_not_answer(self):
        desktop = self._desktop(KeyringState.STOPPED)
        self.assertEqual(desktop.bus_call("org.freedesktop.secrets", "/org/freedesktop/secrets",
                                          "org.freedesktop.DBus.Peer.Ping", limit=1), "")
        desktop.keyring.resume()
        wait_for("the keyring to answer again", desktop.keyring.default_collection)

    def test_the_keyring_survives_a_new_session_in_the_same_home(self):
        first = self._desktop(KeyringState.UNLOCKED)
        first.keyring.store(b"s" * 32)
        first.processes.stop_all()
        with PrivateDesktop(home=first.home, window_manager=False) as second:
            self.assertEqual(second.keyring.key(), b"s" * 32)


class Housekeeping(unittest.TestCase):
    def test_the_desktop_knows_no_bus_but_its_own(self):
        with PrivateDesktop() as desktop:
            addresses = {}
            for line in desktop.run(["env"]).stdout.decode().splitlines():
                name, _, value = line.partition("=")
                if name.startswith(("DBUS_", "AT_SPI_")):
                    addresses[name] = value
            session = addresses.pop("DBUS_SESSION_BUS_ADDRESS")
            self.assertTrue(session.startswith(f"unix:path={desktop.runtime}/"), session)
            system = addresses.pop("DBUS_SYSTEM_BUS_ADDRESS")
            self.assertFalse(os.path.exists(system.removeprefix("unix:path=")), system)
            self.assertEqual(addresses, {})

    def test_nothing_outlives_the_desktop_not_even_what_detached_itself(self):
        desktop = PrivateDesktop()
        with desktop:
            desktop.run(["xclip", "-selection", "clipboard", "-i"], input=b"x", stdin=None,
                        capture_output=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            self.assertGreater(len(desktop.processes.stragglers()), 3)
        self.assertEqual(desktop.processes.stragglers(), [])
        self.assertFalse(os.path.exists(desktop.base))

    def test_the_desktop_dies_with_a_test_that_is_killed(self):
        script = ("import sys; sys.path.insert(0, sys.argv[1]);"
                  "from harness.desktop import PrivateDesktop;"
                  "d = PrivateDesktop().__enter__();"
                  "print(d.processes.token, d.base, flush=True); sys.stdin.read()")
        runner = subprocess.Popen([sys.executable, "-c", script, os.path.dirname(__file__)],
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(runner.stdin.close)
        self.addCleanup(runner.stdout.close)
        token, base = runner.stdout.readline().decode().split()
        runner.send_signal(signal.SIGKILL)
        runner.wait()
        watcher = Processes(base)
        watcher.token = token
        wait_for("the killed test's desktop to end", lambda: not watcher.stragglers(), 10)
        subprocess.run(["rm", "-rf", base], check=True)

    def test_envelopes_open_under_their_key_alone(self):
        self.assertEqual(unseal(b"k" * 32, seal(b"k" * 32, b"plain")), b"plain")
        self.assertEqual(len(seal(b"k" * 32, b"")), 33)
        with self.assertRaises(Exception):
            unseal(b"l" * 32, seal(b"k" * 32, b"plain"))

    def test_made_pictures_read_back_as_they_were_made(self):
        rows = pictures.png_pixels(pictures.png(12, 9, (1, 2, 3)))
        self.assertEqual((len(rows), rows[0][3:6], rows[0][:3]), (9, b"\1\2\3", b"\x20\x60\xe0"))


if __name__ == "__main__":
    unittest.main()
