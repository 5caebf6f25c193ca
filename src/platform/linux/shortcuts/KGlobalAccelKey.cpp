// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/KGlobalAccelKey.h"

#include <array>

#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr int spaceKey = 0x20;

struct Modifier {
  HotKeyModifiers mask;
  unsigned bit;
};

constexpr std::array modifiers = {
    Modifier{hotkeys::shift, 0x02000000}, Modifier{hotkeys::control, 0x04000000},
    Modifier{hotkeys::option, 0x08000000}, Modifier{hotkeys::command, 0x10000000}};

}  // namespace

std::optional<int> kGlobalAccelKey(const HotKeyCombination& combination) {
  if (combination.label.empty()) return std::nullopt;
  std::size_t offset = 0;
  // A letter's number is its code point, in upper case.
  auto key = static_cast<unsigned>(nextCodePoint(combination.label, offset));
  if (combination.label == "Space") key = spaceKey;
  for (const auto& modifier : modifiers) {
    if ((combination.modifiers & modifier.mask) != 0) key |= modifier.bit;
  }
  return static_cast<int>(key);
}

}  // namespace vantorel
