// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/IconThemes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class IconThemesTest : public ::testing::Test {
 protected:
  /// A theme with a directory of each of these sizes, called like the size.
  void theme(const std::string& name, const std::string& inherits, const std::vector<int>& sizes,
             const std::string& place = "system") {
    std::string head = "[Icon Theme]\nName=x\nInherits=" + inherits + "\nDirectories=";
    std::string groups;
    for (const int size : sizes) {
      head += std::to_string(size) + ",";
      groups += "[" + std::to_string(size) + "]\nSize=" + std::to_string(size) + "\nType=Fixed\n";
    }
    files.write(place + "/" + name + "/index.theme", head + "\n" + groups);
  }
  std::string found(const std::string& theme, const std::vector<std::string>& names, int pixels) {
    const IconThemes themes(files.system, places(), theme);
    const auto file = themes.find(names, pixels);
    return file ? file->lexically_relative(files.root()).string() : "(none)";
  }
  [[nodiscard]] IconPlaces places() const {
    return {{files / "home", files / "system"}, {files / "pixmaps"}};
  }

  WrittenFiles files;
};

TEST_F(IconThemesTest, TheExactSizeIsBest) {
  theme("t", "", {16, 32, 48});
  for (const auto* size : {"16", "32", "48"})
    files.write(std::string("system/t/") + size + "/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/t/32/a.png");
}

TEST_F(IconThemesTest, TheClosestSizeIsNextBest) {
  theme("t", "", {16, 24, 64, 256});
  for (const auto* size : {"16", "64", "256"})
    files.write(std::string("system/t/") + size + "/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/t/16/a.png");
  EXPECT_EQ(found("t", {"a"}, 48), "system/t/64/a.png");
  EXPECT_EQ(found("t", {"a"}, 40), "system/t/64/a.png") << "of two as far away the larger";
  EXPECT_EQ(found("t", {"a"}, 4000), "system/t/256/a.png");
}

TEST_F(IconThemesTest, PixelsBeforeDrawings) {
  theme("t", "", {32});
  files.write("system/t/32/a.svg");
  EXPECT_EQ(found("t", {"a"}, 32), "system/t/32/a.svg");
  files.write("system/t/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/t/32/a.png");
  EXPECT_EQ(found("t", {"b"}, 32), "(none)");
  files.write("system/t/32/b.xpm");
  EXPECT_EQ(found("t", {"b"}, 32), "(none)");
}

