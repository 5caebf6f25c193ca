// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/HotKeys.h"
#include "platform/KeyEvent.h"
#include "platform/UserDefaults.h"

namespace vantorel {

/// The global shortcut: one key with at least two modifiers, one of which is not Shift.
struct HotKeyShortcut {
  static constexpr std::string_view keyCodeKey = "shortcut.keyCode";
  static constexpr std::string_view modifiersKey = "shortcut.modifiers";
  static constexpr std::string_view keyLabelKey = "shortcut.keyLabel";

  // "⌘⇧V" unless said otherwise.
  KeyCode keyCode = keys::v;
  HotKeyModifiers modifiers = hotkeys::command | hotkeys::shift;
  std::string keyLabel = "V";  // an upper-case letter or digit, or "Space"

  /// The shortcut of the user's choice; the default when none is stored or what is stored could
  /// not have been chosen. Writes nothing.
  [[nodiscard]] static HotKeyShortcut load(const UserDefaults& defaults);
  /// The shortcut that this key press asks for; absent when it is none.
  [[nodiscard]] static std::optional<HotKeyShortcut> fromEvent(const KeyEvent& event);

  void save(UserDefaults& defaults) const;
  /// The symbols of its modifiers, Command first and Control last, and the label.
  [[nodiscard]] std::string display() const;

  friend bool operator==(const HotKeyShortcut&, const HotKeyShortcut&) = default;
};

}  // namespace vantorel
