// SPDX-License-Identifier: MIT
#include "platform/linux/xdg/XdgDirectories.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vantorel {
namespace {

using Paths = std::vector<std::filesystem::path>;

EnvironmentLookup lookupIn(const std::map<std::string, std::string>& environment) {
  return [environment](const char* name) -> std::optional<std::string> {
    const auto found = environment.find(name);
    if (found == environment.end()) return std::nullopt;
    return found->second;
  };
}

XdgDirectories directoriesIn(const std::map<std::string, std::string>& environment) {
  return XdgDirectories::fromEnvironment(lookupIn(environment));
}

TEST(XdgDirectories, FollowTheVariables) {
  const auto directories = directoriesIn({{"HOME", "/home/u"},
                                          {"XDG_DATA_HOME", "/d"},
                                          {"XDG_CONFIG_HOME", "/c"},
                                          {"XDG_CACHE_HOME", "/k"},
                                          {"XDG_RUNTIME_DIR", "/run/user/7"}});
  EXPECT_EQ(directories.dataHome, "/d");
  EXPECT_EQ(directories.configHome, "/c");
  EXPECT_EQ(directories.cacheHome, "/k");
  EXPECT_EQ(directories.runtime, "/run/user/7");
}

TEST(XdgDirectories, FallBackBelowHome) {
  const auto directories = directoriesIn({{"HOME", "/home/u"}});
  EXPECT_EQ(directories.dataHome, "/home/u/.local/share");
  EXPECT_EQ(directories.configHome, "/home/u/.config");
  EXPECT_EQ(directories.cacheHome, "/home/u/.cache");
  EXPECT_FALSE(directories.runtime);
}

TEST(XdgDirectories, IgnoreRelativeAndEmptyValues) {
  const auto directories = directoriesIn({{"HOME", "/home/u"},
                                          {"XDG_DATA_HOME", "data"},
                                          {"XDG_CONFIG_HOME", ""},
                                          {"XDG_RUNTIME_DIR", "./run"}});
  EXPECT_EQ(directories.dataHome, "/home/u/.local/share");
  EXPECT_EQ(directories.configHome, "/home/u/.config");
  EXPECT_FALSE(directories.runtime);
}

TEST(XdgDirectories, AreAbsentWithoutAnAbsoluteHome) {
  for (const char* home : {"", "home"}) {
    const auto directories = directoriesIn({{"HOME", home}, {"XDG_CACHE_HOME", "/k"}});
    EXPECT_FALSE(directories.dataHome);
    EXPECT_FALSE(directories.configHome);
    EXPECT_EQ(directories.cacheHome, "/k");
  }
  EXPECT_FALSE(directoriesIn({}).dataHome);
}

TEST(SearchPath, IsTheUsersOwnThenWhatTheVariableLists) {
  const auto lookup =
      lookupIn({{"HOME", "/home/u"}, {"XDG_DATA_DIRS", "/d1:/d2"}, {"XDG_CONFIG_DIRS", "/c1:/c2"}});
  EXPECT_EQ(dataDirectories(lookup), (Paths{"/home/u/.local/share", "/d1", "/d2"}));
  EXPECT_EQ(configDirectories(lookup), (Paths{"/home/u/.config", "/c1", "/c2"}));
}

TEST(SearchPath, PassesOverRelativeAndEmptyParts) {
  const auto lookup = lookupIn({{"HOME", "/home/u"}, {"XDG_DATA_DIRS", ":data:/d1:./d2::/d3:"}});
  EXPECT_EQ(dataDirectories(lookup), (Paths{"/home/u/.local/share", "/d1", "/d3"}));
}

TEST(SearchPath, IsTheStandardOneWhenTheVariableSaysNothing) {
  for (const auto& lookup :
       {lookupIn({}), lookupIn({{"XDG_DATA_DIRS", ""}, {"XDG_CONFIG_DIRS", ""}})}) {
    EXPECT_EQ(dataDirectories(lookup), (Paths{"/usr/local/share", "/usr/share"}));
    EXPECT_EQ(configDirectories(lookup), Paths{"/etc/xdg"});
  }
}

TEST(XdgDirectories, TakeAMissingHomeFromTheUserDatabase) {
  const auto home = processEnvironment("HOME");
  ASSERT_TRUE(home);
  ASSERT_EQ(unsetenv("HOME"), 0);
  const auto fallback = processEnvironment("HOME");
  setenv("HOME", home->c_str(), 1);
  ASSERT_TRUE(fallback);
  EXPECT_TRUE(std::filesystem::path(*fallback).is_absolute());
  EXPECT_FALSE(processEnvironment("VANTOREL_NOT_SET_ANYWHERE"));
}

}  // namespace
}  // namespace vantorel
