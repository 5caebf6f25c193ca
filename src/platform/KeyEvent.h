// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/KeyCodes.h"

namespace vantorel {

/// One press of a key in a window of this program.
struct KeyEvent {
  KeyCode keyCode = 0;                      // the key's place
  EventFlags flags = 0;                     // bits of `flags`: what is held with it
  std::string characters;                   // UTF-8, what the press would type
  std::string charactersIgnoringModifiers;  // UTF-8, what the key alone (with Shift) types
};

/// Finds the key at the place that the window system gives that number (the kernel's plus 8 on X11
/// and Wayland); absent for keys without a number here. May be empty: then a key is known by what
/// the layout prints on it.
using KeyCodeForScanCode = std::function<std::optional<KeyCode>(std::uint32_t scanCode)>;

}  // namespace vantorel
