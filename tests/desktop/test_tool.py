# SPDX-License-Identifier: MIT
"""The commands for scripts and pickers, with the shipped program and a real keyring."""

import fcntl
import hashlib
import json
import os
import pty
import shutil
import signal
import stat
import subprocess
import time
import unittest

from harness.case import VantorelTestCase
from harness.history import image_item, seal, text_item
from harness.keyring import KeyringState
from harness.vantorel import program_path
from harness.waiting import wait_for
from harness.wayland_case import on_sway

KEY = bytes(range(32))
PICTURE = b"\x89PNG\r\n\x1a\nbytes as good as any"
ASSET = "6FA459EA-EE8A-4CA4-894E-DB77E160355E.png"
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
                         "1\ttext\tGreeting\n2\ttext\tfirst line\n"
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
                         "2\ttext\tfirst line\n")
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

    def test_help_behind_a_command(self):
        shown = self.answer("--help")
        for arguments in (["list", "--help"], ["export", "--help"], ["copy", "1", "--help"]):
            self.assertEqual(self.answer(*arguments), shown)

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

    def test_what_prints_nothing_needs_no_output(self):
        self.write_history()
        for arguments in ("import /no/such", "copy 999"):
            done = self.desktop.run(["sh", "-c", f"\"$0\" {arguments} >&-", program_path()], CONSOLE)
            self.assertNotIn("no standard output", done.stderr.decode())
            self.assertIn(done.returncode, (1, 4))

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
    def test_the_running_program_puts_it_on_the_clipboard(self):
        self.vantorel.start()
        for text in ("older", "newer"):
            self.vantorel.copy(text)
        self.answer("copy", "2")
        self.assertEqual(self.clipboard.read(), b"older")
        self.vantorel.wait_for_notice("Copied to clipboard. Press Ctrl+V to paste.")
        self.assertEqual(self.vantorel.history.texts(), ["newer", "older"])

    def test_files_are_there_when_it_ends(self):
        path = self.path("a file")
        with open(path, "wb"):
            pass
        self.write_history([self.files_item(path)])
        self.vantorel.start()
        self.answer("copy", "1")
        listed = self.desktop.run(["xclip", "-o", "-selection", "clipboard", "-t", "text/uri-list"])
        self.assertEqual(listed.stdout.decode().strip(), "file://" + path.replace(" ", "%20"))

    def test_what_is_gone_is_not_said_to_be_copied(self):
        self.write_history([self.files_item(self.path("gone"))])
        self.vantorel.start()
        status, sentence = self.refusal("copy", "1")
        self.assertEqual(status, 1)
        self.assertIn("vantorel list", sentence)
        self.vantorel.wait_for_notice("This item is no longer available.")

    def test_of_a_program_that_does_not_answer_it_says_so(self):
        self.write_history()
        self.vantorel.start()
        os.kill(self.vantorel.process.pid, signal.SIGSTOP)
        self.addCleanup(os.kill, self.vantorel.process.pid, signal.SIGCONT)
        status, sentence = self.refusal("copy", "1")
        self.assertEqual(status, 1)
        self.assertIn("has not answered yet", sentence)

    def files_item(self, path):
        item = text_item("", 1, kind="files", title="1 file", preview=path, filePaths=[path])
        del item["text"]
        return item

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


