// SPDX-License-Identifier: MIT
#include "platform/linux/xdg/NoDump.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>

#include "base/FileDescriptor.h"
#include "fakes/TemporaryDirectory.h"

namespace vantorel {
namespace {

TEST(NoDump, SucceedsWhetherOrNotTheFileSystemHasTheAttribute) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(setNoDump(directory.path()));
  EXPECT_FALSE(setNoDump(directory.path()));
  EXPECT_FALSE(setNoDump("/proc"));
}

TEST(NoDump, IsAnAttributeOfTheDirectoryWhereTheFileSystemHasIt) {
  const TemporaryDirectory directory;
  const FileDescriptor file(open(directory.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_TRUE(file.isOpen());
  int flags = 0;
  if (ioctl(file.get(), FS_IOC_GETFLAGS, &flags) != 0 ||
      ioctl(file.get(), FS_IOC_SETFLAGS, &flags) != 0) {
    GTEST_SKIP() << directory.path() << " is on a file system without attributes";
  }
  ASSERT_EQ(flags & FS_NODUMP_FL, 0);
  EXPECT_FALSE(setNoDump(directory.path()));
  ASSERT_EQ(ioctl(file.get(), FS_IOC_GETFLAGS, &flags), 0);
  EXPECT_NE(flags & FS_NODUMP_FL, 0);
}

TEST(NoDump, FailsWithoutADirectory) {
  EXPECT_EQ(setNoDump("/none/such"), std::errc::no_such_file_or_directory);
  EXPECT_EQ(setNoDump("/proc/version"), std::errc::not_a_directory);
}

}  // namespace
}  // namespace vantorel
