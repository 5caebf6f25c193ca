// SPDX-License-Identifier: MIT
#include "platform/linux/windows/PasteKeys.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

DesktopEntry terminal(const std::string& executable) {
  DesktopEntry entry;
  entry.executable = executable;
  entry.categories = {"System", "TerminalEmulator"};
  return entry;
}

TEST(PasteKeys, AreControlVForEverythingElse) {
  const DesktopEntry editor;
  EXPECT_EQ(pasteKeysFor("Mousepad", &editor), PasteKeys::controlV);
  EXPECT_EQ(pasteKeysFor("Mousepad", nullptr), PasteKeys::controlV);
  EXPECT_EQ(pasteKeysFor("", nullptr), PasteKeys::controlV);
}

TEST(PasteKeys, AreControlShiftVForATerminalByItsEntry) {
  const auto entry = terminal("some-terminal");
  EXPECT_EQ(pasteKeysFor("Some-terminal", &entry), PasteKeys::controlShiftV);
}

TEST(PasteKeys, AreControlShiftVForAKnownTerminalWithoutEntry) {
  EXPECT_EQ(pasteKeysFor("Alacritty", nullptr), PasteKeys::controlShiftV);
  EXPECT_EQ(pasteKeysFor("kitty", nullptr), PasteKeys::controlShiftV);
}

TEST(PasteKeys, AreShiftInsertForTerminalsThatKnowOnlyThat) {
  for (const auto* name : {"XTerm", "UXTerm", "URxvt", "st-256color", "Rxvt"}) {
    EXPECT_EQ(pasteKeysFor(name, nullptr), PasteKeys::shiftInsert) << name;
  }
}

TEST(PasteKeys, AreShiftInsertForEditorsToWhomControlVIsACommand) {
  DesktopEntry entry;
  entry.executable = "emacs";
  EXPECT_EQ(pasteKeysFor("Emacs", &entry), PasteKeys::shiftInsert);
  EXPECT_EQ(pasteKeysFor("Gvim", nullptr), PasteKeys::shiftInsert);
}

TEST(PasteKeys, OneTerminalAsksBeforeItPastes) {
  EXPECT_TRUE(asksBeforePasting("Gnome-terminal"));
  EXPECT_FALSE(asksBeforePasting("XTerm"));
  EXPECT_FALSE(asksBeforePasting(""));
}

TEST(PasteKeys, FollowTheProgramWhenTheWindowHasAClassOfItsOwn) {
  const auto entry = terminal("xterm");
  EXPECT_EQ(pasteKeysFor("scratchpad", &entry), PasteKeys::shiftInsert);
}

}  // namespace
}  // namespace vantorel
