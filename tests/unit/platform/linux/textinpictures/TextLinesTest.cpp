// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/TextLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/linux/textinpictures/reading/InkOnPaper.h"
#include "unit/platform/linux/textinpictures/Drawing.h"

namespace vantorel {
namespace {

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t black = 0x000000;

/// Black is ink, all else is paper.
Ink inkIn(const ColourPicture& picture) {
  Ink ink{picture.width, picture.height, {}};
  for (const auto pixel : picture.pixels) ink.amounts.push_back(pixel == black ? 255 : 0);
  return ink;
}

std::vector<TextLine> linesIn(const ColourPicture& picture) {
  return findTextLines(inkIn(picture)).lines;
}

std::vector<PixelBox> boxesIn(const ColourPicture& picture) {
  std::vector<PixelBox> boxes;
  for (const TextLine& line : linesIn(picture)) boxes.push_back(line.box);
  return boxes;
}

TEST(TextLines, LettersInARowAreALine) {
  ColourPicture picture = plain(300, 100, white);
  drawWord(picture, 20, 20, 10, 8, black);
  drawWord(picture, 20, 50, 10, 12, black);
  const auto lines = linesIn(picture);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].box, (PixelBox{20, 20, 20 + 7 * 12 + 8, 29}));
  EXPECT_EQ(lines[0].letterHeight, 10);
  EXPECT_EQ(lines[1].box.top, 50);
  EXPECT_LT(lines[0].row, lines[1].row);
}

TEST(TextLines, CellsOfATableStandInOneRow) {
  ColourPicture picture = plain(500, 80, white);
  drawWord(picture, 300, 21, 10, 5, black);  // a little lower than the first
  drawWord(picture, 20, 20, 10, 5, black);
  drawWord(picture, 20, 50, 10, 5, black);
  const auto lines = linesIn(picture);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].box.left, 20);
  EXPECT_EQ(lines[1].box.left, 300);
  EXPECT_EQ(lines[0].row, lines[1].row);
  EXPECT_LT(lines[1].row, lines[2].row);
}

TEST(TextLines, WordsOfOneLineBelongTogether) {
  ColourPicture picture = plain(300, 60, white);
  drawWord(picture, 20, 20, 10, 4, black);
  drawWord(picture, 20 + 4 * 12 + 5, 20, 10, 4, black);
  EXPECT_EQ(boxesIn(picture).size(), 1U);
}

TEST(TextLines, WordsAfterACommaBelongToTheirLine) {
  ColourPicture picture = plain(400, 60, white);
  drawWord(picture, 20, 20, 7, 2, black);
  drawLetter(picture, 38, 17, 10, black);  // a letter that reaches higher
  fill(picture, {50, 26, 51, 29}, black);  // a comma
  drawWord(picture, 61, 20, 7, 5, black);
  EXPECT_EQ(linesIn(picture).size(), 1U);
}

TEST(TextLines, SpecksDoNotChangeTheHeightOfLetters) {
  ColourPicture picture = plain(400, 60, white);
  drawWord(picture, 20, 20, 15, 6, black);
  for (int x = 21; x < 120; x += 5) fill(picture, {x, 37, x + 1, 38}, black);
  const auto lines = linesIn(picture);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].letterHeight, 15);
}

TEST(TextLines, DotsAndDashesBelongToTheirLetters) {
  ColourPicture picture = plain(300, 60, white);
  drawWord(picture, 20, 20, 14, 3, black);
  fill(picture, {24, 15, 25, 16}, black);  // the dot of an i
  fill(picture, {69, 27, 75, 27}, black);  // a dash
  auto boxes = boxesIn(picture);
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0], (PixelBox{20, 15, 75, 33}));
  fill(picture, {69, 27, 75, 27}, white);
  fill(picture, {69, 32, 70, 35}, black);  // a comma
  boxes = boxesIn(picture);
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0], (PixelBox{20, 15, 70, 35}));
}

TEST(TextLines, AWordIsNotAMarkOfSomethingLarge) {
  ColourPicture picture = plain(400, 300, white);
  fill(picture, {300, 20, 330, 250}, black);  // the edge of a table, say
  for (int row = 0; row < 5; ++row) drawWord(picture, 200, 40 + 40 * row, 20, 4, black);
  const auto lines = linesIn(picture);
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const TextLine& line) {
                            return line.box.left == 200 && line.box.height() == 20;
                          }),
            5);
}

