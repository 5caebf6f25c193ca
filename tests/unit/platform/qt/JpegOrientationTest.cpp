// SPDX-License-Identifier: MIT
#include "platform/qt/JpegOrientation.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "unit/platform/qt/ImageSamples.h"

namespace vantorel {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr EncodedSize stored{60, 40};
constexpr EncodedSize turned{40, 60};

/// A JPEG as far as its first scan, with a camera's note.
Bytes withNote(const std::string& note) {
  const std::string data = "Exif\0\0"s + note;
  const auto length = data.size() + 2;
  std::string jpeg = "\xFF\xD8\xFF\xE1"s;
  jpeg += static_cast<char>(length >> 8U);
  jpeg += static_cast<char>(length & 0xFFU);
  return copied(jpeg + data + "\xFF\xDA\0\2"s);
}

const std::string little = "II*\0\x08\0\0\0"s;
const std::string littleLying = little + "\1\0\x12\1\3\0\1\0\0\0\6\0\0\0"s;

TEST(JpegOrientation, IsReadInBothOrdersOfBytes) {
  EXPECT_EQ(shownSize(withNote(littleLying), stored), turned);
  const auto big = "MM\0*\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\6\0\0"s;
  EXPECT_EQ(shownSize(withNote(big), stored), turned);
}

TEST(JpegOrientation, IsFoundBehindOtherNotes) {
  const auto note = little + "\2\0\x10\1\2\0\1\0\0\0\6\0\0\0\x12\1\3\0\1\0\0\0\x08\0\0\0"s;
  EXPECT_EQ(shownSize(withNote(note), stored), turned);
}

TEST(JpegOrientation, IsFoundBehindOtherSegments) {
  auto jpeg = copied("\xFF\xD8\xFF\xE0\0\4xx\xFF\xFF\xFE\0\3y"sv);
  const auto rest = withNote(littleLying);
  jpeg.insert(jpeg.end(), rest.begin() + 2, rest.end());
  EXPECT_EQ(shownSize(jpeg, stored), turned);
}

TEST(JpegOrientation, OnlyALyingPictureIsTurned) {
  for (int value = 0; value < 12; ++value) {
    auto note = littleLying;
    note[18] = static_cast<char>(value);
    EXPECT_EQ(shownSize(withNote(note), stored), value >= 5 && value <= 8 ? turned : stored)
        << value;
  }
}

TEST(JpegOrientation, WhatIsNoShortNumberDoesNotCount) {
  auto other = littleLying;
  other[12] = 4;  // its type
  EXPECT_EQ(shownSize(withNote(other), stored), stored);
  other = littleLying;
  other[14] = 2;  // how many
  EXPECT_EQ(shownSize(withNote(other), stored), stored);
}

TEST(JpegOrientation, NoTruncationIsReadBeyondItsEnd) {
  for (std::size_t length = 0; length < littleLying.size() - 2; ++length)
    EXPECT_EQ(shownSize(withNote(littleLying.substr(0, length)), stored),
              length < 20 ? stored : turned)
        << length;
  const auto whole = withNote(littleLying);
  for (std::size_t length = 2; length + 4 < whole.size(); ++length)
    EXPECT_EQ(shownSize(ByteView(whole).first(length), stored), stored) << length;
}

TEST(JpegOrientation, AListAtNoPlaceIsNone) {
  EXPECT_EQ(shownSize(withNote("II*\0\xFF\xFF\xFF\xFF"s + littleLying.substr(8)), stored), stored);
  EXPECT_EQ(shownSize(withNote("XX*\0"s + littleLying.substr(4)), stored), stored);
}

TEST(JpegOrientation, NotesBehindThePixelsDoNotCount) {
  auto jpeg = copied("\xFF\xD8\xFF\xDA\0\2"sv);
  const auto rest = withNote(littleLying);
  jpeg.insert(jpeg.end(), rest.begin() + 2, rest.end());
  EXPECT_EQ(shownSize(jpeg, stored), stored);
}

}  // namespace
}  // namespace vantorel
