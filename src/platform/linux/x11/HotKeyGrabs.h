// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>
#include <utility>

#include "platform/KeyCodes.h"
#include "platform/linux/x11/KeyboardMap.h"

namespace vantorel {

/// A key with the exact modifiers that it is grabbed with.
using KeyGrab = std::pair<X11KeyCode, X11Modifiers>;

/// The real modifiers that stand for the command, option, control and shift of a hot key on this
/// keyboard (Super, Alt, Control, Shift). Absent when one of them has no key.
[[nodiscard]] std::optional<X11Modifiers> realModifiers(const KeyboardMap& map,
                                                        HotKeyModifiers modifiers);

/// One grab for every state that the Lock keys may be in. Empty when the keyboard lacks the key or
/// a modifier.
[[nodiscard]] std::set<KeyGrab> grabsFor(const KeyboardMap& map, KeyCode keyCode,
                                         HotKeyModifiers modifiers);

}  // namespace vantorel
