// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

// It wants to know of files before.
#include <jpeglib.h>

#include "platform/qt/AreaAverage.h"
#include "platform/qt/QtImageDecoder.h"
#include "unit/platform/qt/AveragedPixels.h"
#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

constexpr PixelSize fitting{286, 272};

QImage filled(int width, int height, const QColor& color) {
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(color);
  return image;
}

/// Without edges, which the lossy formats would blur.
QImage smooth(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      image.setPixel(x, y, qRgb(x * 255 / width, y * 255 / height, (x + y) * 127 / width));
    }
  }
  return image;
}

/// A JPEG of one colour mixed from cyan, magenta, yellow and black, as printing programs write it.
Bytes jpegOfInks(unsigned width, unsigned height, const std::array<JSAMPLE, 4>& inks) {
  jpeg_compress_struct writer{};
  jpeg_error_mgr errors{};
  writer.err = jpeg_std_error(&errors);
  jpeg_create_compress(&writer);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&writer, &data, &size);
  writer.image_width = width;
  writer.image_height = height;
  writer.input_components = 4;
  writer.in_color_space = JCS_CMYK;
  jpeg_set_defaults(&writer);
  jpeg_set_quality(&writer, 100, TRUE);
  jpeg_start_compress(&writer, TRUE);
  std::vector<JSAMPLE> row;
  for (unsigned x = 0; x < width; ++x) row.insert(row.end(), inks.begin(), inks.end());
  for (unsigned y = 0; y < height; ++y) {
    JSAMPROW rows = row.data();
    jpeg_write_scanlines(&writer, &rows, 1);
  }
  jpeg_finish_compress(&writer);
  const auto view = std::as_bytes(std::span(data, size));
  Bytes jpeg(view.begin(), view.end());
  std::free(data);
  jpeg_destroy_compress(&writer);
  return jpeg;
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
    EXPECT_EQ(bitmap->pixelSize, (PixelSize{286, 161})) << format;
    EXPECT_EQ(bitmap->pixels.size(), 286U * 161U) << format;
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
  EXPECT_EQ(bitmap->pixelSize, (PixelSize{1, 272}));
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
  EXPECT_EQ(bitmap->pixelSize.height, 272);
  EXPECT_NEAR(bitmap->pixelSize.width, 153, 1);
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

TEST_F(ReducedImage, EveryFormatIsAveraged) {
  const QImage image = smooth(500, 300);
  for (const char* format : {"png", "bmp", "tiff", "webp", "jpg"}) {
    const auto bitmap = decoder_.bitmap(encoded(image, format, 100), fitting);
    ASSERT_NE(bitmap, nullptr) << format;
    EXPECT_EQ(bitmap->pixelSize, (PixelSize{286, 172})) << format;
    EXPECT_LE(farthestChannel(bitmap->pixels, averagedPixels(image, bitmap->pixelSize)), 8)
        << format;
  }
}

TEST_F(ReducedImage, AJpegLiesAsItsCameraSays) {
  QImage image = filled(400, 200, Qt::white);
  QPainter(&image).fillRect(0, 0, 200, 100, Qt::black);  // the top left as it is stored
  const Bytes jpeg = encoded(image, "jpg", 100);
  const auto isDark = [](const Bitmap& bitmap, double x, double y) {
    const auto column = static_cast<int>(x * bitmap.pixelSize.width);
    const auto row = static_cast<int>(y * bitmap.pixelSize.height);
    const auto place = static_cast<std::size_t>(row * bitmap.pixelSize.width + column);
    return (bitmap.pixels.at(place) & 0xFFU) < 128;
  };
  struct Lying {
    char orientation;
    double x;
    double y;
  };
  for (const auto& [orientation, x, y] :
       {Lying{1, .25, .25}, Lying{2, .75, .25}, Lying{3, .75, .75}, Lying{4, .25, .75},
        Lying{5, .25, .25}, Lying{6, .75, .25}, Lying{7, .75, .75}, Lying{8, .25, .75}}) {
    const auto bitmap = decoder_.bitmap(withOrientation(jpeg, orientation), {100, 100});
    ASSERT_NE(bitmap, nullptr);
    const bool stands = orientation > 4;
    EXPECT_EQ(bitmap->size, (stands ? Size{200, 400} : Size{400, 200})) << int{orientation};
    EXPECT_EQ(bitmap->pixelSize, (stands ? PixelSize{50, 100} : PixelSize{100, 50}))
        << int{orientation};
    for (const double otherX : {.25, .75}) {
      for (const double otherY : {.25, .75}) {
        EXPECT_EQ(isDark(*bitmap, otherX, otherY), otherX == x && otherY == y)
            << int{orientation} << ": " << otherX << ", " << otherY;
      }
    }
  }
}

