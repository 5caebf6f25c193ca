// SPDX-License-Identifier: MIT
#include "platform/linux/pictures/PictureReading.h"

#include <gtest/gtest.h>

#include "platform/qt/QtImageDecoder.h"
#include "ui/QtWarnings.h"
#include "ui/pictures/PictureSamples.h"

namespace vantorel {
namespace {

const QtImageDecoder decoder;
constexpr QRgb red = 0xFFFF0000;

SharedBitmap icon(const std::string& text, int side) {
  return iconWithin(decoder, bytesOf(text), side);
}
SharedBitmap pixels(const std::string& text, PixelSize most) {
  return pixelsWithin(decoder, bytesOf(text), most);
}

TEST(PictureReading, PixelsAreMadeFewerButNeverMore) {
  const auto wide = encodedPicture(400, 100, red);
  EXPECT_EQ(sizeOf(pixels(wide, {100, 100})), "100 x 25");
  EXPECT_EQ(sizeOf(pixels(wide, {1000, 50})), "200 x 50");
  EXPECT_EQ(sizeOf(pixels(wide, {1000, 1000})), "400 x 100");
  EXPECT_EQ(sizeOf(pixels(encodedPicture(1000, 1, red), {10, 10})), "10 x 1");
  EXPECT_EQ(middleOf(pixels(wide, {100, 100})), red);
  EXPECT_EQ(sizeOf(pixels(encodedPicture(400, 100, red, "jpg"), {100, 100})), "100 x 25");
}

TEST(PictureReading, APictureHasAPointForEachPixel) {
  const auto picture = pixels(encodedPicture(400, 100, red), {100, 100});
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->size, (Size{100, 25}));
  EXPECT_EQ(picture->pixels.size(), 2500U);
}

TEST(PictureReading, ColoursAreMultipliedByAlpha) {
  EXPECT_EQ(middleOf(pixels(encodedPicture(4, 4, qRgba(255, 0, 0, 128)), {4, 4})), 0x80800000);
  EXPECT_EQ(middleOf(pixels(encodedPicture(4, 4, qRgba(255, 0, 0, 0)), {4, 4})), 0U);
}

TEST(PictureReading, DrawingsAreDrawnForTheSizeAskedFor) {
  EXPECT_EQ(sizeOf(icon(drawing(16, 16, "red"), 128)), "128 x 128");
  EXPECT_EQ(sizeOf(icon(drawing(200, 100, "red"), 32)), "32 x 16");
  EXPECT_EQ(middleOf(icon(drawing(16, 16, "red"), 32)), red);
  EXPECT_EQ(sizeOf(icon(encodedPicture(48, 48, red), 32)), "32 x 32");
  EXPECT_EQ(sizeOf(icon(encodedPicture(16, 16, red), 32)), "16 x 16");
}

TEST(PictureReading, AMovingDrawingNeedsNoClock) {
  const auto moving =
      "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'><rect width='16' height='16' "
      "fill='red'><animateColor attributeName='fill' attributeType='XML' from='red' to='blue' "
      "begin='0s' dur='1s'/></rect></svg>";
  EXPECT_EQ(sizeOf(icon(moving, 32)), "32 x 32");
}

TEST(PictureReading, WhatIsNoPictureIsNone) {
  const auto good = encodedPicture(400, 400, 0xFF123456);
  for (const auto& bad :
       {std::string(), std::string("text"), std::string(100, '\0'), good.substr(0, 20)}) {
    EXPECT_EQ(sizeOf(icon(bad, 32)), "(none)") << bad.substr(0, 10);
    EXPECT_EQ(sizeOf(pixels(bad, {32, 32})), "(none)") << bad.substr(0, 10);
  }
  EXPECT_EQ(sizeOf(pixels(drawing(16, 16, "red"), {32, 32})), "(none)");
  for (const int side : {0, -1, 100'000}) EXPECT_EQ(sizeOf(icon(good, side)), "(none)");
}

TEST(PictureReading, ADamagedCompressedDrawingIsNone) {
  const ExpectedQtWarning warning("inflating");
  EXPECT_EQ(sizeOf(icon("\x1F\x8B broken", 32)), "(none)");
}

TEST(PictureReading, ADrawingWithoutASizeIsNone) {
  EXPECT_EQ(sizeOf(icon("<html><body/></html>", 32)), "(none)");
  EXPECT_EQ(sizeOf(icon("<svg xmlns='http://www.w3.org/2000/svg' width='0' height='0'/>", 32)),
            "(none)");
}

}  // namespace
}  // namespace vantorel
