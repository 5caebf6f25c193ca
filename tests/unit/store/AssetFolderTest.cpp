// SPDX-License-Identifier: MIT
#include "store/AssetFolder.h"

#include <gtest/gtest.h>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

const std::string one = "0A1B2C3D-0000-4000-8000-000000000001.png";
const std::string two = "0A1B2C3D-0000-4000-8000-000000000002.jpg";
const std::string unfinished = "." + one + ".0A1B2C3D-0000-4000-8000-000000000003.tmp";

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

TEST_F(AssetFolderTest, SumsWhatItCanMeasureOfItsOwn) {
  write(one, 10);
  write(two, 20);
  write(unfinished, 40);
  write("holiday.jpg", 80);
  EXPECT_EQ(folder.assetBytes(), 70U);
  EXPECT_EQ(folder.assetBytes({two, "none"}), 50U);
  EXPECT_EQ(folder.fileSize(two), 20U);
  EXPECT_EQ(folder.fileSize("none"), 0U);
  EXPECT_EQ(folder.fileSize("../Assets/" + two), 0U);
  files.hideSize(folder.directory() / two);
  EXPECT_EQ(folder.assetBytes(), 50U);
  EXPECT_EQ(folder.fileSize(two), 0U);
}

TEST_F(AssetFolderTest, IsEmptyWhenItCannotBeListed) {
  const AssetFolder missing(files, directory.path() / "none");
  EXPECT_EQ(missing.assetBytes(), 0U);
  missing.removeOrphans({});
}

TEST_F(AssetFolderTest, DeletesWhatIsItsOwnAndNobodyNames) {
  write(one, 1);
  write(two, 1);
  write(unfinished, 1);
  folder.removeOrphans({one, "missing"});
  EXPECT_EQ(count(), 1U);
  EXPECT_TRUE(folder.read(one));
}

TEST_F(AssetFolderTest, DeletesNothingThatIsCalledOtherwise) {
  const std::string id = one.substr(0, 36);
  const std::vector<std::string> others = {"holiday.jpg",
                                           ".DS_Store",
                                           id,
                                           id + ".txt",
                                           id + ".PNG",
                                           id + ".png.png",
                                           "x" + one,
                                           "." + one,
                                           ".png",
                                           "." + one + ".tmp",
                                           one + ".tmp",
                                           "." + one + ".holiday.tmp",
                                           "-" + unfinished.substr(1)};
  for (const std::string& name : others) write(name, 1);
  folder.removeOrphans({});
  for (const std::string& name : others) folder.remove(name);
  EXPECT_EQ(count(), others.size());
}

TEST_F(AssetFolderTest, IsEmptyWhileItIsALink) {
  write(one, 1);
  std::filesystem::create_directory_symlink(folder.directory(), directory.path() / "link");
  const AssetFolder link(files, directory.path() / "link");
  EXPECT_TRUE(link.isLink());
  EXPECT_FALSE(folder.isLink());
  EXPECT_EQ(link.read(one), std::nullopt);
  EXPECT_EQ(link.fileSize(one), 0U);
  EXPECT_EQ(link.assetBytes(), 0U);
  EXPECT_FALSE(link.seal(two, *SecureStorage::ephemeral(), bytesOf("x")));
  link.remove(one);
  link.removeOrphans({});
  EXPECT_EQ(count(), 1U);
}

TEST_F(AssetFolderTest, GoesOnWhenOneFileCannotBeDeleted) {
  std::filesystem::create_directory(folder.directory() / one);
  std::filesystem::create_directory(folder.directory() / one / "inner");
  write(two, 1);
  folder.removeOrphans({});
  EXPECT_EQ(folder.read(two), std::nullopt);
  EXPECT_TRUE(std::filesystem::exists(folder.directory() / one / "inner"));
}

TEST_F(AssetFolderTest, RefusesAFileOfAbsurdSize) {
  write("huge", 1);
  std::filesystem::resize_file(folder.directory() / "huge", std::uintmax_t{1} << 40U);
  EXPECT_EQ(folder.read("huge"), std::nullopt);
}

}  // namespace
}  // namespace vantorel