TEST_F(ReducedImage, FourInksAreShownAsColours) {
  // Printers' files are written upside down: 255 is no ink.
  const auto white = decoder_.bitmap(jpegOfInks(64, 64, {255, 255, 255, 255}), fitting);
  ASSERT_NE(white, nullptr);
  EXPECT_EQ(white->pixels.front(), 0xFFFFFFFFU);
  const auto red = decoder_.bitmap(jpegOfInks(640, 480, {255, 0, 0, 255}), fitting);
  ASSERT_NE(red, nullptr);
  EXPECT_EQ(red->pixelSize, (PixelSize{286, 215}));
  EXPECT_LE(farthestChannel({red->pixels.front()}, {0xFFFF0000U}), 4);
}

TEST_F(ReducedImage, AGreyJpegIsGrey) {
  const QImage image =
      filled(600, 400, QColor(90, 90, 90)).convertToFormat(QImage::Format_Grayscale8);
  const auto bitmap = decoder_.bitmap(encoded(image, "jpg", 100), fitting);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_LE(farthestChannel({bitmap->pixels.front()}, {0xFF5A5A5AU}), 2);
}

TEST_F(ReducedImage, ThinPicturesOfEveryFormatAreTaken) {
  for (const char* format : {"png", "jpg", "bmp", "tiff"}) {
    for (const QSize size : {QSize(1, 20'000), QSize(20'000, 1), QSize(1, 1)}) {
      const auto bitmap =
          decoder_.bitmap(encoded(filled(size.width(), size.height(), Qt::blue), format), fitting);
      ASSERT_NE(bitmap, nullptr) << format;
      EXPECT_EQ(bitmap->pixelSize, reducedSize({size.width(), size.height()}, fitting)) << format;
      EXPECT_LE(farthestChannel({bitmap->pixels.back()}, {0xFF0000FFU}), 2) << format;
    }
  }
}

TEST_F(ReducedImage, AnyRoomIsEnoughForAPixel) {
  for (const PixelSize room : {PixelSize{0, 0}, PixelSize{-1, 5}, PixelSize{1, 1}}) {
    for (const char* format : {"png", "jpg", "bmp"}) {
      const auto bitmap = decoder_.bitmap(encoded(filled(30, 20, Qt::red), format), room);
      ASSERT_NE(bitmap, nullptr) << format;
      EXPECT_EQ(bitmap->pixelSize, (PixelSize{1, 1})) << format;
    }
  }
}

TEST_F(ReducedImage, NoTruncationIsAPicture) {
  for (const char* format : {"png", "jpg"}) {
    const Bytes whole = encoded(colourful(64, 64, Transparency::none), format);
    for (std::size_t length = 0; length < whole.size(); length += 31) {
      EXPECT_EQ(decoder_.bitmap(ByteView(whole).first(length), fitting), nullptr)
          << format << ' ' << length;
    }
  }
}

TEST_F(ReducedImage, AClaimOfTooManyPixelsIsRefused) {
  Bytes bitmap = encoded(colourful(8, 8, Transparency::none), "bmp");
  bitmap[18 + 2] = std::byte{0x10};  // a million pixels wide
  EXPECT_EQ(decoder_.bitmap(bitmap, fitting), nullptr);
  Bytes jpeg = encoded(colourful(8, 8, Transparency::none), "jpg");
  const auto frame = textOf(jpeg).find("\xFF\xC0");
  ASSERT_NE(frame, std::string_view::npos);
  for (const std::size_t i : {5, 6, 7, 8}) jpeg[frame + i] = std::byte{0xFF};
  EXPECT_EQ(decoder_.bitmap(jpeg, fitting), nullptr);
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
