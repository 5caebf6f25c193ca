// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteKeys.h"

#include <algorithm>
#include <array>

#include "text/Unicode.h"

namespace vantorel {

namespace {

/// Terminals, and editors to whom Control with a letter is a command, whose default keys paste by
/// Shift+Insert alone, by class in lower case.
constexpr std::array<std::string_view, 19> insertOnly = {
    "xterm",        "uxterm",      "koi8rxterm", "lxterm", "rxvt",         "urxvt", "emacs",
    "rxvt-unicode", "aterm",       "eterm",      "mrxvt",  "wterm",        "st",    "gvim",
    "stterm",       "st-256color", "mlterm",     "kterm",  "rxvt-256color"};

/// Terminals that are often installed without a desktop entry. Others are known by their entry.
constexpr std::array<std::string_view, 12> otherTerminals = {
    "alacritty", "kitty",          "gnome-terminal", "gnome-terminal-server",
    "konsole",   "xfce4-terminal", "mate-terminal",  "lxterminal",
    "qterminal", "terminator",     "tilix",          "org.wezfurlong.wezterm"};

template <class List>
bool contains(const List& list, std::string_view name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

}  // namespace

bool asksBeforePasting(std::string_view wmClass) {
  const auto name = lowerCased(wmClass);
  return name == "gnome-terminal" || name == "gnome-terminal-server";
}

PasteKeys pasteKeysFor(std::string_view wmClass, const DesktopEntry* entry) {
  const auto name = lowerCased(wmClass);
  if (contains(insertOnly, name)) return PasteKeys::shiftInsert;
  if (contains(otherTerminals, name)) return PasteKeys::controlShiftV;
  if (entry == nullptr || !entry->isTerminalEmulator()) return PasteKeys::controlV;
  // A window may carry any class; the program behind the entry is the better witness.
  if (contains(insertOnly, lowerCased(entry->executable))) return PasteKeys::shiftInsert;
  return PasteKeys::controlShiftV;
}

}  // namespace vantorel
