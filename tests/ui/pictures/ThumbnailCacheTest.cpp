// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/ThumbnailCache.h"

#include <gtest/gtest.h>

#include "platform/qt/QtImageDecoder.h"
#include "ui/pictures/PictureSamples.h"
#include "unit/platform/linux/pictures/WrittenFiles.h"

namespace vantorel {
namespace {

// The example in the freedesktop convention.
const std::string uri = "file:///home/jens/photos/me.png";
const std::string name = "c6ee772d9e49320e97ec29a7eb5b1697.png";
constexpr std::int64_t changeTime = 1'700'000'000;

class ThumbnailCacheTest : public ::testing::Test {
 protected:
  void add(const std::string& directory, int side, QRgb colour, const std::string& statedUri = uri,
           std::int64_t statedTime = changeTime) {
    files.write(
        directory + "/" + name,
        encodedPicture(side, side, colour, "png",
                       {{"Thumb::URI", statedUri}, {"Thumb::MTime", std::to_string(statedTime)}}));
  }
  SharedBitmap found(int pixels, ThumbnailFit fit = ThumbnailFit::largeEnough) {
    return ThumbnailCache(files.system, decoder, files.root())
        .find(uri, changeTime, {pixels, pixels}, fit);
  }

  WrittenFiles files;
  QtImageDecoder decoder;
};

TEST_F(ThumbnailCacheTest, FindsAThumbnailByTheHashOfTheUri) {
  EXPECT_FALSE(found(100));
  add("normal", 128, 0xFF112233);
  EXPECT_EQ(middleOf(found(100)), 0xFF112233);
}

TEST_F(ThumbnailCacheTest, TakesTheSizeThatFits) {
  add("normal", 128, 0xFF000001);
  add("large", 256, 0xFF000002);
  add("x-large", 512, 0xFF000003);
  EXPECT_EQ(middleOf(found(128)), 0xFF000001);
  EXPECT_EQ(middleOf(found(240)), 0xFF000002);
  EXPECT_EQ(sizeOf(found(240)), "240 x 240");
  EXPECT_EQ(middleOf(found(480)), 0xFF000003);
  EXPECT_FALSE(found(1000));
  EXPECT_EQ(middleOf(found(1000, ThumbnailFit::any)), 0xFF000003);
}

TEST_F(ThumbnailCacheTest, PassesOverWhatIsOfAnotherFileOrTime) {
  add("normal", 128, 0xFF000001, uri, changeTime - 1);
  add("large", 256, 0xFF000002, "file:///other");
  files.write("x-large/" + name, encodedPicture(512, 512, 0xFF000003));
  EXPECT_FALSE(found(100));
  add("xx-large", 1024, 0xFF000004);
  EXPECT_EQ(middleOf(found(100)), 0xFF000004);
}

TEST_F(ThumbnailCacheTest, PassesOverWhatIsDamaged) {
  add("normal", 128, 0xFF000001);
  const auto file = files / ("normal/" + name);
  std::filesystem::resize_file(file, 60);
  EXPECT_FALSE(found(100));
  files.write("normal/" + name, "no picture");
  EXPECT_FALSE(found(100));
  files.write("normal/" + name, std::string(9U << 20U, 'x'));
  EXPECT_FALSE(found(100));
}

TEST_F(ThumbnailCacheTest, MayBeNone) {
  EXPECT_FALSE(ThumbnailCache(files.system, decoder, {}).find(uri, 0, {1, 1}, ThumbnailFit::any));
}

}  // namespace
}  // namespace vantorel
