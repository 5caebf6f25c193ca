# SPDX-License-Identifier: MIT
"""What stays when the program, the session or the machine goes."""

import os
import random
import shutil
import signal
import time
import unittest

from Xlib import X

from harness import applications, pictures
from harness.case import VantorelTestCase
from harness.history import files_holding, text_item
from harness.vantorel import Vantorel, program_path
from harness.waiting import stays_true, wait_for
from harness.wayland_case import on_sway


class Restart(VantorelTestCase):
    def _fill(self):
        self.vantorel.copy("a text")
        self.clipboard.copy_as("image/png", pictures.png(120, 80))
        wait_for("the picture to be read",
                 lambda: self.vantorel.newest().get("recognizedText") is not None, 240)
        path = self.file("kept.txt", contents=b"1")
        self.clipboard.own(offers={"text/uri-list": f"file://{path}".encode()}).wait_until_owned()
        wait_for("the file on disk", lambda: self.vantorel.newest().get("kind") == "files")
        self.vantorel.copy("שורה אחרונה")

    def test_everything_is_there_again(self):
        self._fill()
        before = _contents(self.vantorel.history)
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()
        self.assertEqual(_contents(self.vantorel.history), before)
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["שורה אחרונה", "kept.txt", "Image", "a text"])

    def test_everything_is_there_after_a_restart_of_the_machine(self):
        self._fill()
        before, key = _contents(self.vantorel.history), self.desktop.keyring.key()
        self.assertEqual(self.vantorel.quit(), 0)
        self.desktop.processes.stop_all()
        later = self.new_desktop(home=self.desktop.home)
        program = Vantorel(later).start()
        self.assertEqual(later.keyring.key(), key)
        self.assertEqual(later.keyring.item_count(), 1)
        self.assertEqual(_contents(program.history), before)
        program.open_panel()
        program.wait_for_rows(["שורה אחרונה", "kept.txt", "Image", "a text"])
        self.assertEqual(program.quit(), 0)

    def test_what_was_copied_while_it_was_not_running_is_not_captured(self):
        self.vantorel.quit()
        self.clipboard.copy("in the meantime")
        self.vantorel.start()
        self.vantorel.copy("afterwards")
        self.assertEqual(self.vantorel.history.texts(), ["afterwards"])

    def test_the_newest_fifty_are_kept(self):
        for number in range(53):
            self.vantorel.copy(f"text {number}")
        self.assertEqual(self.vantorel.history.texts(),
                         [f"text {number}" for number in range(52, 2, -1)])


class DirectoryTakenAway(VantorelTestCase):
    def test_the_history_is_whole_again_with_the_next_copy(self):
        self.vantorel.copy("before")
        shutil.rmtree(self.vantorel.history.directory)
        self.vantorel.copy("after")
        self.assertEqual(self.vantorel.history.texts(), ["after", "before"])
        for name, mode in self.vantorel.history.modes().items():
            folder = os.path.isdir(os.path.join(self.vantorel.history.directory, name))
            self.assertEqual(mode, 0o700 if folder else 0o600, name)
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.start()
        self.assertEqual(self.vantorel.history.texts(), ["after", "before"])


