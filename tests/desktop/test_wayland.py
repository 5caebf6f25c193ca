# SPDX-License-Identifier: MIT
"""What is special about a Wayland session, whether or not an X server stands inside of it."""

import os
import unittest

from harness.compositor_programs import Foot, GnomeTextEditor, Mousepad, XTerm
from harness.case import VantorelTestCase
from harness.history import text_item
from harness.vantorel import NO_TARGET_NOTICE, program_path
from harness.waiting import wait_for
from harness.wayland_case import OnSway, PastingTestCase


class SwayTestCase(OnSway, VantorelTestCase):
    autostart = False


class Session(SwayTestCase):
    def test_check_says_what_there_is(self):
        text = self.desktop.run([program_path(), "--check"]).stdout.decode()
        self.assertRegex(text, "yes  Display           Wayland, on .*zwlr_layer_shell_v1 [45]")
        self.assertRegex(text, "yes  Clipboard         the compositor's .*_data_control_manager_v1")
        self.assertRegex(text, "no   Shortcut          only the compositor has keys.*\n *Add this line "
                               "to sway's configuration: bindsym --to-code Mod4.Shift.v exec "
                               "/.*/vantorel --toggle\n")
        self.assertIn("yes  Pasting           into the window in front (zwp_virtual_keyboard", text)
        self.assertRegex(text, "yes  Applications .*foreign_toplevel_manager_v1 3")

    def test_the_toolkit_the_user_names_is_not_the_one_for_this_desktop(self):
        self.desktop.env["QT_QPA_PLATFORM"] = "wayland"
        self.vantorel.start()
        self.assertEqual(self.vantorel.command("--toggle").returncode, 0)
        self.vantorel.wait_for_panel()

    def test_new_entries_show_in_the_open_panel_wherever_the_pointer_was_last(self):
        self.vantorel.start()
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        self.clipboard.copy("while it is open")
        self.vantorel.wait_for_row("while it is open")

    def test_a_start_does_not_complain_of_the_shortcut(self):
        self.vantorel.start()
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        self.assertNotIn("Could not enable the keyboard shortcut.", self.desktop.windows.titles())


class Clipboards(SwayTestCase):
    def install(self, application, name):
        self.file(".local", "share", "applications", f"{application}.desktop",
                  contents=f"[Desktop Entry]\nType=Application\nName={name}\nExec=true\n".encode())

    def test_a_copy_is_of_the_application_in_front(self):
        self.install("org.acme.Notes", "Acme Notes")
        self.vantorel.start()
        self.desktop.open_window("org.acme.Notes")
        self.clipboard.copy("a note")
        self.vantorel.wait_for_newest("a note")
        self.assertEqual(self.vantorel.newest()["sourceBundleIdentifier"], "org.acme.Notes")
        self.assertEqual(self.vantorel.newest()["sourceAppName"], "Acme Notes")
        self.desktop.open_window("unknown")
        self.clipboard.copy("from elsewhere")
        self.vantorel.wait_for_newest("from elsewhere")
        self.assertEqual(self.vantorel.newest()["sourceBundleIdentifier"], "unknown")

    def test_a_chosen_entry_is_pasted_by_wayland_programs(self):
        self.vantorel.start()
        self.desktop.open_window("org.acme.Notes")
        for text in ("first", "second"):
            self.clipboard.copy(text)
            self.vantorel.wait_for_newest(text)
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.chord("Down")
        self.desktop.keyboard.chord("Return")
        wait_for("the window to be in front again",
                 lambda: self.desktop.front() == "org.acme.Notes")
        wait_for("the entry on the clipboard", lambda: self.clipboard.text() == "first",
                 describe=self.clipboard.text)


