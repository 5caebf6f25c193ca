// SPDX-License-Identifier: MIT
#include "platform/linux/x11/KeyboardMap.h"

#include <gtest/gtest.h>

#include "unit/platform/linux/x11/ScriptedKeyboard.h"

namespace vantorel {
namespace {

constexpr X11KeySymbol v = 'v';
constexpr X11KeySymbol hebrewHe = 0xce4;
constexpr X11KeySymbol period = '.';
constexpr X11KeySymbol superL = 0xffeb;

TEST(KeyboardMap, FindsTheKeyInTheActiveGroup) {
  ScriptedKeyboard keyboard;
  keyboard.key(55, {v, hebrewHe}).key(60, {period, v});
  EXPECT_EQ(keyYielding(keyboard.map(), v, 0), 55);
  EXPECT_EQ(keyYielding(keyboard.map(), v, 1), 60);
}

TEST(KeyboardMap, FallsBackToAnyGroup) {
  ScriptedKeyboard keyboard;
  keyboard.key(55, {hebrewHe, v});
  EXPECT_EQ(keyYielding(keyboard.map(), v, 0), 55);
  EXPECT_EQ(keyYielding(ScriptedKeyboard().key(55, {hebrewHe}).map(), v, 0), std::nullopt);
}

TEST(KeyboardMap, GroupsBeyondAKeysOwnWrapRound) {
  ScriptedKeyboard keyboard;
  keyboard.key(55, {v}).key(56, {period, v});
  EXPECT_EQ(keyYielding(keyboard.map(), v, 2), 55);
  EXPECT_EQ(keyYielding(keyboard.map(), period, 3), 56) << "no key has it in group 1";
}

TEST(KeyboardMap, AShiftedSymbolIsNotYieldedByTheKeyAlone) {
  const auto keyboard = ScriptedKeyboard().key(55, {'V'}, {v});
  EXPECT_EQ(keyYielding(keyboard.map(), v, 0), std::nullopt);
}

TEST(KeyboardMap, FindsAModifierByItsKeysOnEveryLevel) {
  ScriptedKeyboard keyboard;
  keyboard.key(133, {superL}).modifier(6, 133).key(205, {0}, {0xffe7}).modifier(5, 205);
  EXPECT_EQ(modifierOf(keyboard.map(), {superL}), 1U << 6U);
  EXPECT_EQ(modifierOf(keyboard.map(), {0xffe7}), 1U << 5U);
  EXPECT_EQ(modifierOf(keyboard.map(), {0xffe9}), 0);
}

TEST(KeyboardMap, AKeyOutsideTheModifierMapSetsNoModifier) {
  EXPECT_EQ(modifierOf(ScriptedKeyboard().key(133, {superL}).map(), {superL}), 0);
}

TEST(KeyboardMap, PrefersTheNamedKeyOfAModifier) {
  const auto keyboard = ScriptedKeyboard::usual();
  EXPECT_EQ(keySetting(keyboard.map(), 1U << 2U, {0xffe4}), at::rightControl);
  EXPECT_EQ(keySetting(keyboard.map(), 1U << 2U, {0xffe3}), at::control);
  EXPECT_EQ(keySetting(keyboard.map(), 1U << 2U, {0x1234}), at::control);
  EXPECT_EQ(keySetting(keyboard.map(), 1U << 5U, {0xffe3}), std::nullopt);
}

TEST(KeyboardMap, FindsTheLockModifiersWhereverTheyAre) {
  EXPECT_EQ(lockModifiers(ScriptedKeyboard().map()), 1U << 1U);
  auto keyboard = ScriptedKeyboard::usual();
  EXPECT_EQ(lockModifiers(keyboard.map()), (1U << 1U) | (1U << 4U));
  keyboard.key(at::scrollLock, {0xff14}).modifier(5, at::scrollLock);
  EXPECT_EQ(lockModifiers(keyboard.map()), (1U << 1U) | (1U << 4U) | (1U << 5U));
}

}  // namespace
}  // namespace vantorel
