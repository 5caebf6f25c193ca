// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemeSource.h"

#include <gtest/gtest.h>

#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

const std::string index = "[Icon Theme]\nDirectories=32\n[32]\nSize=32\n";

class IconThemeSourceTest : public ::testing::Test {
 protected:
  IconThemeSourceTest() {
    files.write("icons/one/index.theme", index);
    files.write("icons/two/index.theme", index);
    files.write("icons/two/32/a.png");
  }
  bool hasIcon() { return source.themes()->find({"a"}, 32).has_value(); }

  WrittenFiles files;
  std::string managersWord = "one";
  IconThemeSource source{
      files.system, {{{files / "icons"}, {}}, {files / "config"}}, [this] { return managersWord; }};
};

TEST_F(IconThemeSourceTest, IsReadAgainWhenAnotherThemeIsChosen) {
  EXPECT_FALSE(hasIcon());
  EXPECT_FALSE(source.refresh()) << "nothing has changed";
  managersWord = "two";
  EXPECT_FALSE(hasIcon());
  EXPECT_TRUE(source.refresh());
  EXPECT_TRUE(hasIcon());
  EXPECT_FALSE(source.refresh());
}

TEST_F(IconThemeSourceTest, IsReadAgainWhenTheThemeChanges) {
  EXPECT_FALSE(hasIcon());
  files.write("icons/one/index.theme", "[Icon Theme]\nInherits=two\n");
  files.touch("icons/one");
  EXPECT_TRUE(source.refresh());
  EXPECT_TRUE(hasIcon());
}

TEST_F(IconThemeSourceTest, IsReadAgainWhenTheThemeIsInstalledLater) {
  managersWord = "three";
  EXPECT_FALSE(hasIcon());
  files.write("icons/three/index.theme", index);
  files.write("icons/three/32/a.png");
  files.touch("icons");
  EXPECT_TRUE(source.refresh());
  EXPECT_TRUE(hasIcon());
}

TEST_F(IconThemeSourceTest, WhatWasHandedOutStaysAsItIs) {
  const auto before = source.themes();
  managersWord = "two";
  EXPECT_TRUE(source.refresh());
  EXPECT_FALSE(before->find({"a"}, 32));
}

TEST_F(IconThemeSourceTest, NothingIsReadBeforeItIsNeeded) {
  managersWord = "two";
  EXPECT_FALSE(source.refresh());
  EXPECT_TRUE(hasIcon());
}

}  // namespace
}  // namespace vantorel
