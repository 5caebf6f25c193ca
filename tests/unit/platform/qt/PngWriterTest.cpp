// SPDX-License-Identifier: MIT
#include "platform/qt/PngWriter.h"

#include <gtest/gtest.h>

#include <QColorSpace>

#include "platform/qt/PngStructure.h"
#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

QImage readBack(const std::shared_ptr<const Bytes>& png) {
  if (!png || !checkedPng(*png)) return {};
  return QImage::fromData(reinterpret_cast<const uchar*>(png->data()),
                          static_cast<int>(png->size()), "png");
}

TEST(PngWriter, LosesNoPixel) {
  for (const auto transparency : {Transparency::none, Transparency::some}) {
    for (const auto& [width, height] :
         {std::pair{1, 1}, {1, 500}, {500, 1}, {31, 33}, {64, 32}, {100, 65}, {333, 222}}) {
      const auto pixels = colourful(width, height, transparency);
      EXPECT_EQ(readBack(encodedPng(pixels)).convertToFormat(pixels.format()), pixels)
          << width << "x" << height;
    }
  }
}

TEST(PngWriter, LosesNoPixelOfAFlatPicture) {
  QImage pixels(300, 200, QImage::Format_RGB32);
  pixels.fill(QColor(200, 210, 220));
  for (int x = 20; x < 280; x += 9) pixels.setPixel(x, 100, qRgb(10, 20, 30));
  const auto png = encodedPng(pixels);
  EXPECT_EQ(readBack(png).convertToFormat(QImage::Format_RGB32), pixels);
  EXPECT_LT(png->size(), 4000U);
}

TEST(PngWriter, TakesEveryPixelFormat) {
  const auto source = colourful(40, 30, Transparency::none);
  for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                            QImage::Format_RGB16, QImage::Format_RGB888, QImage::Format_BGR888,
                            QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888}) {
    const auto pixels = source.convertToFormat(static_cast<QImage::Format>(format));
    EXPECT_EQ(readBack(encodedPng(pixels)).convertToFormat(QImage::Format_ARGB32),
              pixels.convertToFormat(QImage::Format_ARGB32))
        << format;
  }
}

TEST(PngWriter, KeepsMoreThanEightBits) {
  QImage pixels(20, 10, QImage::Format_RGBA64);
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 20; ++x) {
      pixels.setPixelColor(x, y,
                           QColor::fromRgba64(static_cast<quint16>(x * 3001 + 1),
                                              static_cast<quint16>(y * 6007 + 3), 77, 65535));
    }
  }
  EXPECT_EQ(readBack(encodedPng(pixels)).convertToFormat(QImage::Format_RGBA64), pixels);
}

TEST(PngWriter, KeepsAColourSpaceOfItsOwn) {
  auto pixels = colourful(20, 10, Transparency::none);
  pixels.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
  const auto back = readBack(encodedPng(pixels));
  EXPECT_EQ(back.colorSpace().primaries(), QColorSpace::Primaries::AdobeRgb);
}

TEST(PngWriter, HasNothingToWriteWithoutPixels) { EXPECT_EQ(encodedPng(QImage()), nullptr); }

}  // namespace
}  // namespace vantorel
