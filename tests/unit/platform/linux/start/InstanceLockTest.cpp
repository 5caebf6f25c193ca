// SPDX-License-Identifier: MIT
#include "platform/linux/start/InstanceLock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace vantorel {
namespace {

using Result = InstanceLock::Result;

class InstanceLockTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "lock-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    directory_ = name;
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

  std::filesystem::path directory_;
};

TEST_F(InstanceLockTest, IsHeldByOneAtATime) {
  std::optional<InstanceLock> first(std::in_place);
  InstanceLock second;
  EXPECT_EQ(first->take(directory_ / "lock"), Result::taken);
  EXPECT_EQ(second.take(directory_ / "lock"), Result::heldByAnother);
  first.reset();
  EXPECT_EQ(second.take(directory_ / "lock"), Result::taken);
}

TEST_F(InstanceLockTest, IsUnavailableWithoutItsDirectory) {
  InstanceLock lock;
  EXPECT_EQ(lock.take(directory_ / "missing" / "lock"), Result::unavailable);
}

TEST_F(InstanceLockTest, FollowsNoLink) {
  std::filesystem::create_symlink(directory_ / "elsewhere", directory_ / "lock");
  InstanceLock lock;
  EXPECT_EQ(lock.take(directory_ / "lock"), Result::unavailable);
  EXPECT_FALSE(std::filesystem::exists(directory_ / "elsewhere"));
}

// Two builds that share a history meet here, whatever they were made with. A version that called
// its lock otherwise is met on the session bus only, which is asked first.
TEST(InstanceLockPath, HasTheSameNameInEveryBuild) {
  XdgDirectories directories;
  directories.runtime = "/run/user/1000";
  directories.dataHome = "/home/one/.local/share";
  EXPECT_EQ(instanceLockPath(directories), "/run/user/1000/vantorel-9b4098df90f3f50f.lock");
}

TEST(InstanceLockPath, IsTheSameHoweverThePlaceIsSpelled) {
  XdgDirectories directories;
  directories.runtime = "/run/user/1000";
  directories.dataHome = "/home/one/.local/share";
  const auto plain = instanceLockPath(directories);
  for (const auto* spelled : {"/home/one//.local/share", "/home/one/.local/share/",
                              "/home/one/.local/./share", "/home/one/.local/x/../share"}) {
    directories.dataHome = spelled;
    EXPECT_EQ(instanceLockPath(directories), plain) << spelled;
  }
}

TEST(InstanceLockPath, IsOneForEachHistory) {
  XdgDirectories directories;
  EXPECT_EQ(instanceLockPath(directories), std::nullopt);
  directories.runtime = "/run/user/1000";
  directories.dataHome = "/home/one/.local/share";
  const auto one = instanceLockPath(directories);
  ASSERT_TRUE(one);
  EXPECT_EQ(one->parent_path(), "/run/user/1000");
  EXPECT_EQ(instanceLockPath(directories), one);
  directories.dataHome = "/home/other/.local/share";
  EXPECT_NE(instanceLockPath(directories), one);
}

}  // namespace
}  // namespace vantorel
