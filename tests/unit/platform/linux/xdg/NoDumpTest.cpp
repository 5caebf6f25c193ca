#include "platform/linux/xdg/NoDump.h"

#include <gtest/gtest.h>

#include "fakes/TemporaryDirectory.h"

namespace vantorel {
namespace {

TEST(NoDump, SucceedsWhetherOrNotTheFileSystemHasTheAttribute) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(setNoDump(directory.path()));
  EXPECT_FALSE(setNoDump(directory.path()));
  EXPECT_FALSE(setNoDump("/proc"));
}

TEST(NoDump, FailsWithoutADirectory) {
  EXPECT_EQ(setNoDump("/none/such"), std::errc::no_such_file_or_directory);
  EXPECT_EQ(setNoDump("/proc/version"), std::errc::not_a_directory);
}

}  // namespace
}  // namespace vantorel
