// SPDX-License-Identifier: MIT
#include "platform/linux/shortcuts/OwnCommand.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "fakes/TemporaryDirectory.h"

namespace vantorel {
namespace {

EnvironmentLookup environment(std::map<std::string, std::string> variables) {
  return [variables = std::move(variables)](const char* name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    if (found == variables.end()) return std::nullopt;
    return found->second;
  };
}

class OwnCommandTest : public testing::Test {
 protected:
  std::filesystem::path program(const std::string& directory) {
    std::filesystem::create_directories(home.path() / directory);
    const auto path = home.path() / directory / "vantorel";
    std::ofstream(path) << "program";
    return path;
  }
  [[nodiscard]] std::string in(const std::string& directory) const {
    return (home.path() / directory).string();
  }

  TemporaryDirectory home;
};

TEST_F(OwnCommandTest, ANameIsEnoughWhereItLeadsToThisProgram) {
  const auto own = program("bin");
  EXPECT_EQ(ownCommand(own, environment({{"PATH", in("empty") + ":" + in("bin")}})), "vantorel");
}

TEST_F(OwnCommandTest, ALinkIsTheSameProgram) {
  const auto own = program("bin");
  std::filesystem::create_directories(home.path() / "links");
  std::filesystem::create_symlink(own, home.path() / "links" / "vantorel");
  EXPECT_EQ(ownCommand(own, environment({{"PATH", in("links")}})), "vantorel");
}

TEST_F(OwnCommandTest, AnotherProgramOfThatNameComesFirst) {
  const auto own = program("bin");
  program("older");
  EXPECT_EQ(ownCommand(own, environment({{"PATH", in("older") + ":" + in("bin")}})), own);
}

TEST_F(OwnCommandTest, WhatIsNotFoundIsCalledByItsPath) {
  const auto own = program("bin");
  EXPECT_EQ(ownCommand(own, environment({{"PATH", in("elsewhere")}})), own);
  EXPECT_EQ(ownCommand(own, environment({})), own);
}

TEST(DesktopName, IsWhatTheSessionSays) {
  EXPECT_EQ(desktopName(environment({{"XDG_CURRENT_DESKTOP", "labwc:wlroots"}})), "labwc:wlroots");
  EXPECT_EQ(desktopName(environment({{"SWAYSOCK", "/run/sway"}})), "sway");
  EXPECT_EQ(
      desktopName(environment({{"XDG_CURRENT_DESKTOP", "Hyprland"}, {"SWAYSOCK", "/run/sway"}})),
      "Hyprland");
  EXPECT_EQ(desktopName(environment({})), "");
}

}  // namespace
}  // namespace vantorel
