# SPDX-License-Identifier: MIT
"""Pictures are found by the words that stand in them, and nobody notices that they are read."""

import hashlib
import os
import signal

from harness import pictures
from harness.case import VantorelTestCase
from harness.history import files_holding, image_item, seal
from harness.waiting import wait_for

INVOICE = "Invoice 2024 was paid on Tuesday\nQuestions: orders@northwind.example"
RECEIPT = "חשבונית מספר 4471\nשולמה בתודה באוגוסט"
# It takes the engine some seconds.
LONG_PAGE = "\n".join(f"Line {number}: the quick brown fox jumps over the lazy dog, the river, the "
                      "fence, the garden and everything that stands behind it" for number in range(70))


# Seconds. What is read at idle priority waits for everything else that the machine has to do.
PATIENTLY = 240


def has_ended(pid):
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            return file.read().rpartition(")")[2].split()[0] == "Z"
    except OSError:
        return True


class TextTestCase(VantorelTestCase):
    def copy_picture(self, picture):
        self.clipboard.copy_as("image/png", picture)
        pixels = pictures.png_pixels(picture)

        def kept():
            item = self.vantorel.newest()
            return (item.get("kind") == "image" and
                    pictures.png_pixels(self.vantorel.history.asset(item)) == pixels)

        wait_for("the picture on disk", kept)

    def texts_of_pictures(self):
        return [item.get("recognizedText") for item in self.vantorel.history.items()
                if item["kind"] == "image"]

    def wait_for_words(self, *words):
        """Waits until the newest picture's text is known, and it has these words."""
        text = wait_for("the text of the picture",
                        lambda: (self.texts_of_pictures() or [None])[0], PATIENTLY)
        for word in words:
            self.assertIn(word, text)

    def workers(self):
        """The processes that the program has started and that still run."""
        return self.vantorel.workers("vantorel-text")

    def wait_for_end(self, worker):
        """The killed process, too, only gets the time that nobody else wants."""
        wait_for("the worker's end", lambda: has_ended(worker), PATIENTLY)

    def wait_for_worker(self):
        return wait_for("a picture to be read", self.workers)[0]


class FoundByItsWords(TextTestCase):
    def test_a_picture_is_found_by_a_word_in_it_and_pasted(self):
        picture = self.desktop.picture_of(INVOICE)
        self.copy_picture(picture)
        self.vantorel.copy("something newer")
        self.wait_for_words("Invoice", "2024", "orders@northwind.example")
        self.vantorel.open_panel()
        self.vantorel.wait_for_rows(["something newer", "Image"])
        self.desktop.keyboard.type("invoice 2024")
        self.vantorel.wait_for_rows(["Image"])
        self.desktop.keyboard.tap("Return")
        wait_for("the picture on the clipboard",
                 lambda: "image/png" in self.clipboard.targets())
        self.assertEqual(pictures.png_pixels(self.clipboard.read("image/png")),
                         pictures.png_pixels(picture))

    def test_a_hebrew_picture_of_a_dark_window_is_found_by_hebrew_words(self):
        self.vantorel.copy("something older")
        self.copy_picture(self.desktop.picture_of(RECEIPT, paper="#1e1e1e", ink="#dcdcdc"))
        self.wait_for_words("חשבונית", "4471", "בתודה")
        self.vantorel.open_panel()
        self.desktop.set_layout("il")
        self.addCleanup(self.desktop.set_layout, "us")
        self.desktop.keyboard.type("בתודה")
        self.vantorel.wait_for_rows(["Image"])

    def test_the_open_panel_finds_it_as_soon_as_it_has_been_read(self):
        self.vantorel.copy("something older")
        self.vantorel.open_panel()
        self.desktop.keyboard.type("northwind")
        self.vantorel.wait_for_rows([])
        self.copy_picture(self.desktop.picture_of(INVOICE))
        self.vantorel.wait_for_rows(["Image"], limit=PATIENTLY)

    def test_the_words_are_nowhere_on_disk_nor_in_the_log(self):
        self.copy_picture(self.desktop.picture_of(INVOICE))
        self.wait_for_words("orders@northwind.example")
        for needle in ("northwind", "orders@"):
            for place in (self.desktop.home, self.desktop.runtime):
                self.assertEqual(files_holding(place, needle.encode()), [])
            self.assertNotIn(needle, self.vantorel.log())


