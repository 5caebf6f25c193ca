// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/InkOnPaper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "unit/platform/linux/textinpictures/Drawing.h"

namespace vantorel {
namespace {

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t black = 0x000000;

ColourPicture word(std::uint32_t paper, std::uint32_t ink) {
  ColourPicture picture = plain(200, 60, paper);
  drawWord(picture, 20, 20, 12, 6, ink);
  return picture;
}

TEST(InkOnFlatPaper, IsTheSameWhateverTheColours) {
  const auto expected = inkOnFlatPaper(word(white, black));
  ASSERT_TRUE(expected);
  EXPECT_EQ(amountAt(*expected, 20, 25), 255);
  EXPECT_EQ(amountAt(*expected, 5, 5), 0);
  const std::pair<std::uint32_t, std::uint32_t> themes[] = {
      {black, white},       {0x1E1E1E, 0xD4D4D4}, {0x0B5FA5, white},
      {0xF0F0F0, 0x909090}, {0x1E1E1E, 0xC0392B}, {0x808080, 0xFF8080}};
  for (const auto& [paper, ink] : themes) {
    const auto found = inkOnFlatPaper(word(paper, ink));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->amounts, expected->amounts) << std::hex << ink << " on " << paper;
  }
}

TEST(InkOnFlatPaper, EachAreaIsAPaperOfItsOwn) {
  ColourPicture picture = plain(400, 300, white);
  fill(picture, {0, 0, 149, 299}, 0x2C3E50);      // a dark sidebar
  fill(picture, {150, 100, 399, 123}, 0x3498DB);  // a selected row
  drawWord(picture, 20, 20, 12, 5, 0xE6ECF1);
  drawWord(picture, 200, 20, 12, 5, 0x202020);
  drawWord(picture, 200, 106, 12, 5, white);
  const auto ink = inkOnFlatPaper(picture);
  ASSERT_TRUE(ink);
  EXPECT_EQ(amountAt(*ink, 20, 25), 255);
  EXPECT_EQ(amountAt(*ink, 200, 25), 255);
  EXPECT_EQ(amountAt(*ink, 200, 110), 255);
  EXPECT_EQ(amountAt(*ink, 100, 200), 0);
  EXPECT_EQ(amountAt(*ink, 300, 102), 0) << "the selection itself is no ink";
  EXPECT_EQ(
      std::count(ink->amounts.begin(), ink->amounts.end(), 255),
      3 * std::count_if(ink->amounts.begin(), ink->amounts.begin() + 400 * 60, [](auto amount) {
        return amount == 255;
      }) / 2);
}

TEST(InkOnFlatPaper, TheInsideOfALargeLetterIsInk) {
  ColourPicture picture = plain(300, 200, white);
  drawLetter(picture, 50, 40, 100, black);
  const auto ink = inkOnFlatPaper(picture);
  ASSERT_TRUE(ink);
  EXPECT_EQ(amountAt(*ink, 60, 100), 255);
  EXPECT_EQ(amountAt(*ink, 10, 10), 0);
  EXPECT_EQ(amountAt(*ink, 95, 60), 0) << "between the strokes is paper";
}

TEST(InkOnFlatPaper, ALargeLetterWithSmallHolesIsNoPaper) {
  // Like a B: what its holes hold is surrounded by the letter alone.
  ColourPicture picture = plain(400, 200, white);
  drawWord(picture, 200, 150, 12, 6, black);
  for (const int left : {50, 66}) fill(picture, {left, 40, left + 3, 73}, black);
  for (const int top : {40, 55, 70}) fill(picture, {50, top, 69, top + 3}, black);
  const auto ink = inkOnFlatPaper(picture);
  ASSERT_TRUE(ink);
  EXPECT_EQ(amountAt(*ink, 51, 60), 255);
  EXPECT_EQ(amountAt(*ink, 60, 50), 0) << "a hole";
}

TEST(InkOnFlatPaper, ABadgeWithOneOrTwoLettersIsPaper) {
  ColourPicture picture = plain(400, 200, white);
  fill(picture, {50, 40, 85, 59}, 0xC0392B);
  drawWord(picture, 56, 45, 10, 2, white);
  const auto ink = inkOnFlatPaper(picture);
  ASSERT_TRUE(ink);
  EXPECT_EQ(amountAt(*ink, 57, 47), 255);
  EXPECT_EQ(amountAt(*ink, 52, 42), 0);
}

TEST(InkOnFlatPaper, FaintNoiseIsNoInk) {
  ColourPicture picture = word(white, black);
  std::mt19937 random(1);
  for (auto& pixel : picture.pixels)
    if (pixel == white && random() % 8 == 0) pixel = 0xF4F4F4;
  const auto ink = inkOnFlatPaper(picture);
  ASSERT_TRUE(ink);
  const auto clean = inkOnFlatPaper(word(white, black));
  for (std::size_t i = 0; i < ink->amounts.size(); ++i)
    ASSERT_EQ(ink->amounts[i] >= inkThreshold, clean->amounts[i] >= inkThreshold) << i;
  EXPECT_EQ(std::count_if(ink->amounts.begin(), ink->amounts.begin() + 200 * 18,
                          [](auto amount) { return amount > 0; }),
            0)
      << "away from the letters";
}

TEST(InkOnFlatPaper, WhatCompressionLeavesAroundLettersIsNoInk) {
  ColourPicture picture = word(white, black);
  for (const int x : {22, 30, 38, 50}) fill(picture, {x, 34, x + 2, 34}, 0xC0C0C0);
  const auto ink = inkOnFlatPaper(picture);
  ASSERT_TRUE(ink);
  EXPECT_EQ(amountAt(*ink, 31, 34), 0);
  EXPECT_EQ(amountAt(*ink, 20, 25), 255);
}

TEST(InkOnFlatPaper, FaintLettersBesideStrongOnesAreInk) {
  ColourPicture picture = word(white, black);
  drawWord(picture, 112, 20, 12, 5, 0xC0C0C0);
  const auto ink = inkOnFlatPaper(picture);
  ASSERT_TRUE(ink);
  EXPECT_EQ(amountAt(*ink, 112, 25), 255);
}

TEST(InkOnFlatPaper, APhotographIsNone) {
  ColourPicture picture = plain(200, 200, white);
  std::mt19937 random(1);
  for (auto& pixel : picture.pixels) pixel = random() & 0xFFFFFFU;
  EXPECT_FALSE(inkOnFlatPaper(picture));
  EXPECT_FALSE(inkOnFlatPaper({}));
}

TEST(InkOnUnevenPaper, AShadowIsNoInk) {
  // The paper goes from bright to less than half; the ink stays darker than what is around it.
  ColourPicture picture = plain(600, 200, white);
  const auto shade = [&](int x, double factor) {
    const auto value = static_cast<std::uint32_t>((250 - 0.25 * x) * factor);
    return value << 16U | value << 8U | value;
  };
  ColourPicture letters = plain(600, 200, white);
  drawWord(letters, 30, 90, 20, 24, black);
  for (int y = 0; y < 200; ++y)
    for (int x = 0; x < 600; ++x) {
      const auto pixel = static_cast<std::size_t>(y * 600 + x);
      picture.pixels[pixel] = shade(x, letters.pixels[pixel] == black ? 0.4 : 1);
    }
  const Ink ink = inkOnUnevenPaper(picture);
  for (std::size_t i = 0; i < ink.amounts.size(); ++i) {
    ASSERT_EQ(ink.amounts[i] >= inkThreshold, letters.pixels[i] == black)
        << i % 600 << ", " << i / 600;
  }
}

TEST(InkOnUnevenPaper, LightWritingOnADarkPictureIsInk) {
  ColourPicture picture = plain(200, 100, 0x101010);
  drawWord(picture, 20, 40, 16, 6, 0xE0E0E0);
  const Ink ink = inkOnUnevenPaper(picture);
  EXPECT_GE(amountAt(ink, 20, 45), inkThreshold);
  EXPECT_LT(amountAt(ink, 5, 5), inkThreshold);
}

TEST(InkOnUnevenPaper, TakesPicturesOfAnySize) {
  EXPECT_TRUE(inkOnUnevenPaper({}).amounts.empty());
  for (const auto& [width, height] : {std::pair(1, 1), {1, 500}, {500, 1}, {17, 16}})
    EXPECT_EQ(inkOnUnevenPaper(plain(width, height, 0x808080)).amounts.size(),
              static_cast<std::size_t>(width * height));
}

}  // namespace
}  // namespace vantorel
