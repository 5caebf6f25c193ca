// SPDX-License-Identifier: MIT
#include "platform/qt/QtImage.h"

#include <gtest/gtest.h>

#include <QImageReader>
#include <string>
#include <thread>
#include <vector>

#include "platform/qt/PngStructure.h"
#include "platform/qt/QtImageDecoder.h"
#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

using namespace std::string_literals;

std::shared_ptr<const Image> decode(Bytes bytes) {
  return QtImageDecoder().decode(shared(std::move(bytes)));
}

QImage pixelsOf(const std::shared_ptr<const Bytes>& data) {
  if (!data) return {};
  return QImage::fromData(reinterpret_cast<const uchar*>(data->data()),
                          static_cast<int>(data->size()));
}

TEST(Decoder, KeepsThePngItWasGiven) {
  const auto png = shared(encoded(colourful(37, 21, Transparency::some), "png"));
  const auto image = QtImageDecoder().decode(png);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->size(), (Size{37, 21}));
  EXPECT_EQ(image->pngData(), png);
}

TEST(Decoder, ReadsEveryFormatThatClipboardsOffer) {
  const auto pixels = colourful(60, 40, Transparency::none);
  for (const auto* format : {"bmp", "tiff", "webp", "jpg", "png"}) {
    const auto image = decode(encoded(pixels, format, 100));
    ASSERT_TRUE(image) << format;
    EXPECT_EQ(image->size(), (Size{60, 40})) << format;
    EXPECT_EQ(pixelsOf(image->pngData()).size(), pixels.size()) << format;
  }
}

TEST(Decoder, ReadsAGif) {
  const auto gif =
      "GIF89a\x01\0\x01\0\x80\0\0\xFF\0\0\0\0\0,\0\0\0\0\x01\0\x01\0\0\x02\x02"s + "\x44\x01\0;"s;
  const auto image = decode(copied(gif));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->size(), (Size{1, 1}));
  EXPECT_EQ(pixelsOf(image->pngData()).pixel(0, 0), qRgb(255, 0, 0));
}

TEST(Decoder, LosesNothingOfWhatWasLossless) {
  for (const auto transparency : {Transparency::none, Transparency::some}) {
    const auto tiff = shared(encoded(colourful(60, 40, transparency), "tiff"));
    const auto image = QtImageDecoder().decode(tiff);
    ASSERT_TRUE(image);
    const auto png = image->pngData();
    ASSERT_TRUE(png && checkedPng(*png));
    EXPECT_EQ(pixelsOf(png).convertToFormat(QImage::Format_ARGB32),
              pixelsOf(tiff).convertToFormat(QImage::Format_ARGB32));
  }
}

TEST(Decoder, RefusesWhatIsNoImage) {
  EXPECT_EQ(QtImageDecoder().decode(nullptr), nullptr);
  for (const auto& text : {""s, "plain text"s, "\x89PNG\r\n\x1A\n"s, "\xFF\xD8\xFF"s, "BM"s,
                           "GIF89a"s, "<svg xmlns='http://www.w3.org/2000/svg' width='9'/>"s,
                           "#define x_width 1\n#define x_height 1\nstatic char x_bits[] = {0};"s,
                           "/* XPM */\nstatic char* x[] = {\"1 1 1 1\", \"a c red\", \"a\"};"s}) {
    EXPECT_EQ(decode(copied(text)), nullptr) << text;
  }
}

TEST(Decoder, RefusesDamagedPngAndJpegWithoutDecodingThem) {
  const auto pixels = colourful(64, 64, Transparency::none);
  auto png = encoded(pixels, "png");
  png[png.size() / 2] ^= std::byte{1};
  EXPECT_EQ(decode(png), nullptr);
  auto jpeg = encoded(pixels, "jpg");
  jpeg.resize(jpeg.size() / 2);
  EXPECT_EQ(decode(jpeg), nullptr);
}

TEST(Decoder, TakesLongThinPictures) {
  for (const auto* format : {"png", "jpg", "bmp"}) {
    QImage strip(1, 20000, QImage::Format_RGB32);
    strip.fill(Qt::red);
    const auto image = decode(encoded(strip, format));
    ASSERT_TRUE(image) << format;
    EXPECT_EQ(image->size(), (Size{1, 20000}));
    EXPECT_EQ(pixelsOf(image->pngData()).size(), strip.size());
  }
}

TEST(Decoder, RefusesABitmapThatClaimsTooMuch) {
  auto bitmap = encoded(colourful(8, 8, Transparency::none), "bmp");
  bitmap[18 + 2] = std::byte{0x10};  // a million pixels wide
  EXPECT_EQ(decode(bitmap), nullptr);
}

