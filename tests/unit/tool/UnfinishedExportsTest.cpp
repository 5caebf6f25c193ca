// SPDX-License-Identifier: MIT
#include "tool/UnfinishedExports.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "base/FileDescriptor.h"
#include "fakes/FaultyFileSystem.h"
#include "fakes/TemporaryDirectory.h"
#include "fakes/TestStore.h"
#include "transfer/HistoryExport.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;

class UnfinishedExportsTest : public testing::Test {
 protected:
  const fs::path& beside() const { return directory.path(); }

  void put(const fs::path& path) { ASSERT_FALSE(disk.writeNewFile(path, bytesOf("x"), 0600)); }
  fs::path unfinished(const fs::path& in, const std::vector<std::string>& names) {
    auto path = in / (".vantorel-export." + Uuid::random().string());
    EXPECT_FALSE(disk.createDirectories(path, 0700));
    for (const std::string& name : names) put(path / name);
    return path;
  }

  TemporaryDirectory directory;
  PosixFileSystem disk;
};

TEST_F(UnfinishedExportsTest, WhereverAnExportIsKilledTheNextOneCleansUp) {
  const std::vector<ClipItem> items = {textItem("secret"), filesItem({"/a"})};
  const auto place = beside() / "export";
  for (int step = 0;; ++step) {
    FaultyFileSystem files(disk);
    files.dieAt(step, FaultyFileSystem::Progress::half);
    (void)exportHistory(files, items, {}, place, testDate());
    if (!files.isDead()) {
      EXPECT_GE(step, 5) << "a directory, three files, a name";
      return;
    }
    removeUnfinishedExports(beside());
    const bool isThere = fs::remove_all(place) > 0;
    EXPECT_EQ(isThere, step > 6) << "it stands before the directory around it is on the disk";
    EXPECT_TRUE(fs::is_empty(beside())) << step;
  }
}

TEST_F(UnfinishedExportsTest, WhatIsNotOursThroughoutStays) {
  const auto foreign = unfinished(beside(), {"0001.txt", "letter.txt"});
  const auto directoryWithin = unfinished(beside(), {});
  ASSERT_FALSE(disk.createDirectories(directoryWithin / "0001.txt" / "within", 0700));
  const auto real = unfinished(beside() / "elsewhere", {"0001.txt"});
  const auto link = beside() / (".vantorel-export." + Uuid::random().string());
  fs::create_directory_symlink(real, link);
  const auto file = beside() / (".vantorel-export." + Uuid::random().string());
  put(file);
  const auto other = beside() / ".vantorel-export.x";
  ASSERT_FALSE(disk.createDirectories(other, 0700));
  removeUnfinishedExports(beside());
  removeUnfinishedExports(beside() / "no" / "such");
  EXPECT_TRUE(fs::exists(foreign / "0001.txt"));
  EXPECT_TRUE(fs::exists(directoryWithin / "0001.txt" / "within"));
  EXPECT_TRUE(fs::exists(real / "0001.txt"));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_TRUE(fs::exists(file));
  EXPECT_TRUE(fs::exists(other));
}

TEST_F(UnfinishedExportsTest, OneThatGoesOnIsLeftAlone) {
  const auto path = unfinished(beside(), {"0001.txt"});
  {
    const FileDescriptor held(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ASSERT_EQ(::flock(held.get(), LOCK_EX), 0);
    removeUnfinishedExports(beside());
    EXPECT_TRUE(fs::exists(path / "0001.txt"));
  }
  removeUnfinishedExports(beside());
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(UnfinishedExportsTest, AnotherUsersStays) {
  const auto path = unfinished(beside(), {"0001.txt"});
  if (::chown(path.c_str(), 12345, 12345) != 0) GTEST_SKIP() << "owners cannot be changed here";
  removeUnfinishedExports(beside());
  EXPECT_TRUE(fs::exists(path / "0001.txt"));
}

}  // namespace
}  // namespace vantorel
