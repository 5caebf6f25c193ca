// SPDX-License-Identifier: MIT
// The real decoders, in a process of their own, as the program uses them.
#include "platform/linux/decoding/ConfinedImageDecoder.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "platform/linux/confined/WorkerProgram.h"
#include "platform/qt/PngStructure.h"
#include "platform/qt/QtImageDecoder.h"
#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

using namespace std::string_literals;

constexpr std::array formats = {"png", "jpg", "bmp", "tiff", "webp", "ico"};

class ConfinedImages : public testing::Test {
 protected:
  static PictureWorker::Settings settings() {
    return {.program = workerProgram(pictureWorker), .pictureLimit = std::chrono::seconds(100)};
  }

  ConfinedImageDecoder decoder_{settings()};
  // The same without a wall between, to compare with.
  QtImageDecoder open_;
};

QImage pixelsOf(const std::shared_ptr<const Bytes>& data) {
  if (!data) return {};
  return QImage::fromData(reinterpret_cast<const uchar*>(data->data()),
                          static_cast<int>(data->size()));
}

TEST_F(ConfinedImages, EveryFormatIsShownAsWithoutWalls) {
  for (const auto* format : formats) {
    const auto bytes = encoded(colourful(200, 120, Transparency::some), format, 100);
    for (const PixelSize fitting : {PixelSize{50, 50}, PixelSize{900, 900}, PixelSize{0, -1}}) {
      const auto picture = decoder_.bitmap(bytes, fitting);
      ASSERT_TRUE(picture) << format;
      EXPECT_EQ(*picture, *open_.bitmap(bytes, fitting)) << format;
    }
  }
}

TEST_F(ConfinedImages, EveryFormatIsConvertedWithoutLoss) {
  for (const auto* format : formats) {
    const auto bytes = shared(encoded(colourful(200, 120, Transparency::some), format, 100));
    const auto image = decoder_.decode(bytes);
    ASSERT_TRUE(image) << format;
    const auto png = image->pngData();
    ASSERT_TRUE(png && checkedPng(*png)) << format;
    EXPECT_EQ(image->size(), open_.decode(bytes)->size()) << format;
    EXPECT_EQ(pixelsOf(png).convertToFormat(QImage::Format_ARGB32),
              pixelsOf(open_.decode(bytes)->pngData()).convertToFormat(QImage::Format_ARGB32))
        << format;
    EXPECT_EQ(image->pngData(), png) << "it is made once";
  }
}

// The toolkit divides what is large among threads.
TEST_F(ConfinedImages, LargePicturesAreMadeToo) {
  for (const auto* format : {"jpg", "bmp", "tiff"}) {
    const auto bytes = encoded(colourful(1200, 900, Transparency::none), format, 90);
    const auto picture = decoder_.bitmap(bytes, {300, 300});
    ASSERT_TRUE(picture) << format;
    EXPECT_EQ(*picture, *open_.bitmap(bytes, {300, 300})) << format;
    EXPECT_TRUE(decoder_.decode(shared(bytes))) << format;
  }
}

TEST_F(ConfinedImages, APngIsKeptAsItCame) {
  const auto png = shared(encoded(colourful(37, 21, Transparency::some), "png"));
  // Its structure is enough: nobody is asked.
  const ConfinedImageDecoder alone({.program = {}});
  const auto image = alone.decode(png);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->size(), (Size{37, 21}));
  EXPECT_EQ(image->pngData(), png);
}

TEST_F(ConfinedImages, AJpegIsMadeOfAnyFormat) {
  for (const auto* format : {"png", "jpg", "tiff"}) {
    const auto bytes = shared(encoded(colourful(90, 60, Transparency::some), format, 100));
    const auto image = decoder_.decode(bytes);
    ASSERT_TRUE(image) << format;
    const auto jpeg = image->jpegData(0.86);
    ASSERT_TRUE(jpeg) << format;
    EXPECT_EQ(pixelsOf(jpeg), pixelsOf(open_.decode(bytes)->jpegData(0.86))) << format;
    EXPECT_EQ(image->jpegData(0.86), jpeg) << "it is made once";
    EXPECT_LT(image->jpegData(-1)->size(), jpeg->size());
  }
}