class Pasting(OnSway, PastingTestCase):
    def test_an_entry_arrives_in_windows_of_the_x_server_inside(self):
        editor = Mousepad(self, backend="x11")
        self.copy("first", "second")
        self.choose("Down", "Return")
        editor.wait_for_text("first")
        terminal = XTerm(self)
        self.choose("Return")
        terminal.wait_for_text("second")

    def test_ten_in_a_row_arrive_in_their_order(self):
        texts = [f"entry {number};" for number in range(10)]
        editor = Mousepad(self)
        self.copy(*texts)
        for number in range(10):
            self.choose(*["Down"] * (9 - number), "Return")
            editor.wait_for_text("".join(texts[:number + 1]))

    def test_what_the_user_holds_does_not_spoil_it(self):
        editor = Mousepad(self)
        self.copy("first", "second")
        held = self.plug_in("us")
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        held.down("Super")
        held.down("Shift")
        self.desktop.pointer.click(*self.vantorel.wait_for_row("first").centre)
        editor.wait_for_text("first")
        held.up("Shift")
        held.up("Super")

    def test_without_its_window_nobody_gets_the_keys(self):
        editor = Mousepad(self)
        name = self.desktop.front()  # which is another one in newer versions
        terminal = Foot(self)
        self.copy("first")
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        self.desktop.close_window("foot")
        terminal.process.wait(20)
        self.desktop.keyboard.tap("Return")
        self.vantorel.wait_for_notice(NO_TARGET_NOTICE)
        self.desktop.bring_to_front(name)
        self.desktop.keyboard.tap("a")
        editor.wait_for_text("a")

    def test_the_users_layout_need_not_have_a_v(self):
        editor = Mousepad(self)
        self.copy("first", "second")
        hebrew = self.plug_in("il")
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()
        hebrew.tap("Down")
        hebrew.tap("Return")
        editor.wait_for_text("first")
        hebrew.tap("a")
        editor.wait_for_text("firstש")


class MorePrograms(OnSway, PastingTestCase):
    def test_an_entry_arrives_in_a_gtk_4_editor(self):
        editor = GnomeTextEditor(self)
        self.copy("first", "second")
        self.choose("Down", "Return")
        editor.wait_for_text("first")


