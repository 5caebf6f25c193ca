// SPDX-License-Identifier: MIT
#include "platform/linux/x11/KeyboardMap.h"

#include <algorithm>

namespace vantorel {

namespace {

constexpr X11KeySymbol numLock = 0xff7f;
constexpr X11KeySymbol scrollLock = 0xff14;
constexpr X11Modifiers lock = 1U << 1U;

bool hasAny(const KeyboardMap::Key& key, std::initializer_list<X11KeySymbol> symbols) {
  return std::find_first_of(key.all.begin(), key.all.end(), symbols.begin(), symbols.end()) !=
         key.all.end();
}

std::optional<X11KeyCode> keyInGroup(const KeyboardMap& map, X11KeySymbol symbol,
                                     std::size_t group) {
  for (std::size_t code = 0; code < map.keys.size(); ++code) {
    const auto& groups = map.keys[code].unshifted;
    if (!groups.empty() && groups[group % groups.size()] == symbol) {
      return static_cast<X11KeyCode>(code);
    }
  }
  return std::nullopt;
}

std::size_t groupCount(const KeyboardMap& map) {
  std::size_t count = 0;
  for (const auto& key : map.keys) count = std::max(count, key.unshifted.size());
  return count;
}

}  // namespace

bool operator==(const KeyboardMap& a, const KeyboardMap& b) {
  const auto sameKey = [](const KeyboardMap::Key& x, const KeyboardMap::Key& y) {
    return x.unshifted == y.unshifted && x.all == y.all;
  };
  return a.modifierKeys == b.modifierKeys &&
         std::equal(a.keys.begin(), a.keys.end(), b.keys.begin(), sameKey);
}

std::optional<X11KeyCode> keyYielding(const KeyboardMap& map, X11KeySymbol symbol,
                                      std::size_t activeGroup) {
  if (const auto key = keyInGroup(map, symbol, activeGroup)) return key;
  for (std::size_t group = 0; group < groupCount(map); ++group) {
    if (const auto key = keyInGroup(map, symbol, group)) return key;
  }
  return std::nullopt;
}

X11Modifiers modifierOf(const KeyboardMap& map, std::initializer_list<X11KeySymbol> symbols) {
  for (std::size_t modifier = 0; modifier < map.modifierKeys.size(); ++modifier) {
    for (const auto code : map.modifierKeys[modifier]) {
      if (hasAny(map.keys[code], symbols)) return static_cast<X11Modifiers>(1U << modifier);
    }
  }
  return 0;
}

std::optional<X11KeyCode> keySetting(const KeyboardMap& map, X11Modifiers modifier,
                                     std::initializer_list<X11KeySymbol> preferred) {
  std::optional<X11KeyCode> any;
  for (std::size_t bit = 0; bit < map.modifierKeys.size(); ++bit) {
    if ((modifier >> bit & 1U) == 0) continue;
    for (const auto code : map.modifierKeys[bit]) {
      if (hasAny(map.keys[code], preferred)) return code;
      if (!any) any = code;
    }
  }
  return any;
}

X11Modifiers lockModifiers(const KeyboardMap& map) {
  return lock | modifierOf(map, {numLock}) | modifierOf(map, {scrollLock});
}

}  // namespace vantorel
