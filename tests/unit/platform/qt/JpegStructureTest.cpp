// SPDX-License-Identifier: MIT
#include "platform/qt/JpegStructure.h"

#include <gtest/gtest.h>

#include <string>

#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

using namespace std::string_literals;

std::string segment(unsigned char marker, const std::string& data) {
  const auto length = data.size() + 2;
  return "\xFF"s + static_cast<char>(marker) + static_cast<char>(length >> 8) +
         static_cast<char>(length) + data;
}

std::string frame(unsigned width, unsigned height, unsigned char marker = 0xC0, char precision = 8,
                  char components = 1) {
  std::string data;
  data += precision;
  for (const unsigned side : {height, width}) {
    data += static_cast<char>(side >> 8);
    data += static_cast<char>(side);
  }
  data += components;
  for (char i = 0; i < components; ++i) data += std::string{i, 0x11, 0};
  return segment(marker, data);
}

const std::string start = "\xFF\xD8";
const std::string end = "\xFF\xD9";
const std::string scan = segment(0xDA, "\x01\x01\x00\x00\x3F\x00"s);
const std::string coded =
    "abc\xFF\x00"
    "def\xFF\xD3ghi"s;

std::optional<EncodedSize> sizeOf(const std::string& text) { return checkedJpeg(copied(text)); }

/// A file that is in order but for what is asked of its frame.
bool passesWith(const std::string& itsFrame) {
  std::string text = start;
  text.append(itsFrame).append(scan).append(coded).append(end);
  return sizeOf(text).has_value();
}

TEST(JpegStructure, TakesWhatEncodersWrite) {
  EXPECT_EQ(checkedJpeg(encoded(colourful(37, 21, Transparency::none), "jpg")),
            (EncodedSize{37, 21}));
  const auto grey = colourful(8, 5, Transparency::none).convertToFormat(QImage::Format_Grayscale8);
  EXPECT_EQ(checkedJpeg(encoded(grey, "jpg")), (EncodedSize{8, 5}));
}

TEST(JpegStructure, IsReadFromAMinimalFile) {
  EXPECT_EQ(sizeOf(start + frame(300, 200) + scan + coded + end), (EncodedSize{300, 200}));
  EXPECT_EQ(sizeOf(start + segment(0xE1, "Exif") + "\xFF\xFF"s + frame(300, 200).substr(1) + scan +
                   coded + scan + coded + "\xFF\xFF"s + end + "behind"),
            (EncodedSize{300, 200}));
}

TEST(JpegStructure, RefusesEveryTruncation) {
  const auto jpeg = encoded(colourful(16, 16, Transparency::none), "jpg");
  for (std::size_t size = 0; size < jpeg.size(); ++size) {
    ASSERT_FALSE(checkedJpeg(ByteView(jpeg).first(size))) << size;
  }
}

TEST(JpegStructure, RefusesSizesThatNobodyWillHold) {
  for (const auto& [width, height] :
       {std::pair{0U, 5U}, {5U, 0U}, {65535U, 1U}, {20000U, 20000U}}) {
    EXPECT_FALSE(passesWith(frame(width, height)));
  }
  EXPECT_TRUE(passesWith(frame(1, 20000)));
}

TEST(JpegStructure, RefusesFramesThatCannotBeDecoded) {
  for (const unsigned marker : {0xC0, 0xC1, 0xC2, 0xC9, 0xCA}) {
    EXPECT_TRUE(passesWith(frame(2, 2, static_cast<unsigned char>(marker))));
  }
  for (const unsigned marker : {0xC3, 0xC5, 0xC6, 0xC7, 0xCB, 0xCD, 0xCE, 0xCF}) {
    EXPECT_FALSE(passesWith(frame(2, 2, static_cast<unsigned char>(marker))));
  }
  EXPECT_FALSE(passesWith(frame(2, 2, 0xC1, 12)));
  EXPECT_FALSE(passesWith(frame(2, 2, 0xC0, 8, 2)));
}

TEST(JpegStructure, RefusesMarkersOutOfOrder) {
  EXPECT_FALSE(sizeOf(start + scan + coded + frame(2, 2) + end));
  EXPECT_FALSE(sizeOf(start + frame(2, 2) + end));
  EXPECT_FALSE(sizeOf(start + frame(2, 2) + frame(2, 2) + scan + coded + end));
  EXPECT_FALSE(sizeOf(start + start + frame(2, 2) + scan + coded + end));
  EXPECT_FALSE(sizeOf(start + "junk" + frame(2, 2) + scan + coded + end));
  EXPECT_FALSE(sizeOf(start + end));
}

TEST(JpegStructure, RefusesALengthBeyondTheFile) {
  EXPECT_FALSE(sizeOf(start + "\xFF\xE1\xFF\xFF"s + frame(2, 2) + scan + coded + end));
  EXPECT_FALSE(sizeOf(start + "\xFF\xE1\x00\x01"s + frame(2, 2) + scan + coded + end));
}

TEST(JpegStructure, RefusesCodedDataWithoutAnEnd) {
  EXPECT_FALSE(sizeOf(start + frame(2, 2) + scan + coded));
  EXPECT_FALSE(sizeOf(start + frame(2, 2) + scan + coded + "\xFF"));
  EXPECT_FALSE(sizeOf(start + frame(2, 2) + scan + std::string(100, '\xFF')));
}

}  // namespace
}  // namespace vantorel
