// SPDX-License-Identifier: MIT
#include "platform/linux/x11/HotKeyGrabs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/platform/linux/x11/ScriptedKeyboard.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr X11Modifiers shift = 1;
constexpr X11Modifiers lock = 2;
constexpr X11Modifiers control = 4;
constexpr X11Modifiers mod1 = 8;
constexpr X11Modifiers mod2 = 16;
constexpr X11Modifiers mod4 = 64;

TEST(HotKeyGrabs, TranslateTheModifiersByTheKeyboardsOwnMap) {
  const auto keyboard = ScriptedKeyboard::usual();
  EXPECT_EQ(realModifiers(keyboard.map(), hotkeys::command | hotkeys::shift), mod4 | shift);
  EXPECT_EQ(realModifiers(keyboard.map(), hotkeys::option | hotkeys::control), mod1 | control);

  ScriptedKeyboard odd;
  odd.key(at::super, {0xffeb}).modifier(3, at::super).key(at::alt, {0xffe9}).modifier(5, at::alt);
  EXPECT_EQ(realModifiers(odd.map(), hotkeys::command), mod1);
  EXPECT_EQ(realModifiers(odd.map(), hotkeys::option), 32);
}

TEST(HotKeyGrabs, AKeyboardWithoutSuperHasNoCommand) {
  ScriptedKeyboard keyboard;
  keyboard.key(at::alt, {0xffe9}).modifier(3, at::alt);
  EXPECT_EQ(realModifiers(keyboard.map(), hotkeys::command | hotkeys::option), std::nullopt);
  EXPECT_THAT(grabsFor(keyboard.map(), keys::v, hotkeys::command), IsEmpty());
}

TEST(HotKeyGrabs, CoverEveryStateOfTheLockKeys) {
  const auto keyboard = ScriptedKeyboard::usual();
  const auto grabs = grabsFor(keyboard.map(), keys::v, hotkeys::command | hotkeys::shift);
  const X11Modifiers own = mod4 | shift;
  EXPECT_THAT(grabs, ElementsAre(KeyGrab(55, own), KeyGrab(55, own | lock), KeyGrab(55, own | mod2),
                                 KeyGrab(55, own | lock | mod2)));
}

TEST(HotKeyGrabs, AThirdLockKeyMakesEight) {
  auto keyboard = ScriptedKeyboard::usual();
  keyboard.key(at::scrollLock, {0xff14}).modifier(5, at::scrollLock);
  EXPECT_EQ(grabsFor(keyboard.map(), keys::v, hotkeys::control | hotkeys::shift).size(), 8U);
}

TEST(HotKeyGrabs, RefuseAKeyThatIsNone) {
  EXPECT_THAT(grabsFor(ScriptedKeyboard::usual().map(), 127, hotkeys::command), IsEmpty());
  EXPECT_THAT(grabsFor(ScriptedKeyboard::usual().map(), 1000, hotkeys::command), IsEmpty());
}

}  // namespace
}  // namespace vantorel