class Exporting(ToolCase):
    def setUp(self):
        super().setUp()
        self.place = self.path("out", "export")

    def export(self, *arguments):
        return self.answer("export", "--in-the-clear", self.place, *arguments)

    def on_a_terminal(self, *lines, options=()):
        """Types these lines at an export; answers its status and what stood on the terminal."""
        ours, theirs = pty.openpty()
        process = self.desktop.start("export", [program_path(), "export", *options, self.place],
                                     CONSOLE, stdin=theirs, stdout=theirs, stderr=theirs)
        os.close(theirs)
        os.write(ours, "".join(f"{line}\n" for line in lines).encode() + b"\x04")
        shown = b""
        try:
            while chunk := os.read(ours, 4096):
                shown += chunk
        except OSError:  # nobody has the other end any more
            pass
        os.close(ours)
        return process.wait(20), shown.decode()

    def test_each_entry_has_readable_files_and_a_manifest(self):
        self.write_history()
        self.export()
        self.assertEqual(sorted(os.listdir(self.place)),
                         ["0001.txt", "0002.txt", "0003.png", "0004.txt", "manifest.json"])
        self.assertEqual(contents(os.path.join(self.place, "0001.txt")), b"pinned\n")
        self.assertEqual(contents(os.path.join(self.place, "0003.png")), PICTURE)
        self.assertEqual(contents(os.path.join(self.place, "0004.txt")), b"/home/a b\n/home/c\n")
        with open(os.path.join(self.place, "manifest.json"), encoding="utf-8") as file:
            manifest = json.load(file)
        self.assertEqual(manifest["entries"][0]["customName"], "Greeting")
        self.assertEqual(stat.S_IMODE(os.stat(self.place).st_mode), 0o700)
        for name in os.listdir(self.place):
            self.assertEqual(stat.S_IMODE(os.stat(os.path.join(self.place, name)).st_mode), 0o600)

    def test_a_bare_name_is_one_in_the_directory_where_one_is(self):
        self.write_history()
        out = os.path.dirname(self.place)
        self.answer("export", "--in-the-clear", "export", cwd=out)
        self.assertIn("manifest.json", os.listdir(self.place))
        self.answer("import", "export", cwd=out)
        self.answer("export", "--in-the-clear", "again/", cwd=out)
        self.assertEqual(sorted(os.listdir(out)), ["again", "export"])

    def test_an_empty_directory_is_filled(self):
        self.write_history()
        os.mkdir(self.place, 0o755)
        before = os.stat(self.place).st_ino
        self.export()
        self.assertEqual(os.stat(self.place).st_ino, before)
        self.assertEqual(stat.S_IMODE(os.stat(self.place).st_mode), 0o700)
        self.assertEqual(len(os.listdir(self.place)), 5)

    def test_what_is_left_out_is_a_failure(self):
        self.write_history()
        os.remove(os.path.join(self.vantorel.history.assets, ASSET))
        status, sentence = self.refusal("export", "--in-the-clear", self.place)
        self.assertEqual(status, 1)
        self.assertIn("1 entry", sentence)
        self.assertEqual(len(os.listdir(self.place)), 4)

    def test_a_file_beyond_the_limit_leaves_nothing(self):
        self.write_history([text_item("fits", 1), text_item("x" * 200_000, 2)])
        script = "ulimit -c 0 -f 64; exec \"$0\" export --in-the-clear \"$1\""
        done = self.desktop.run(["bash", "-c", script, program_path(), self.place], CONSOLE)
        self.assertEqual((done.returncode, os.listdir(os.path.dirname(self.place))), (1, []))
        self.assertIn("File too large", done.stderr.decode())

    def test_what_one_that_was_killed_has_left_goes_with_the_next(self):
        self.write_history()
        out = os.path.dirname(self.place)
        left = ".vantorel-export.6FA459EA-EE8A-4CA4-894E-DB77E160355E"
        os.mkdir(os.path.join(out, left))
        self.file("out", left, "0001.txt", contents=b"secret")
        self.export()
        self.assertEqual(os.listdir(out), ["export"])

    def test_where_nobody_can_be_asked_it_has_to_be_said(self):
        self.write_history()
        status, sentence = self.refusal("export", self.place)
        self.assertEqual(status, 2)
        self.assertIn("--in-the-clear", sentence)
        self.assertFalse(os.path.exists(self.place))

    def test_on_a_terminal_it_is_asked_twice(self):
        self.write_history()
        for lines in ((), ("no",), ("yes",), ("yes", "yes"), ("export", "export")):
            status, shown = self.on_a_terminal(*lines)
            self.assertEqual(status, 1, shown)
            self.assertIn("in the clear", shown)
            self.assertFalse(os.path.exists(self.place))
        self.assertEqual(self.on_a_terminal("no", options=["--in-the-clear"])[0], 1)
        self.assertEqual(self.on_a_terminal("yes", "export")[0], 0)
        self.assertTrue(os.path.exists(os.path.join(self.place, "manifest.json")))

    def test_what_is_there_stays(self):
        self.write_history()
        kept = self.file("out", "export", "kept", contents=b"kept")
        status, sentence = self.refusal("export", "--in-the-clear", self.place)
        self.assertEqual((status, os.listdir(self.place)), (1, ["kept"]))
        self.assertIn("not empty", sentence)
        self.assertEqual(self.refusal("export", "--in-the-clear", kept)[0], 1)
        self.assertEqual(self.refusal("export", "--in-the-clear", self.place + "/no/such")[0], 1)
        self.assertEqual(os.listdir(os.path.dirname(self.place)), ["export"])

    def test_a_full_disk_leaves_nothing(self):
        disk = self.path("small", "disk")
        os.mkdir(disk)
        mount = ["mount", "-t", "tmpfs", "-o", "size=64k,mode=0700", "none", disk]
        if subprocess.run(mount, capture_output=True, check=False).returncode != 0:
            self.skipTest("mounting is not allowed here")
        self.addCleanup(subprocess.run, ["umount", disk], check=True)
        self.write_history([text_item("fits", 1), text_item("x" * 200_000, 2)])
        status, sentence = self.refusal("export", "--in-the-clear", os.path.join(disk, "export"))
        self.assertEqual((status, os.listdir(disk)), (1, []))
        self.assertIn("No space left on device", sentence)

    def test_with_a_locked_keyring_nothing_is_made(self):
        self.write_history()
        self.desktop.keyring.lock()
        self.assertEqual(self.refusal("export", "--in-the-clear", self.place)[0], 3)
        self.assertFalse(os.path.exists(self.place))


