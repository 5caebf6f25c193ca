// SPDX-License-Identifier: MIT
#include "app/ShortcutAdvice.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

const HotKeyShortcut superShiftV;
const HotKeyShortcut altCtrlSpace{49, 0x1800, "Space"};

std::string line(std::string_view desktop, const HotKeyShortcut& shortcut,
                 const std::string& program = "vantorel") {
  return ShortcutAdvice::of(desktop, shortcut, program).line;
}

TEST(ShortcutAdvice, EachConfigurationHasItsOwnWords) {
  EXPECT_EQ(line("sway", superShiftV), "bindsym --to-code Mod4+Shift+v exec vantorel --toggle");
  EXPECT_EQ(line("sway", altCtrlSpace), "bindsym --to-code Mod1+Ctrl+space exec vantorel --toggle");
  EXPECT_EQ(
      line("labwc:wlroots", superShiftV),
      R"(<keybind key="W-S-v"><action name="Execute" command="vantorel --toggle"/></keybind>)");
  EXPECT_EQ(
      line("labwc", altCtrlSpace),
      R"(<keybind key="A-C-space"><action name="Execute" command="vantorel --toggle"/></keybind>)");
  EXPECT_EQ(line("Hyprland", superShiftV), "bind = SUPER SHIFT, V, exec, vantorel --toggle");
  EXPECT_EQ(line("Hyprland", altCtrlSpace), "bind = ALT CTRL, SPACE, exec, vantorel --toggle");
  EXPECT_EQ(line("niri", superShiftV), R"(Super+Shift+V { spawn "vantorel" "--toggle"; })");
  EXPECT_EQ(line("niri", altCtrlSpace), R"(Alt+Ctrl+Space { spawn "vantorel" "--toggle"; })");
}

TEST(ShortcutAdvice, ElsewhereTheSettingsAreGivenTheCommand) {
  for (const auto* desktop : {"", "GNOME", "ubuntu:GNOME", "swaylike", "COSMIC"}) {
    EXPECT_EQ(line(desktop, superShiftV), "vantorel --toggle");
  }
}

TEST(ShortcutAdvice, SaysWhereItGoes) {
  EXPECT_EQ(ShortcutAdvice::of("sway", superShiftV, "vantorel").prompt,
            "Add this line to sway's configuration");
  EXPECT_EQ(ShortcutAdvice::of("other:niri", superShiftV, "vantorel").prompt,
            "Add this to binds in niri's config.kdl");
  EXPECT_EQ(ShortcutAdvice::of("GNOME", superShiftV, "vantorel").prompt,
            "Bind keys to this command in your desktop's settings");
}

TEST(ShortcutAdvice, DigitsAndKeysOfOtherScriptsHaveTheirLatinNames) {
  EXPECT_EQ(line("Hyprland", {19, 0x300, "2"}), "bind = SUPER SHIFT, 2, exec, vantorel --toggle");
  EXPECT_EQ(line("Hyprland", {9, 0x300, "ה"}), "bind = SUPER SHIFT, V, exec, vantorel --toggle");
  EXPECT_EQ(line("Hyprland", {12, 0x300, "A"}), "bind = SUPER SHIFT, A, exec, vantorel --toggle");
}

TEST(ShortcutAdvice, APathIsOneWordWhereverItGoes) {
  const std::string path = R"(/a b/it's "x" & <y>/vantorel)";
  EXPECT_EQ(line("", superShiftV, "/opt/vantorel/bin/vantorel"),
            "/opt/vantorel/bin/vantorel --toggle");
  EXPECT_EQ(line("", superShiftV, path), R"('/a b/it'\''s "x" & <y>/vantorel' --toggle)");
  EXPECT_EQ(
      line("labwc", superShiftV, path),
      "<keybind key=\"W-S-v\"><action name=\"Execute\" command=\"'/a b/it'\\''s &quot;x&quot; "
      "&amp; &lt;y>/vantorel' --toggle\"/></keybind>");
  EXPECT_EQ(line("niri", superShiftV, path),
            R"(Super+Shift+V { spawn "/a b/it's \"x\" & <y>/vantorel" "--toggle"; })");
}

}  // namespace
}  // namespace vantorel