class Panel(SwayTestCase):
    def setUp(self):
        super().setUp()
        self.vantorel.start()
        for text in ("first", "second", "third"):
            self.clipboard.copy(text)
            self.vantorel.wait_for_newest(text)
        self.desktop.open_window("org.acme.Notes")

    def open(self):
        self.assertEqual(self.vantorel.command("--toggle").returncode, 0)
        return self.vantorel.wait_for_panel()

    def colour_at(self, x, y, output="HEADLESS-1"):
        width, _, pixels = self.desktop.picture(output)
        return tuple(pixels[3 * (y * width + x):][:3])

    def test_it_is_painted_in_the_middle_of_the_output(self):
        frame = self.desktop.windows.frame(self.open())
        self.assertEqual((frame.x + frame.width // 2, frame.y + (frame.height + 1) // 2), (640, 400))
        wait_for("the panel to be painted",
                 lambda: self.colour_at(640, 400) != self.colour_at(640, 700))
        edges = [self.colour_at(x, 400) for x in (frame.x - 60, frame.x + 30)]
        self.assertEqual(edges[0], self.colour_at(640, 700))
        self.assertNotEqual(edges[0], edges[1])

    def test_it_opens_again_and_again(self):
        for _ in range(4):
            self.open()
            self.vantorel.command("--toggle")
            self.vantorel.wait_until_hidden()

    def test_a_press_beside_it_hides_it_and_is_for_nobody_else(self):
        self.open()
        self.desktop.pointer.click(100, 700)
        self.vantorel.wait_until_hidden()

    def test_a_preview_stands_beside_its_row(self):
        panel = self.desktop.windows.frame(self.open())
        self.desktop.keyboard.tap("Down")
        self.desktop.keyboard.tap("Space")
        preview = self.desktop.windows.frame(self.desktop.windows.wait_for_title("Preview"))
        row = self.vantorel.wait_for_row("second").element.extents
        self.assertGreaterEqual(preview.x, panel.x + panel.width)
        self.assertAlmostEqual(preview.y + preview.height / 2, row[1] + row[3] / 2, delta=1)
        inside = (preview.x + preview.width - 20, preview.y + preview.height - 20)
        wait_for("the preview to be painted",
                 lambda: self.colour_at(*inside) == self.colour_at(panel.x + 5, panel.y + 20))
        self.desktop.keyboard.tap("Escape")
        self.desktop.windows.wait_gone("Preview")
        self.vantorel.wait_for_panel()

    def test_a_menu_has_the_keys_and_a_press_beside_it(self):
        panel = self.desktop.windows.frame(self.open())
        menu = (panel.x + panel.width // 2 + 20, panel.y + 48)  # over the row that it is of
        wait_for("the row", lambda: self.colour_at(*menu) != self.colour_at(panel.x + 4, menu[1]))
        bare = self.colour_at(*menu)
        self.desktop.keyboard.tap("Menu")
        wait_for("the menu", lambda: self.colour_at(*menu) != bare)
        self.desktop.pointer.click(100, 700)
        wait_for("the menu to go", lambda: self.colour_at(*menu) == bare)
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.tap("Menu")
        wait_for("the menu", lambda: self.colour_at(*menu) != bare)
        for key in ("Up", "Return"):  # its last row deletes the entry
            self.desktop.keyboard.tap(key)
        self.vantorel.wait_for_rows(["second", "first"])

    def test_a_question_has_the_keyboard_while_the_panel_waits(self):
        self.open()
        self.desktop.keyboard.chord("Ctrl+p")
        wait_for("the pin", lambda: self.vantorel.history.items()[0].get("isPinned"))
        self.desktop.keyboard.chord("Ctrl+r")
        question = self.desktop.windows.wait_for_title("Name Pinned Clip")
        wait_for("the keyboard", lambda: self.desktop.windows.has_focus(question))
        frame = self.desktop.windows.frame(self.vantorel.panel())
        self.desktop.pointer.click(frame.x + 10, frame.y + frame.height - 10)
        self.desktop.keyboard.type("named")
        self.desktop.keyboard.tap("Return")
        self.desktop.windows.wait_gone("Name Pinned Clip")
        self.vantorel.wait_for_row("named")
        self.vantorel.wait_for_panel()
        self.desktop.keyboard.tap("Escape")
        self.vantorel.wait_until_hidden()

    def test_a_window_that_was_left_lets_others_have_the_keyboard(self):
        self.vantorel.command("--about")
        about = self.desktop.windows.wait_for_title("About Vantorel")
        wait_for("the keyboard", lambda: self.desktop.windows.has_focus(about))
        self.desktop.pointer.click(40, 760)
        wait_for("the keyboard to go", lambda: not self.desktop.windows.has_focus(about))
        frame = self.desktop.windows.frame(about)
        self.desktop.pointer.click(frame.x + 30, frame.y + 30)
        wait_for("the keyboard", lambda: self.desktop.windows.has_focus(about))
        self.desktop.keyboard.tap("Escape")
        self.desktop.windows.wait_gone("About Vantorel")

    def test_the_end_of_the_compositor_is_the_end_of_the_program(self):
        self.open()
        self.desktop.take_screen_away()
        wait_for("the program to end", lambda: not self.vantorel.is_running(), 3)
        self.assertEqual(self.vantorel.process.returncode, 1, "it crashed")
        self.assertEqual(self.vantorel.history.texts()[0], "third")
        self.vantorel.process = None

    def test_what_was_seen_before_the_compositor_ended_is_on_the_disk(self):
        # So long a history is written beside the program's other work.
        self.vantorel.quit()
        self.vantorel.history.write([text_item(f"{number} " + "long text " * 800_000, number)
                                     for number in range(4)])
        self.vantorel.start(capturing=False)
        self.vantorel.wait_until_on_bus()
        before = os.listdir(self.vantorel.history.directory)
        self.open()
        self.desktop.keyboard.chord("Ctrl+p")
        wait_for("the pin", lambda: self.vantorel.history.items()[0].get("isPinned"))
        self.clipboard.copy("the last words")
        wait_for("the copy to be on its way to the disk",
                 lambda: set(os.listdir(self.vantorel.history.directory)) - set(before))
        self.desktop.take_screen_away()
        wait_for("the program to end", lambda: not self.vantorel.is_running())
        self.assertEqual(self.vantorel.process.returncode, 1, "it crashed")
        items = self.vantorel.history.items()
        self.assertEqual([item.get("isPinned", False) for item in items], [True] + 4 * [False])
        self.assertEqual(items[1]["text"], "the last words")
        self.vantorel.process = None


class OverAFullscreenWindow(OnSway, PastingTestCase):
    def setUp(self):
        super().setUp()
        self.copy("first", "second")
        self.terminal = Foot(self)
        self.desktop.fill_screen()
        self.desktop.run(["wl-copy", "--primary", "--", "primary"], stdin=None,
                         capture_output=False).check_returncode()
        self.vantorel.command("--toggle")
        self.vantorel.wait_for_panel()

    def assert_hidden_by(self, button):
        self.desktop.pointer.click(100, 700, button)
        self.vantorel.wait_until_hidden()
        wait_for("the terminal to be in front", lambda: self.desktop.front() == "foot")
        self.desktop.keyboard.tap("a")
        self.terminal.wait_for_text("a")

    def test_a_press_beside_the_panel_hides_it(self):
        self.assert_hidden_by(1)

    def test_so_does_the_middle_button_and_nothing_is_pasted(self):
        self.assert_hidden_by(2)

    def test_so_does_the_right_button(self):
        self.assert_hidden_by(3)

    def test_the_panel_has_its_own_presses(self):
        self.vantorel.click_row("first")
        self.vantorel.wait_until_hidden()
        self.terminal.wait_for_text("first")


class Outputs(SwayTestCase):
    desktop_options = {"outputs": 2, "output_scale": 2, "size": (2560, 1600)}

    def test_the_panel_opens_on_the_one_in_use(self):
        self.vantorel.start()
        for number, left in ((2, 1280), (1, 0), (2, 1280)):
            with self.subTest(number):
                self.desktop.sway(f"focus output HEADLESS-{number}")
                self.vantorel.command("--toggle")
                frame = self.desktop.windows.frame(self.vantorel.wait_for_panel())
                self.assertEqual(frame.x + frame.width // 2, left + 640)
                output = f"HEADLESS-{number}"
                wait_for("the panel on that output",
                         lambda: self.rows_of_colour(output, frame, left) > 0)
                self.desktop.keyboard.tap("Escape")
                self.vantorel.wait_until_hidden()

    def rows_of_colour(self, output, frame, left):
        """How many pixels of the panel's upper edge are not what lies behind it."""
        width, _, pixels = self.desktop.picture(output)
        def at(x, y):
            return tuple(pixels[3 * (2 * y * width + 2 * x):][:3])
        behind = at(10, 700)
        middle = frame.x - left + frame.width // 2
        return sum(at(middle + x, frame.y + 4) != behind for x in range(-20, 20))


class Dark(SwayTestCase):
    """At a scale between whole numbers, too."""

    desktop_options = {"dark": True, "output_scale": 1.5, "size": (1920, 1200)}

    def test_the_panel_is_dark_and_in_the_middle(self):
        self.vantorel.start()
        self.vantorel.command("--toggle")
        frame = self.desktop.windows.frame(self.vantorel.wait_for_panel())
        self.assertEqual((frame.x + frame.width // 2, frame.y + (frame.height + 1) // 2),
                         (640, 400))

        def is_dark():
            width, _, pixels = self.desktop.picture()
            start = 3 * (round((frame.y + 5) * 1.5) * width + 960)
            return sum(pixels[start:start + 3]) < 160  # what lies behind is lighter

        wait_for("a dark panel", is_dark)


class WithoutXServer(SwayTestCase):
    desktop_options = {"xwayland": False}

    def test_it_works(self):
        self.vantorel.start()
        self.clipboard.copy("without an X server")
        self.vantorel.wait_for_newest("without an X server")
        self.assertEqual(self.vantorel.command("--toggle").returncode, 0)
        self.vantorel.wait_for_panel()
        self.vantorel.wait_for_row("without an X server")
        self.desktop.keyboard.tap("Escape")
        self.vantorel.wait_until_hidden()

    def test_check_needs_none(self):
        done = self.desktop.run([program_path(), "--check"])
        self.assertEqual(done.returncode, 0, done.stdout.decode())


if __name__ == "__main__":
    unittest.main()
