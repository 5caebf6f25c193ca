#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

#include "platform/qt/QtImageDecoder.h"
#include "ui/qt/ImageSamples.h"

namespace vantorel {
namespace {

constexpr PixelSize fitting{286, 270};

QImage filled(int width, int height, const QColor& color) {
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(color);
  return image;
}

class ReducedImage : public testing::Test {
 protected:
  QtImageDecoder decoder_;
};

TEST_F(ReducedImage, FitsWithItsProportionsAndKeepsItsSize) {
  for (const char* format : {"png", "jpg", "bmp"}) {
    const auto bitmap = decoder_.bitmap(encoded(filled(1600, 900, Qt::red), format), fitting);
    ASSERT_NE(bitmap, nullptr) << format;
    EXPECT_EQ(bitmap->size, (Size{1600, 900})) << format;
    EXPECT_EQ(bitmap->pixelSize, (PixelSize{286, 160})) << format;
    EXPECT_EQ(bitmap->pixels.size(), 286U * 160U) << format;
  }
}

TEST_F(ReducedImage, IsNeverScaledUp) {
  const auto bitmap = decoder_.bitmap(encoded(filled(20, 10, Qt::red), "png"), fitting);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(bitmap->pixelSize, (PixelSize{20, 10}));
  EXPECT_EQ(bitmap->pixels.front(), 0xFFFF0000U);
}

TEST_F(ReducedImage, ALineKeepsAtLeastOnePixel) {
  const auto bitmap = decoder_.bitmap(encoded(filled(1, 20'000, Qt::blue), "png"), fitting);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(bitmap->size, (Size{1, 20'000}));
  EXPECT_EQ(bitmap->pixelSize, (PixelSize{1, 270}));
}

TEST_F(ReducedImage, ColoursAreMultipliedByAlpha) {
  const auto bitmap =
      decoder_.bitmap(encoded(filled(4, 4, QColor(255, 255, 255, 128)), "png"), fitting);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(bitmap->pixels.front(), 0x80808080U);
}

TEST_F(ReducedImage, WhatIsTransparentDoesNotColourWhatIsNot) {
  QImage image = filled(1000, 1000, QColor(0, 255, 0, 0));  // green where nothing is seen
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  for (int x = 0; x < 1000; x += 2) painter.fillRect(x, 0, 1, 1000, Qt::red);
  painter.end();
  const auto bitmap = decoder_.bitmap(encoded(image, "png"), {100, 100});
  ASSERT_NE(bitmap, nullptr);
  const auto middle = bitmap->pixels[50 * 100 + 50];
  EXPECT_NEAR(static_cast<int>(middle >> 24U), 128, 16);
  EXPECT_EQ((middle >> 8U) & 0xFFU, 0U);
}

TEST_F(ReducedImage, FineDetailIsMixedRatherThanPicked) {
  QImage image = filled(1000, 1000, Qt::white);
  QPainter painter(&image);
  for (int x = 0; x < 1000; x += 2) painter.fillRect(x, 0, 1, 1000, Qt::black);
  painter.end();
  const auto bitmap = decoder_.bitmap(encoded(image, "png"), {100, 100});
  ASSERT_NE(bitmap, nullptr);
  EXPECT_NEAR(static_cast<int>(bitmap->pixels[50 * 100 + 50] & 0xFFU), 128, 16);
}

TEST_F(ReducedImage, APhotographLyingOnItsSideStandsUp) {
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  QImageWriter writer(&buffer, "jpg");
  writer.setTransformation(QImageIOHandler::TransformationRotate90);
  ASSERT_TRUE(writer.write(filled(1600, 900, Qt::red)));
  const auto view =
      std::as_bytes(std::span(data.constData(), static_cast<std::size_t>(data.size())));
  const auto bitmap = decoder_.bitmap(view, fitting);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(bitmap->size, (Size{900, 1600}));
  EXPECT_EQ(bitmap->pixelSize.height, 270);
  EXPECT_NEAR(bitmap->pixelSize.width, 152, 1);
}

TEST_F(ReducedImage, SixteenBitsGreyAndPalettesAreDrawnToo) {
  for (const auto format : {QImage::Format_Grayscale8, QImage::Format_Grayscale16,
                            QImage::Format_Indexed8, QImage::Format_RGBA64}) {
    const QImage image = filled(600, 400, Qt::white).convertToFormat(format);
    const auto bitmap = decoder_.bitmap(encoded(image, "png"), fitting);
    ASSERT_NE(bitmap, nullptr) << format;
    EXPECT_EQ(bitmap->pixels.front(), 0xFFFFFFFFU) << format;
  }
}

TEST_F(ReducedImage, WhatIsNoPictureIsNone) {
  Bytes cut = encoded(filled(300, 300, Qt::red), "png");
  cut.resize(60);
  EXPECT_EQ(decoder_.bitmap(cut, fitting), nullptr);
  EXPECT_EQ(decoder_.bitmap({}, fitting), nullptr);
  const std::string_view drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
  EXPECT_EQ(decoder_.bitmap(bytesOf(drawing), fitting), nullptr);
}

}  // namespace
}  // namespace vantorel
