"""The commands for scripts and pickers, with the shipped program and a real keyring."""

import hashlib
import json
import os
import signal
import subprocess
import time
import unittest

from harness.case import VantorelTestCase
from harness.history import image_item, seal, text_item
from harness.keyring import KeyringState
from harness.vantorel import program_path
from harness.waiting import wait_for

KEY = bytes(range(32))
PICTURE = b"\x89PNG\r\n\x1a\nbytes as good as any"
ASSET = "6FA459EA-EE8A-4CA4-894E-DB77E160355E.png"
UNKNOWN_COPIED = "This item is no longer available."
# Over ssh there is a bus, and neither a display nor a compositor.
CONSOLE = {"DISPLAY": "", "WAYLAND_DISPLAY": "", "XAUTHORITY": "", "QT_QPA_PLATFORM": "none"}


class ToolCase(VantorelTestCase):
    autostart = False

    def tool(self, *arguments, env=None, **options):
        return self.desktop.run([program_path(), *arguments], {**CONSOLE, **(env or {})}, **options)

    def answer(self, *arguments, **options):
        done = self.tool(*arguments, **options)
        self.assertEqual((done.returncode, done.stderr.decode()), (0, ""))
        return done.stdout

    def refusal(self, *arguments, **options):
        """Exit status and sentence of a command that prints nothing else."""
        done = self.tool(*arguments, **options)
        self.assertEqual(done.stdout, b"")
        return done.returncode, done.stderr.decode().strip()

    def write_history(self, items=None):
        """One of each kind, unless it is said which."""
        self.desktop.keyring.store(KEY)
        self.vantorel.history.write(one_of_each() if items is None else items, KEY)
        with open(os.path.join(self.vantorel.history.assets, ASSET), "wb") as file:
            file.write(seal(KEY, PICTURE))


def one_of_each():
    picture = image_item(ASSET, 3)
    picture["contentHash"] = hashlib.sha256(PICTURE).hexdigest()
    files = text_item("", 4, kind="files", title="2 files", preview="a b, c",
                      filePaths=["/home/a b", "/home/c"])
    del files["text"]
    return [text_item("pinned\n", 9, isPinned=True, pinOrder=0, customName="Greeting"),
            text_item("first line\n\tsecond \x1b[31mline\n", 1, sourceAppName="Editor"),
            picture, files]


class Reading(ToolCase):
    def test_the_list_has_a_line_for_each_entry(self):
        self.write_history()
        self.assertEqual(self.answer("list").decode(),
                         "1\ttext\tGreeting\n2\ttext\tfirst line second [31mline\n"
                         "3\timage\t64 × 48 px\n4\tfiles\ta b, c\n")
        self.assertEqual(self.answer("list", "--null").count(b"\0"), 4)

    def test_json_is_read_by_a_program(self):
        self.write_history()
        entries = json.loads(self.answer("list", "--json"))
        self.assertEqual([entry["number"] for entry in entries], [1, 2, 3, 4])
        self.assertEqual([entry["kind"] for entry in entries], ["text", "text", "image", "files"])
        self.assertEqual((entries[0]["pinned"], entries[0]["name"]), (True, "Greeting"))
        self.assertEqual(entries[1]["source"], "Editor")
        self.assertNotIn("second \x1b", json.dumps(entries))

    def test_an_entry_is_written_as_it_was_copied(self):
        self.write_history()
        self.assertEqual(self.answer("get", "1"), b"pinned\n")
        self.assertEqual(self.answer("get", "2"), b"first line\n\tsecond \x1b[31mline\n")
        self.assertEqual(self.answer("get", "3"), PICTURE)
        self.assertEqual(self.answer("get", "4"), b"/home/a b\n/home/c\n")
        self.assertEqual(self.answer("get", "--null", "4"), b"/home/a b\0/home/c\0")
        identity = json.loads(self.answer("list", "--json"))[1]["id"]
        self.assertEqual(self.answer("get", identity), self.answer("get", "2"))

    def test_the_search_is_that_of_the_panel(self):
        self.write_history()
        self.assertEqual(self.answer("search", "FIRST", "line").decode(),
                         "2\ttext\tfirst line second [31mline\n")
        self.assertEqual(self.answer("search", "/home").decode(), "4\tfiles\ta b, c\n")
        self.assertEqual(self.answer("search", "nowhere"), b"")

    def test_a_number_that_nothing_has(self):
        self.write_history()
        self.assertEqual(self.refusal("get", "999"),
                         (4, "vantorel: there is no entry 999; the history has 4 entries."))
        self.assertEqual(self.refusal("copy", "999")[0], 4)

    def test_a_picture_that_is_gone(self):
        self.write_history()
        os.remove(os.path.join(self.vantorel.history.assets, ASSET))
        self.assertEqual(self.refusal("get", "3"),
                         (1, "vantorel: the picture of this entry is missing or damaged."))

    def test_without_a_history_the_list_is_empty(self):
        self.assertEqual(self.answer("list"), b"")
        self.assertEqual(self.answer("list", "--json"), b"[]\n")
        self.assertEqual(self.refusal("get", "1")[0], 4)
        self.assertFalse(os.path.exists(self.vantorel.history.directory))
        self.assertEqual(self.desktop.keyring.item_count(), 0)

    def test_a_damaged_history_is_said_to_be_one_and_left_alone(self):
        self.desktop.keyring.store(KEY)
        for data in (seal(KEY, b"[{]"), seal(bytes(32), b"[]"), b"VNTL1", b""):
            self.vantorel.history.write_raw(data)
            status, sentence = self.refusal("list")
            self.assertEqual(status, 1)
            self.assertIn("--new-history", sentence)
            self.assertEqual(self.vantorel.history.raw(), data)

    def test_wrong_arguments(self):
        for arguments in (["list", "more"], ["search"], ["get"], ["get", "x"], ["get", "0"]):
            status, sentence = self.refusal(*arguments)
            self.assertEqual(status, 2, arguments)
            self.assertIn("Try 'vantorel --help'.", sentence)

    def test_a_locale_that_does_not_exist(self):
        self.write_history()
        self.assertEqual(self.answer("list"),
                         self.answer("list", env={"LC_ALL": "xx_YY.no-such", "LANG": "zz"}))

    def test_a_reader_that_ends_early_ends_it_quietly(self):
        self.write_history([text_item(f"{number} " + "x" * 100_000, number) for number in range(50)])
        script = "set -o pipefail; \"$0\" get 1 | head -c 10"
        done = self.desktop.run(["bash", "-c", script, program_path()], CONSOLE)
        self.assertEqual((done.stdout, done.stderr), (b"0 xxxxxxxx", b""))
        self.assertIn(done.returncode, (1, 128 + signal.SIGPIPE))

    def test_an_output_that_is_closed_gets_nothing_else_in_its_place(self):
        self.write_history()
        done = self.desktop.run(["sh", "-c", "\"$0\" list >&-", program_path()], CONSOLE)
        self.assertEqual(done.returncode, 1)
        self.assertIn("no standard output", done.stderr.decode())

    def test_an_output_that_is_full(self):
        self.write_history()
        with open("/dev/full", "wb") as full:
            done = self.tool("list", capture_output=False, stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1)
        self.assertIn("No space left on device", done.stderr.decode())

    def test_the_running_program_is_read_beside(self):
        self.vantorel.start()
        self.vantorel.copy("copied now")
        before = self.vantorel.history.raw()
        self.assertEqual(self.answer("list"), b"1\ttext\tcopied now\n")
        self.assertEqual(self.vantorel.history.raw(), before)