TEST_F(ConfinedImages, AJpegIsAsLargeAsAViewerSeesIt) {
  const auto jpeg = encoded(colourful(60, 40, Transparency::none), "jpg");
  const ConfinedImageDecoder alone({.program = {}});
  for (char orientation = 1; orientation <= 8; ++orientation) {
    const auto image = alone.decode(shared(withOrientation(jpeg, orientation)));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), orientation > 4 ? (Size{40, 60}) : (Size{60, 40}));
  }
  const auto lying = decoder_.decode(shared(withOrientation(jpeg, 6)));
  EXPECT_EQ(pixelsOf(lying->pngData()).size(), QSize(40, 60));
}

TEST_F(ConfinedImages, WhatIsNoPictureIsNone) {
  EXPECT_EQ(decoder_.decode(nullptr), nullptr);
  for (const auto& text :
       {""s, "plain text"s, "\x89PNG\r\n\x1A\n"s, "\xFF\xD8\xFF"s, "BM"s, "GIF89a"s, "II*\0"s,
        "RIFF\1\2\3\4WEBPVP8 "s, "<svg xmlns='http://www.w3.org/2000/svg' width='9'/>"s}) {
    EXPECT_EQ(decoder_.decode(shared(copied(text))), nullptr) << text;
    EXPECT_EQ(decoder_.bitmap(copied(text), {9, 9}), nullptr) << text;
  }
}

TEST_F(ConfinedImages, ADamagedOneIsNoneAndTheNextIsMade) {
  for (const auto* format : formats) {
    auto bytes = encoded(colourful(64, 64, Transparency::none), format);
    bytes.resize(40);
    EXPECT_EQ(decoder_.bitmap(bytes, {9, 9}), nullptr) << format;
    EXPECT_EQ(decoder_.decode(shared(bytes)), nullptr) << format;
    EXPECT_TRUE(decoder_.bitmap(encoded(colourful(9, 9, Transparency::none), format), {9, 9}))
        << format;
  }
}

TEST_F(ConfinedImages, WhereNobodyDecodesNothingIsShownAndOtherFormatsAreNotTaken) {
  const ConfinedImageDecoder alone({.program = {}});
  for (const auto* format : formats) {
    const auto bytes = encoded(colourful(9, 9, Transparency::none), format);
    EXPECT_EQ(alone.bitmap(bytes, {9, 9}), nullptr) << format;
    const auto image = alone.decode(shared(bytes));
    EXPECT_EQ(image != nullptr, format == "png"s || format == "jpg"s) << format;
    if (image) {
      EXPECT_EQ(image->jpegData(0.86), nullptr);
    }
  }
}

TEST_F(ConfinedImages, AtTheEndNothingIsShownButWhatWasCopiedIsStillMade) {
  decoder_.stopShowing();
  const auto tiff = encoded(colourful(9, 9, Transparency::none), "tiff");
  EXPECT_EQ(decoder_.bitmap(tiff, {9, 9}), nullptr);
  EXPECT_TRUE(decoder_.decode(shared(tiff)));
}

TEST_F(ConfinedImages, AtTheVeryEndNothingIsMadeAnyMore) {
  const auto image = decoder_.decode(shared(encoded(colourful(9, 9, Transparency::none), "jpg")));
  ASSERT_TRUE(image);
  decoder_.stopConverting();
  EXPECT_EQ(image->pngData(), nullptr);
  EXPECT_FALSE(decoder_.decode(shared(encoded(colourful(9, 9, Transparency::none), "tiff"))));
}

}  // namespace
}  // namespace vantorel
