#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Shows the main job on a private desktop with real applications, and says what it did.

    demo.py --program build/release/vantorel --output build/demo

Copies of several kinds are made with real keys, found in the panel and pasted into another
application, in light and dark colours and at the single and the double scale. A picture of the
screen is left for each step. The exit status is 0 only when the pasted text truly arrived.
"""

import argparse
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import stage  # noqa: E402  (found through the path above)
from harness import applications  # noqa: E402
from harness.clipboard import Clipboard  # noqa: E402
from harness.desktop import PrivateDesktop  # noqa: E402
from harness.vantorel import Vantorel  # noqa: E402
from harness.waiting import ConditionNotMet, wait_for  # noqa: E402

MEETING = "Meeting moved to Thursday, 10:30, room 4\nBring the floor plan."
HEBREW = "תודה רבה, נתראה ביום חמישי"
COMMAND = "git log --oneline --graph -20"
LOOKS = [(False, 1), (True, 1), (False, 2), (True, 2)]


class Demonstration:
    """One run in one look."""

    def __init__(self, desktop, output, look):
        self.desktop = desktop
        self.output = output
        self.look = look
        self.keyboard = desktop.keyboard
        self.clipboard = Clipboard(desktop)
        self.vantorel = Vantorel(desktop)
        self.shots = []

    def run(self):
        stage.prepare_toolkits(self.desktop)
        stage.draw_background(self.desktop)
        self.vantorel.start()
        say(f"Started Vantorel on a private desktop, {self.look.replace('-', ' at scale ')}.")
        self._copy_from_applications()
        self._choose_from_the_panel()
        self._search_and_paste()
        if self.vantorel.quit() != 0:
            raise ConditionNotMet("Vantorel did not end in order")

    def _copy_from_applications(self):
        notes = applications.gtk_editor(self.desktop, self._file("notes.txt"), MEETING,
                                        stage.as_ordinary_user())
        stage.place(self.desktop, notes, 60, 70, 520, 260)
        notes.select_all_and_copy()
        self._wait_for_entries(1)
        say("Copied a note in a text editor with Ctrl+A, Ctrl+C.")
        letter = applications.qt_editor(self.desktop, self._file("letter.txt"), HEBREW,
                                        stage.as_ordinary_user())
        stage.place(self.desktop, letter, 640, 70, 560, 300)
        letter.select_all_and_copy()
        self._wait_for_entries(2)
        say("Copied a Hebrew line in another editor.")
        self._draw_picture(self._file("Pictures", "sunrise.png"))
        self._copy_the_file()
        self._wait_for_entries(3)
        say("Copied a file in the file manager.")
        with open(self._file("Pictures", "sunrise.png"), "rb") as file:
            self.clipboard.copy_as("image/png", file.read())
        self._wait_for_entries(4)
        say("Copied a picture.")
        # The one in front is where the copy came from.
        self.terminal = applications.Terminal(self.desktop, self._file("typed.txt"),
                                              stage.terminal_colours(self.desktop))
        stage.place(self.desktop, self.terminal, 680, 440, 500, 300)
        self.clipboard.copy(COMMAND)
        self._wait_for_entries(5)

    def _copy_the_file(self):
        manager = applications.FileManager(self.desktop, self.desktop.path("Pictures"))
        stage.place(self.desktop, manager, 60, 420, 560, 320)

        def copied():
            manager.copy_everything()
            return "text/uri-list" in self.clipboard.targets()

        wait_for("the file to be copied", copied)

    def _choose_from_the_panel(self):
        self._open_panel()
        self._shoot("panel")
        say("Pressed Super+Shift+V: the panel shows the five copies, newest first.")
        self.keyboard.tap("Return")
        self.terminal.wait_for_text(COMMAND)
        say("Pressed Return: the newest one, a command, arrived in the terminal.")

    def _search_and_paste(self):
        target = applications.gtk_editor(self.desktop, self._file("reply.txt"), "",
                                         stage.as_ordinary_user())
        stage.place(self.desktop, target, 380, 480, 520, 240)
        self._open_panel()
        self.keyboard.type("thursday")
        wait_for("one entry to be left", lambda: len(self.vantorel.rows()) == 1, 20,
                 self.vantorel.row_titles)
        self._shoot("search")
        say("Typed “thursday”: one entry is left.")
        self.keyboard.tap("Return")
        target.wait_for_text(MEETING)
        say("Pressed Return: the note arrived in the other editor.")
        self._open_panel()
        self.keyboard.chord("Ctrl+4")
        target.wait_for_text(MEETING + HEBREW)
        say("Pressed Ctrl+4 in the panel: the Hebrew line arrived behind it.")
        self._shoot("pasted")

    def _open_panel(self):
        panel = self.vantorel.open_panel()
        frame = self.desktop.windows.frame(panel)
        wait_for("the panel to be drawn",
                 lambda: self.desktop.windows.distinct_colours(frame) > 32)
        wait_for("its rows", self.vantorel.rows)

    def _wait_for_entries(self, count):
        wait_for(f"{count} entries in the sealed history",
                 lambda: len(self.vantorel.history.items()) == count, 20,
                 self.vantorel.history.kinds)

    def _draw_picture(self, path):
        self.desktop.run(["convert", "-size", "960x600", "gradient:#ffd27a-#d1495b", "-fill",
                          "#fff3c4", "-draw", "circle 480,380 480,300", "-fill", "#3d2c4e", "-draw",
                          "polygon 0,600 0,470 240,380 470,480 700,360 960,470 960,600",
                          "-alpha", "off", f"png24:{path}"]).check_returncode()

    def _file(self, *parts):
        path = self.desktop.path(*parts)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        return path

    def _shoot(self, name):
        path = os.path.join(self.output, f"{self.look}-{name}.png")
        self.desktop.screenshot(path)
        self.shots.append(path)


def say(sentence):
    print(sentence, flush=True)


def _main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--program", required=True)
    parser.add_argument("--output", required=True)
    arguments = parser.parse_args()
    os.environ["VANTOREL_PROGRAM"] = os.path.abspath(arguments.program)
    output = os.path.abspath(arguments.output)
    shots = []
    for dark, scale in LOOKS:
        look = f"{'dark' if dark else 'light'}-{scale}x"
        with PrivateDesktop(compositor=True, dark=dark, scale=scale) as desktop:
            demonstration = Demonstration(desktop, output, look)
            try:
                demonstration.run()
            except (ConditionNotMet, AssertionError) as problem:
                desktop.screenshot(os.path.join(output, f"{look}-failed.png"))
                say(f"It did not work: {problem}")
                say(demonstration.vantorel.log())
                return 1
            shots += demonstration.shots
    say(f"Everything that was pasted arrived. The pictures are in {arguments.output}:")
    for path in shots:
        say(f"  {os.path.basename(path)}")
    return 0


if __name__ == "__main__":
    sys.exit(_main())
