# SPDX-License-Identifier: MIT
"""From a copy in one application to a paste in another, with real keys all the way."""

import os
import unittest
from urllib.parse import quote

from harness import applications, pictures
from harness.case import VantorelTestCase
from harness.vantorel import GONE_NOTICE, NO_TARGET_NOTICE
from harness.waiting import stays_true, wait_for
from harness.wayland_case import on_sway

HEBREW = "שלום עולם, מה נשמע?"


class IntoApplications(VantorelTestCase):
    def _paste_newest_with_return(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")

    def test_text_arrives_in_a_gtk_editor(self):
        editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        self.vantorel.copy(f"from elsewhere\n{HEBREW}")
        self._paste_newest_with_return()
        editor.wait_for_text(f"from elsewhere\n{HEBREW}")
        self.assertTrue(editor.is_in_front())

    def test_text_arrives_in_a_qt_editor(self):
        editor = applications.qt_editor(self.desktop, self.path("qt.txt"))
        self.vantorel.copy(f"from elsewhere\n{HEBREW}")
        self._paste_newest_with_return()
        editor.wait_for_text(f"from elsewhere\n{HEBREW}")

    def test_text_arrives_in_a_terminal(self):
        terminal = applications.Terminal(self.desktop, self.path("terminal.txt"))
        self.vantorel.copy("echo from elsewhere")
        self._paste_newest_with_return()
        terminal.wait_for_text("echo from elsewhere")

    def test_text_arrives_once(self):
        editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        self.vantorel.copy("once ")
        for times in (1, 2, 3):
            self._paste_newest_with_return()
            editor.wait_for_text("once " * times)

    def test_an_older_entry_is_chosen_with_the_arrow_keys(self):
        editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        for text in ("oldest", "middle", "newest"):
            self.vantorel.copy(text)
        self.vantorel.open_panel()
        for key in ("Down", "Down", "Up", "Return"):
            self.desktop.keyboard.tap(key)
        editor.wait_for_text("middle")

    def test_the_application_that_was_in_front_gets_the_text_among_several(self):
        first = applications.gtk_editor(self.desktop, self.path("first.txt"))
        second = applications.gtk_editor(self.desktop, self.path("second.txt"))
        bystander = self.desktop.open_window("bystander")
        self.vantorel.copy("for the first")
        first.to_front()
        self._paste_newest_with_return()
        first.wait_for_text("for the first")
        self.assertEqual(bystander.typed(), "")
        second.to_front()
        second.assert_empty()

    def test_a_key_that_is_still_held_does_not_spoil_the_paste(self):
        editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        self.vantorel.copy("with a held key")
        self.vantorel.open_panel()
        self.desktop.keyboard.down("Alt")
        self.addCleanup(self.desktop.keyboard.up, "Alt")
        self.desktop.keyboard.tap("Return")

        def arrived():
            self.desktop.keyboard.up("Alt")
            text = editor.text()
            self.desktop.keyboard.down("Alt")
            return "with a held key" in text

        self.vantorel.wait_until_hidden()
        wait_for("the clipboard to be ours", lambda: self.clipboard.text() == "with a held key")
        wait_for("the editor to be in front", editor.is_in_front)
        wait_for("the text in the editor", arrived)

    def test_without_a_target_the_text_is_on_the_clipboard_and_a_notice_says_so(self):
        self.vantorel.copy("older")
        self.vantorel.copy("newer")
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Return")
        self.vantorel.wait_for_notice(NO_TARGET_NOTICE)
        self.assertEqual(self.clipboard.text(), "older")

    def test_a_paste_makes_no_new_entry_and_keeps_the_order(self):
        editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        for text in ("oldest", "middle", "newest"):
            self.vantorel.copy(text)
        self.vantorel.open_panel()
        for key in ("Down", "Down", "Return"):
            self.desktop.keyboard.tap(key)
        editor.wait_for_text("oldest")
        self.vantorel.copy("afterwards")
        self.vantorel.wait_for_texts(["afterwards", "newest", "middle", "oldest"])


class CopiesFromApplications(VantorelTestCase):
    def test_a_copy_from_an_editor_is_kept_with_its_source(self):
        editor = applications.gtk_editor(self.desktop, self.path("notes.txt"), f"a\n{HEBREW}\nb")
        editor.select_all_and_copy()
        item = wait_for("an entry", self.vantorel.newest)
        self.assertEqual(item["text"].strip(), f"a\n{HEBREW}\nb")
        self.assertEqual(item["sourceBundleIdentifier"], "org.xfce.mousepad")
        self.assertEqual(item["sourceAppName"], "Mousepad")

    def test_a_copy_from_an_editor_is_pasted_into_another(self):
        source = applications.qt_editor(self.desktop, self.path("source.txt"), "between editors")
        source.select_all_and_copy()
        self.vantorel.wait_for_newest("between editors")
        self.vantorel.copy("something newer")
        target = applications.gtk_editor(self.desktop, self.path("target.txt"))
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Return")
        target.wait_for_text("between editors")

    def test_what_is_only_selected_is_not_kept(self):
        self.clipboard.select("only selected")
        self.vantorel.copy("really copied")
        self.assertEqual(self.vantorel.history.texts(), ["really copied"])


class RichText(VantorelTestCase):
    OFFERS = {
        "UTF8_STRING": b"bold words",
        "text/html": b"<meta charset=utf-8><b>bold</b> words",
        "text/rtf": rb"{\rtf1\ansi {\b bold} words}",
    }

    def setUp(self):
        super().setUp()
        self.editor = applications.gtk_editor(self.desktop, self.path("gtk.txt"))
        owner = self.clipboard.own(offers=self.OFFERS)
        self.vantorel.wait_for_newest("bold words")
        owner.stop()
        self.vantorel.copy("something newer")
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")

    def test_every_form_is_kept_and_offered_again(self):
        self.desktop.keyboard.tap("Return")
        self.editor.wait_for_text("bold words")
        self.assertEqual(self.clipboard.read("text/html"), self.OFFERS["text/html"])
        self.assertEqual(self.clipboard.read("text/rtf"), self.OFFERS["text/rtf"])
        self.assertEqual(self.clipboard.read("UTF8_STRING"), b"bold words")
        self.assertEqual(self.clipboard.read("text/plain;charset=utf-8"), b"bold words")
        self.assertEqual(self.clipboard.read("STRING"), b"bold words")

    def test_as_plain_text_only_the_text_is_offered(self):
        self.desktop.keyboard.chord("Alt+Return")
        self.editor.wait_for_text("bold words")
        targets = self.clipboard.targets()
        self.assertIn("UTF8_STRING", targets)
        self.assertEqual([name for name in targets if "html" in name or "rtf" in name], [])

    def test_the_second_entry_by_its_number_as_plain_text(self):
        self.desktop.keyboard.chord("Ctrl+Alt+2")
        self.editor.wait_for_text("bold words")
        self.assertEqual([name for name in self.clipboard.targets() if "html" in name], [])


class Images(VantorelTestCase):
    def _newest_image(self):
        item = wait_for("an image entry", lambda: self.vantorel.newest().get("kind") == "image"
                        and self.vantorel.newest())
        self.assertEqual((item["title"], item["filePaths"]), ("Image", []))
        return item

    def _paste_and_read(self):
        self.vantorel.copy("something newer")
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Return")

        def picture():
            # The owner before offers its text under any name.
            data = self.clipboard.read("image/png") or b""
            return data if data.startswith(b"\x89PNG") else None

        return wait_for("a picture on the clipboard", picture)

    def test_a_png_is_kept_sealed_and_pasted_back_pixel_for_pixel(self):
        picture = pictures.png(640, 480)
        self.clipboard.copy_as("image/png", picture)
        item = self._newest_image()
        self.assertEqual(item["preview"], "640 × 480 px")
        self.assertEqual(pictures.png_pixels(self.vantorel.history.asset(item)),
                         pictures.png_pixels(picture))
        self.assertEqual(pictures.png_pixels(self._paste_and_read()), pictures.png_pixels(picture))

    def test_a_jpeg_becomes_an_image_entry_and_is_pasted_as_png(self):
        source = self.file("picture.png", contents=pictures.png(320, 200))
        self.desktop.run(["convert", source, self.path("picture.jpg")]).check_returncode()
        with open(self.path("picture.jpg"), "rb") as file:
            self.clipboard.copy_as("image/jpeg", file.read())
        self.assertEqual(self._newest_image()["preview"], "320 × 200 px")
        self.assertEqual(pictures.png_size(self._paste_and_read()), (320, 200))

    def test_the_same_picture_twice_is_one_entry_and_one_asset(self):
        picture = pictures.png(64, 48)
        self.clipboard.copy_as("image/png", picture)
        first = self._newest_image()
        self.vantorel.copy("between")
        self.clipboard.copy_as("image/png", picture)
        second = self._newest_image()
        self.assertEqual(first["id"], second["id"])
        self.assertEqual(os.listdir(self.vantorel.history.assets), [first["assetFilename"]])

    def test_a_picture_with_text_beside_it_is_a_text(self):
        self.clipboard.own(offers={"image/png": pictures.png(8, 8), "UTF8_STRING": b"caption"})
        self.vantorel.wait_for_newest("caption")
        self.assertEqual(self.vantorel.history.kinds(), ["text"])


class Files(VantorelTestCase):
    def setUp(self):
        super().setUp()
        self.file("from", "first file.txt", contents=b"1")
        self.file("from", "קובץ.txt", contents=b"2")
        os.mkdir(self.path("to"))

    def test_files_copied_in_a_file_manager_are_pasted_into_another_folder(self):
        source = applications.FileManager(self.desktop, self.path("from"))

        def copied():
            source.copy_everything()
            return self.vantorel.newest()

        item = wait_for("an entry of files", copied)
        self.assertEqual(sorted(item["filePaths"]),
                         sorted(self.path("from", name) for name in ("first file.txt", "קובץ.txt")))
        self.assertEqual((item["kind"], item["title"]), ("files", "2 files"))
        self.vantorel.copy("something newer")
        target = applications.FileManager(self.desktop, self.path("to"))
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Return")
        for name, contents in (("first file.txt", "1"), ("קובץ.txt", "2")):
            with open(target.wait_for_file(name), encoding="utf-8") as file:
                wait_for(f"the contents of {name}", lambda: file.seek(0) or file.read() == contents)

    def test_a_files_name_is_no_command_to_a_terminal(self):
        name = self.file("x\necho pwned >P\n", contents=b"")
        script = f"cd '{self.path()}'; exec tee received | dash"
        argv, window_class = self.desktop.terminal(script)
        applications.Application(self.desktop, window_class, argv, window_class)
        wait_for("the terminal's program to listen", lambda: os.path.exists(self.path("received")))
        self.clipboard.copy_as("text/uri-list", f"file://{quote(name)}\r\n".encode())
        wait_for("an entry of files", lambda: self.vantorel.newest().get("filePaths") == [name])
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        self.vantorel.wait_until_hidden()

        def received():
            self.desktop.keyboard.tap("Return")
            with open(self.path("received"), encoding="utf-8") as file:
                return "pwned" in file.read()

        wait_for("the name in the terminal", received)
        self.desktop.keyboard.type("echo >done")
        self.desktop.keyboard.tap("Return")
        wait_for("what follows to be done", lambda: os.path.exists(self.path("done")))
        self.assertFalse(os.path.exists(self.path("P")))

    def test_files_are_offered_in_both_forms_that_file_managers_know(self):
        path = self.path("from", "first file.txt")
        uri = path.replace(" ", "%20").encode()
        self.clipboard.own(offers={"text/uri-list": b"# a comment\r\nfile://" + uri + b"\r\n",
                                   "UTF8_STRING": b"first file.txt"})
        wait_for("an entry of files", lambda: self.vantorel.newest().get("filePaths") == [path])
        self.assertEqual(self.vantorel.newest()["title"], "File")
        self.vantorel.copy("something newer")
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Return")
        wait_for("files on the clipboard", lambda: "text/uri-list" in self.clipboard.targets())
        self.assertEqual(self.clipboard.read("text/uri-list").strip(), b"file://" + uri)
        self.assertEqual(self.clipboard.read("x-special/gnome-copied-files"),
                         b"copy\nfile://" + uri)

    def test_a_file_that_is_gone_is_said_to_be_gone_and_the_clipboard_left_empty(self):
        path = self.path("from", "first file.txt")
        self.clipboard.own(offers={"text/uri-list": b"file://" + path.replace(" ", "%20").encode()})
        wait_for("an entry of files", self.vantorel.newest)
        os.remove(path)
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        self.vantorel.wait_for_notice(GONE_NOTICE)
        self.assertIsNone(self.clipboard.read("text/uri-list", limit=2))

    def test_links_to_the_web_are_not_files(self):
        self.clipboard.own(offers={"text/uri-list": b"https://example.org/\r\n",
                                   "UTF8_STRING": b"https://example.org/"})
        self.vantorel.wait_for_newest("https://example.org/")
        self.assertEqual(self.vantorel.history.kinds(), ["text"])


class BigTexts(VantorelTestCase):
    def test_twenty_megabytes_pass_through_in_pieces_both_ways(self):
        line = "0123456789abcdef ש\n"
        text = line * (20_000_000 // len(line.encode()))
        self.clipboard.own(offers={"UTF8_STRING": text.encode()})
        self.vantorel.wait_for_newest(text, limit=60)
        self.vantorel.copy("something newer")
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Return")
        wait_for("the long text on the clipboard",
                 lambda: self.clipboard.read(limit=60) == text.encode(), 60)

    def test_a_text_beyond_the_cap_is_refused_and_the_next_is_kept(self):
        self.clipboard.own(offers={"UTF8_STRING": b"x" * (65 * 1024 * 1024)})
        stays_true("nothing in the history", lambda: not self.vantorel.history.texts(), 1)
        self.vantorel.copy("the next")
        self.assertEqual(self.vantorel.history.texts(), ["the next"])


IntoApplicationsOnSway, = on_sway(IntoApplications)
CopiesFromApplicationsOnSway, RichTextOnSway = on_sway(CopiesFromApplications, RichText)
ImagesOnSway, FilesOnSway, BigTextsOnSway = on_sway(Images, Files, BigTexts)


if __name__ == "__main__":
    unittest.main()
