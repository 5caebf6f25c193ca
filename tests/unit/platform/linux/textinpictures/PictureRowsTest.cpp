// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/PictureRows.h"

#include <gtest/gtest.h>
#include <png.h>

#include <cstdio>

#include <jpeglib.h>  // needs what stands above it

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fakes/TestStore.h"

namespace vantorel {
namespace {

constexpr std::uint32_t white = 0xFFFFFF;

struct PngForm {
  int colourType = PNG_COLOR_TYPE_RGB;
  int bitDepth = 8;
  int interlace = PNG_INTERLACE_NONE;
};

void append(png_structp png, png_bytep data, std::size_t count) {
  auto& bytes = *static_cast<Bytes*>(png_get_io_ptr(png));
  const auto* first = reinterpret_cast<const std::byte*>(data);
  bytes.insert(bytes.end(), first, first + count);
}

/// A PNG whose rows all hold the samples of `pixel`.
Bytes png(std::uint32_t width, std::uint32_t height, const PngForm& form,
          const std::vector<std::uint8_t>& pixel) {
  Bytes bytes;
  png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(writer);
  png_set_write_fn(writer, &bytes, append, nullptr);
  png_set_IHDR(writer, info, width, height, form.bitDepth, form.colourType, form.interlace,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  std::array<png_color, 2> palette{png_color{10, 20, 30}, png_color{200, 100, 50}};
  std::array<png_byte, 2> transparency{255, 0};
  if (form.colourType == PNG_COLOR_TYPE_PALETTE) {
    png_set_PLTE(writer, info, palette.data(), 2);
    png_set_tRNS(writer, info, transparency.data(), 2, nullptr);
  }
  png_write_info(writer, info);
  std::vector<std::uint8_t> row;
  for (std::uint32_t x = 0; x < width; ++x) row.insert(row.end(), pixel.begin(), pixel.end());
  std::vector<png_bytep> rows(height, row.data());
  png_write_image(writer, rows.data());
  png_write_end(writer, nullptr);
  png_destroy_write_struct(&writer, &info);
  return bytes;
}

/// A JPEG of one colour.
Bytes jpeg(std::uint32_t width, std::uint32_t height, J_COLOR_SPACE space,
           const std::vector<std::uint8_t>& pixel) {
  jpeg_compress_struct writer{};
  jpeg_error_mgr errors{};
  writer.err = jpeg_std_error(&errors);
  jpeg_create_compress(&writer);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&writer, &data, &size);
  writer.image_width = width;
  writer.image_height = height;
  writer.input_components = static_cast<int>(pixel.size());
  writer.in_color_space = space;
  jpeg_set_defaults(&writer);
  jpeg_set_quality(&writer, 100, TRUE);
  jpeg_start_compress(&writer, TRUE);
  std::vector<std::uint8_t> row;
  for (std::uint32_t x = 0; x < width; ++x) row.insert(row.end(), pixel.begin(), pixel.end());
  unsigned char* first = row.data();
  while (writer.next_scanline < height) jpeg_write_scanlines(&writer, &first, 1);
  jpeg_finish_compress(&writer);
  const auto* bytes = reinterpret_cast<const std::byte*>(data);
  Bytes result(bytes, bytes + size);
  jpeg_destroy_compress(&writer);
  std::free(data);
  return result;
}

std::vector<std::uint32_t> pixelsOf(const Bytes& bytes) {
  const auto rows = openPicture(bytes);
  std::vector<std::uint32_t> pixels;
  if (!rows) return pixels;
  EXPECT_EQ(rows->read(rows->height() + 5, pixels), rows->height());
  EXPECT_EQ(pixels.size(), static_cast<std::size_t>(rows->width() * rows->height()));
  EXPECT_EQ(rows->read(1, pixels), 0);
  return pixels;
}

std::vector<std::uint32_t> sixOf(std::uint32_t colour) {
  return std::vector<std::uint32_t>(6, colour);
}

TEST(PngRows, AreTheColoursOfEveryForm) {
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_RGB}, {1, 2, 3})), sixOf(0x010203));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_GRAY}, {0x80})), sixOf(0x808080));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_PALETTE}, {0})), sixOf(0x0A141E));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_RGB, 16}, {0x12, 0, 0x34, 0, 0x56, 0})),
            sixOf(0x123456));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_RGB, 8, PNG_INTERLACE_ADAM7}, {1, 2, 3})),
            sixOf(0x010203));
}

TEST(PngRows, LieOverWhiteWhereTheyAreTransparent) {
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_RGBA}, {1, 2, 3, 0})), sixOf(white));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_RGBA}, {1, 2, 3, 255})), sixOf(0x010203));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_GRAY_ALPHA}, {0, 128})), sixOf(0x7F7F7F));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_PALETTE}, {1})), sixOf(white));
  EXPECT_EQ(pixelsOf(png(3, 2, {PNG_COLOR_TYPE_RGBA, 16}, {0, 0, 0, 0, 0, 0, 0, 0})), sixOf(white));
}

