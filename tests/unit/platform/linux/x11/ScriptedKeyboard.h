// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/linux/x11/KeyboardMap.h"

namespace vantorel {

/// Keycodes of the keys that the tests speak of.
namespace at {
inline constexpr X11KeyCode control = 37;
inline constexpr X11KeyCode rightControl = 105;
inline constexpr X11KeyCode shift = 50;
inline constexpr X11KeyCode alt = 64;
inline constexpr X11KeyCode super = 133;
inline constexpr X11KeyCode capsLock = 66;
inline constexpr X11KeyCode numLock = 77;
inline constexpr X11KeyCode scrollLock = 78;
inline constexpr X11KeyCode level3 = 108;
inline constexpr X11KeyCode insert = 118;
inline constexpr X11KeyCode v = 55;
}  // namespace at

/// A keyboard that a test puts together key by key.
class ScriptedKeyboard {
 public:
  /// One symbol for each group, and upper levels that are of no group's first.
  ScriptedKeyboard& key(X11KeyCode code, std::vector<X11KeySymbol> groups,
                        const std::vector<X11KeySymbol>& upper = {}) {
    auto& key = map_.keys[code];
    key.all = groups;
    key.all.insert(key.all.end(), upper.begin(), upper.end());
    key.unshifted = std::move(groups);
    return *this;
  }
  /// `modifier` from 0 (Shift) to 7 (Mod5).
  ScriptedKeyboard& modifier(std::size_t modifier, X11KeyCode code) {
    map_.modifierKeys[modifier].push_back(code);
    return *this;
  }
  [[nodiscard]] const KeyboardMap& map() const { return map_; }

  /// The usual modifiers: Alt on Mod1, NumLock on Mod2, Super on Mod4; no letters.
  static ScriptedKeyboard usual() {
    ScriptedKeyboard keyboard;
    keyboard.key(at::shift, {0xffe1}).modifier(0, at::shift);
    keyboard.key(at::capsLock, {0xffe5}).modifier(1, at::capsLock);
    keyboard.key(at::control, {0xffe3}).modifier(2, at::control);
    keyboard.key(at::rightControl, {0xffe4}).modifier(2, at::rightControl);
    keyboard.key(at::alt, {0xffe9}).modifier(3, at::alt);
    keyboard.key(at::numLock, {0xff7f}).modifier(4, at::numLock);
    keyboard.key(at::super, {0xffeb}).modifier(6, at::super);
    keyboard.key(at::level3, {0xfe03}).modifier(7, at::level3);
    keyboard.key(at::insert, {0xff63});
    return keyboard;
  }

 private:
  KeyboardMap map_;
};

}  // namespace vantorel
