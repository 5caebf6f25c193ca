// SPDX-License-Identifier: MIT
#include "platform/linux/start/HistoryLock.h"

#include <gtest/gtest.h>

#include <optional>

#include "fakes/TemporaryDirectory.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;
using Result = InstanceLock::Result;

class HistoryLockTest : public testing::Test {
 protected:
  void SetUp() override { fs::create_directory(history_); }

  const TemporaryDirectory directory_;
  const fs::path history_ = directory_.path() / "history";
};

TEST_F(HistoryLockTest, IsHeldByOneAtATime) {
  std::optional<HistoryLock> first(std::in_place);
  HistoryLock second;
  EXPECT_EQ(first->take(history_), Result::taken);
  EXPECT_EQ(second.take(history_), Result::heldByAnother);
  EXPECT_EQ(second.claim(history_), std::errc::device_or_resource_busy);
  first.reset();
  EXPECT_EQ(second.take(history_), Result::taken);
}

TEST_F(HistoryLockTest, IsItsHoldersHoweverOftenItIsTaken) {
  HistoryLock lock;
  EXPECT_EQ(lock.take(history_), Result::taken);
  EXPECT_EQ(lock.take(history_), Result::taken);
  EXPECT_FALSE(lock.claim(history_));
}

TEST_F(HistoryLockTest, PutsNothingThere) {
  HistoryLock lock;
  EXPECT_EQ(lock.take(history_), Result::taken);
  EXPECT_TRUE(fs::is_empty(history_));
}

TEST_F(HistoryLockTest, IsTheSameThroughALink) {
  fs::create_directory_symlink(history_, directory_.path() / "link");
  HistoryLock first;
  HistoryLock second;
  EXPECT_EQ(first.take(history_), Result::taken);
  EXPECT_EQ(second.take(directory_.path() / "link"), Result::heldByAnother);
}

TEST_F(HistoryLockTest, GoesOverToADirectoryThatWasMadeAgain) {
  HistoryLock first;
  HistoryLock second;
  EXPECT_EQ(first.take(history_), Result::taken);
  fs::rename(history_, directory_.path() / "old");
  fs::create_directory(history_);
  EXPECT_FALSE(first.claim(history_));
  EXPECT_EQ(second.take(history_), Result::heldByAnother);
  EXPECT_EQ(second.take(directory_.path() / "old"), Result::taken);
}

TEST_F(HistoryLockTest, IsKeptWhenAnotherDirectoryCannotBeTaken) {
  HistoryLock first;
  HistoryLock second;
  EXPECT_EQ(first.take(history_), Result::taken);
  EXPECT_EQ(first.take(directory_.path() / "missing"), Result::unavailable);
  EXPECT_FALSE(first.claim(directory_.path() / "missing"));
  EXPECT_EQ(second.take(history_), Result::heldByAnother);
}

TEST_F(HistoryLockTest, IsUnavailableWhereNoDirectoryStands) {
  std::error_code ignored;
  fs::remove(history_, ignored);
  HistoryLock lock;
  EXPECT_EQ(lock.take(history_), Result::unavailable);
  EXPECT_EQ(lock.take("/proc/version"), Result::unavailable);
}

}  // namespace
}  // namespace vantorel
