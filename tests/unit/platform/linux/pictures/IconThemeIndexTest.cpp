// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemeIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using ::testing::ElementsAre;

IconDirectory directory(IconSizing sizing, int size, int scale = 1, int minimum = 0,
                        int maximum = 0) {
  IconDirectory result;
  result.path = "d";
  result.size = size;
  result.scale = scale;
  result.minimum = minimum == 0 ? size : minimum;
  result.maximum = maximum == 0 ? size : maximum;
  result.sizing = sizing;
  return result;
}

struct Case {
  IconDirectory directory;
  int size;
  int scale;
  bool meant;
  int apart;
};

TEST(IconThemeIndex, KnowsWhichSizesADirectoryIsFor) {
  using enum IconSizing;
  const std::vector<Case> cases = {
      {directory(fixed, 32), 32, 1, true, 0},
      {directory(fixed, 32), 33, 1, false, 1},
      {directory(fixed, 32), 16, 1, false, 16},
      {directory(fixed, 32), 16, 2, false, 0},
      {directory(fixed, 16, 2), 16, 2, true, 0},
      {directory(fixed, 16, 2), 32, 1, false, 0},
      {directory(fixed, 16, 2), 64, 1, false, 32},
      {directory(threshold, 32), 30, 1, true, 0},
      {directory(threshold, 32), 34, 1, true, 0},
      {directory(threshold, 32), 35, 1, false, 3},
      {directory(threshold, 32), 24, 1, false, 8},
      {directory(scalable, 64, 1, 8, 512), 8, 1, true, 0},
      {directory(scalable, 64, 1, 8, 512), 512, 1, true, 0},
      {directory(scalable, 64, 1, 8, 512), 7, 1, false, 1},
      {directory(scalable, 64, 1, 8, 512), 600, 1, false, 88},
      {directory(scalable, 64, 2, 8, 128), 64, 1, false, 0},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const auto& each = cases[i];
    EXPECT_EQ(isMeantFor(each.directory, each.size, each.scale), each.meant) << i;
    EXPECT_EQ(pixelsApart(each.directory, each.size, each.scale), each.apart) << i;
  }
}

TEST(IconThemeIndex, ReadsDirectoriesAndParents) {
  const auto index = parseIconThemeIndex(
      "[Icon Theme]\nName=Made Up\nInherits=first, second\nDirectories=16/apps,any/apps\n"
      "ScaledDirectories=16@2/apps\n"
      "[16/apps]\nSize=16\nType=Fixed\n[16@2/apps]\nSize=16\nScale=2\nThreshold=3\n"
      "[any/apps]\nSize=64\nMinSize=8\nMaxSize=256\nType=Scalable\n");
  ASSERT_TRUE(index);
  EXPECT_THAT(index->inherits, ElementsAre("first", "second"));
  IconDirectory sharp = directory(IconSizing::threshold, 16, 2);
  sharp.threshold = 3;
  IconDirectory fixed = directory(IconSizing::fixed, 16);
  IconDirectory scalable = directory(IconSizing::scalable, 64, 1, 8, 256);
  fixed.path = "16/apps";
  scalable.path = "any/apps";
  sharp.path = "16@2/apps";
  EXPECT_THAT(index->directories, ElementsAre(fixed, scalable, sharp));
}

TEST(IconThemeIndex, IsNoneWithoutItsHead) {
  EXPECT_FALSE(parseIconThemeIndex(""));
  EXPECT_FALSE(parseIconThemeIndex("[16/apps]\nSize=16\n"));
  EXPECT_FALSE(parseIconThemeIndex(std::string("\0\1[Icon", 7)));
}

TEST(IconThemeIndex, LeavesOutWhatIsNotItsOwn) {
  const auto index = parseIconThemeIndex(
      "[Icon Theme]\nInherits=../evil,/etc,.hidden,good\n"
      "Directories=../up,/etc,a/../../b,nameless,zero,negative,huge,words,good,good\n"
      "[../up]\nSize=16\n[/etc]\nSize=16\n[a/../../b]\nSize=16\n[zero]\nSize=0\n"
      "[negative]\nSize=-16\n[huge]\nSize=99999999999\n[words]\nSize=16px\n[good]\nSize=16\n");
  ASSERT_TRUE(index);
  EXPECT_THAT(index->inherits, ElementsAre("good"));
  ASSERT_EQ(index->directories.size(), 1U);
  EXPECT_EQ(index->directories[0].path, "good");
}

TEST(IconThemeIndex, ReadsOnlyAsMuchAsAThemeMayHave) {
  std::string names;
  std::string groups;
  for (int i = 0; i < 5000; ++i) {
    names += "d" + std::to_string(i) + ",";
    groups += "[d" + std::to_string(i) + "]\nSize=16\n";
  }
  const auto index = parseIconThemeIndex("[Icon Theme]\nInherits=" + names +
                                         "\nDirectories=" + names + "\n" + groups);
  ASSERT_TRUE(index);
  EXPECT_EQ(index->directories.size(), 2000U);
  EXPECT_EQ(index->inherits.size(), 16U);
}

}  // namespace
}  // namespace vantorel
