// SPDX-License-Identifier: MIT
#include "app/ShortcutAdvice.h"

#include <algorithm>
#include <array>

#include "chrome/LatinKeys.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

/// The names of Super, Shift, Alt and Ctrl.
using ModifierNames = std::array<std::string_view, 4>;
constexpr std::array<HotKeyModifiers, 4> modifierMasks = {hotkeys::command, hotkeys::shift,
                                                          hotkeys::option, hotkeys::control};

std::string modifiers(const HotKeyShortcut& shortcut, const ModifierNames& names,
                      std::string_view separator) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if ((shortcut.modifiers & modifierMasks[i]) == 0) continue;
    if (!text.empty()) text += separator;
    text += names[i];
  }
  return text;
}

std::string key(const HotKeyShortcut& shortcut) { return lowerCased(withLatinKey(shortcut).label); }

bool isPlain(char each) {
  constexpr std::string_view others = "/._-+@%=:,";
  return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
         (each >= '0' && each <= '9') || others.find(each) != std::string_view::npos;
}

/// As one word of a shell's.
std::string quoted(const std::string& word) {
  if (std::all_of(word.begin(), word.end(), isPlain)) return word;
  std::string text = "'";
  for (const char each : word) text += each == '\'' ? std::string("'\\''") : std::string(1, each);
  return text + "'";
}

std::string replaced(std::string_view text, char what, std::string_view by) {
  std::string result;
  for (const char each : text) result += each == what ? std::string(by) : std::string(1, each);
  return result;
}

std::string inXml(const std::string& text) {
  return replaced(replaced(replaced(text, '&', "&amp;"), '<', "&lt;"), '"', "&quot;");
}

std::string command(const std::string& program) { return quoted(program) + " --toggle"; }

std::string swayLine(const HotKeyShortcut& shortcut, const std::string& program) {
  // By the key's place: on a second layout too.
  return "bindsym --to-code " + modifiers(shortcut, {"Mod4", "Shift", "Mod1", "Ctrl"}, "+") + "+" +
         key(shortcut) + " exec " + command(program);
}

std::string labwcLine(const HotKeyShortcut& shortcut, const std::string& program) {
  return R"(<keybind key=")" + modifiers(shortcut, {"W", "S", "A", "C"}, "-") + "-" +
         key(shortcut) + R"("><action name="Execute" command=")" + inXml(command(program)) +
         R"("/></keybind>)";
}

std::string hyprlandLine(const HotKeyShortcut& shortcut, const std::string& program) {
  return "bind = " + modifiers(shortcut, {"SUPER", "SHIFT", "ALT", "CTRL"}, " ") + ", " +
         upperCased(key(shortcut)) + ", exec, " + command(program);
}

std::string niriLine(const HotKeyShortcut& shortcut, const std::string& program) {
  const auto path = replaced(replaced(program, '\\', "\\\\"), '"', "\\\"");
  const auto name = key(shortcut);
  return modifiers(shortcut, {"Super", "Shift", "Alt", "Ctrl"}, "+") + "+" +
         (name.size() == 1 ? upperCased(name) : "Space") + R"( { spawn ")" + path +
         R"(" "--toggle"; })";
}

struct Compositor {
  std::string_view name;  // in lower case
  std::string_view prompt;
  std::string (*line)(const HotKeyShortcut&, const std::string& program);
};

constexpr std::array compositors = {
    Compositor{"sway", "Add this line to sway's configuration", swayLine},
    Compositor{"labwc", "Add this to <keyboard> in labwc's rc.xml", labwcLine},
    Compositor{"hyprland", "Add this line to hyprland.conf", hyprlandLine},
    Compositor{"niri", "Add this to binds in niri's config.kdl", niriLine},
};

}  // namespace

HotKeyCombination withLatinKey(const HotKeyShortcut& shortcut) {
  HotKeyCombination keys{shortcut.keyCode, shortcut.modifiers, shortcut.keyLabel};
  const bool isLatin = std::all_of(keys.label.begin(), keys.label.end(), [](char each) {
    return static_cast<unsigned char>(each) < 128;
  });
  if (isLatin) return keys;
  if (const auto latin = latinCharacter(keys.keyCode)) {
    keys.label = upperCased(std::string(1, *latin));
  }
  return keys;
}

ShortcutAdvice ShortcutAdvice::of(std::string_view desktop, const HotKeyShortcut& shortcut,
                                  const std::string& program) {
  auto names = lowerCased(desktop) + ":";
  for (std::size_t end = names.find(':'); end != std::string::npos; end = names.find(':')) {
    for (const auto& each : compositors) {
      if (std::string_view(names).substr(0, end) != each.name) continue;
      return {std::string(each.prompt), each.line(shortcut, program)};
    }
    names.erase(0, end + 1);
  }
  return {"Bind keys to this command in your desktop's settings", command(program)};
}

}  // namespace vantorel
