// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThemeIcons.h"

#include <gtest/gtest.h>

#include "fakes/ManualDispatch.h"
#include "platform/qt/QtImageDecoder.h"
#include "ui/pictures/PictureSamples.h"
#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF008000;
constexpr std::uint32_t blue = 0xFF0000FF;

const std::string index =
    "[Icon Theme]\nDirectories=any\n[any]\nSize=64\nMinSize=8\nMaxSize=512\nType=Scalable\n";

/// What a completion was called with, and how often.
struct Answer {
  int count = 0;
  SharedBitmap picture;
  Icons::Completion completion() {
    return [this](const SharedBitmap& answer) {
      ++count;
      picture = answer;
    };
  }
};

class ThemeIconsTest : public ::testing::Test {
 protected:
  ThemeIconsTest() {
    files.write("icons/t/index.theme", index);
    files.write("icons/other/index.theme", index);
    icon("t", "editor", "red");
    icon("t", "application-pdf", "blue");
    icon("t", "text-x-generic", "green");
    icon("t", "folder", "red");
    addApplication("org.example.Editor", "editor");
    open();
  }
  void open() {
    icons = std::make_unique<ThemeIcons>(
        dispatch,
        ThemeIcons::Sources{files.system, decoder, themes, types,
                            std::make_shared<PosixFileSystem>(),
                            [this] { return std::make_shared<DesktopEntryIndex>(entries); }},
        ThemeIcons::Sides{32, 128});
  }
  void icon(const std::string& itsTheme, const std::string& name, const std::string& colour) {
    files.write("icons/" + itsTheme + "/any/" + name + ".svg", drawing(16, 16, colour));
  }
  void addApplication(const std::string& id, const std::string& iconName) {
    DesktopEntry entry;
    entry.id = id;
    entry.icon = iconName;
    entries.push_back(entry);
  }
  SharedBitmap application(const std::string& id) {
    Answer answer;
    icons->applicationIcon(id, answer.completion());
    dispatch.runQueued();
    EXPECT_EQ(answer.count, 1);
    return answer.picture;
  }
  SharedBitmap file(const std::filesystem::path& path) {
    Answer answer;
    icons->fileIcon(path, answer.completion());
    dispatch.runQueued();
    EXPECT_EQ(answer.count, 1);
    return answer.picture;
  }
  SharedBitmap type(const std::string& extension) {
    Answer answer;
    icons->typeIcon(extension, answer.completion());
    dispatch.runQueued();
    EXPECT_EQ(answer.count, 1);
    return answer.picture;
  }

  WrittenFiles files;
  QtImageDecoder decoder;
  ManualDispatch dispatch;
  std::vector<DesktopEntry> entries;
  std::string theme = "t";
  IconThemeSource themes{files.system, {{{files / "icons"}, {}}, {}}, [this] { return theme; }};
  MimeTypeDatabase types{{files / "mime"}};
  std::unique_ptr<ThemeIcons> icons;
};

TEST_F(ThemeIconsTest, AnApplicationsIconComesLaterTheFirstTimeAndAtOnceAfterwards) {
  Answer first;
  icons->applicationIcon("org.example.Editor", first.completion());
  EXPECT_EQ(first.count, 0);
  dispatch.runQueued();
  EXPECT_EQ(first.count, 1);
  EXPECT_EQ(middleOf(first.picture), red);
  EXPECT_EQ(sizeOf(first.picture), "32 x 32");

  Answer second;
  icons->applicationIcon("org.example.Editor", second.completion());
  EXPECT_EQ(second.count, 1);
  EXPECT_EQ(second.picture, first.picture) << "the very same";
}

TEST_F(ThemeIconsTest, AnApplicationThatIsNotInstalledHasNoneAtOnce) {
  Answer answer;
  icons->applicationIcon("org.example.Unheard", answer.completion());
  EXPECT_EQ(answer.count, 1);
  EXPECT_EQ(answer.picture, nullptr);
  addApplication("iconless", "");
  EXPECT_EQ(application("iconless"), nullptr);
}

TEST_F(ThemeIconsTest, AnApplicationWhoseIconIsMissingHasNone) {
  addApplication("lost", "no-such-icon");
  addApplication("evil", "../../secret");
  EXPECT_EQ(application("lost"), nullptr);
  EXPECT_EQ(application("evil"), nullptr);
  Answer again;
  icons->applicationIcon("lost", again.completion());
  EXPECT_EQ(again.count, 1) << "that there is none is known by now";
}

TEST_F(ThemeIconsTest, AnIconMayBeAFile) {
  addApplication("file", files.write("opt/logo.png", encodedPicture(256, 256, blue)).string());
  addApplication("broken", files.write("opt/broken.png", "no picture").string());
  addApplication("gone", "/nonexistent/logo.png");
  EXPECT_EQ(middleOf(application("file")), blue);
  EXPECT_EQ(sizeOf(application("file")), "32 x 32");
  EXPECT_EQ(application("broken"), nullptr);
  EXPECT_EQ(application("gone"), nullptr);
}