TEST(JpegRows, AreTheColoursOfEveryForm) {
  const auto near = [](std::uint32_t a, std::uint32_t b) {
    for (const unsigned shift : {0U, 8U, 16U}) {
      if (std::abs(static_cast<int>(a >> shift & 0xFFU) - static_cast<int>(b >> shift & 0xFFU)) > 3)
        return false;
    }
    return true;
  };
  const auto firstOf = [](const Bytes& bytes) {
    const auto pixels = pixelsOf(bytes);
    return pixels.empty() ? 0 : pixels.front();
  };
  EXPECT_PRED2(near, firstOf(jpeg(20, 20, JCS_RGB, {200, 100, 50})), 0xC86432);
  EXPECT_PRED2(near, firstOf(jpeg(20, 20, JCS_GRAYSCALE, {77})), 0x4D4D4D);
  // The writer marks it as that maker does: the samples are what is left of the light.
  EXPECT_PRED2(near, firstOf(jpeg(20, 20, JCS_CMYK, {255, 128, 64, 255})), 0xFF8040);
  EXPECT_PRED2(near, firstOf(jpeg(20, 20, JCS_CMYK, {255, 255, 255, 0})), 0x000000);
}

TEST(PictureRows, ComeAFewAtATime) {
  const Bytes bytes = png(3, 10, {}, {1, 2, 3});
  const auto rows = openPicture(bytes);
  ASSERT_TRUE(rows);
  std::vector<std::uint32_t> pixels;
  EXPECT_EQ(rows->read(4, pixels), 4);
  EXPECT_EQ(pixels.size(), 12U);
  EXPECT_EQ(rows->read(4, pixels), 4);
  EXPECT_EQ(rows->read(4, pixels), 2);
  EXPECT_EQ(pixels.size(), 30U);
}

TEST(PictureRows, OtherBytesAreNoPicture) {
  EXPECT_FALSE(openPicture({}));
  EXPECT_FALSE(openPicture(toBytes("not a picture")));
  EXPECT_FALSE(openPicture(toBytes("GIF89a\x01")));
  EXPECT_FALSE(openPicture(toBytes("\x89PNG\r\n\x1A\n")));
  EXPECT_FALSE(openPicture(toBytes("\xFF\xD8\xFF\xE0")));
  EXPECT_FALSE(openPicture(toBytes("\xFF\xD8")));
}

TEST(PictureRows, EndWhereThePictureIsCut) {
  for (const Bytes& whole : {png(50, 50, {}, {1, 2, 3}), png(50, 50, {2, 8, 1}, {1, 2, 3}),
                             jpeg(200, 200, JCS_RGB, {200, 100, 50})}) {
    for (std::size_t size = 0; size < whole.size(); size += 7) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const auto rows = openPicture(cut);
      if (!rows) continue;
      std::vector<std::uint32_t> pixels;
      const int got = rows->read(rows->height(), pixels);
      EXPECT_EQ(pixels.size(), static_cast<std::size_t>(got * rows->width()));
      EXPECT_EQ(rows->read(1, pixels), 0);
    }
  }
}

TEST(PictureRows, SurviveDamageAnywhere) {
  for (const Bytes& whole : {png(20, 20, {}, {1, 2, 3}), png(20, 20, {3, 8, 1}, {1}),
                             jpeg(40, 40, JCS_CMYK, {200, 100, 50, 0})}) {
    for (std::size_t at = 0; at < whole.size(); ++at) {
      Bytes damaged = whole;
      damaged[at] ^= std::byte{0x5A};
      if (const auto rows = openPicture(damaged)) {
        std::vector<std::uint32_t> pixels;
        (void)rows->read(100, pixels);
      }
    }
  }
}

TEST(PictureRows, AreNotReadFromWhatClaimsToBeTooLarge) {
  EXPECT_TRUE(isReadableSize(16'000, 6'000));
  EXPECT_TRUE(isReadableSize(3'000, 32'768));
  EXPECT_FALSE(isReadableSize(0, 10));
  EXPECT_FALSE(isReadableSize(10, 0));
  EXPECT_FALSE(isReadableSize(40'000, 1));
  EXPECT_FALSE(isReadableSize(20'000, 20'000));
  EXPECT_FALSE(openPicture(png(40'000, 1, {}, {1, 2, 3})));
  // Interlaced, it would have to be held in memory whole.
  EXPECT_FALSE(openPicture(png(8'000, 6'000, {PNG_COLOR_TYPE_GRAY, 8, PNG_INTERLACE_ADAM7}, {1})));
}

}  // namespace
}  // namespace vantorel
