// SPDX-License-Identifier: MIT
#include "platform/linux/x11/HotKeyGrabs.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace vantorel {

namespace {

constexpr X11Modifiers shiftModifier = 1U << 0U;
constexpr X11Modifiers controlModifier = 1U << 2U;

X11Modifiers commandModifier(const KeyboardMap& map) {
  const auto super = modifierOf(map, {XKB_KEY_Super_L, XKB_KEY_Super_R});
  return super != 0 ? super : modifierOf(map, {XKB_KEY_Hyper_L, XKB_KEY_Hyper_R});
}

X11Modifiers optionModifier(const KeyboardMap& map) {
  const auto alt = modifierOf(map, {XKB_KEY_Alt_L, XKB_KEY_Alt_R});
  return alt != 0 ? alt : modifierOf(map, {XKB_KEY_Meta_L, XKB_KEY_Meta_R});
}

}  // namespace

std::optional<X11Modifiers> realModifiers(const KeyboardMap& map, HotKeyModifiers modifiers) {
  X11Modifiers result = 0;
  if ((modifiers & hotkeys::shift) != 0) result |= shiftModifier;
  if ((modifiers & hotkeys::control) != 0) result |= controlModifier;
  if ((modifiers & hotkeys::command) != 0) {
    const auto command = commandModifier(map);
    if (command == 0) return std::nullopt;
    result |= command;
  }
  if ((modifiers & hotkeys::option) != 0) {
    const auto option = optionModifier(map);
    if (option == 0) return std::nullopt;
    result |= option;
  }
  return result;
}

std::set<KeyGrab> grabsFor(const KeyboardMap& map, KeyCode keyCode, HotKeyModifiers modifiers) {
  std::set<KeyGrab> grabs;
  const auto code = x11KeyCode(keyCode);
  const auto real = realModifiers(map, modifiers);
  if (!code || !real) return grabs;
  const unsigned locks = lockModifiers(map);
  // Every subset of the Lock keys, the empty one last.
  for (unsigned on = locks;; on = (on - 1) & locks) {
    grabs.emplace(*code, static_cast<X11Modifiers>(*real | on));
    if (on == 0) return grabs;
  }
}

}  // namespace vantorel