class Importing(ToolCase):
    """What was exported comes back, here or elsewhere."""

    def setUp(self):
        super().setUp()
        self.place = self.path("out", "export")

    def export(self, items=None):
        self.write_history(items)
        self.listed = self.answer("list")
        self.answer("export", "--in-the-clear", self.place)

    def forget(self):
        shutil.rmtree(self.vantorel.history.directory)

    def test_a_history_that_was_lost_comes_back(self):
        self.export()
        self.forget()
        self.answer("import", self.place)
        self.assertEqual(self.answer("list"), self.listed)
        self.assertEqual(self.answer("get", "3"), PICTURE)
        self.assertEqual(self.vantorel.history.items()[0]["customName"], "Greeting")

    def test_on_a_new_machine_a_history_begins(self):
        self.export()
        self.forget()
        other = self.new_desktop()
        done = other.run([program_path(), "import", self.place], CONSOLE)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        self.assertEqual(other.keyring.item_count(), 1)
        self.assertEqual(other.run([program_path(), "list"], CONSOLE).stdout, self.listed)

    def test_again_it_changes_nothing(self):
        self.export()
        before = self.vantorel.history.items()
        for _ in range(2):
            self.answer("import", self.place)
            self.assertEqual(self.answer("list"), self.listed)
        after = self.vantorel.history.items()
        self.assertEqual([item["id"] for item in after], [item["id"] for item in before])
        self.assertEqual(len(os.listdir(self.vantorel.history.assets)), 1)

    def test_a_long_history_is_saved_too(self):
        self.export([text_item("x" * 3_000_000, 1), text_item("y", 2)])
        self.forget()
        self.answer("import", self.place)
        self.assertEqual(self.answer("list"), self.listed)

    def test_what_is_over_the_limits_is_told(self):
        self.export([text_item(f"{number}", number) for number in range(100, 130)])
        self.write_history([text_item(f"newer {number}", number) for number in range(48)])
        done = self.tool("import", self.place)
        self.assertEqual((done.returncode, done.stderr.decode()),
                         (0, "vantorel: 2 of 30 clips were taken in; "
                             "the others are over the limits of the history.\n"))

    def test_a_program_that_cannot_open_its_history_is_not_asked(self):
        self.export()
        self.vantorel.history.write_raw(seal(KEY, b"[{]"))
        self.vantorel.start(capturing=False)
        wait_for("the program on the bus", self.vantorel.is_on_bus)
        status, sentence = self.refusal("import", self.place)
        self.assertEqual(status, 1)
        self.assertIn("--new-history", sentence)

    def test_a_manifest_cannot_write_to_the_terminal(self):
        self.export()
        manifest = os.path.join(self.place, "manifest.json")
        with open(manifest, encoding="utf-8") as file:
            text = file.read()
        with open(manifest, "w", encoding="utf-8") as file:
            file.write(text.replace("0002.txt", "0002\\u001b]0;title\\u0007.txt"))
        hostile = self.path("out", "a\x1b[31m\nb")
        os.rename(self.place, hostile)
        status, sentence = self.refusal("import", hostile)
        self.assertEqual(status, 1)
        self.assertNotIn("\x1b", sentence)
        self.assertEqual(len(sentence.splitlines()), 1)

    def test_the_running_program_does_it_itself(self):
        self.export()
        self.forget()
        self.vantorel.start()
        self.vantorel.copy("copied here")
        self.answer("import", self.place)
        self.assertEqual(len(self.vantorel.history.items()), 5)
        self.vantorel.wait_for_notice("4 clips were taken in.")
        self.assertEqual(self.vantorel.history.texts(),
                         ["pinned\n", "copied here", "first line\n\tsecond \x1b[31mline\n"])
        self.vantorel.open_panel()
        wait_for("the panel to have them", lambda: len(self.vantorel.rows()) == 5)

    def test_the_running_program_has_saved_a_long_history_when_it_ends(self):
        self.export([text_item("x" * 30_000_000, 1), text_item("y", 2)])
        self.forget()
        self.vantorel.start()
        self.answer("import", self.place)
        self.assertEqual(len(self.vantorel.history.items()), 2)

    def test_what_is_no_export_or_a_damaged_one_changes_nothing(self):
        self.export()
        before = self.vantorel.history.raw()
        empty = self.path("out", "empty")
        os.mkdir(empty)
        self.assertEqual(self.refusal("import", empty)[0], 1)
        self.assertEqual(self.refusal("import", empty + "/no/such")[0], 1)
        with open(os.path.join(self.place, "0002.txt"), "ab") as file:
            file.write(b"more")
        status, sentence = self.refusal("import", self.place)
        self.assertEqual(status, 1)
        self.assertIn("0002.txt is missing or was changed", sentence)
        self.assertEqual(len(sentence.splitlines()), 1)
        self.assertEqual(self.vantorel.history.raw(), before)

    def test_nobody_else_writes_meanwhile(self):
        self.export()
        before = self.vantorel.history.raw()
        directory = os.open(self.vantorel.history.directory, os.O_RDONLY)
        self.addCleanup(os.close, directory)
        fcntl.flock(directory, fcntl.LOCK_EX)
        status, sentence = self.refusal("import", self.place)
        self.assertEqual(status, 1)
        self.assertIn("another Vantorel", sentence)
        self.assertEqual(self.vantorel.history.raw(), before)

    def test_with_a_locked_keyring(self):
        self.export()
        self.desktop.keyring.lock()
        before = self.vantorel.history.raw()
        self.assertEqual(self.refusal("import", self.place)[0], 3)
        self.assertEqual(self.vantorel.history.raw(), before)


def contents(path):
    with open(path, "rb") as file:
        return file.read()


CopyingOnSway, = on_sway(Copying)


if __name__ == "__main__":
    unittest.main()