class Keyrings(ToolCase):
    def refused_within(self, seconds):
        begun = time.monotonic()
        status, sentence = self.refusal("list")
        self.assertLess(time.monotonic() - begun, seconds)
        return status, sentence

    def test_a_locked_keyring_is_not_asked_to_open(self):
        self.write_history()
        self.desktop.keyring.lock()
        status, sentence = self.refused_within(10)
        self.assertEqual(status, 3)
        self.assertIn("locked", sentence)
        self.assertTrue(self.desktop.keyring.is_locked())
        self.assertEqual(self.desktop.windows.titled("Unlock Keyring"), [])

    def test_a_silent_keyring_is_waited_for_within_limits(self):
        self.write_history()
        self.desktop.keyring.suspend()
        self.addCleanup(self.desktop.keyring.resume)
        self.assertEqual(self.refused_within(15)[0], 3)

    def test_a_keyring_without_the_key(self):
        self.vantorel.history.write([text_item("of another keyring")], KEY)
        status, sentence = self.refused_within(10)
        self.assertEqual(status, 3)
        self.assertIn("does not have the key", sentence)
        self.assertEqual(self.desktop.keyring.item_count(), 0)

    def test_without_a_session_bus(self):
        self.write_history()
        status, sentence = self.refusal(
            "list", env={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/no/bus"})
        self.assertEqual(status, 3)
        self.assertIn("vantorel --check", sentence)


class Copying(ToolCase):
    def pasted(self):
        return self.desktop.run(["xclip", "-o", "-selection", "clipboard"]).stdout

    def test_the_running_program_puts_it_on_the_clipboard(self):
        self.vantorel.start()
        for text in ("older", "newer"):
            self.vantorel.copy(text)
        self.answer("copy", "2")
        self.assertEqual(self.pasted(), b"older")
        self.vantorel.wait_for_notice("Copied to clipboard. Press Ctrl+V to paste.")
        self.assertEqual(self.vantorel.history.texts(), ["newer", "older"])

    def test_no_contents_go_over_the_bus(self):
        self.vantorel.start()
        self.vantorel.copy("not for the bus")
        heard = self.path("bus.log")
        with open(heard, "wb") as file:
            monitor = self.desktop.start("monitor", ["dbus-monitor", "--session",
                                                     "destination=com.vantorel.Vantorel"],
                                         stdout=file)
            self.answer("copy", "1")
            wait_for("the request on the bus", lambda: b"ActivateAction" in contents(heard))
            self.desktop.processes.stop(monitor)
        self.assertNotIn(b"not for the bus", contents(heard))

    def test_where_nobody_runs_it_says_what_to_do(self):
        self.write_history()
        status, sentence = self.refusal("copy", "1")
        self.assertEqual(status, 1)
        self.assertIn("vantorel --background", sentence)
        self.assertFalse(self.vantorel.is_on_bus())


def contents(path):
    with open(path, "rb") as file:
        return file.read()


if __name__ == "__main__":
    unittest.main()
