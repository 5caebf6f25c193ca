// SPDX-License-Identifier: MIT
#include "platform/linux/portal/PortalKeys.h"

#include <algorithm>
#include <array>

#include "text/Unicode.h"

namespace vantorel {
namespace {

struct Modifier {
  HotKeyModifiers mask;
  std::string_view inTriggers;
  std::array<std::string_view, 3> inDescriptions;  // one of them; in lower case
  std::string_view symbol;
};

constexpr std::array modifiers = {
    Modifier{hotkeys::command, "LOGO", {"super", "meta", "logo"}, "⌘"},
    Modifier{hotkeys::shift, "SHIFT", {"shift", "", ""}, "⇧"},
    Modifier{hotkeys::option, "ALT", {"alt", "mod1", ""}, "⌥"},
    Modifier{hotkeys::control, "CTRL", {"control", "ctrl", "primary"}, "⌃"}};

/// The bit of the modifier of that name; none for another word.
HotKeyModifiers maskOf(std::string_view name) {
  const auto lower = lowerCased(name);
  if (lower.empty()) return 0;
  for (const auto& each : modifiers) {
    const auto& names = each.inDescriptions;
    if (std::find(names.begin(), names.end(), lower) != names.end()) return each.mask;
  }
  return 0;
}

}  // namespace

std::string portalTrigger(const HotKeyCombination& keys) {
  const bool isLatin = std::all_of(keys.label.begin(), keys.label.end(), [](char each) {
    return static_cast<unsigned char>(each) < 128;
  });
  if (!isLatin || keys.label.empty()) return {};
  std::string text;
  for (const auto& each : modifiers) {
    if ((keys.modifiers & each.mask) != 0) text += std::string(each.inTriggers) + "+";
  }
  return text + lowerCased(keys.label);
}

std::string shownPortalKeys(std::string_view description) {
  const auto begin = description.find('<');
  if (begin == std::string_view::npos) return std::string(description);
  auto rest = description.substr(begin);
  HotKeyModifiers held = 0;
  while (rest.starts_with('<')) {
    const auto end = rest.find('>');
    const auto mask = end == std::string_view::npos ? 0 : maskOf(rest.substr(1, end - 1));
    if (mask == 0) return std::string(description);
    held |= mask;
    rest.remove_prefix(end + 1);
  }
  if (rest.empty()) return std::string(description);
  std::string text;
  for (const auto& each : modifiers) {
    if ((held & each.mask) != 0) text += each.symbol;
  }
  return text + upperCased(rest.substr(0, 1)) + std::string(rest.substr(1));
}

}  // namespace vantorel
