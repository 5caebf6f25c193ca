#include "platform/linux/xdg/XdgDirectories.h"

#include <gtest/gtest.h>

#include <map>

namespace vantorel {
namespace {

XdgDirectories directoriesIn(const std::map<std::string, std::string>& environment) {
  return XdgDirectories::fromEnvironment([&](const char* name) -> std::optional<std::string> {
    const auto found = environment.find(name);
    if (found == environment.end()) return std::nullopt;
    return found->second;
  });
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
