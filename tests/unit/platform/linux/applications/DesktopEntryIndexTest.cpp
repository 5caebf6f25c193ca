// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntryIndex.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

DesktopEntry entry(const std::string& id, const std::string& wmClass = {},
                   const std::string& executable = {}) {
  DesktopEntry result;
  result.id = id;
  result.name = "Name of " + id;
  result.startupWmClass = wmClass;
  result.executable = executable;
  return result;
}

std::string found(const DesktopEntryIndex& index, const WindowIdentity& identity) {
  const auto* result = index.find(identity);
  return result ? result->id : "";
}

WindowIdentity window(const std::string& instance, const std::string& wmClass,
                      const std::string& executable = {}, const std::string& desktopFile = {}) {
  return {desktopFile, wmClass, instance, executable};
}

TEST(DesktopEntryIndex, FindsNothingAmongNothing) {
  const DesktopEntryIndex index;
  EXPECT_EQ(index.byId("a"), nullptr);
  EXPECT_EQ(index.find(window("a", "A", "a", "a")), nullptr);
}

TEST(DesktopEntryIndex, FindsById) {
  const DesktopEntryIndex index({entry("Org.Desk"), entry("org.desk")});
  EXPECT_EQ(index.byId("org.desk")->id, "org.desk");
  EXPECT_EQ(index.byId("Org.Desk")->id, "Org.Desk");
  EXPECT_EQ(index.byId("ORG.DESK")->id, "Org.Desk");
  EXPECT_EQ(index.byId("desk"), nullptr);
}

TEST(DesktopEntryIndex, TheAnnouncedEntryComesFirst) {
  const DesktopEntryIndex index({entry("by-class", "Desk"), entry("org.desk.Desk")});
  EXPECT_EQ(found(index, window("desk", "Desk", "", "org.desk.Desk")), "org.desk.Desk");
  EXPECT_EQ(found(index, window("desk", "Desk", "", "org.not.Installed")), "by-class");
}

TEST(DesktopEntryIndex, StartupClassComesBeforeTheSameId) {
  const DesktopEntryIndex index({entry("desk"), entry("other", "Desk")});
  EXPECT_EQ(found(index, window("desk", "Desk")), "other");
}

TEST(DesktopEntryIndex, StartupClassMayBeTheInstance) {
  const DesktopEntryIndex index({entry("app", "crx_abc")});
  EXPECT_EQ(found(index, window("crx_abc", "Browser")), "app");
}

TEST(DesktopEntryIndex, ClassIsTakenWithoutRegardToCase) {
  const DesktopEntryIndex index({entry("thunder"), entry("org.files.Nautilus")});
  EXPECT_EQ(found(index, window("Mail", "Thunder")), "thunder");
  EXPECT_EQ(found(index, window("x", "nautilus")), "org.files.Nautilus");
}

TEST(DesktopEntryIndex, OfTwoThatClaimAClassTheOneOfTheProgramIsMeant) {
  const DesktopEntryIndex index({entry("a", "Desk", "desk-a"), entry("b", "Desk", "desk-b")});
  EXPECT_EQ(found(index, window("desk", "Desk", "desk-b")), "b");
  EXPECT_EQ(found(index, window("desk", "Desk", "desk-a")), "a");
  EXPECT_EQ(found(index, window("desk", "Desk", "elsewhere")), "a");
}

TEST(DesktopEntryIndex, OfTwoThatClaimAClassTheVisibleOneIsMeant) {
  auto hidden = entry("a", "Desk");
  hidden.noDisplay = true;
  const DesktopEntryIndex index({hidden, entry("b", "Desk")});
  EXPECT_EQ(found(index, window("desk", "Desk")), "b");
}

TEST(DesktopEntryIndex, OfTwoThatClaimAClassTheOneThatSpellsItAlikeIsMeant) {
  const DesktopEntryIndex classes({entry("a", "desk"), entry("b", "Desk")});
  EXPECT_EQ(found(classes, window("x", "Desk")), "b");
  EXPECT_EQ(found(classes, window("x", "desk")), "a");
  EXPECT_EQ(found(classes, window("x", "DESK")), "a") << "the more important one";
  const DesktopEntryIndex ids({entry("desk"), entry("Desk")});
  EXPECT_EQ(found(ids, window("x", "Desk")), "Desk");
  EXPECT_EQ(found(ids, window("x", "desk")), "desk");
}

TEST(DesktopEntryIndex, AnEntryThatMenusDoNotShowStillNamesItsWindow) {
  auto hidden = entry("a", "Desk");
  hidden.noDisplay = true;
  const DesktopEntryIndex index({hidden});
  EXPECT_EQ(found(index, window("desk", "Desk")), "a");
}

TEST(DesktopEntryIndex, FallsBackToTheProgram) {
  const DesktopEntryIndex index({entry("org.desk", "", "desk-bin")});
  EXPECT_EQ(found(index, window("x", "Y", "desk-bin")), "org.desk");
  EXPECT_EQ(found(index, window("x", "Y", "Desk-Bin")), "");
}

TEST(DesktopEntryIndex, AnInterpreterSaysNothing) {
  const DesktopEntryIndex index(
      {entry("a", "", "python3.11"), entry("b", "", "pythonista"), entry("c", "", "sh")});
  EXPECT_EQ(found(index, window("x", "Y", "python3.11")), "");
  EXPECT_EQ(found(index, window("x", "Y", "sh")), "");
  EXPECT_EQ(found(index, window("x", "Y", "pythonista")), "b");
}

TEST(DesktopEntryIndex, AProgramWithManyEntriesIsItsPlainOne) {
  auto writer = entry("writer", "", "office");
  writer.execHasArguments = true;
  auto calc = entry("calc", "", "office");
  calc.execHasArguments = true;
  EXPECT_EQ(found(DesktopEntryIndex({writer, calc}), window("x", "Y", "office")), "");
  EXPECT_EQ(found(DesktopEntryIndex({writer, calc, entry("office-start", "", "office")}),
                  window("x", "Y", "office")),
            "office-start");
  EXPECT_EQ(found(DesktopEntryIndex({entry("1", "", "office"), entry("2", "", "office")}),
                  window("x", "Y", "office")),
            "");
}

TEST(DesktopEntryIndex, AWindowThatSaysNothingHasNoEntry) {
  const DesktopEntryIndex index({entry("", "", "")});
  EXPECT_EQ(found(index, window("", "")), "");
}

}  // namespace
}  // namespace vantorel
