// SPDX-License-Identifier: MIT
#include "chrome/KeySymbols.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

TEST(KeySymbols, AChordOfTwoOrMoreIsTheGlobalShortcut) {
  EXPECT_EQ(spelledKeys("⌘⇧V"), "Super+Shift+V");
  EXPECT_EQ(spelledKeys("⌘⌥Space"), "Super+Alt+Space");
  EXPECT_EQ(spelledKeys("⌘⇧⌥⌃9"), "Super+Shift+Alt+Ctrl+9");
  EXPECT_EQ(spelledKeys("⌥⌃K"), "Alt+Ctrl+K");
}

TEST(KeySymbols, TheOrderGivenIsKept) { EXPECT_EQ(spelledKeys("⇧⌘V"), "Shift+Super+V"); }

TEST(KeySymbols, ALoneSymbolIsAKeyOfAWindow) {
  EXPECT_EQ(spelledKeys("⌘P"), "Ctrl+P");
  EXPECT_EQ(spelledKeys("Unpin (⌘P)"), "Unpin (Ctrl+P)");
  EXPECT_EQ(spelledKeys("⌥Return"), "Alt+Return");
}

TEST(KeySymbols, KeysAreSpelledInsideSentences) {
  EXPECT_EQ(spelledKeys("Copied to clipboard. Press ⌘V to paste."),
            "Copied to clipboard. Press Ctrl+V to paste.");
  EXPECT_EQ(spelledKeys("Saved shortcut unavailable. Using ⌘⇧V."),
            "Saved shortcut unavailable. Using Super+Shift+V.");
  EXPECT_EQ(spelledKeys("⌘⇧V, then ⌘V"), "Super+Shift+V, then Ctrl+V");
}

TEST(KeySymbols, ASymbolWithoutAKeyEndsWithoutAPlus) {
  EXPECT_EQ(spelledKeys("Hold ⌘."), "Hold Ctrl.");
  EXPECT_EQ(spelledKeys("Hold ⌘⇧"), "Hold Super+Shift");
  EXPECT_EQ(spelledKeys("⌘ and (⌥)"), "Ctrl and (Alt)");
}

TEST(KeySymbols, WordsOfAnotherKeyboardAndComputerAreThisOnes) {
  EXPECT_EQ(spelledWords("Option + Enter מדביק, ⌘P"), "Alt + Enter מדביק, Ctrl+P");
  EXPECT_EQ(spelledWords("נשמרת במק שלך, בעת הכניסה למק."), "נשמרת במחשב שלך, בעת הכניסה למחשב.");
  EXPECT_EQ(spelledKeys("Option excluded from history."), "Option excluded from history.");
}

TEST(KeySymbols, OtherTextComesBackAsItIs) {
  EXPECT_EQ(spelledKeys(""), "");
  EXPECT_EQ(spelledKeys("Up to 5 pins. Unpin an item first."),
            "Up to 5 pins. Unpin an item first.");
  EXPECT_EQ(spelledKeys("שלום ☃ 日本"), "שלום ☃ 日本");
  EXPECT_EQ(spelledKeys("cut \xE2\x8C"), "cut \xE2\x8C");
}

}  // namespace
}  // namespace vantorel