TEST_F(IconThemesTest, TheUsersPartOfAThemeComesFirst) {
  theme("t", "", {32});
  files.write("system/t/32/a.png");
  files.write("home/t/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "home/t/32/a.png") << "without an index of its own";
}

TEST_F(IconThemesTest, InheritsInOrderAndHicolorIsLast) {
  theme("t", "hicolor,first,second", {32});
  theme("first", "third", {32});
  theme("second", "", {32});
  theme("third", "", {32});
  theme("hicolor", "", {32});
  files.write("system/hicolor/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/hicolor/32/a.png");
  files.write("system/second/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/second/32/a.png");
  files.write("system/third/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/third/32/a.png") << "what the first rests on";
  files.write("system/first/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/first/32/a.png");
  files.write("system/t/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/t/32/a.png");
}

TEST_F(IconThemesTest, SurvivesThemesThatInheritFromEachOther) {
  theme("t", "other,t", {32});
  theme("other", "t,other", {32});
  files.write("system/other/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/other/32/a.png");
  EXPECT_EQ(found("t", {"b"}, 32), "(none)");
}

TEST_F(IconThemesTest, SurvivesAnEndlessLineOfParents) {
  for (int i = 0; i < 100; ++i) theme("t" + std::to_string(i), "t" + std::to_string(i + 1), {32});
  files.write("system/t5/32/a.png");
  files.write("system/t16/32/b.png");
  files.write("system/t17/32/c.png");
  EXPECT_EQ(found("t0", {"a"}, 32), "system/t5/32/a.png");
  EXPECT_EQ(found("t0", {"b"}, 32), "system/t16/32/b.png");
  EXPECT_EQ(found("t0", {"c"}, 32), "(none)");
}

TEST_F(IconThemesTest, SurvivesThemesWithMoreAndMoreParents) {
  const auto called = [](int number) { return "t" + std::to_string(number); };
  for (int i = 0; i < 40; ++i) {
    std::string parents;
    if (i % 10 == 0) {
      for (int parent = i + 1; parent <= i + 10; ++parent) parents += called(parent) + ",";
    }
    theme(called(i), parents, {32});
  }
  files.write("system/t31/32/a.png");
  files.write("system/t32/32/b.png");
  EXPECT_EQ(found("t0", {"a"}, 32), "system/t31/32/a.png") << "the last of 32 themes";
  EXPECT_EQ(found("t0", {"b"}, 32), "(none)");
}

TEST_F(IconThemesTest, AThemeThatIsNotInstalledLeavesHicolor) {
  theme("hicolor", "", {32});
  files.write("system/hicolor/32/a.png");
  files.write("system/broken/32/a.png");
  EXPECT_EQ(found("absent", {"a"}, 32), "system/hicolor/32/a.png");
  EXPECT_EQ(found("broken", {"a"}, 32), "system/hicolor/32/a.png") << "without an index";
  EXPECT_EQ(found("../system/hicolor", {"a"}, 32), "system/hicolor/32/a.png");
  EXPECT_EQ(found("", {"a"}, 32), "system/hicolor/32/a.png");
}

TEST_F(IconThemesTest, ACompleteThemeHelpsOutAtTheEnd) {
  theme("t", "", {32});
  theme("hicolor", "", {32});
  theme("Adwaita", "hicolor", {32});
  files.write("system/Adwaita/32/text-x-generic.png");
  EXPECT_EQ(found("t", {"text-plain", "text-x-generic"}, 32),
            "system/Adwaita/32/text-x-generic.png");
}

TEST_F(IconThemesTest, ThemesComeBeforeNames) {
  theme("t", "parent", {32});
  theme("parent", "", {32});
  files.write("system/t/32/package-x-generic.png");
  files.write("system/parent/32/application-zip.png");
  EXPECT_EQ(found("t", {"application-zip", "package-x-generic"}, 32),
            "system/t/32/package-x-generic.png");
  files.write("system/t/32/application-zip.png");
  EXPECT_EQ(found("t", {"application-zip", "package-x-generic"}, 32),
            "system/t/32/application-zip.png");
}

TEST_F(IconThemesTest, WhatLiesOutsideOfThemesComesLast) {
  theme("hicolor", "", {32});
  files.write("pixmaps/a.png");
  EXPECT_EQ(found("", {"a"}, 32), "pixmaps/a.png");
  files.write("system/hicolor/32/a.png");
  EXPECT_EQ(found("", {"a"}, 32), "system/hicolor/32/a.png");
}

TEST_F(IconThemesTest, OnlyFilesAreIcons) {
  theme("t", "", {32});
  std::filesystem::create_directories(files / "system/t/32/a.png");
  ASSERT_EQ(::mkfifo((files / "system/t/32/b.png").c_str(), 0600), 0);
  EXPECT_EQ(found("t", {"a"}, 32), "(none)");
  EXPECT_EQ(found("t", {"b"}, 32), "(none)");
}

TEST_F(IconThemesTest, APipeInThePlaceOfAnIndexIsNone) {
  std::filesystem::create_directories(files / "system/t/32");
  ASSERT_EQ(::mkfifo((files / "system/t/index.theme").c_str(), 0600), 0);
  files.write("system/t/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "(none)");
}

TEST_F(IconThemesTest, AGiantIndexIsNone) {
  theme("t", "", {32});
  files.write("system/t/32/a.png");
  EXPECT_EQ(found("t", {"a"}, 32), "system/t/32/a.png");
  files.write("system/t/index.theme",
              "[Icon Theme]\nDirectories=32\n[32]\nSize=32\n" + std::string(2U << 20U, '#'));
  EXPECT_EQ(found("t", {"a"}, 32), "(none)");
}

TEST(IconNames, MayCarryASuffixButNoPath) {
  EXPECT_THAT(iconNamesOf("editor"), ElementsAre("editor"));
  EXPECT_THAT(iconNamesOf("editor.png"), ElementsAre("editor.png", "editor"));
  EXPECT_THAT(iconNamesOf("org.example.Editor"), ElementsAre("org.example.Editor"));
  for (const auto* none : {"", "../editor", "a/b", ".hidden"}) {
    EXPECT_THAT(iconNamesOf(none), IsEmpty()) << none;
  }
  EXPECT_THAT(iconNamesOf(std::string(5000, 'a')), IsEmpty());
}

}  // namespace
}  // namespace vantorel
