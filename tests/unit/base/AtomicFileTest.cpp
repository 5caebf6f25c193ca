// SPDX-License-Identifier: MIT
#include "base/AtomicFile.h"

#include <gtest/gtest.h>

#include "fakes/FaultyFileSystem.h"
#include "fakes/TemporaryDirectory.h"
#include "fakes/TestStore.h"

namespace vantorel {
namespace {

using Operation = FaultyFileSystem::Operation;

class AtomicFile : public ::testing::Test {
 protected:
  [[nodiscard]] std::optional<Bytes> contents() { return disk.readFile(path, 1000); }
  [[nodiscard]] std::size_t fileCount() { return disk.list(directory.path())->size(); }

  TemporaryDirectory directory;
  PosixFileSystem disk;
  FaultyFileSystem files{disk};
  std::filesystem::path path = directory.path() / "file";
};

TEST_F(AtomicFile, IsNewAndForItsOwnerAlone) {
  EXPECT_FALSE(writeAtomically(files, path, bytesOf("new")));
  EXPECT_EQ(contents(), toBytes("new"));
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path).permissions()), 0600U);
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(AtomicFile, TakesThePlaceAndNotThePermissionsOfTheOld) {
  ASSERT_FALSE(disk.writeNewFile(path, bytesOf("old and longer"), 0644));
  EXPECT_FALSE(writeAtomically(files, path, bytesOf("new")));
  EXPECT_EQ(contents(), toBytes("new"));
  EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path).permissions()), 0600U);
}

TEST_F(AtomicFile, ReplacesALinkAndNotWhatItPointsTo) {
  const auto target = directory.path() / "target";
  ASSERT_FALSE(disk.writeNewFile(target, bytesOf("elsewhere"), 0644));
  std::filesystem::create_symlink(target, path);
  EXPECT_FALSE(writeAtomically(files, path, bytesOf("new")));
  EXPECT_EQ(disk.readFile(target, 1000), toBytes("elsewhere"));
  EXPECT_FALSE(std::filesystem::is_symlink(path));
}

TEST_F(AtomicFile, IsOnTheDiskBeforeItTakesThePlaceAndItsNameAfter) {
  ASSERT_FALSE(writeAtomically(files, path, bytesOf("new")));
  ASSERT_EQ(files.calls().size(), 3U);
  EXPECT_EQ(files.calls()[0].operation, Operation::writeNewFile);
  EXPECT_EQ(files.calls()[1].operation, Operation::rename);
  EXPECT_EQ(files.calls()[2].operation, Operation::syncDirectory);
  EXPECT_EQ(files.calls()[0].path.parent_path(), directory.path());
}

TEST_F(AtomicFile, IsWrittenUnderANameThatIsNeverTheSame) {
  ASSERT_FALSE(writeAtomically(files, path, bytesOf("1")));
  ASSERT_FALSE(writeAtomically(files, path, bytesOf("2")));
  EXPECT_NE(files.calls()[0].path, files.calls()[3].path);
  EXPECT_TRUE(isUnfinishedWrite(files.calls()[0].path.filename().string(), "file"));
}

TEST_F(AtomicFile, KeepsTheOldAndNothingElseWhenItCannotBeWrittenOrRenamed) {
  ASSERT_FALSE(disk.writeNewFile(path, bytesOf("old"), 0600));
  for (int step = 0; step < 2; ++step) {
    files.failAt(step, std::errc::no_space_on_device);
    EXPECT_EQ(writeAtomically(files, path, bytesOf("new")), std::errc::no_space_on_device);
    EXPECT_EQ(contents(), toBytes("old"));
    EXPECT_EQ(fileCount(), 1U);
  }
}

TEST_F(AtomicFile, SaysSoWhenItMayNotSurviveAPowerCut) {
  files.failAt(2, std::errc::io_error);
  EXPECT_EQ(writeAtomically(files, path, bytesOf("new")), std::errc::io_error);
  EXPECT_EQ(contents(), toBytes("new"));
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(AtomicFile, LeavesAFileAloneThatHasTheTemporaryName) {
  files.failAt(0, std::errc::file_exists);
  EXPECT_EQ(writeAtomically(files, path, bytesOf("new")), std::errc::file_exists);
  for (const auto& call : files.calls()) EXPECT_NE(call.operation, Operation::remove);
}

TEST_F(AtomicFile, FailsWithoutItsDirectory) {
  EXPECT_EQ(writeAtomically(files, directory.path() / "none" / "file", bytesOf("new")),
            std::errc::no_such_file_or_directory);
}

TEST(UnfinishedWrite, IsKnownByItsWholeName) {
  const std::string id = "0A1B2C3D-4E5F-6789-ABCD-EF0123456789";
  EXPECT_TRUE(isUnfinishedWrite(".history.vntl." + id + ".tmp", "history.vntl"));
  for (const std::string& name :
       {std::string("history.vntl"), std::string(""), std::string("."), std::string(".tmp"),
        std::string(".history.vntl..tmp"), ".history.vntl." + id, "history.vntl." + id + ".tmp",
        ".history.json." + id + ".tmp", ".history.vntl." + id + ".tmp.bak",
        std::string(".history.vntl.x"), ".history.vntl." + id.substr(1) + ".tmp",
        ".history.vntl.tmp." + id}) {
    EXPECT_FALSE(isUnfinishedWrite(name, "history.vntl")) << name;
  }
}

}  // namespace
}  // namespace vantorel