class UnreadPictures(TextTestCase):
    autostart = False

    def _unread(self, number, contents):
        name = f"00000000-0000-4000-8000-{number:012}.png"
        os.makedirs(self.vantorel.history.assets, mode=0o700, exist_ok=True)
        if contents is not None:
            with open(os.path.join(self.vantorel.history.assets, name), "wb") as file:
                file.write(contents)
        item = image_item(name, number)
        if contents is not None and not contents.startswith(b"VNTL1"):
            item["contentHash"] = hashlib.sha256(contents).hexdigest()
        return item

    def _start_with(self, *contents):
        self.vantorel.start()
        self.vantorel.quit()
        key = self.vantorel.history.key()
        items = [self._unread(number, contents[number](key)) for number in range(len(contents))]
        self.vantorel.history.write(items)
        self.vantorel.start()

    def test_what_cannot_be_read_does_not_keep_the_others_from_being_read(self):
        invoice = self.desktop.picture_of(INVOICE)
        receipt = self.desktop.picture_of(RECEIPT)
        self._start_with(lambda key: seal(os.urandom(32), invoice),
                         lambda key: seal(key, pictures.broken_png()),
                         lambda key: seal(key, pictures.bomb_png()),
                         lambda key: seal(key, b"no picture at all"),
                         lambda key: seal(key, b""),
                         lambda key: b"",
                         lambda key: invoice,
                         lambda key: seal(key, receipt))

        def known():
            texts = [text or "" for text in self.texts_of_pictures()[-2:]]
            return "Invoice 2024" in texts[0] and "4471" in texts[1]

        wait_for("the two sound pictures to be read", known, PATIENTLY, self.texts_of_pictures)
        self.assertTrue(self.vantorel.is_running())
        self.assertEqual(self.texts_of_pictures()[:-2], [None] * 6)

    def test_a_picture_without_text_is_read_once(self):
        self._start_with(lambda key: seal(key, pictures.png(200, 100)))
        wait_for("the picture to be read", lambda: self.texts_of_pictures() == [""], PATIENTLY)
        self.vantorel.quit()
        self.vantorel.start()
        self.copy_picture(self.desktop.picture_of(INVOICE))
        worker = self.wait_for_worker()
        self.wait_for_words("Invoice 2024")
        self.assertEqual(self.texts_of_pictures()[1:], [""])
        self.assertEqual(self.workers(), [worker])

    def test_quitting_does_not_wait_for_a_reading_and_the_next_start_reads_it(self):
        page = self.desktop.picture_of(LONG_PAGE)
        self._start_with(lambda key: seal(key, page))
        worker = self.wait_for_worker()
        self.assertEqual(self.vantorel.quit(limit=5), 0)
        self.wait_for_end(worker)
        self.assertEqual(self.texts_of_pictures(), [None])
        self.vantorel.start()
        self.wait_for_words("quick brown fox")

    def test_a_program_that_is_killed_takes_its_worker_along(self):
        page = self.desktop.picture_of(LONG_PAGE)
        self._start_with(lambda key: seal(key, page))
        worker = self.wait_for_worker()
        self.vantorel.process.send_signal(signal.SIGKILL)
        self.vantorel.process.wait()
        self.wait_for_end(worker)


class ReadingInTheBackground(TextTestCase):
    def test_the_panel_opens_and_pastes_while_a_page_is_read(self):
        self.vantorel.copy("apple")
        self.copy_picture(self.desktop.picture_of(LONG_PAGE))
        worker = self.wait_for_worker()
        with open(f"/proc/{worker}/stat", encoding="utf-8", errors="replace") as file:
            policy = int(file.read().rpartition(")")[2].split()[38])
        self.assertEqual(policy, os.SCHED_IDLE)
        self.vantorel.open_panel()
        self.desktop.keyboard.type("apple")
        self.vantorel.wait_for_rows(["apple"])
        self.desktop.keyboard.tap("Return")
        wait_for("the text on the clipboard", lambda: self.clipboard.text() == "apple")
        self.assertEqual(self.texts_of_pictures(), [None], "the page had been read already")

    def test_a_deleted_picture_is_not_missed(self):
        self.copy_picture(self.desktop.picture_of(LONG_PAGE))
        self.wait_for_worker()
        self.vantorel.open_panel()
        self.vantorel.wait_for_row("Image")
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Delete")
        wait_for("the picture to be deleted", lambda: not self.vantorel.history.items())
        self.desktop.keyboard.tap("Escape")
        self.vantorel.wait_until_hidden()
        self.copy_picture(self.desktop.picture_of(INVOICE))
        self.wait_for_words("Invoice 2024")

    def test_the_worker_is_gone_when_nothing_is_left_to_read(self):
        self.copy_picture(self.desktop.picture_of(INVOICE))
        self.wait_for_words("Invoice")
        wait_for("the worker's end", lambda: not self.workers(), PATIENTLY)
