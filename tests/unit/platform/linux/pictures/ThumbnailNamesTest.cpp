// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThumbnailNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantorel {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

std::vector<std::string> places(int pixels, ThumbnailFit fit) {
  std::vector<std::string> result;
  for (const auto& size : thumbnailSizes(pixels, fit)) result.emplace_back(size.directory);
  return result;
}

TEST(ThumbnailNames, SpellTheUriAsThoseWhoFillTheCache) {
  EXPECT_EQ(thumbnailUri("/home/a/b.png"), "file:///home/a/b.png");
  EXPECT_EQ(thumbnailUri("/a !$&'()*+,-.:=@_~b"), "file:///a%20!$&'()*+,-.:=@_~b");
  EXPECT_EQ(thumbnailUri("/\"#%;<>?[\\]^`{|}"),
            "file:///%22%23%25%3B%3C%3E%3F%5B%5C%5D%5E%60%7B%7C%7D");
  EXPECT_EQ(thumbnailUri("/\xD7\x90\n\xFF"), "file:///%D7%90%0A%FF");
}

TEST(ThumbnailNames, LookForTheSmallestThatIsLargeEnough) {
  using enum ThumbnailFit;
  EXPECT_THAT(places(128, largeEnough), ElementsAre("normal", "large", "x-large", "xx-large"));
  EXPECT_THAT(places(240, largeEnough), ElementsAre("large", "x-large", "xx-large"));
  EXPECT_THAT(places(480, largeEnough), ElementsAre("x-large", "xx-large"));
  EXPECT_THAT(places(480, any), ElementsAre("x-large", "xx-large", "large", "normal"));
  EXPECT_THAT(places(2000, largeEnough), ElementsAre());
  EXPECT_THAT(places(2000, any), ElementsAre("xx-large", "x-large", "large", "normal"));
}

TEST(ThumbnailNames, AThumbnailCountsOnlyForTheFileAsItIs) {
  EXPECT_TRUE(isThumbnailOf({"file:///a", "1700000000"}, "file:///a", 1700000000));
  EXPECT_TRUE(isThumbnailOf({"file:///a", "1700000000.25"}, "file:///a", 1700000000));
  EXPECT_FALSE(isThumbnailOf({"file:///a", "1700000001"}, "file:///a", 1700000000));
  EXPECT_FALSE(isThumbnailOf({"file:///b", "1700000000"}, "file:///a", 1700000000));
  for (const auto* time : {"", "x", "1700000000x", "99999999999999999999", "-"}) {
    EXPECT_FALSE(isThumbnailOf({"file:///a", time}, "file:///a", 1700000000)) << time;
  }
  EXPECT_FALSE(isThumbnailOf({"", ""}, "", 0));
}

TEST(ThumbnailNames, KnowHowPicturesBegin) {
  for (const auto& start : {"\x89PNG\r\n\x1A\nxx"s, "\xFF\xD8\xFF\xE0"s, "GIF89a.."s,
                            "RIFF\1\2\3\4WEBPVP8 "s, "II*\0"s}) {
    EXPECT_TRUE(beginsLikePicture(bytesOf(start))) << start;
  }
  for (const auto& start : {""s, "RIFF\1\2\3\4WAVE"s, "RIFF"s, "%PDF"s, "<svg"s, "\x89PN"s}) {
    EXPECT_FALSE(beginsLikePicture(bytesOf(start))) << start;
  }
}

}  // namespace
}  // namespace vantorel
