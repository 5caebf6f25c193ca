// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <vector>

#include "platform/linux/windows/KeyCodeTable.h"

namespace vantorel {

using X11KeySymbol = std::uint32_t;
/// One or more of the eight real modifiers of X: Shift is bit 0, Lock 1, Control 2, Mod1 3...
using X11Modifiers = std::uint8_t;

/// Which symbols the keys of a keyboard have, and which keys are modifiers. A value.
struct KeyboardMap {
  struct Key {
    std::vector<X11KeySymbol> unshifted;  // for each group (layout); 0 where there is none
    std::vector<X11KeySymbol> all;        // of every group and level
  };
  std::array<Key, 256> keys;                            // by keycode
  std::array<std::vector<X11KeyCode>, 8> modifierKeys;  // by modifier

  friend bool operator==(const KeyboardMap& a, const KeyboardMap& b);
};

/// The key that yields `symbol` without Shift in the active group, else in the first group in which
/// any does. Groups beyond a key's own wrap round, as the server has them.
[[nodiscard]] std::optional<X11KeyCode> keyYielding(const KeyboardMap& map, X11KeySymbol symbol,
                                                    std::size_t activeGroup);

/// The one modifier that a key with one of these symbols sets; 0 when none does.
[[nodiscard]] X11Modifiers modifierOf(const KeyboardMap& map,
                                      std::initializer_list<X11KeySymbol> symbols);

/// A key that sets this one modifier, the one with a symbol in `preferred` before others; absent
/// when none does.
[[nodiscard]] std::optional<X11KeyCode> keySetting(const KeyboardMap& map, X11Modifiers modifier,
                                                   std::initializer_list<X11KeySymbol> preferred);

/// The modifiers that stay on by themselves (Caps, Num and Scroll Lock), wherever they are.
[[nodiscard]] X11Modifiers lockModifiers(const KeyboardMap& map);

}  // namespace vantorel
