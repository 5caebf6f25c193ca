// SPDX-License-Identifier: MIT
#include "app/HotKeyShortcut.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>

#include "text/Alphanumeric.h"
#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr std::int64_t keyCodeCount = 128;
constexpr std::string_view spaceLabel = "Space";
constexpr HotKeyModifiers mainModifiers = hotkeys::command | hotkeys::option | hotkeys::control;

struct Modifier {
  HotKeyModifiers mask;
  EventFlags flag;
  std::string_view symbol;
};

// In the order in which they are shown: Command first, which is not every desktop's order.
constexpr std::array modifierTable = {
    Modifier{hotkeys::command, flags::command, "⌘"}, Modifier{hotkeys::shift, flags::shift, "⇧"},
    Modifier{hotkeys::option, flags::option, "⌥"}, Modifier{hotkeys::control, flags::control, "⌃"}};

bool areEnough(HotKeyModifiers modifiers) {
  const auto known = modifiers & (mainModifiers | hotkeys::shift);
  return (modifiers & mainModifiers) != 0 && std::popcount(known) >= 2;
}

HotKeyModifiers hotKeyModifiers(EventFlags eventFlags) {
  HotKeyModifiers modifiers = 0;
  for (const auto& modifier : modifierTable) {
    if ((eventFlags & modifier.flag) != 0) modifiers |= modifier.mask;
  }
  return modifiers;
}

std::optional<std::string> keyLabelOf(const KeyEvent& event) {
  if (event.keyCode == keys::space) return std::string(spaceLabel);
  if (!isOneAlphanumericScalar(event.charactersIgnoringModifiers)) return std::nullopt;
  return upperCased(event.charactersIgnoringModifiers);
}

}  // namespace

HotKeyShortcut HotKeyShortcut::load(const UserDefaults& defaults) {
  const auto storedKeyCode = defaults.integer(keyCodeKey);
  const auto storedModifiers = defaults.integer(modifiersKey);
  auto storedLabel = defaults.string(keyLabelKey);
  if (!storedKeyCode || !storedModifiers || !storedLabel) return {};
  if (*storedKeyCode < 0 || *storedKeyCode >= keyCodeCount) return {};
  if (*storedModifiers < 0 || *storedModifiers > std::numeric_limits<HotKeyModifiers>::max()) {
    return {};
  }
  const auto modifiers = static_cast<HotKeyModifiers>(*storedModifiers);
  if (!areEnough(modifiers)) return {};
  if (*storedLabel != spaceLabel && !isOneAlphanumericScalar(*storedLabel)) return {};
  return {static_cast<KeyCode>(*storedKeyCode), modifiers, std::move(*storedLabel)};
}

std::optional<HotKeyShortcut> HotKeyShortcut::fromEvent(const KeyEvent& event) {
  const auto modifiers = hotKeyModifiers(event.flags);
  if (!areEnough(modifiers)) return std::nullopt;
  auto label = keyLabelOf(event);
  if (!label) return std::nullopt;
  return HotKeyShortcut{event.keyCode, modifiers, std::move(*label)};
}

void HotKeyShortcut::save(UserDefaults& defaults) const {
  defaults.set(keyCodeKey, static_cast<std::int64_t>(keyCode));
  defaults.set(modifiersKey, static_cast<std::int64_t>(modifiers));
  defaults.set(keyLabelKey, keyLabel);
}

std::string HotKeyShortcut::display() const {
  std::string text;
  for (const auto& modifier : modifierTable) {
    if ((modifiers & modifier.mask) != 0) text += modifier.symbol;
  }
  return text + keyLabel;
}

}  // namespace vantorel
