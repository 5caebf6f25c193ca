# SPDX-License-Identifier: MIT
"""What comes from outside is decoded elsewhere: the program holds the history and its key."""

import os
import re
import signal
import time

from harness import pictures
from harness.case import VantorelTestCase
from harness.waiting import PATIENCE, wait_for
from test_text_in_images import has_ended

COLOURS = {"tiff": (0xa0, 0x00, 0xff), "webp": (0x00, 0x90, 0x40), "gif": (0xff, 0x40, 0x00),
           "bmp": (0x20, 0x20, 0x80), "jpeg": (0x60, 0x60, 0x00)}
# Seconds: longer than a picture may take.
PAST_THE_LIMIT = 40
LONGEST_QUIT = 1.0


def differ_little(one, other):
    return all(abs(a - b) < 16 for a, b in zip(one, other))


class PictureTestCase(VantorelTestCase):
    def encoded(self, form, colour, width=90):
        path = self.path(f"encoded.{form}")
        self.desktop.run(["convert", "-size", f"{width}x90", "xc:#%02x%02x%02x" % colour,
                          "-depth", "8", path]).check_returncode()
        with open(path, "rb") as file:
            return file.read()

    def copy_picture(self, form, colour, width=90):
        return self.clipboard.own(offers={f"image/{form}": self.encoded(form, colour, width)})

    def wait_for_picture(self, colour, width=90, limit=20):
        """Waits until the newest entry is the picture of that colour, kept as a PNG."""
        def kept():
            item = self.vantorel.newest()
            if item.get("kind") != "image" or item["preview"] != f"{width} × 90 px":
                return False
            rows = pictures.png_pixels(self.vantorel.history.asset(item))
            return len(rows[0]) == 3 * width and differ_little(rows[45][:3], colour)
        wait_for(f"the picture of colour {colour}", kept, limit)

    def wait_for_picture_in_row(self, number, colour):
        def shown():
            rows = self.vantorel.rows()
            if len(rows) <= number:
                return None
            x, y, _, height = rows[number].element.extents
            return differ_little(self.desktop.windows.pixel(x + 8 + 28, y + height // 2), colour)
        wait_for(f"the picture of colour {colour} in row {number}", shown)

    def readers(self, pid=None):
        """The toolkit's readers of pictures that a process, else the program, has loaded."""
        with open(f"/proc/{pid or self.vantorel.process.pid}/maps", encoding="utf-8") as maps:
            return sorted(set(re.findall(r"/imageformats/(\w+)\.so", maps.read())))

    def worker(self):
        """The process that makes what was copied into what is kept."""
        return wait_for("a worker", lambda: self.vantorel.workers("vantorel-pictures"))[0]


class InAProcessOfTheirOwn(PictureTestCase):
    def test_what_is_copied_is_kept_and_the_program_loads_no_reader(self):
        for form, colour in COLOURS.items():
            with self.subTest(form=form):
                self.copy_picture(form, colour)
                self.wait_for_picture(colour)
        self.vantorel.open_panel()
        for number, colour in enumerate(reversed(COLOURS.values())):
            self.wait_for_picture_in_row(number, colour)
        self.assertEqual(self.readers(), [])
        self.assertIn("libqtiff", self.readers(self.worker()))

    def test_files_are_shown_and_the_program_loads_no_reader(self):
        drawing = (b'<svg xmlns="http://www.w3.org/2000/svg" width="90" height="90">'
                   b'<rect width="90" height="90" fill="#00a0ff"/></svg>')
        files = [("svg", (0x00, 0xa0, 0xff), drawing)]
        files += [(form, colour, self.encoded(form, colour)) for form, colour in COLOURS.items()]
        for form, _, contents in files:
            path = self.file(f"file.{form}", contents=contents)
            self.clipboard.copy_as("text/uri-list", f"file://{path}\r\n".encode())
            wait_for("an entry of files",
                     lambda p=path: self.vantorel.newest().get("filePaths") == [p])
        self.vantorel.open_panel()
        for number, (_, colour, _) in enumerate(reversed(files)):
            self.wait_for_picture_in_row(number, colour)
        self.assertEqual(self.readers(), [])

    def test_a_picture_too_large_as_png_is_kept_as_jpeg(self):
        noise = self.path("noise.tiff")
        self.desktop.run(["convert", "-size", "2400x2200", "xc:gray", "+noise", "Random", "-depth",
                          "8", noise], limit=60).check_returncode()
        with open(noise, "rb") as file:
            self.clipboard.own(offers={"image/tiff": file.read()})
        item = wait_for("the picture", lambda: self.vantorel.newest().get("kind") == "image" and
                        self.vantorel.newest(), 60)
        self.assertEqual(item["preview"], "2400 × 2200 px")
        self.assertEqual(self.vantorel.history.asset(item)[:3], b"\xff\xd8\xff")
        self.assertEqual(self.readers(), [])

    def test_the_worker_can_do_nothing_else(self):
        self.copy_picture("tiff", COLOURS["tiff"])
        self.wait_for_picture(COLOURS["tiff"])
        worker = self.worker()
        with open(f"/proc/{worker}/status", encoding="ascii") as file:
            status = file.read()
        self.assertIn("NoNewPrivs:\t1", status)
        self.assertIn("Seccomp:\t2", status)
        opened = [os.readlink(f"/proc/{worker}/fd/{name}")
                  for name in os.listdir(f"/proc/{worker}/fd")]
        self.assertEqual(sorted(re.sub(r":.*", "", name) for name in opened),
                         ["/dev/null", "/dev/null", "socket"])
        self.vantorel.kill()
        wait_for("its end", lambda: has_ended(worker))


class DecodersThatFail(PictureTestCase):
    def setUp(self):
        super().setUp()
        self.copy_picture("tiff", COLOURS["tiff"])
        self.wait_for_picture(COLOURS["tiff"])

    def test_one_that_hangs_is_given_up_and_the_next_picture_is_kept(self):
        worker = self.worker()
        os.kill(worker, signal.SIGSTOP)
        self.copy_picture("gif", COLOURS["gif"]).wait_until_asked("image/gif")
        self.vantorel.open_panel()
        self.wait_for_picture_in_row(0, COLOURS["tiff"])
        self.desktop.keyboard.tap("Escape")
        self.vantorel.wait_until_hidden()
        self.vantorel.copy("a text meanwhile")
        self.copy_picture("webp", COLOURS["webp"])
        self.wait_for_picture(COLOURS["webp"], limit=PAST_THE_LIMIT)
        self.assertNotEqual(self.worker(), worker)
        self.assertEqual(self.vantorel.history.kinds(), ["image", "text", "image"])

    def test_one_that_hangs_holds_up_no_quit(self):
        os.kill(self.worker(), signal.SIGSTOP)
        self.copy_picture("gif", COLOURS["gif"]).wait_until_asked("image/gif")
        began = time.monotonic()
        self.assertEqual(self.vantorel.quit(), 0)
        self.assertLess(time.monotonic() - began, LONGEST_QUIT * PATIENCE)

    def test_one_that_dies_of_a_picture_is_followed_by_another(self):
        worker = self.worker()
        os.kill(worker, signal.SIGSTOP)
        self.copy_picture("gif", COLOURS["gif"]).wait_until_asked("image/gif")
        os.kill(worker, signal.SIGKILL)
        self.copy_picture("webp", COLOURS["webp"])
        self.wait_for_picture(COLOURS["webp"])
        self.assertNotEqual(self.worker(), worker)
