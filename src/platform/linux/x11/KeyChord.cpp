// SPDX-License-Identifier: MIT
#include "platform/linux/x11/KeyChord.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>

namespace vantorel {

namespace {

constexpr X11Modifiers shiftModifier = 1U << 0U;
constexpr X11Modifiers controlModifier = 1U << 2U;

std::optional<X11KeyCode> shiftKey(const KeyboardMap& map) {
  return keySetting(map, shiftModifier, {XKB_KEY_Shift_L});
}

std::optional<X11KeyCode> controlKey(const KeyboardMap& map) {
  return keySetting(map, controlModifier, {XKB_KEY_Control_L});
}

std::optional<X11KeyCode> altKey(const KeyboardMap& map) {
  return keySetting(map, modifierOf(map, {XKB_KEY_Alt_L, XKB_KEY_Meta_L}), {XKB_KEY_Alt_L});
}

bool contains(const std::vector<X11KeyCode>& keys, X11KeyCode key) {
  return std::find(keys.begin(), keys.end(), key) != keys.end();
}

/// Keys of the modifiers in `modifiers`, each once.
std::vector<X11KeyCode> modifierKeys(const KeyboardMap& map, X11Modifiers modifiers) {
  std::vector<X11KeyCode> result;
  for (std::size_t modifier = 0; modifier < map.modifierKeys.size(); ++modifier) {
    if ((modifiers >> modifier & 1U) == 0) continue;
    for (const auto key : map.modifierKeys[modifier]) {
      if (!contains(result, key)) result.push_back(key);
    }
  }
  return result;
}

}  // namespace

std::optional<KeyChord> chordFor(const KeyboardMap& map, std::size_t activeGroup, PasteKeys& keys) {
  const auto v = keyYielding(map, XKB_KEY_v, activeGroup);
  if (!v) keys = PasteKeys::shiftInsert;
  const auto shift = shiftKey(map);
  const auto control = controlKey(map);
  if (keys == PasteKeys::shiftInsert) {
    const auto insert = keyYielding(map, XKB_KEY_Insert, activeGroup);
    if (!shift || !insert) return std::nullopt;
    return KeyChord{{*shift}, *insert};
  }
  if (!control) return std::nullopt;
  if (keys == PasteKeys::controlV) return KeyChord{{*control}, *v};
  if (!shift) return std::nullopt;
  return KeyChord{{*control, *shift}, *v};
}

std::optional<KeyChord> chordAt(const KeyboardMap& map, KeyCode keyCode, EventFlags eventFlags) {
  const auto key = x11KeyCode(keyCode);
  if (!key) return std::nullopt;
  KeyChord chord{{}, *key};
  const auto add = [&chord](std::optional<X11KeyCode> modifier) {
    if (modifier) chord.modifiers.push_back(*modifier);
    return modifier.has_value();
  };
  const bool control = (eventFlags & (flags::command | flags::control)) != 0;
  if (control && !add(controlKey(map))) return std::nullopt;
  if ((eventFlags & flags::option) != 0 && !add(altKey(map))) return std::nullopt;
  if ((eventFlags & flags::shift) != 0 && !add(shiftKey(map))) return std::nullopt;
  return chord;
}

ChordPlan planChord(const KeyboardMap& map, const KeyChord& chord, const KeyPresses& presses) {
  ChordPlan plan;
  const auto press = [&plan](X11KeyCode key) { plan.actions.push_back({key, KeyDirection::down}); };
  const auto release = [&plan](X11KeyCode key) { plan.actions.push_back({key, KeyDirection::up}); };
  // The server presses nothing that synthetic input already holds in its view.
  const PressedKeys stale = presses.synthetic & ~presses.seen;
  for (std::size_t key = 0; key < stale.size(); ++key) {
    if (stale[key]) release(static_cast<X11KeyCode>(key));
  }
  const auto lockBits = lockModifiers(map);
  const auto lockKeys = modifierKeys(map, lockBits);
  const auto heldKeys = modifierKeys(map, static_cast<X11Modifiers>(~unsigned{lockBits}));
  for (std::size_t code = 0; code < presses.seen.size(); ++code) {
    const auto key = static_cast<X11KeyCode>(code);
    if (!presses.seen[code] || contains(lockKeys, key)) continue;
    release(key);
    if (contains(heldKeys, key)) plan.suspended.push_back(key);
  }
  std::for_each(chord.modifiers.begin(), chord.modifiers.end(), press);
  press(chord.key);
  release(chord.key);
  std::for_each(chord.modifiers.rbegin(), chord.modifiers.rend(), release);
  return plan;
}

std::vector<X11KeyCode> keysToRestore(const std::vector<X11KeyCode>& suspended,
                                      const KeyPresses& before, const KeyPresses& now) {
  std::vector<X11KeyCode> result;
  std::copy_if(suspended.begin(), suspended.end(), std::back_inserter(result),
               [&](X11KeyCode key) { return before.physical[key] ? now.physical[key] : true; });
  return result;
}

}  // namespace vantorel
