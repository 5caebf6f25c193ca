// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/KGlobalAccelKey.h"

#include <QKeySequence>
#include <array>
#include <string_view>

#include "text/Unicode.h"

namespace vantorel {
namespace {

constexpr unsigned spaceKey = 0x20;
constexpr unsigned shiftBit = 0x02000000;
constexpr unsigned keyBits = 0x01ffffff;  // below the modifiers

constexpr std::string_view signsAboveDigits = ")!@#$%^&*(";

struct Modifier {
  HotKeyModifiers mask;
  unsigned bit;
};

constexpr std::array modifiers = {
    Modifier{hotkeys::shift, shiftBit}, Modifier{hotkeys::control, 0x04000000},
    Modifier{hotkeys::option, 0x08000000}, Modifier{hotkeys::command, 0x10000000}};

}  // namespace

QList<int> kGlobalAccelKeys(const HotKeyCombination& combination) {
  if (combination.label.empty()) return {};
  std::size_t offset = 0;
  // A letter's number is its code point, in upper case.
  auto key = static_cast<unsigned>(nextCodePoint(combination.label, offset));
  if (combination.label == "Space") key = spaceKey;
  unsigned bits = 0;
  for (const auto& modifier : modifiers) {
    if ((combination.modifiers & modifier.mask) != 0) bits |= modifier.bit;
  }
  QList<int> keys{static_cast<int>(key | bits)};
  if ((bits & shiftBit) != 0 && key >= '0' && key <= '9') {
    const auto sign = static_cast<unsigned char>(signsAboveDigits[key - '0']);
    keys.push_back(static_cast<int>(sign | (bits & ~shiftBit)));
  }
  return keys;
}

HotKeyCombination combinationOf(int kGlobalAccelKey) {
  const auto key = static_cast<unsigned>(kGlobalAccelKey);
  HotKeyCombination combination;
  for (const auto& modifier : modifiers) {
    if ((key & modifier.bit) != 0) combination.modifiers |= modifier.mask;
  }
  combination.label = QKeySequence(static_cast<int>(key & keyBits))
                          .toString(QKeySequence::PortableText)
                          .toStdString();
  return combination;
}

}  // namespace vantorel
