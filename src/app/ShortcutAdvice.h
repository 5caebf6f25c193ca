// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "app/HotKeyShortcut.h"

namespace vantorel {

/// How a user gives the program its keys where it cannot take them itself: what goes into the
/// configuration of that compositor, or the command that a desktop's settings bind keys to.
struct ShortcutAdvice {
  std::string prompt;       // where it goes
  std::string line;         // without keys where the settings ask for them
  std::string action = {};  // what the program can do about it itself; empty for nothing

  /// `desktop` as the session names it, several names joined by ":"; `program` is a command in
  /// $PATH or a whole path.
  [[nodiscard]] static ShortcutAdvice of(std::string_view desktop, const HotKeyShortcut& shortcut,
                                         const std::string& program);
};

/// The same keys, their key by its Latin name, which every configuration knows: for a key with a
/// letter of another script the one that a US keyboard has there.
[[nodiscard]] HotKeyCombination withLatinKey(const HotKeyShortcut& shortcut);

}  // namespace vantorel
