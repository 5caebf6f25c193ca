// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThumbnailerEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using ::testing::ElementsAre;

std::string entryWith(const std::string& exec) {
  return "[Thumbnailer Entry]\nTryExec=tool\nExec=" + exec + "\nMimeType=video/mp4; video/ogg;;\n";
}

std::vector<std::string> filledIn(const std::string& exec) {
  const auto entry = parseThumbnailer(entryWith(exec));
  if (!entry) return {"(none)"};
  return thumbnailerCommand(*entry, {"/a b/$(x).mp4", "file:///a%20b", "/out/t.png", 240});
}

TEST(ThumbnailerEntry, SaysWhichProgramServesWhichTypes) {
  const auto entry = parseThumbnailer(entryWith("tool -i %i -o %o"));
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->tryExec, "tool");
  EXPECT_THAT(entry->types, ElementsAre("video/mp4", "video/ogg"));
}

TEST(ThumbnailerEntry, FillsInTheCommandWithoutAnyShell) {
  EXPECT_THAT(filledIn("tool -s %s %u %o"),
              ElementsAre("tool", "-s", "240", "file:///a%20b", "/out/t.png"));
  EXPECT_THAT(filledIn("tool --in=%i \"--out=%o\" 100%% %x%"),
              ElementsAre("tool", "--in=/a b/$(x).mp4", "--out=/out/t.png", "100%", "%"));
  EXPECT_THAT(filledIn("\"/opt/my tool\" %i %o; rm -rf"),
              ElementsAre("/opt/my tool", "/a b/$(x).mp4", "/out/t.png;", "rm", "-rf"));
}

TEST(ThumbnailerEntry, MustTakeAFileAndSayWhereThePictureGoes) {
  EXPECT_EQ(filledIn("tool %i").front(), "(none)");
  EXPECT_EQ(filledIn("tool %o").front(), "(none)");
  EXPECT_EQ(filledIn("").front(), "(none)");
  EXPECT_FALSE(parseThumbnailer("[Desktop Entry]\nExec=tool %i %o\n"));
  EXPECT_FALSE(parseThumbnailer("\xFF\xFE"));
}

TEST(ThumbnailerEntry, HasAsManyWordsAsAnybodyNeedsAndNoMore) {
  std::string words = "tool %i %o";
  for (int i = 3; i < 64; ++i) words += " x";
  EXPECT_EQ(filledIn(words).size(), 64U);
  EXPECT_EQ(filledIn(words + " x").front(), "(none)");
}

}  // namespace
}  // namespace vantorel
