// SPDX-License-Identifier: MIT
#include "platform/linux/windows/KeyCodeTable.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <map>
#include <set>

namespace vantorel {
namespace {

TEST(KeyCodeTable, KnowsTheKeysThatTheProgramNames) {
  const std::map<KeyCode, int> expected = {
      {keys::v, KEY_V},
      {keys::returnKey, KEY_ENTER},
      {keys::space, KEY_SPACE},
      {keys::deleteKey, KEY_BACKSPACE},
      {keys::escape, KEY_ESC},
      {keys::command, KEY_LEFTMETA},
      {keys::keypadEnter, KEY_KPENTER},
      {keys::forwardDelete, KEY_DELETE},
      {keys::downArrow, KEY_DOWN},
      {keys::upArrow, KEY_UP},
  };
  for (const auto& [code, kernelKey] : expected) EXPECT_EQ(x11KeyCode(code), kernelKey + 8);
}

TEST(KeyCodeTable, KnowsTheRowsByPlace) {
  const std::map<KeyCode, int> expected = {
      {0, KEY_A},         {18, KEY_1},         {29, KEY_0},         {12, KEY_Q},
      {16, KEY_Y},        {6, KEY_Z},          {46, KEY_M},         {44, KEY_SLASH},
      {10, KEY_102ND},    {50, KEY_GRAVE},     {42, KEY_BACKSLASH}, {41, KEY_SEMICOLON},
      {48, KEY_TAB},      {57, KEY_CAPSLOCK},  {58, KEY_LEFTALT},   {61, KEY_RIGHTALT},
      {59, KEY_LEFTCTRL}, {56, KEY_LEFTSHIFT}, {122, KEY_F1},       {111, KEY_F12},
      {115, KEY_HOME},    {119, KEY_END},      {116, KEY_PAGEUP},   {121, KEY_PAGEDOWN},
      {114, KEY_INSERT},  {71, KEY_NUMLOCK},   {82, KEY_KP0},       {92, KEY_KP9},
  };
  for (const auto& [code, kernelKey] : expected) {
    EXPECT_EQ(x11KeyCode(code), kernelKey + 8) << code;
  }
}

TEST(KeyCodeTable, GoesBothWaysOneToOne) {
  std::set<X11KeyCode> seen;
  for (KeyCode code = 0; code < 128; ++code) {
    const auto x11 = x11KeyCode(code);
    if (!x11) continue;
    EXPECT_TRUE(seen.insert(*x11).second) << code;
    EXPECT_EQ(keyCodeFromX11(*x11), code);
  }
  EXPECT_EQ(seen.size(), 119U);
}

TEST(KeyCodeTable, HasEveryKeyOfAFullKeyboard) {
  // Numbers below 128 that stand for no key, or for one that X cannot name (Fn, 63).
  const std::set<KeyCode> none = {52, 63, 66, 68, 70, 77, 108, 112, 127};
  for (KeyCode code = 0; code < 128; ++code) {
    EXPECT_EQ(x11KeyCode(code).has_value(), !none.contains(code)) << code;
  }
  for (int kernelKey = KEY_ESC; kernelKey <= KEY_KPDOT; ++kernelKey) {
    if (kernelKey == KEY_SCROLLLOCK) continue;  // F14 stands there, which is a key of its own
    EXPECT_TRUE(keyCodeFromX11(kernelKey + 8).has_value()) << kernelKey;
  }
}

TEST(KeyCodeTable, RefusesNumbersThatAreNoKey) {
  EXPECT_EQ(x11KeyCode(128), std::nullopt);
  EXPECT_EQ(x11KeyCode(0xFFFFFFFF), std::nullopt);
  EXPECT_EQ(keyCodeFromX11(0), std::nullopt);
  EXPECT_EQ(keyCodeFromX11(7), std::nullopt);
  EXPECT_EQ(keyCodeFromX11(255), std::nullopt);
  EXPECT_EQ(keyCodeFromX11(0xFFFFFFF7), std::nullopt);
}

}  // namespace
}  // namespace vantorel