/// A bitmap of one bit to a pixel, so that its many pixels take little room.
Bytes sparse(int width, int height, const char* format) {
  QImage pixels(width, height, QImage::Format_Mono);
  pixels.fill(0);
  return encoded(pixels, format);
}

TEST(Decoder, RefusesManyPixelsOfUncommonFormats) {
  for (const auto* format : {"bmp", "tiff"}) {
    EXPECT_EQ(decode(sparse(8000, 5001, format)), nullptr) << format;
    EXPECT_NE(decode(sparse(8000, 100, format)), nullptr) << format;
    EXPECT_EQ(QtImageDecoder().bitmap(sparse(8000, 5001, format), {9, 9}), nullptr) << format;
  }
  EXPECT_NE(decode(sparse(8000, 5001, "png")), nullptr);
}

TEST(Decoder, RefusesWhatOtherPlugInsWouldRead) {
  const auto icns = "icns\0\0\0\x20is32\0\0\0\x18"s + std::string(16, '\0');
  const auto targa = "\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0\0\0\xFF"s;
  const auto wireless = "\0\0\x08\x01\xFF"s;
  const auto drawing =
      "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><rect width='9'/></svg>"s;
  const auto rows = "P6 1 1 255 abc"s;
  for (const auto& text : {icns, targa, wireless, drawing, rows}) {
    EXPECT_EQ(decode(copied(text)), nullptr) << text;
    EXPECT_EQ(QtImageDecoder().bitmap(copied(text), {9, 9}), nullptr) << text;
  }
}

TEST(Decoder, ReadsAnIcon) {
  const auto image = decode(encoded(colourful(32, 32, Transparency::none), "ico"));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->size(), (Size{32, 32}));
}

TEST(Jpeg, HasTheSizeThatAViewerSees) {
  const auto jpeg = encoded(colourful(60, 40, Transparency::none), "jpg");
  for (const char upright : {'\1', '\2', '\3', '\4'}) {
    EXPECT_EQ(decode(withOrientation(jpeg, upright))->size(), (Size{60, 40}));
  }
  for (const char lying : {'\5', '\6', '\7', '\10'}) {
    const auto image = decode(withOrientation(jpeg, lying));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (Size{40, 60}));
    EXPECT_EQ(pixelsOf(image->pngData()).size(), QSize(40, 60));
    EXPECT_EQ(pixelsOf(image->jpegData(0.9)).size(), QSize(40, 60));
  }
}

TEST(Jpeg, LaysTransparencyOverWhite) {
  QImage pixels(16, 16, QImage::Format_ARGB32);
  pixels.fill(Qt::transparent);
  const auto image = decode(encoded(pixels, "png"));
  const auto jpeg = pixelsOf(image->jpegData(0.86));
  ASSERT_EQ(jpeg.size(), pixels.size());
  EXPECT_GE(qGray(jpeg.pixel(8, 8)), 250);
}

TEST(Jpeg, FollowsTheCompressionFactor) {
  const auto image = decode(encoded(colourful(200, 150, Transparency::none), "png"));
  const auto smallest = image->jpegData(0);
  const auto usual = image->jpegData(0.86);
  const auto best = image->jpegData(1);
  ASSERT_TRUE(smallest && usual && best);
  EXPECT_LT(smallest->size(), usual->size());
  EXPECT_LT(usual->size(), best->size());
  EXPECT_EQ(*image->jpegData(7), *best);
  EXPECT_EQ(*image->jpegData(-1), *smallest);
}

TEST(QtImage, EncodesOnceForAllThreads) {
  const auto image = QtImage::fromPixels(colourful(300, 200, Transparency::none));
  std::vector<std::shared_ptr<const Bytes>> pngs(4);
  std::vector<std::thread> threads;
  threads.reserve(pngs.size());
  for (auto& png : pngs) threads.emplace_back([&] { png = image->pngData(); });
  for (auto& thread : threads) thread.join();
  ASSERT_TRUE(pngs[0]);
  for (const auto& png : pngs) EXPECT_EQ(png, pngs[0]);
  EXPECT_EQ(image->jpegData(0.86), image->jpegData(0.86));
}

TEST(QtImage, HasNoFormsWhenItsPixelsTurnOutDamaged) {
  const auto png = shared(encoded(colourful(64, 64, Transparency::none), "png"));
  auto broken = copied(textOf(*png));
  std::fill(broken.begin() + 60, broken.end() - 20, std::byte{0xFF});
  const auto image = QtImage::fromEncoded(shared(broken), {64, 64});
  EXPECT_EQ(image->pngData(), nullptr);
  EXPECT_EQ(image->jpegData(0.86), nullptr);
}

}  // namespace
}  // namespace vantorel
