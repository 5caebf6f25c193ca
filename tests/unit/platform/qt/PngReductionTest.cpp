// SPDX-License-Identifier: MIT
#include "platform/qt/PngReduction.h"

#include <gtest/gtest.h>
#include <png.h>

#include <QImage>
#include <string>
#include <vector>

#include "unit/platform/qt/AveragedPixels.h"
#include "unit/platform/qt/ImageSamples.h"
#include "unit/platform/qt/PngChunks.h"

namespace vantorel {
namespace {

using namespace std::string_literals;

constexpr PixelSize fitting{40, 40};

/// In seven passes, as the toolkit does not write it.
Bytes interlaced(const QImage& image) {
  Bytes written;
  png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(writer);
  png_set_write_fn(
      writer, &written,
      [](png_structp source, png_bytep data, std::size_t length) {
        auto& bytes = *static_cast<Bytes*>(png_get_io_ptr(source));
        const auto view = std::as_bytes(std::span(data, length));
        bytes.insert(bytes.end(), view.begin(), view.end());
      },
      nullptr);
  QImage rows = image.convertToFormat(QImage::Format_RGBA8888);
  png_set_IHDR(writer, info, static_cast<png_uint_32>(rows.width()),
               static_cast<png_uint_32>(rows.height()), 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_ADAM7,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(writer, info);
  std::vector<png_bytep> lines;
  for (int y = 0; y < rows.height(); ++y) lines.push_back(rows.scanLine(y));
  png_write_image(writer, lines.data());
  png_write_end(writer, info);
  png_destroy_write_struct(&writer, &info);
  return written;
}

/// What the reduction of the encoded picture differs by, at most, from the mean of every area.
int differenceOf(const Bytes& png, const QImage& image) {
  const auto bitmap = reducedPng(png, fitting);
  if (!bitmap) return 256;
  EXPECT_EQ(bitmap->size,
            (Size{static_cast<double>(image.width()), static_cast<double>(image.height())}));
  return farthestChannel(bitmap->pixels, averagedPixels(image, bitmap->pixelSize));
}

class EveryPngFormat : public testing::TestWithParam<QImage::Format> {};

TEST_P(EveryPngFormat, IsAveraged) {
  const QImage image = colourful(131, 77, Transparency::some).convertToFormat(GetParam());
  // Sixteen bits a channel are averaged as eight.
  EXPECT_LE(differenceOf(encoded(image, "png"), image), 1);
}

INSTANTIATE_TEST_SUITE_P(PngReduction, EveryPngFormat,
                         testing::Values(QImage::Format_Mono, QImage::Format_Indexed8,
                                         QImage::Format_RGB32, QImage::Format_ARGB32,

                                         QImage::Format_Grayscale8, QImage::Format_Grayscale16,
                                         QImage::Format_RGBX64, QImage::Format_RGBA64));

TEST(PngReduction, TakesTransparentColoursOfAPalette) {
  QImage image(100, 100, QImage::Format_Indexed8);
  image.setColorTable({qRgba(255, 0, 0, 255), qRgba(0, 255, 0, 0), qRgba(0, 0, 255, 128)});
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 100; ++x) image.setPixel(x, y, static_cast<uint>(x * y % 3));
  }
  EXPECT_EQ(differenceOf(encoded(image, "png"), image), 0);
}

TEST(PngReduction, ReadsWhatComesInPasses) {
  const QImage image = colourful(131, 77, Transparency::some);
  EXPECT_LE(differenceOf(interlaced(image), image), 3);
  const QImage small = colourful(31, 17, Transparency::none);
  EXPECT_EQ(differenceOf(interlaced(small), small), 0);
}

TEST(PngReduction, TakesExtremeShapes) {
  for (const QSize size : {QSize(1, 20'000), QSize(20'000, 1), QSize(1, 1), QSize(32'768, 3)}) {
    const QImage image = colourful(size.width(), size.height(), Transparency::none);
    EXPECT_EQ(differenceOf(encoded(image, "png"), image), 0) << size.width();
  }
}

TEST(PngReduction, RefusesTruncations) {
  const Bytes whole = encoded(colourful(50, 50, Transparency::some), "png");
  for (std::size_t length = 0; length < whole.size(); length += 7) {
    EXPECT_EQ(reducedPng(ByteView(whole).first(length), fitting), nullptr) << length;
  }
}

TEST(PngReduction, RefusesChangedBytes) {
  const Bytes whole = encoded(colourful(20, 20, Transparency::some), "png");
  for (std::size_t i = 0; i < whole.size(); i += 3) {
    Bytes changed = whole;
    changed[i] ^= std::byte{0x10};
    EXPECT_EQ(reducedPng(changed, fitting), nullptr) << i;
  }
}

/// A PNG of that size with these compressed pixels.
Bytes withPixels(std::uint32_t width, std::uint32_t height, const std::string& pixels) {
  png::Header header;
  header.width = width;
  header.height = height;
  return copied(png::signature + png::ihdr(header) + png::chunk("IDAT", pixels) +
                png::chunk("IEND", ""));
}

TEST(PngReduction, RefusesPixelsThatAreDamagedBeneathTheirChecksum) {
  const std::string stored = "\x78\x01\x01\x0E\x00\xF1\xFF"s;  // fourteen bytes as they are
  const std::string rows = "\x00\x01\x02\x03\x01\x02\x03\x00\x01\x02\x03\x01\x02\x03"s;
  const std::string checksum = "\x00\xAE\x00\x19"s;
  const auto sound = reducedPng(withPixels(2, 2, stored + rows + checksum), fitting);
  ASSERT_NE(sound, nullptr);
  EXPECT_EQ(sound->pixels, std::vector<std::uint32_t>(4, 0xFF010203U));
  const auto refused = [](std::uint32_t height, const std::string& pixels) {
    return reducedPng(withPixels(2, height, pixels), fitting) == nullptr;
  };
  EXPECT_TRUE(refused(3, stored + rows + checksum));
  EXPECT_TRUE(refused(2, stored + rows.substr(0, 9)));
  EXPECT_TRUE(refused(2, stored + "\x09"s + rows.substr(1) + checksum));  // no such filter
  const std::string wrongLength = "\x78\x01\x01\x0E\x00\xF1\xF0"s;
  EXPECT_TRUE(refused(2, wrongLength + rows + checksum));
}

TEST(PngReduction, RefusesWhatClaimsTooManyPixels) {
  const std::string pixels = "\x78\x01\x63"s + std::string(2'000'000, 'x');
  for (const auto& [width, height] :
       {std::pair(0U, 5U), {5U, 0U}, {32'769U, 1U}, {20'000U, 20'000U}, {0xFFFFFFFFU, 1U}}) {
    EXPECT_EQ(reducedPng(withPixels(width, height, pixels), fitting), nullptr) << width;
  }
}

TEST(PngReduction, TakesWhatUnpacksToManyTimesItsSize) {
  QImage image(8000, 8000, QImage::Format_Grayscale8);
  image.fill(Qt::white);
  const Bytes png = encoded(image, "png", 0);
  ASSERT_LT(png.size(), 200'000U);
  const auto bitmap = reducedPng(png, fitting);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(bitmap->pixels, std::vector<std::uint32_t>(1600, 0xFFFFFFFFU));
}

}  // namespace
}  // namespace vantorel
