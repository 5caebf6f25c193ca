#include "store/AssetFolder.h"

#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

class AssetFolderTest : public ::testing::Test {
 protected:
  AssetFolderTest() { std::filesystem::create_directory(directory.path() / "Assets"); }
  void write(const std::string& name, std::size_t size) {
    ASSERT_FALSE(files.writeNewFile(directory.path() / "Assets" / name, Bytes(size), 0600));
  }
  [[nodiscard]] std::size_t count() { return disk.list(folder.directory())->size(); }

  TemporaryDirectory directory;
  PosixFileSystem disk;
  FaultyFileSystem files{disk};
  AssetFolder folder{files, directory.path() / "Assets"};
};

TEST_F(AssetFolderTest, FindsOnlyPlainNames) {
  EXPECT_EQ(folder.pathOf("a.png"), folder.directory() / "a.png");
  EXPECT_EQ(folder.pathOf("..."), folder.directory() / "...");
  EXPECT_EQ(folder.pathOf(".hidden"), folder.directory() / ".hidden");
  const std::string nul("a\0b", 3);
  for (const std::string& name :
       {std::string(), std::string("."), std::string(".."), std::string("../a"), std::string("/a"),
        std::string("a/b"), std::string("a/"), std::string("./a"), std::string("a/../../b"), nul}) {
    EXPECT_EQ(folder.pathOf(name), std::nullopt) << name;
  }
}

TEST_F(AssetFolderTest, SumsWhatItCanMeasure) {
  write("a", 10);
  write("b", 20);
  write(".c", 40);
  EXPECT_EQ(folder.assetBytes(), 70U);
  EXPECT_EQ(folder.assetBytes({"b", "none"}), 50U);
  EXPECT_EQ(folder.fileSize("b"), 20U);
  EXPECT_EQ(folder.fileSize("none"), 0U);
  EXPECT_EQ(folder.fileSize("../Assets/b"), 0U);
  files.hideSize(folder.directory() / "b");
  EXPECT_EQ(folder.assetBytes(), 50U);
  EXPECT_EQ(folder.fileSize("b"), 0U);
}

TEST_F(AssetFolderTest, IsEmptyWhenItCannotBeListed) {
  const AssetFolder missing(files, directory.path() / "none");
  EXPECT_EQ(missing.assetBytes(), 0U);
  missing.removeOrphans({});
}

TEST_F(AssetFolderTest, DeletesEveryFileThatNobodyNames) {
  write("named", 1);
  write("orphan", 1);
  write(".DS_Store", 1);
  folder.removeOrphans({"named", "missing"});
  EXPECT_EQ(count(), 1U);
  EXPECT_TRUE(folder.read("named"));
}

TEST_F(AssetFolderTest, GoesOnWhenOneFileCannotBeDeleted) {
  std::filesystem::create_directory(folder.directory() / "directory");
  std::filesystem::create_directory(folder.directory() / "directory" / "inner");
  write("orphan", 1);
  folder.removeOrphans({});
  EXPECT_EQ(folder.read("orphan"), std::nullopt);
  EXPECT_TRUE(std::filesystem::exists(folder.directory() / "directory" / "inner"));
}

TEST_F(AssetFolderTest, RefusesAFileOfAbsurdSize) {
  write("huge", 1);
  std::filesystem::resize_file(folder.directory() / "huge", std::uintmax_t{1} << 40U);
  EXPECT_EQ(folder.read("huge"), std::nullopt);
}

}  // namespace
}  // namespace vantorel
