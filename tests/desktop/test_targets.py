# SPDX-License-Identifier: MIT
"""Which window a paste arrives in, under each window manager: the one that was in front, or none."""

import os
import unittest

from harness.case import VantorelTestCase
from harness.vantorel import NO_TARGET_NOTICE
from harness.waiting import stays_true, wait_for
from harness.window_program import WindowProgram

TEXT = "PASTED"
REPEATS = 16
# A terminal emulator's class: the program presses what terminals paste with.
TERMINAL = "XTerm"
# As programs in a sandbox state theirs: counted within it, so that many state the same.
SANDBOXED_PID = 2


class TargetTestCase(VantorelTestCase):
    """One text in the history, and programs of windows that say what they get."""

    def setUp(self):
        super().setUp()
        self.programs = []
        # Where the panel comes up among several is a question of its own, asked below.
        self.desktop.windows.set_desktops(1)
        self.vantorel.copy(TEXT)

    def program(self, window_class="Canvas"):
        program = WindowProgram(self.desktop, window_class)
        self.programs.append(program)
        return program

    def with_window(self, window_class="Canvas", name="main", **how):
        """A program with one window, in front."""
        program = self.program(window_class)
        program.open(name, **how)
        return program

    def bystander(self, window_class="Bystander"):
        """A program that must get nothing; a paste that goes astray may well go there."""
        return self.with_window(window_class, "bystander", place=(700, 300, 260, 160))

    def paste(self):
        self.vantorel.open_panel()
        self.desktop.keyboard.tap("Return")

    def arrivals(self):
        """What arrived anywhere: (class, window, text)."""
        return [(program.window_class, name, text)
                for program in self.programs for name, text in program.pasted()]

    def everything(self):
        return [(program.window_class, program.chords(), program.pasted())
                for program in self.programs]

    def assert_arrived(self, program, name, times=1):
        """Waits for the text in this window and fails if anything was pressed elsewhere."""
        wait_for(f"the text in {name} of {program.window_class}",
                 lambda: program.pasted() == [(name, TEXT)] * times, 5, self.everything)
        self._settle()
        self.assertEqual(sum(len(one.chords()) for one in self.programs), times, self.everything())

    def assert_arrived_nowhere(self):
        """Waits for the notice; no window got a key, and the text is there to be pasted by hand."""
        wait_for("the notice", lambda: self.desktop.windows.titled(NO_TARGET_NOTICE), 5,
                 self.everything)
        self._settle()
        self.assertEqual([chords for one in self.programs for chords in one.chords()], [])
        self.assertEqual(self.clipboard.text(), TEXT)

    def program_numbered_as(self, number, window_class):
        """A new program whose windows are counted from this number, as the ended one's were."""
        others = []
        try:
            for _ in range(REPEATS):
                program = WindowProgram(self.desktop, window_class)
                if program.first == number:
                    self.programs.append(program)
                    return program
                others.append(program)  # it holds its number, so the next one gets another
        finally:
            for other in others:
                other.end()
        self.fail(f"the server does not give {number:#x} again")

    def _settle(self):
        for program in self.programs:
            if program.process.poll() is None:
                program.settle()


class Kinds:
    """Windows of every kind that have the keyboard: each of them gets the text itself."""

    def test_a_main_window(self):
        self.bystander()
        program = self.with_window()
        self.paste()
        self.assert_arrived(program, "main")

    def test_the_one_of_two_main_windows_that_was_in_front(self):
        program = self.with_window(name="first")
        program.open("second")
        program.to_front("first")
        self.paste()
        self.assert_arrived(program, "first")

    def test_a_modal_dialog(self):
        program = self.with_window()
        program.open("dialog", kind="DIALOG", transient_for="main", states=["MODAL"])
        self.paste()
        self.assert_arrived(program, "dialog")

    def test_a_dialog_beside_which_one_goes_on_working(self):
        program = self.with_window()
        program.open("find", kind="DIALOG", transient_for="main")
        self.paste()
        self.assert_arrived(program, "find")

    def test_the_main_window_in_front_of_its_open_dialog(self):
        program = self.with_window()
        program.open("find", kind="DIALOG", transient_for="main")
        program.to_front("main")
        self.paste()
        self.assert_arrived(program, "main")

    def test_a_palette(self):
        program = self.with_window()
        program.open("palette", kind="UTILITY", transient_for="main")
        self.paste()
        self.assert_arrived(program, "palette")

    def test_a_terminal_that_drops_down_before_another(self):
        self.bystander(TERMINAL)
        program = self.with_window(TERMINAL, "drop-down", states=["SKIP_TASKBAR", "ABOVE"])
        self.paste()
        self.assert_arrived(program, "drop-down")

    def test_the_desktop_itself(self):
        program = self.program("Wallpaper")
        program.open("icons", in_front=False, kind="DESKTOP", place=(0, 0, 1280, 800))
        self.bystander()
        program.to_front("icons")
        self.paste()
        self.assert_arrived(program, "icons")


