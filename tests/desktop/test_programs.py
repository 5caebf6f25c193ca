# SPDX-License-Identifier: MIT
"""Copies from and pastes into the programs that people use, and what is left when they end."""

import contextlib
import unittest

from harness import pictures
from harness import real_browsers as browsers
from harness import real_editors as editors
from harness import real_terminals as terminals
from harness.case import VantorelTestCase
from harness.results import Results
from harness.waiting import ConditionNotMet, wait_for
from harness.window_program import WindowProgram

_KINDS = (browsers.Firefox, browsers.Chromium, browsers.Thunderbird, editors.Writer, editors.Calc,
          editors.GnomeTextEditor, editors.FocusWriter, editors.Mousepad, editors.FeatherPad,
          editors.Emacs, editors.GVim, terminals.XTerm, terminals.Konsole, terminals.GnomeTerminal)
COPIED = "copied here"
PASTED = "PASTED"


class ProgramTestCase(VantorelTestCase):
    """What each program has to do; how it ends is noted for the table in docs/desktops.md."""

    desktop_options = {"window_manager": "metacity"}

    @contextlib.contextmanager
    def noted(self, what, kind):
        results = Results()
        try:
            yield
        except BaseException as problem:
            results.note(kind, self.desktop, what, "fails",
                         str(problem).split(" : ")[-1].splitlines()[0])
            raise
        results.note(kind, self.desktop, what, "works")


class Table:
    kind = None

    def copied_in_one(self):
        """The program with a text, which it has copied and the history has."""
        program = self.kind(self, COPIED)
        # Nobody else asks for the copy meanwhile.
        program.copy_until(lambda: self.vantorel.newest().get("text", "").strip() == COPIED,
                           "what the history has")
        return program

    def test_a_copy_arrives_in_the_history(self):
        with self.noted("copy", self.kind):
            self.copied_in_one()
            item = self.vantorel.newest()
            self.assertEqual(item["kind"], "text")
            self.assertEqual(item["sourceBundleIdentifier"], self.kind.source)
            self.assertEqual([form for form in ("htmlData", "rtfData") if item.get(form)],
                             list(self.kind.rich))

    def ready_to_paste_into(self):
        """The program with something in it; it takes keys, and has them, once it has copied."""
        program = self.kind(self, "begun")
        program.copy_until(lambda: self.vantorel.newest().get("text", "").strip() == "begun",
                           "all of it")
        return program

    def paste_into(self, program, text):
        program.go_to_end()
        self.vantorel.copy(text)
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")
        self.vantorel.wait_until_hidden()

    def test_ten_pastes_in_a_row_each_arrive(self):
        program = self.ready_to_paste_into()
        lost = []
        for number in range(10):
            text = f"PASTED{number};"
            self.paste_into(program, text)
            try:
                program.text_after_paste(text, 3)
            except ConditionNotMet:
                lost.append(text)
        with self.noted("ten", self.kind):
            self.assertFalse(lost, f"{10 - len(lost)} of 10 arrived")

    def test_a_paste_arrives_in_the_program(self):
        with self.noted("paste", self.kind):
            program = self.ready_to_paste_into()
            self.paste_into(program, PASTED)
            self.assertEqual(program.text_after_paste(PASTED).count(PASTED), 1)

    def test_a_copy_outlives_the_program(self):
        with self.noted("outlives", self.kind):
            program = self.copied_in_one()
            program.close()
            canvas = WindowProgram(self.desktop)
            canvas.open("main")
            wait_for("contents on the clipboard", self.clipboard.owner, 5)
            self.desktop.keyboard.chord("Ctrl+v")
            wait_for("a paste", canvas.pasted)
            self.assertEqual((canvas.pasted()[0][1] or "").strip(), COPIED)


class Gimp(ProgramTestCase):
    """Pictures instead of texts."""

    kind = editors.Gimp

    def _newest_picture(self):
        item = self.vantorel.newest()
        return item if item.get("kind") == "image" else None

    def copied_in_one(self):
        program = self.kind(self, "")
        program.copy_until(self._newest_picture, "a picture")
        return program

    def test_a_copy_arrives_in_the_history(self):
        with self.noted("copy", self.kind):
            self.copied_in_one()
            item = self._newest_picture()
            self.assertEqual(item["sourceBundleIdentifier"], self.kind.source)
            self.assertEqual(pictures.png_pixels(self.vantorel.history.asset(item)),
                             pictures.png_pixels(pictures.png(*editors.PICTURE_SIZE)))

    def test_a_paste_arrives_in_the_program(self):
        with self.noted("paste", self.kind):
            self.copied_in_one()
            self.clipboard.copy_as("image/png", pictures.png(16, 12, (1, 2, 3)))
            wait_for("the small picture",
                     lambda: self.vantorel.newest().get("preview") == "16 × 12 px")
            self.vantorel.open_panel()
            self.desktop.keyboard.tap("Return")
            self.vantorel.wait_until_hidden()
            self.desktop.windows.wait_for_title_containing("2 layers")

    def test_a_copy_outlives_the_program(self):
        with self.noted("outlives", self.kind):
            program = self.copied_in_one()
            program.close()
            wait_for("contents on the clipboard", self.clipboard.owner, 5)
            data = self.clipboard.read("image/png")
            self.assertEqual(pictures.png_size(data), editors.PICTURE_SIZE)


def _table_of(kind):
    return type(kind.__name__, (Table, ProgramTestCase), {"kind": kind, "__module__": __name__})


for _kind in _KINDS:
    globals()[_kind.__name__] = _table_of(_kind)
del _kind


if __name__ == "__main__":
    unittest.main()
