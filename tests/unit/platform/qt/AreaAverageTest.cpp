// SPDX-License-Identifier: MIT
#include "platform/qt/AreaAverage.h"

#include <gtest/gtest.h>

#include <QImage>
#include <vector>

#include "unit/platform/qt/AveragedPixels.h"
#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

std::vector<std::uint32_t> averaged(const QImage& image, PixelSize reduced, PixelBytes bytes) {
  const bool hasAlpha = bytes == PixelBytes::redGreenBlueAlpha;
  const QImage rows =
      image.convertToFormat(hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
  AreaAverage average({image.width(), image.height()}, reduced, bytes);
  for (int y = 0; y < rows.height(); ++y) average.addRow(rows.constScanLine(y));
  return average.takePixels();
}

TEST(ReducedSize, KeepsProportionsAndNeverGrows) {
  EXPECT_EQ(reducedSize({3840, 2160}, {286, 272}), (PixelSize{286, 161}));
  EXPECT_EQ(reducedSize({2160, 3840}, {286, 272}), (PixelSize{153, 272}));
  EXPECT_EQ(reducedSize({286, 272}, {286, 272}), (PixelSize{286, 272}));
  EXPECT_EQ(reducedSize({20, 10}, {286, 272}), (PixelSize{20, 10}));
  EXPECT_EQ(reducedSize({287, 1}, {286, 272}), (PixelSize{286, 1}));
  EXPECT_EQ(reducedSize({32'768, 32'768}, {286, 272}), (PixelSize{272, 272}));
}

TEST(ReducedSize, NoSideIsShorterThanAPixel) {
  EXPECT_EQ(reducedSize({1, 20'000}, {286, 272}), (PixelSize{1, 272}));
  EXPECT_EQ(reducedSize({20'000, 1}, {286, 272}), (PixelSize{286, 1}));
  EXPECT_EQ(reducedSize({300, 200}, {0, 0}), (PixelSize{1, 1}));
  EXPECT_EQ(reducedSize({300, 200}, {-5, 100}), (PixelSize{1, 1}));
}

TEST(AreaAverage, LeavesAPictureOfItsSizeAsItIs) {
  const QImage image = colourful(13, 7, Transparency::none);
  const auto pixels = averaged(image, {13, 7}, PixelBytes::redGreenBlue);
  for (int y = 0; y < 7; ++y) {
    for (int x = 0; x < 13; ++x) {
      EXPECT_EQ(pixels[static_cast<std::size_t>(y * 13 + x)], image.pixel(x, y));
    }
  }
}

TEST(AreaAverage, IsTheMeanOfEveryArea) {
  const PixelSize sizes[] = {{1, 1}, {2, 3}, {7, 5}, {50, 31}, {96, 60}, {97, 61}};
  for (const auto transparency : {Transparency::none, Transparency::some}) {
    const QImage image = colourful(97, 61, transparency);
    const auto bytes = transparency == Transparency::none ? PixelBytes::redGreenBlue
                                                          : PixelBytes::redGreenBlueAlpha;
    for (const PixelSize size : sizes) {
      EXPECT_EQ(farthestChannel(averaged(image, size, bytes), averagedPixels(image, size)), 0)
          << size.width << " x " << size.height;
    }
  }
}

TEST(AreaAverage, NeverOverflows) {
  const QImage line(32'768, 1, QImage::Format_RGB32);
  QImage white(line);
  white.fill(Qt::white);
  for (const auto bytes : {PixelBytes::redGreenBlue, PixelBytes::redGreenBlueAlpha}) {
    EXPECT_EQ(averaged(white, {1, 1}, bytes), std::vector<std::uint32_t>{0xFFFFFFFFU});
    QImage column(1, 32'768, QImage::Format_RGB32);
    column.fill(Qt::white);
    EXPECT_EQ(averaged(column, {1, 1}, bytes), std::vector<std::uint32_t>{0xFFFFFFFFU});
    EXPECT_EQ(averaged(column, {1, 32'767}, bytes),
              std::vector<std::uint32_t>(32'767, 0xFFFFFFFFU));
  }
}

TEST(AreaAverage, WhatIsTransparentHasNoColour) {
  QImage image(2, 1, QImage::Format_ARGB32);
  image.setPixel(0, 0, qRgba(255, 255, 255, 0));
  image.setPixel(1, 0, qRgba(200, 100, 0, 255));
  EXPECT_EQ(averaged(image, {1, 1}, PixelBytes::redGreenBlueAlpha),
            std::vector<std::uint32_t>{0x80643200U});
}

}  // namespace
}  // namespace vantorel