TEST_F(ThemeIconsTest, ManyQuestionsForOneIconAreAllAnswered) {
  std::vector<Answer> answers(5);
  for (auto& each : answers) icons->applicationIcon("org.example.Editor", each.completion());
  dispatch.runQueued();
  for (const auto& each : answers) {
    EXPECT_EQ(each.count, 1);
    EXPECT_EQ(each.picture, answers.front().picture);
  }
}

TEST_F(ThemeIconsTest, AFilesIconIsItsTypes) {
  EXPECT_EQ(middleOf(file(files.write("a.pdf"))), blue);
  EXPECT_EQ(sizeOf(file(files / "a.pdf")), "128 x 128");
  EXPECT_EQ(middleOf(file(files.write("a.unheard"))), green);
  EXPECT_EQ(middleOf(file("/nonexistent/a.pdf")), blue);
  std::filesystem::create_directories(files / "folder.pdf");
  EXPECT_EQ(middleOf(file(files / "folder.pdf")), red) << "a directory";
}

TEST_F(ThemeIconsTest, ATypesIconIsThatOfItsFiles) {
  EXPECT_EQ(middleOf(type("pdf")), blue);
  EXPECT_EQ(middleOf(type("PDF")), blue);
  EXPECT_EQ(middleOf(type("txt")), green);
  EXPECT_EQ(middleOf(type("unheard")), green);
  EXPECT_EQ(middleOf(type("")), green);
  EXPECT_EQ(type("pdf"), type("PDF"));
}

TEST_F(ThemeIconsTest, ATypesIconIsReadOnTheQueueTheFirstTimeAndThereAtOnceAfterwards) {
  Answer first;
  icons->typeIcon("pdf", first.completion());
  EXPECT_EQ(first.count, 0) << "the main thread reads no disk";
  dispatch.runQueued();
  EXPECT_EQ(first.count, 1);
  Answer second;
  icons->typeIcon("pdf", second.completion());
  EXPECT_EQ(second.count, 1);
  EXPECT_EQ(second.picture, first.picture);
}

TEST_F(ThemeIconsTest, ATypesIconFollowsAnotherTheme) {
  icon("other", "application-pdf", "red");
  EXPECT_EQ(middleOf(type("pdf")), blue);
  theme = "other";
  dispatch.advance(Seconds(6));
  (void)type("pdf");
  EXPECT_EQ(middleOf(type("pdf")), red);
}

TEST_F(ThemeIconsTest, ADesktopWithoutIconsHasNone) {
  std::filesystem::remove_all(files / "icons");
  EXPECT_EQ(type("pdf"), nullptr);
  EXPECT_EQ(file("/nonexistent/a.pdf"), nullptr);
  EXPECT_EQ(application("org.example.Editor"), nullptr);
}

TEST_F(ThemeIconsTest, FollowsAnotherThemeWithinSeconds) {
  icon("other", "editor", "blue");
  EXPECT_EQ(middleOf(application("org.example.Editor")), red);
  theme = "other";
  dispatch.advance(Seconds(4));
  EXPECT_EQ(middleOf(application("org.example.Editor")), red) << "not looked for that often";
  dispatch.advance(Seconds(2));
  (void)application("org.example.Editor");
  EXPECT_EQ(middleOf(application("org.example.Editor")), blue);
}

TEST_F(ThemeIconsTest, FollowsWhenTheClockWasSetBack) {
  icon("other", "editor", "blue");
  EXPECT_EQ(middleOf(application("org.example.Editor")), red);
  theme = "other";
  dispatch.setNow(advanced(dispatch.now(), Seconds(-1000)));
  (void)application("org.example.Editor");
  EXPECT_EQ(middleOf(application("org.example.Editor")), blue);
}

TEST_F(ThemeIconsTest, NobodyIsAnsweredAfterTheEnd) {
  Answer queued;
  icons->applicationIcon("org.example.Editor", queued.completion());
  icons.reset();
  dispatch.runQueued();
  EXPECT_EQ(queued.count, 0);

  open();
  Answer found;
  icons->applicationIcon("org.example.Editor", found.completion());
  // The themes are read, looked at again, and searched; the answer is on its way.
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(dispatch.runOne());
  ASSERT_EQ(dispatch.queuedCount(), 1U);
  icons.reset();
  dispatch.runQueued();
  EXPECT_EQ(found.count, 0);
}

TEST(ApplicationIconSide, IsEnoughForTheSharpestScreen) {
  EXPECT_EQ(applicationIconSide(1), 32);
  EXPECT_EQ(applicationIconSide(2), 32);
  EXPECT_EQ(applicationIconSide(3), 48);
  EXPECT_EQ(applicationIconSide(4), 64);
  EXPECT_EQ(applicationIconSide(7), 96);
}

}  // namespace
}  // namespace vantorel
