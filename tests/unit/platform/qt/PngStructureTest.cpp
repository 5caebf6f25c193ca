// SPDX-License-Identifier: MIT
#include "platform/qt/PngStructure.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

#include "unit/platform/qt/ImageSamples.h"
#include "unit/platform/qt/PngChunks.h"

namespace vantorel {
namespace {

using namespace std::string_literals;

using png::chunk;
using png::Header;
using png::ihdr;
using png::number;

const std::string deflated = "\x78\x01\x63\x60\x60\x60\x60\x60\x60\x60";
const std::string idat = chunk("IDAT", deflated);
const std::string iend = chunk("IEND", "");
const std::string plte = chunk("PLTE", "abcdef");

bool passes(const std::string& chunks) {
  return checkedPng(copied(png::signature + chunks)).has_value();
}

TEST(PngStructure, TakesWhatEncodersWrite) {
  for (const auto transparency : {Transparency::none, Transparency::some}) {
    EXPECT_EQ(checkedPng(encoded(colourful(37, 21, transparency), "png")), (EncodedSize{37, 21}));
  }
  const auto indexed = colourful(9, 5, Transparency::none).convertToFormat(QImage::Format_Indexed8);
  EXPECT_EQ(checkedPng(encoded(indexed, "png")), (EncodedSize{9, 5}));
  EXPECT_EQ(checkedPng(encoded(QImage(1, 20000, QImage::Format_Mono), "png")),
            (EncodedSize{1, 20000}));
}

TEST(PngStructure, IsReadFromAMinimalFile) {
  EXPECT_TRUE(passes(ihdr({}) + idat + iend));
  EXPECT_TRUE(passes(ihdr({}) + chunk("gAMA", "1234") + idat + idat + chunk("tEXt", "x") + iend));
  EXPECT_TRUE(passes(ihdr({}) + idat + iend + "and something behind"));
}

TEST(PngStructure, RefusesEveryTruncation) {
  const auto png = encoded(colourful(16, 16, Transparency::some), "png");
  for (std::size_t size = 0; size < png.size(); ++size) {
    ASSERT_FALSE(checkedPng(ByteView(png).first(size))) << size;
  }
}

TEST(PngStructure, RefusesEveryChangedByte) {
  const auto png = encoded(colourful(16, 16, Transparency::some), "png");
  for (std::size_t i = 0; i < png.size(); ++i) {
    auto changed = png;
    changed[i] ^= std::byte{0x20};
    ASSERT_FALSE(checkedPng(changed)) << i;
  }
}

TEST(PngStructure, RefusesSizesThatNobodyWillHold) {
  for (const auto& [width, height] : {std::pair{0U, 5U},
                                      {5U, 0U},
                                      {32769U, 1U},
                                      {1U, 32769U},
                                      {20000U, 20000U},
                                      {0xFFFFFFFFU, 0xFFFFFFFFU},
                                      {0x80000000U, 1U}}) {
    Header header;
    header.width = width;
    header.height = height;
    const auto data = deflated + std::string(2'000'000, 'x');
    EXPECT_FALSE(passes(ihdr(header) + chunk("IDAT", data) + iend)) << width << "x" << height;
  }
}

TEST(PngStructure, RefusesPixelDataTooShortForItsHeader) {
  Header header;
  header.width = header.height = 5000;
  EXPECT_FALSE(passes(ihdr(header) + idat + iend));
  EXPECT_TRUE(passes(ihdr(header) + chunk("IDAT", deflated + std::string(75'000, 'x')) + iend));
}

TEST(PngStructure, RefusesHeadersThatDoNotExist) {
  const auto withHeader = [](auto change) {
    Header header;
    change(header);
    return passes(ihdr(header) + plte + idat + iend);
  };
  EXPECT_TRUE(withHeader([](Header&) {}));
  EXPECT_TRUE(withHeader([](Header& header) { header.colourType = 3, header.depth = 1; }));
  EXPECT_FALSE(withHeader([](Header& header) { header.colourType = 5; }));
  EXPECT_FALSE(withHeader([](Header& header) { header.depth = 4; }));
  EXPECT_FALSE(withHeader([](Header& header) { header.depth = 3; }));
  EXPECT_FALSE(withHeader([](Header& header) { header.colourType = 3, header.depth = 16; }));
  EXPECT_FALSE(withHeader([](Header& header) { header.compression = 1; }));
  EXPECT_FALSE(withHeader([](Header& header) { header.filter = 1; }));
  EXPECT_FALSE(withHeader([](Header& header) { header.interlace = 2; }));
}

TEST(PngStructure, RefusesChunksOutOfOrder) {
  Header indexed;
  indexed.colourType = 3;
  const auto other = chunk("tEXt", "x");
  EXPECT_FALSE(passes(idat + ihdr({}) + iend));
  EXPECT_FALSE(passes(ihdr({}) + ihdr({}) + idat + iend));
  EXPECT_FALSE(passes(ihdr({}) + idat + other + idat + iend));
  EXPECT_FALSE(passes(ihdr({}) + iend));
  EXPECT_FALSE(passes(ihdr({}) + idat));
  EXPECT_FALSE(passes(ihdr(indexed) + idat + iend));
  EXPECT_FALSE(passes(ihdr(indexed) + idat + plte + iend));
  EXPECT_FALSE(passes(ihdr(indexed) + plte + plte + idat + iend));
  EXPECT_FALSE(passes(ihdr(indexed) + chunk("PLTE", "abcd") + idat + iend));
  EXPECT_TRUE(passes(ihdr(indexed) + plte + idat + iend));
}

TEST(PngStructure, RefusesChunksThatADecoderMustKnowAndDoesNot) {
  EXPECT_FALSE(passes(ihdr({}) + chunk("CgXX", "x") + idat + iend));
  EXPECT_FALSE(passes(ihdr({}) + chunk("\x01\x02\x03\x04", "x") + idat + iend));
}

TEST(PngStructure, RefusesPixelDataThatCannotBeDeflate) {
  const auto passesWith = [](const std::string& start) {
    return passes(ihdr({}) + chunk("IDAT", start) + iend);
  };
  EXPECT_TRUE(passesWith("\x78\x01\x63"));
  EXPECT_FALSE(passesWith("\x79\x01\x63"));  // another method than deflate
  EXPECT_FALSE(passesWith("\x78\x02\x63"));  // a header that does not check
  EXPECT_FALSE(passesWith("\x78\xBB\x63"));  // a dictionary that nobody has
  EXPECT_FALSE(passesWith("\x78\x01\x07"));  // a kind of block that does not exist
  EXPECT_FALSE(passesWith("\x88\x1C\x63"));  // a window larger than any
  EXPECT_FALSE(passesWith("\x78\x01"));
  EXPECT_FALSE(passesWith(""));
  EXPECT_TRUE(passes(ihdr({}) + chunk("IDAT", "") + chunk("IDAT", "\x78") +
                     chunk("IDAT", deflated.substr(1)) + iend));
}

TEST(PngStructure, RefusesALengthBeyondTheFile) {
  auto text = ihdr({}) + idat + iend;
  const auto at = ihdr({}).size();
  for (const auto length : {0xFFFFFFFFU, 0x7FFFFFFFU, 0xFFFFFFF4U}) {
    text.replace(at, 4, number(length));
    EXPECT_FALSE(passes(text)) << length;
  }
}

}  // namespace
}  // namespace vantorel