class Secrecy(VantorelTestCase):
    SECRET = "a phrase that nobody may read"

    def test_nothing_readable_is_ever_on_disk(self):
        self.vantorel.copy(self.SECRET)
        self.clipboard.copy_as("image/png", pictures.png(40, 30))
        wait_for("the picture on disk", lambda: self.vantorel.newest().get("kind") == "image")
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["Image", self.SECRET])
        self.desktop.keyboard.chord("Down+Return")
        self.vantorel.wait_until_hidden()
        for moment in ("running", "after it has ended"):
            with self.subTest(moment):
                for place in (self.desktop.home, self.desktop.runtime):
                    for needle in (self.SECRET.encode(), b"IHDR",
                                   self.SECRET.encode("utf-16-le")):
                        self.assertEqual(files_holding(place, needle), [])
            if self.vantorel.is_running():
                self.vantorel.quit()

    def test_the_log_holds_nothing_that_was_copied(self):
        self.vantorel.copy(self.SECRET)
        self.assertNotIn(self.SECRET, self.vantorel.log())

    def test_files_and_folders_are_for_the_owner_alone(self):
        self.clipboard.copy_as("image/png", pictures.png(40, 30))
        wait_for("the picture on disk", lambda: self.vantorel.newest().get("kind") == "image")
        for name, mode in self.vantorel.history.modes().items():
            folder = os.path.isdir(os.path.join(self.vantorel.history.directory, name))
            self.assertEqual(mode, 0o700 if folder else 0o600, name)

    def test_the_key_is_in_the_keyring_under_its_name(self):
        self.assertEqual(len(self.desktop.keyring.key()), 32)
        self.assertEqual(self.desktop.keyring.label(), "Vantorel local history encryption")

    def test_each_save_is_sealed_anew(self):
        self.vantorel.copy("one")
        first = self.vantorel.history.raw()
        self.assertEqual(first[:5], b"VNTL1")
        self.clipboard.copy("one")
        wait_for("another save", lambda: self.vantorel.history.raw() != first)
        self.assertNotEqual(self.vantorel.history.raw()[5:17], first[5:17])

    def test_the_file_is_the_documented_json(self):
        self.vantorel.copy("plain")
        text = self.vantorel.history.json().decode()
        item, = self.vantorel.history.items()
        self.assertEqual(list(item), sorted(item))
        self.assertIn("\n", text)
        self.assertRegex(item["id"], "^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")
        self.assertRegex(item["createdAt"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        self.assertEqual((item["kind"], item["title"], item["preview"], item["filePaths"],
                          item["isPinned"]), ("text", "Text", "plain", [], False))
        self.assertNotIn("rtfData", item)


class SuddenDeath(VantorelTestCase):
    autostart = False

    def test_a_history_that_was_saved_survives_a_kill_at_any_moment(self):
        seed = random.randrange(1 << 30)
        moments = random.Random(seed)
        self._begin_with_megabytes()
        for round_number in range(10):
            with self.subTest(round=round_number, seed=seed):
                self.vantorel.start()
                before = self.vantorel.history.texts()
                copied = self._copy_until(time.monotonic() + moments.uniform(0.02, 0.3),
                                          f"burst {round_number}")
                self.vantorel.kill()
                self.assertTrue(self.vantorel.history.opens(), "the file does not open")
                after = self.vantorel.history.texts()
                added = [text for text in after if text in copied]
                self.assertEqual(added, sorted(added, key=copied.index, reverse=True))
                self.assertEqual(after, (added + before)[:50])
        self.vantorel.start()
        self.assertEqual(self.vantorel.history.texts(), after)
        self.assertEqual(sorted(os.listdir(self.vantorel.history.directory)),
                         ["Assets", "history.vntl"])

    def _begin_with_megabytes(self):
        """A history that takes so long to write that a kill often comes in the middle of it."""
        key = bytes(range(32))
        self.desktop.keyring.store(key)
        self.vantorel.history.write(
            [text_item(f"{number} " + "x" * 500_000, number) for number in range(30)], key)

    def _copy_until(self, deadline, name):
        copied = []
        while time.monotonic() < deadline:
            copied.append(f"{name}, {len(copied)}")
            self.clipboard.copy(copied[-1])
        return copied

    def test_a_killed_program_can_be_started_again_at_once(self):
        self.vantorel.start()
        self.vantorel.copy("before")
        self.vantorel.kill()
        self.vantorel.start()
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["before"])


class OneInstance(VantorelTestCase):
    def test_a_second_start_shows_the_first_ones_panel_and_ends_with_success(self):
        self.vantorel.copy("of the first")
        self.assertEqual(self.vantorel.command().returncode, 0)
        self.vantorel.wait_for_panel()
        self.vantorel.wait_for_rows(["of the first"])
        self.assertTrue(self.vantorel.is_running())

    def test_of_several_started_at_once_one_stays(self):
        self.assertEqual(self.vantorel.quit(), 0)
        programs = [Vantorel(self.desktop).start(capturing=False) for _ in range(4)]
        wait_for("all but one to end",
                 lambda: sum(program.is_running() for program in programs) == 1)
        stays_true("one running", lambda: sum(program.is_running() for program in programs) == 1,
                   0.3)
        self.assertEqual([program.process.returncode for program in programs
                          if not program.is_running()], [0, 0, 0])
        remaining, = [program for program in programs if program.is_running()]
        remaining.wait_until_capturing()
        remaining.copy("to the one")
        self.assertEqual(remaining.quit(), 0)

    def test_the_bus_activates_the_running_program(self):
        self.desktop.bus_call("com.vantorel.Vantorel", "/com/vantorel/Vantorel",
                              "org.freedesktop.Application.Activate", "{}")
        self.vantorel.wait_for_panel()

    def test_the_bus_runs_a_menu_command_by_name(self):
        self.desktop.bus_call("com.vantorel.Vantorel", "/com/vantorel/Vantorel",
                              "org.freedesktop.Application.ActivateAction", "toggle", "[]", "{}")
        self.vantorel.wait_for_panel()
        self.desktop.bus_call("com.vantorel.Vantorel", "/com/vantorel/Vantorel",
                              "org.freedesktop.Application.ActivateAction", "quit", "[]", "{}")
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertEqual(self.vantorel.process.returncode, 0)


class OneWriter(VantorelTestCase):
    """One history has one program, also when neither session knows of the other."""

    def _second(self, **variables):
        runtime = os.path.join(self.desktop.base, "another-runtime")
        os.makedirs(runtime, mode=0o700, exist_ok=True)
        return self.desktop.run(
            [program_path()], {"XDG_RUNTIME_DIR": runtime,
                               "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus",
                               **variables}, limit=10)

    def _expect_refusal(self, second):
        self.assertEqual(second.returncode, 1)
        self.assertEqual(second.stderr.decode(), "vantorel: already running, and no session bus "
                                                 "reaches it from here.\n")
        self.assertTrue(self.vantorel.is_running())

    def test_a_second_program_is_refused(self):
        self.vantorel.copy("of the first")
        self._expect_refusal(self._second())
        self.vantorel.copy("still of the first")

    def test_a_second_program_is_refused_however_it_spells_the_place(self):
        link = os.path.join(self.desktop.base, "link")
        os.symlink(self.desktop.env["XDG_DATA_HOME"], link)
        self._expect_refusal(self._second(XDG_DATA_HOME=link))

    def test_a_second_program_is_refused_after_the_directory_was_made_again(self):
        self.vantorel.copy("before")
        shutil.rmtree(self.vantorel.history.directory)
        self.vantorel.copy("after")
        self._expect_refusal(self._second())


class CommandLine(VantorelTestCase):
    def _run(self, *arguments):
        answer = self.vantorel.command(*arguments)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return answer.stdout.decode()

    def test_toggle_shows_and_hides(self):
        self._run("--toggle")
        self.vantorel.wait_for_panel()
        self._run("--toggle")
        self.vantorel.wait_until_hidden()

    def test_search_shows_the_panel_with_its_search_field(self):
        self.vantorel.copy("findable")
        self._run("--search")
        self.vantorel.wait_for_panel()
        wait_for("the search field", lambda: self.vantorel.search_text() == "")
        self.desktop.keyboard.type("find")
        self.vantorel.wait_for_rows(["findable"])

    def test_a_paste_after_toggle_goes_to_the_application_in_front(self):
        editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        self.vantorel.copy("by command")
        self._run("--toggle")
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.tap("Return")
        editor.wait_for_text("by command")

    def test_quit_ends_the_running_program_in_order(self):
        self._run("--quit")
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertEqual(self.vantorel.process.returncode, 0)

    def test_version_and_help_need_no_desktop(self):
        bare = {"DISPLAY": "", "DBUS_SESSION_BUS_ADDRESS": ""}
        version = self.desktop.run([program_path(), "--version"], bare)
        self.assertEqual(version.returncode, 0)
        self.assertRegex(version.stdout.decode(), r"\d+\.\d+")
        usage = self.desktop.run([program_path(), "--help"], bare)
        self.assertEqual(usage.returncode, 0)
        for option in ("--toggle", "--search", "--quit", "--version"):
            self.assertIn(option, usage.stdout.decode())

    def test_an_unknown_option_is_refused(self):
        self.assertNotEqual(self.vantorel.command("--no-such-option").returncode, 0)
        self.assertTrue(self.vantorel.is_running())

    def test_quit_without_a_running_program_starts_none(self):
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.command("--quit")
        self.assertFalse(self.vantorel.is_on_bus())


class OnX11(VantorelTestCase):
    def test_without_an_x_server_it_says_what_it_needs(self):
        self.assertEqual(self.vantorel.quit(), 0)
        for display in ("", ":4711"):
            with self.subTest(display):
                answer = self.desktop.run([program_path()], {"DISPLAY": display})
                self.assertEqual(answer.returncode, 1)
                self.assertIn("Start it in an X11 session", answer.stderr.decode())
                self.assertEqual(len(answer.stderr.splitlines()), 1, answer.stderr)

    def test_it_speaks_x11_where_the_login_names_another_platform(self):
        self.assertEqual(self.vantorel.quit(), 0)
        self.vantorel.process = self.desktop.start("vantorel", [program_path()],
                                                   {"QT_QPA_PLATFORM": "wayland"})
        self.vantorel.wait_until_capturing()
        self.vantorel.copy("over X11")

    def test_the_shortcut_is_free_again_afterwards(self):
        self.assertEqual(self.vantorel.quit(), 0)
        failures = []
        root = self.desktop.display.screen().root
        root.grab_key(55, X.Mod4Mask | X.ShiftMask, False, X.GrabModeAsync, X.GrabModeAsync,
                      onerror=lambda *problem: failures.append(problem))
        self.desktop.display.sync()
        self.assertEqual(failures, [])


class Signals(VantorelTestCase):
    def test_terminate_and_interrupt_end_it_in_order(self):
        for sign in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(sign):
                if not self.vantorel.is_running():
                    self.vantorel.start()
                self.vantorel.copy(f"before {sign.name}")
                self.assertEqual(self.vantorel.quit(sign), 0)
                self.assertTrue(self.vantorel.history.opens())
                self.assertEqual(self.vantorel.history.texts()[0], f"before {sign.name}")

    def test_it_ends_in_order_with_the_panel_shown(self):
        self.vantorel.open_panel()
        self.assertEqual(self.vantorel.quit(), 0)

    def test_it_ends_when_the_session_takes_the_screen_away(self):
        self.vantorel.copy("before the end")
        self.desktop.take_screen_away()
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertGreaterEqual(self.vantorel.process.returncode, 0, "it crashed")
        self.assertEqual(self.vantorel.history.texts(), ["before the end"])
        self.vantorel.process = None


RestartOnSway, SuddenDeathOnSway = on_sway(Restart, SuddenDeath)
OneInstanceOnSway, CommandLineOnSway = on_sway(OneInstance, CommandLine)
SignalsOnSway, = on_sway(Signals)


def _contents(history):
    """The entries without the moment of the last copy, which a start fills in where it is absent."""
    return [{name: value for name, value in item.items() if name != "lastCopiedAt"}
            for item in history.items()]


if __name__ == "__main__":
    unittest.main()
