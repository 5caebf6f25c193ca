// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <map>
#include <stdexcept>

namespace vantorel {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DesktopEntriesTest : public ::testing::Test {
 protected:
  DesktopEntriesTest() {
    std::string pattern = (fs::temp_directory_path() / "desktop-entries-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary directory");
    root_ = pattern;
  }
  ~DesktopEntriesTest() override {
    std::error_code error;
    fs::remove_all(root_, error);
  }

  void write(const std::string& path, const std::string& text) {
    fs::create_directories((root_ / path).parent_path());
    std::ofstream(root_ / path, std::ios::binary) << text;
  }
  void install(const std::string& path, const std::string& name, const std::string& more = {}) {
    write(path, "[Desktop Entry]\nType=Application\nName=" + name + "\n" + more);
  }
  /// Sets the directory's time apart from every earlier one, however coarse the clock is.
  void touch(const std::string& path) {
    time_ += std::chrono::seconds(10);
    fs::last_write_time(root_ / path, time_);
  }
  DesktopEntries entries() { return DesktopEntries({{root_ / "home", root_ / "system"}, {"he"}}); }

  fs::path root_;

 private:
  fs::file_time_type time_ = fs::file_time_type::clock::now();
};

TEST_F(DesktopEntriesTest, AreNoneBeforeTheFirstReading) {
  install("home/a.desktop", "A");
  EXPECT_THAT(entries().index()->entries(), IsEmpty());
}

TEST_F(DesktopEntriesTest, MissingDirectoriesHoldNothing) {
  auto subject = entries();
  EXPECT_TRUE(subject.refresh());
  EXPECT_THAT(subject.index()->entries(), IsEmpty());
}

TEST_F(DesktopEntriesTest, SubdirectoriesAreJoinedByHyphens) {
  install("system/kde/tools/clock.desktop", "Clock");
  auto subject = entries();
  (void)subject.refresh();
  ASSERT_NE(subject.index()->byId("kde-tools-clock"), nullptr);
  EXPECT_EQ(subject.index()->byId("kde-tools-clock")->name, "Clock");
}

TEST_F(DesktopEntriesTest, TheUsersEntryComesBeforeTheSystems) {
  install("system/a.desktop", "System");
  install("home/a.desktop", "Own");
  auto subject = entries();
  (void)subject.refresh();
  EXPECT_EQ(subject.index()->byId("a")->name, "Own");
  EXPECT_EQ(subject.index()->entries().size(), 1U);
}

TEST_F(DesktopEntriesTest, AHiddenEntryRemovesTheSystems) {
  install("system/a.desktop", "System");
  install("home/a.desktop", "Own", "Hidden=true\n");
  auto subject = entries();
  (void)subject.refresh();
  EXPECT_EQ(subject.index()->byId("a"), nullptr);
}

TEST_F(DesktopEntriesTest, ADamagedEntryLeavesTheSystemsInPlace) {
  install("system/a.desktop", "System");
  write("home/a.desktop", std::string("\0\1\2[Desktop", 11));
  auto subject = entries();
  (void)subject.refresh();
  EXPECT_EQ(subject.index()->byId("a")->name, "System");
}

TEST_F(DesktopEntriesTest, ReadsAgainOnlyWhenADirectoryChanged) {
  install("home/a.desktop", "A");
  install("home/sub/b.desktop", "B");
  auto subject = entries();
  EXPECT_TRUE(subject.refresh());
  const auto before = subject.index();
  EXPECT_FALSE(subject.refresh());
  EXPECT_EQ(subject.index(), before);

  install("home/sub/c.desktop", "C");
  touch("home/sub");
  EXPECT_TRUE(subject.refresh());
  ASSERT_NE(subject.index()->byId("sub-c"), nullptr);
  EXPECT_EQ(before->byId("sub-c"), nullptr) << "an index in use never changes";
}

TEST_F(DesktopEntriesTest, NoticesADirectoryThatAppears) {
  auto subject = entries();
  EXPECT_TRUE(subject.refresh());
  EXPECT_FALSE(subject.refresh());
  install("system/a.desktop", "A");
  EXPECT_TRUE(subject.refresh());
  EXPECT_NE(subject.index()->byId("a"), nullptr);
}

TEST_F(DesktopEntriesTest, PassesOverAGiantFile) {
  install("home/giant.desktop", "Giant", std::string(std::size_t{2} << 20U, '#'));
  install("home/a.desktop", "A");
  auto subject = entries();
  (void)subject.refresh();
  EXPECT_EQ(subject.index()->byId("giant"), nullptr);
  EXPECT_NE(subject.index()->byId("a"), nullptr);
}

TEST_F(DesktopEntriesTest, DoesNotWaitForAPipe) {
  install("home/a.desktop", "A");
  ASSERT_EQ(::mkfifo((root_ / "home/pipe.desktop").c_str(), 0600), 0);
  auto subject = entries();
  (void)subject.refresh();
  EXPECT_EQ(subject.index()->entries().size(), 1U);
}

TEST_F(DesktopEntriesTest, SurvivesLinksInCircles) {
  install("home/sub/a.desktop", "A");
  fs::create_directory_symlink(root_ / "home", root_ / "home/sub/up");
  fs::create_symlink("self.desktop", root_ / "home/self.desktop");
  fs::create_directory_symlink("loop", root_ / "home/loop");
  auto subject = entries();
  (void)subject.refresh();
  EXPECT_EQ(subject.index()->entries().size(), 1U);
}

TEST_F(DesktopEntriesTest, SurvivesADirectoryCalledLikeAnEntry) {
  install("home/odd.desktop/a.desktop", "A");
  auto subject = entries();
  (void)subject.refresh();
  EXPECT_THAT(subject.index()->entries(), IsEmpty());
}

EnvironmentLookup environment(std::map<std::string, std::string> values) {
  return [values = std::move(values)](const char* name) -> std::optional<std::string> {
    const auto found = values.find(name);
    if (found == values.end()) return std::nullopt;
    return found->second;
  };
}

TEST(DesktopEntryPlaces, FollowTheEnvironment) {
  const auto places = DesktopEntryPlaces::fromEnvironment(environment(
      {{"XDG_DATA_HOME", "/own"}, {"XDG_DATA_DIRS", "/a:relative::/b"}, {"LANG", "de_AT.UTF-8"}}));
  EXPECT_THAT(places.directories,
              ElementsAre("/own/applications", "/a/applications", "/b/applications"));
  EXPECT_THAT(places.locales, ElementsAre("de_AT", "de"));
}

TEST(DesktopEntryPlaces, HaveDefaults) {
  const auto places = DesktopEntryPlaces::fromEnvironment(environment({{"HOME", "/me"}}));
  EXPECT_THAT(places.directories,
              ElementsAre("/me/.local/share/applications", "/usr/local/share/applications",
                          "/usr/share/applications"));
  EXPECT_THAT(places.locales, IsEmpty());
}

TEST(DesktopEntryPlaces, TakeTheLocaleOfMessages) {
  EXPECT_THAT(DesktopEntryPlaces::fromEnvironment(
                  environment({{"LC_ALL", ""}, {"LC_MESSAGES", "he_IL"}, {"LANG", "fr_FR"}}))
                  .locales,
              ElementsAre("he_IL", "he"));
  EXPECT_THAT(DesktopEntryPlaces::fromEnvironment(
                  environment({{"LC_ALL", "C"}, {"LANG", "fr_FR"}, {"LANGUAGE", "he"}}))
                  .locales,
              IsEmpty());
  EXPECT_THAT(
      DesktopEntryPlaces::fromEnvironment(environment({{"LANG", "fr_FR"}, {"LANGUAGE", "he:de"}}))
          .locales,
      ElementsAre("he", "de", "fr_FR", "fr"));
}

}  // namespace
}  // namespace vantorel
