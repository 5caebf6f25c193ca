// SPDX-License-Identifier: MIT
#include "platform/qt/PngTexts.h"

#include <gtest/gtest.h>

#include <QImage>
#include <map>
#include <string>

#include "unit/platform/qt/ImageSamples.h"
#include "unit/platform/qt/PngChunks.h"

namespace vantorel {
namespace {

using namespace std::string_literals;
using Texts = std::map<std::string, std::string>;

/// A PNG of these chunks, without pixels.
Bytes withChunks(const std::string& chunks) {
  return copied(png::signature + png::ihdr({}) + chunks + png::chunk("IEND", ""));
}

// zlib's form of "packed".
const std::string packed = "\x78\x9C\x2B\x48\x4C\xCE\x4E\x4D\x01\x00\x08\x86\x02\x69"s;

TEST(PngTexts, WhatAToolkitWroteIsRead) {
  QImage image(64, 64, QImage::Format_RGB32);
  image.fill(Qt::red);
  const std::string longText(200, 'x');
  image.setText("Thumb::URI", "a: b");
  image.setText("Long", QString::fromStdString(longText));
  image.setText("Words", QString::fromUtf8("\u05E9\u05DC\u05D5\u05DD"));
  const auto texts = textsOfPng(encoded(image, "png"));
  EXPECT_EQ(
      texts,
      (Texts{{"Thumb::URI", "a: b"}, {"Long", longText}, {"Words", "\u05E9\u05DC\u05D5\u05DD"}}));
}

TEST(PngTexts, EachFormOfThemIsRead) {
  EXPECT_EQ(textsOfPng(withChunks(png::chunk("tEXt", "name\0caf\xE9"s))),
            (Texts{{"name", "caf\u00E9"}}));
  EXPECT_EQ(textsOfPng(withChunks(png::chunk("zTXt", "name\0\0"s + packed))),
            (Texts{{"name", "packed"}}));
  EXPECT_EQ(textsOfPng(withChunks(png::chunk("iTXt", "name\0\0\0he\0other\0caf\u00E9"s))),
            (Texts{{"name", "caf\u00E9"}}));
  EXPECT_EQ(textsOfPng(withChunks(png::chunk("iTXt", "name\0\1\0\0\0"s + packed))),
            (Texts{{"name", "packed"}}));
}

TEST(PngTexts, TheFirstOfAnyNameCounts) {
  EXPECT_EQ(
      textsOfPng(withChunks(png::chunk("tEXt", "name\0one"s) + png::chunk("tEXt", "name\0two"s) +
                            png::chunk("tEXt", "other\0"s))),
      (Texts{{"name", "one"}, {"other", ""}}));
}

TEST(PngTexts, ThoseThatAreDamagedArePassedOver) {
  const auto sound = png::chunk("tEXt", "name\0one"s);
  for (const auto& bad :
       {png::chunk("tEXt", "no end of the name"), png::chunk("zTXt", "z\0"s),
        png::chunk("zTXt", "z\0\1"s + packed), png::chunk("zTXt", "z\0\0"s + packed.substr(0, 9)),
        png::chunk("iTXt", "i\0"s), png::chunk("iTXt", "i\0\0\1\0\0text"s),
        png::chunk("iTXt", "i\0\0\0he"s), png::chunk("iTXt", "i\0\1\0\0\0text"s)})
    EXPECT_EQ(textsOfPng(withChunks(bad + sound)), (Texts{{"name", "one"}})) << bad;
}

TEST(PngTexts, NoneIsLongerThanANameMayBe) {
  constexpr std::size_t most = 65'536;
  const auto of = [](std::size_t length) {
    return textsOfPng(withChunks(png::chunk("tEXt", "n\0"s + std::string(length - 2, 'x')))).size();
  };
  EXPECT_EQ(of(most), 1U);
  EXPECT_EQ(of(most + 1), 0U);
}

TEST(PngTexts, ThereAreNoneInWhatIsNoPng) {
  EXPECT_EQ(textsOfPng(copied("no picture")), Texts());
  EXPECT_EQ(textsOfPng({}), Texts());
  const auto whole = withChunks(png::chunk("tEXt", "name\0one"s));
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_EQ(textsOfPng(ByteView(whole).first(length)), Texts()) << length;
  auto changed = whole;
  changed[50] ^= std::byte{1};
  EXPECT_EQ(textsOfPng(changed), Texts());
}

}  // namespace
}  // namespace vantorel
