// SPDX-License-Identifier: MIT
#include "platform/linux/start/AutostartLoginItem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "unit/platform/linux/start/MemoryFiles.h"

namespace vantorel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Status = LoginItem::Status;

const std::filesystem::path ownDirectory = "/home/u/.config/autostart";
const std::filesystem::path own = ownDirectory / "com.vantorel.Vantorel.desktop";
const std::filesystem::path machine = "/etc/xdg/autostart/com.vantorel.Vantorel.desktop";
constexpr auto machinesText = "[Desktop Entry]\nType=Application\nExec=vantorel\n";

class AutostartLoginItemTest : public testing::Test {
 protected:
  AutostartPlaces places{
      ownDirectory, {"/etc/xdg/autostart"}, {{}, [](const auto&) { return true; }}};
  MemoryFiles files;
  AutostartLoginItem item{files, places, "/usr/local/bin/vantorel"};
};

TEST_F(AutostartLoginItemTest, IsOffUntilItIsRegistered) {
  EXPECT_EQ(item.status(), Status::disabled);
  EXPECT_TRUE(files.files.empty());
  EXPECT_TRUE(item.registerItem());
  EXPECT_EQ(item.status(), Status::enabled);
  EXPECT_THAT(files.files[own].text, HasSubstr("\nExec=/usr/local/bin/vantorel --background\n"));
  EXPECT_TRUE(files.directories.contains(ownDirectory));
  EXPECT_FALSE(files.written.contains(own)) << "it was not replaced in one step";
}

TEST_F(AutostartLoginItemTest, UnregisteredItStaysHidden) {
  ASSERT_TRUE(item.registerItem());
  EXPECT_TRUE(item.unregisterItem());
  EXPECT_EQ(item.status(), Status::disabled);
  EXPECT_THAT(files.files[own].text, HasSubstr("\nHidden=true\n"));
  EXPECT_TRUE(item.registerItem());
  EXPECT_EQ(item.status(), Status::enabled);
}

TEST_F(AutostartLoginItemTest, SeesWhatOthersChanged) {
  ASSERT_TRUE(item.registerItem());
  files.files[own].text += "Hidden=true\n";
  EXPECT_EQ(item.status(), Status::disabled);
  files.files.erase(own);
  EXPECT_EQ(item.status(), Status::disabled);
}

TEST_F(AutostartLoginItemTest, TheMachinesEntryCountsWhereTheUserHasNone) {
  files.files[machine] = {machinesText, 0644};
  EXPECT_EQ(item.status(), Status::enabled);
  EXPECT_TRUE(item.unregisterItem());
  EXPECT_EQ(item.status(), Status::disabled);
  EXPECT_EQ(files.files[own].text, std::string(machinesText) + "Hidden=true\n");
  EXPECT_EQ(files.files[machine].text, machinesText);
}

TEST_F(AutostartLoginItemTest, AnOlderVersionsEntryIsRenewedOnceAndOnlyWhileItCounts) {
  const std::string old = "[Desktop Entry]\nType=Application\nExec=/usr/local/bin/vantorel\n";
  EXPECT_FALSE(item.renewItem());
  files.files[machine] = {old, 0644};
  EXPECT_FALSE(item.renewItem()) << "that one is the machine's";
  files.files[own] = {old + "Hidden=true\n", 0600};
  EXPECT_FALSE(item.renewItem());
  files.files[own] = {old, 0600};
  EXPECT_TRUE(item.renewItem());
  EXPECT_THAT(files.files[own].text, HasSubstr("\nExec=/usr/local/bin/vantorel --background\n"));
  EXPECT_FALSE(item.renewItem());
  files.files[own] = {old, 0600};
  files.unreadable.insert(own);
  EXPECT_FALSE(item.renewItem());
}

TEST_F(AutostartLoginItemTest, WithNothingThereUnregisteringIsDone) {
  EXPECT_TRUE(item.unregisterItem());
  EXPECT_TRUE(files.files.empty());
}

TEST_F(AutostartLoginItemTest, AnEntryThatCannotBeReadIsNotReplaced) {
  files.files[own] = {"precious", 0600};
  files.unreadable.insert(own);
  EXPECT_EQ(item.status(), Status::disabled);
  EXPECT_FALSE(item.registerItem());
  EXPECT_FALSE(item.unregisterItem());
  EXPECT_EQ(files.files[own].text, "precious");
}

TEST_F(AutostartLoginItemTest, AnEntryTooLargeForOneIsNotReplaced) {
  const std::string large(AutostartLoginItem::maximumFileSize + 1, '#');
  files.files[own] = {large, 0600};
  EXPECT_EQ(item.status(), Status::disabled);
  EXPECT_FALSE(item.registerItem());
  EXPECT_EQ(files.files[own].text, large);
}

TEST_F(AutostartLoginItemTest, AFullDiskLeavesTheOldEntryWhole) {
  ASSERT_TRUE(item.registerItem());
  const auto before = files.files[own].text;
  for (const auto failing :
       {MemoryFiles::Operation::createDirectories, MemoryFiles::Operation::writeNewFile,
        MemoryFiles::Operation::rename}) {
    files.failing = {failing};
    EXPECT_FALSE(item.unregisterItem());
    EXPECT_EQ(item.status(), Status::enabled);
    EXPECT_EQ(files.files[own].text, before);
    EXPECT_EQ(files.files.size(), 1U);
  }
}

TEST_F(AutostartLoginItemTest, WithoutADirectoryItIsUnavailable) {
  places.own.reset();
  AutostartLoginItem homeless(files, places, "/usr/bin/vantorel");
  EXPECT_EQ(homeless.status(), Status::unavailable);
  EXPECT_FALSE(homeless.registerItem());
  EXPECT_FALSE(homeless.unregisterItem());
}

TEST(AutostartPlacesTest, ComeFromTheEnvironment) {
  std::map<std::string, std::string> environment = {{"HOME", "/home/u"},
                                                    {"XDG_CONFIG_DIRS", "/a::relative:/b"},
                                                    {"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"},
                                                    {"PATH", "/usr/bin:/bin"}};
  const EnvironmentLookup lookup = [&](const char* name) -> std::optional<std::string> {
    const auto found = environment.find(name);
    return found != environment.end() ? std::optional(found->second) : std::nullopt;
  };
  auto places = AutostartPlaces::fromEnvironment(lookup);
  EXPECT_EQ(places.own, "/home/u/.config/autostart");
  EXPECT_THAT(places.systems, ElementsAre("/a/autostart", "/b/autostart"));
  EXPECT_THAT(places.surroundings.currentDesktops, ElementsAre("ubuntu", "GNOME"));
  EXPECT_TRUE(places.surroundings.programExists("sh"));
  EXPECT_TRUE(places.surroundings.programExists("/bin/sh"));
  EXPECT_FALSE(places.surroundings.programExists("no such program"));
  EXPECT_FALSE(places.surroundings.programExists("/no/such/program"));
  environment.clear();
  places = AutostartPlaces::fromEnvironment(lookup);
  EXPECT_FALSE(places.own);
  EXPECT_THAT(places.systems, ElementsAre("/etc/xdg/autostart"));
}

TEST(OwnProgramPath, IsTheFileThatRuns) {
  EXPECT_TRUE(std::filesystem::equivalent(ownProgramPath(), "/proc/self/exe"));
}

}  // namespace
}  // namespace vantorel