TEST(TextLines, RulesFramesAndPicturesAreNoLetters) {
  ColourPicture picture = plain(500, 400, white);
  fill(picture, {10, 10, 480, 11}, black);     // a rule
  fill(picture, {490, 10, 491, 300}, black);   // an upright one
  fill(picture, {20, 100, 300, 380}, black);   // a picture
  fill(picture, {320, 100, 420, 140}, black);  // a frame with a word in it
  fill(picture, {322, 102, 418, 138}, white);
  drawWord(picture, 340, 115, 10, 4, black);
  const auto boxes = boxesIn(picture);
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(boxes[0].top, 115);
}

TEST(TextLines, SpecksAreNoLines) {
  ColourPicture picture = plain(100, 100, white);
  fill(picture, {20, 20, 22, 22}, black);
  fill(picture, {60, 60, 62, 69}, black);
  EXPECT_TRUE(boxesIn(picture).empty());
  EXPECT_TRUE(findTextLines({}).lines.empty());
}

TEST(TextLines, NoiseIsBounded) {
  ColourPicture picture = plain(900, 600, white);
  std::mt19937 random(3);
  for (auto& pixel : picture.pixels)
    if (random() % 3 == 0) pixel = black;
  (void)linesIn(picture);  // the test's own time limit is what would fail
}

TEST(LinePicture, HoldsTheLineAloneAtTheSizeThatIsReadBest) {
  ColourPicture picture = plain(300, 100, white);
  drawWord(picture, 40, 40, 9, 8, black);
  fill(picture, {20, 30, 150, 30}, black);  // a frame around it
  fill(picture, {20, 60, 150, 60}, black);
  fill(picture, {20, 30, 20, 60}, black);
  fill(picture, {150, 30, 150, 60}, black);
  const Ink ink = inkIn(picture);
  const TextLines lines = findTextLines(ink);
  ASSERT_EQ(lines.lines.size(), 1U);
  const GreyPicture line = linePicture(ink, lines, lines.lines[0]);
  constexpr int margin = 9;
  EXPECT_EQ(line.height, 3 * (9 + 2 * margin));
  EXPECT_EQ(line.width, 3 * (lines.lines[0].box.width() + 2 * margin));
  for (int x = 0; x < line.width; ++x)
    EXPECT_EQ(line.pixels[static_cast<std::size_t>(x)], 255) << "the frame is still there";
  EXPECT_EQ(*std::min_element(line.pixels.begin(), line.pixels.end()), 0);
}

TEST(LinePicture, OfRunningTextIsNarrower) {
  const auto widthOverHeight = [](int letters, int height) {
    ColourPicture picture = plain(2000, 100, white);
    drawWord(picture, 20, 30, height, letters, black);
    const Ink ink = inkIn(picture);
    const TextLines lines = findTextLines(ink);
    const GreyPicture line = linePicture(ink, lines, lines.lines.at(0));
    const PixelBox& box = lines.lines[0].box;
    const int margin = 2 * (height * 8 / 10 + 2);
    return line.width * static_cast<double>(box.height() + margin) /
           (line.height * static_cast<double>(box.width() + margin));
  };
  EXPECT_NEAR(widthOverHeight(40, 20), 0.8, 0.03);
  EXPECT_NEAR(widthOverHeight(10, 20), 1, 0.03) << "a word";
  EXPECT_NEAR(widthOverHeight(60, 8), 1, 0.03) << "small type";
}

TEST(LinePicture, OfLargeLettersIsReduced) {
  ColourPicture picture = plain(900, 300, white);
  drawWord(picture, 40, 60, 135, 4, black);
  const Ink ink = inkIn(picture);
  const TextLines lines = findTextLines(ink);
  ASSERT_EQ(lines.lines.size(), 1U);
  const GreyPicture line = linePicture(ink, lines, lines.lines[0]);
  EXPECT_NEAR(line.height, (135 + 2 * 110) / 5, 1);
}

TEST(LinePicture, IsNeverWiderThanAnEngineCanTake) {
  ColourPicture picture = plain(32'000, 30, white);
  drawWord(picture, 10, 10, 9, 2800, black);
  const Ink ink = inkIn(picture);
  const TextLines lines = findTextLines(ink);
  ASSERT_EQ(lines.lines.size(), 1U);
  EXPECT_LE(linePicture(ink, lines, lines.lines[0]).width, 12'000);
}

}  // namespace
}  // namespace vantorel