class Identity:
    """Window and process numbers say little: they are given again, and stated at will."""

    def test_numbers_that_were_another_programs(self):
        self.bystander()
        numbers = []
        for time in range(REPEATS):
            program = self.with_window(f"Dialog{time}", "entry")
            self.paste()
            self.assert_arrived(program, "entry")
            numbers.append(program.windows["entry"].id)
            program.end()
            self.programs.remove(program)
        self.assertLess(len(set(numbers)), REPEATS // 2, "hardly a number was given again")

    def test_a_password_managers_window_with_the_number_of_an_editors(self):
        for time in range(4):
            with self.subTest(time=time):
                editor = self.with_window("Editor", "document")
                editor.copy("document", f"public {time}")
                self.vantorel.wait_for_newest(f"public {time}")
                number, window = editor.first, editor.windows["document"].id
                editor.end()
                manager = self.program_numbered_as(number, "KeePassXC")
                self.assertEqual(manager.open("vault").id, window)
                manager.copy("vault", f"hunter{time}")
                stays_true("nothing read", lambda: "UTF8_STRING" not in manager.requests(), 0.5)
                manager.end()
                after = self.with_window("Viewer", "page")
                after.copy("page", f"next {time}")
                self.vantorel.wait_for_newest(f"next {time}")
                after.end()
                self.assertNotIn(f"hunter{time}", self.vantorel.history.texts())

    def test_the_right_one_of_two_programs_that_state_the_same_process(self):
        one = self.with_window("FlatOne", pid=SANDBOXED_PID)
        other = self.with_window("FlatOther", pid=SANDBOXED_PID)
        self.paste()
        self.assert_arrived(other, "main")
        one.to_front("main")
        self.paste()
        wait_for("the text in the first one, too", lambda: one.pasted() == [("main", TEXT)], 5,
                 self.everything)
        self.assertEqual(len(self.arrivals()), 2)

    def test_nobody_when_the_other_one_that_stated_the_same_process_is_left(self):
        self.with_window("FlatOther", pid=SANDBOXED_PID)
        target = self.with_window("FlatOne", pid=SANDBOXED_PID)
        self.vantorel.open_panel()
        target.end()
        self.desktop.keyboard.tap("Return")
        self.assert_arrived_nowhere()

    def test_a_window_that_states_the_first_process(self):
        self._paste_into_one_stating(1)

    def test_a_window_that_states_the_process_of_this_program(self):
        self._paste_into_one_stating(self.vantorel.process.pid)

    def test_a_window_that_states_a_process_that_is_not_there(self):
        pid = next(number for number in range(4_000_000, 4_194_304)
                   if not os.path.exists(f"/proc/{number}"))
        self._paste_into_one_stating(pid)

    def _paste_into_one_stating(self, pid):
        self.bystander()
        program = self.with_window(pid=pid)
        self.paste()
        self.assert_arrived(program, "main")


class Changes:
    """What happens to the target while the panel is open."""

    def test_nobody_when_the_target_is_closed_and_a_namesake_is_left(self):
        self.with_window(TERMINAL, "left")
        target = self.with_window(TERMINAL, "closed")
        self.vantorel.open_panel()
        target.end()
        self.desktop.keyboard.tap("Return")
        self.assert_arrived_nowhere()

    def test_nobody_when_the_targets_dialog_closes_itself(self):
        program = self.with_window()
        program.open("dialog", kind="DIALOG", transient_for="main")
        self.vantorel.open_panel()
        program.close("dialog")
        self.desktop.keyboard.tap("Return")
        self.assert_arrived_nowhere()

    def test_the_new_window_of_a_target_that_was_started_again(self):
        self.bystander()
        before = self.with_window("Editor")
        panel = self.vantorel.open_panel()
        before.end()
        after = self.program("Editor")
        # Without a user's deed behind it, so that it stays behind the panel.
        window = after.open("again", in_front=False, user_time=0)
        wait_for("the new window", lambda: self.desktop.windows.is_viewable(window))
        self.desktop.windows.wait_active(panel)
        self.desktop.keyboard.tap("Return")
        self.assert_arrived(after, "again")

    def test_nobody_else_when_the_target_hands_the_keyboard_to_another_program(self):
        thief = self.program("Thief")
        stolen = thief.open("thief", in_front=False, unmanaged=True, place=(900, 500, 200, 100))
        program = self.with_window()
        self.vantorel.open_panel()
        program.give_focus_away("main", stolen)
        self.desktop.keyboard.tap("Return")
        # The text may be there before the keyboard is passed on; if not, the user is told.
        wait_for("the text or the notice", lambda: program.pasted()
                 or self.desktop.windows.titled(NO_TARGET_NOTICE), 5, self.everything)
        self._settle()
        self.assertTrue(program.has_said("gave-focus-away"))
        self.assertEqual(thief.chords(), [])
        self.assertEqual(self.clipboard.text(), TEXT)


class Managers:
    """A window manager that lies, ends, or gives way to another."""

    def test_an_active_window_that_never_existed(self):
        bystander = self.bystander()
        program = self.with_window()
        self.desktop.windows.state_active(0x0dead001)
        self.paste()
        wait_for("the text on the clipboard", lambda: self.clipboard.text() == TEXT)
        wait_for("an outcome", lambda: program.pasted() or bystander.pasted()
                 or self.desktop.windows.titled(NO_TARGET_NOTICE), 5, self.everything)
        self._settle()
        self.assertEqual(bystander.chords(), [])
        before = len(program.pasted())
        bystander.to_front("bystander")
        program.to_front("main")
        self.paste()
        self.assert_arrived(program, "main", before + 1)

    def test_one_that_is_killed_and_started_again(self):
        self.bystander()
        program = self.with_window()
        self.desktop.window_manager.kill()
        self.desktop.window_manager.start(self.desktop.window_manager.name)
        self.desktop.windows.set_desktops(1)
        program.to_front("main")
        self.paste()
        self.assert_arrived(program, "main")

    def test_one_that_is_replaced(self):
        self.bystander()
        program = self.with_window()
        name = self.desktop.window_manager.name
        self.desktop.window_manager.replace("openbox" if name != "openbox" else "metacity")
        self.desktop.windows.set_desktops(1)
        program.to_front("main")
        self.paste()
        self.assert_arrived(program, "main")


class VirtualDesktops:
    """The panel comes up on the virtual desktop that is looked at."""

    def test_the_panel_and_the_paste_on_each_of_several(self):
        self.desktop.windows.set_desktops(3)
        expected = []
        for number in (0, 2, 1):
            self.desktop.windows.switch_desktop(number)
            self.with_window(f"Canvas{number}")
            self.paste()
            expected.append((f"Canvas{number}", "main", TEXT))
            wait_for(f"the text on desktop {number}", lambda: self.arrivals() == expected, 5,
                     self.everything)


def under(manager):
    """The whole table under one window manager."""
    class Table(Kinds, Identity, Changes, Managers, VirtualDesktops, TargetTestCase):
        desktop_options = {"window_manager": manager}
    return Table


class Openbox(under("openbox")):
    pass


class Metacity(under("metacity")):
    pass


class Xfwm4(under("xfwm4")):
    pass


class Marco(under("marco")):
    pass


class Kwin(under("kwin_x11")):
    pass


if __name__ == "__main__":
    unittest.main()
