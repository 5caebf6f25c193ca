// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/PageReader.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "unit/platform/linux/textinpictures/Drawing.h"

namespace vantorel {
namespace {

using Lines = std::vector<std::string>;

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t black = 0x000000;

/// The rows of a picture that the test has drawn.
class DrawnRows : public PictureRows {
 public:
  explicit DrawnRows(ColourPicture picture) : picture_(std::move(picture)) {}
  int width() const override { return picture_.width; }
  int height() const override { return picture_.height; }
  int read(int count, std::vector<std::uint32_t>& pixels) override {
    const int rows = std::min(count, picture_.height - next_);
    mostAtOnce_ = std::max(mostAtOnce_, rows);
    const auto begin = picture_.pixels.begin() + std::ptrdiff_t{next_} * picture_.width;
    pixels.insert(pixels.end(), begin, begin + std::ptrdiff_t{rows} * picture_.width);
    next_ += rows;
    return rows;
  }
  [[nodiscard]] int rowsRead() const { return next_; }
  [[nodiscard]] int mostAtOnce() const { return mostAtOnce_; }

 private:
  ColourPicture picture_;
  int next_ = 0;
  int mostAtOnce_ = 0;
};

/// Reads what the test says, one entry after the other; the last again and again.
struct LineScript {
  std::vector<std::optional<LineReading>> answers;
  std::vector<int> widths;  // of the pictures that were read
  std::size_t next = 0;
};
class ScriptedReader : public LineReader {
 public:
  explicit ScriptedReader(LineScript& script) : script_(script) {}
  std::optional<LineReading> read(const GreyPicture& line) override {
    script_.widths.push_back(line.width);
    const std::size_t index = std::min(script_.next++, script_.answers.size() - 1);
    return script_.answers[index];
  }

 private:
  LineScript& script_;
};

LineReading latin(const std::string& text, double confidence) {
  return {Script::latin, {{text, confidence, 0, 100}}};
}
LineReading hebrew(const std::string& text, double confidence) {
  return {Script::hebrew, {{text, confidence, 0, 100}}};
}

struct Scene {
  LineScript english;
  LineScript hebrewScript;
  bool timeUp = false;

  std::optional<Lines> tryToRead(DrawnRows& rows) {
    std::vector<std::unique_ptr<LineReader>> readers;
    readers.push_back(std::make_unique<ScriptedReader>(english));
    if (!hebrewScript.answers.empty())
      readers.push_back(std::make_unique<ScriptedReader>(hebrewScript));
    return PageReader(std::move(readers), [this] { return timeUp; }).read(rows);
  }
  Lines read(DrawnRows& rows) {
    const auto lines = tryToRead(rows);
    EXPECT_TRUE(lines) << "nothing could be said of it";
    return lines.value_or(Lines{});
  }
  Lines read(ColourPicture picture) {
    DrawnRows rows(std::move(picture));
    return read(rows);
  }
};

ColourPicture page(int lines, int width = 300) {
  ColourPicture picture = plain(width, 40 * lines + 20, white);
  for (int i = 0; i < lines; ++i) drawWord(picture, 20, 20 + 40 * i, 10, 6, black);
  return picture;
}

TEST(PageReader, ReadsTheLinesInTheirOrder) {
  Scene scene;
  scene.english.answers = {latin("one", 95), latin("two", 95), latin("three", 95)};
  EXPECT_EQ(scene.read(page(3)), (Lines{"one", "two", "three"}));
}

TEST(PageReader, AnEmptyPageHasNoLines) {
  Scene scene;
  scene.english.answers = {latin("nothing", 95)};
  EXPECT_TRUE(scene.read(plain(200, 200, white)).empty());
  EXPECT_TRUE(scene.english.widths.empty());
}

TEST(PageReader, LeavesOutLinesWithoutAWord) {
  Scene scene;
  scene.english.answers = {latin("one", 95), LineReading{Script::latin, {}}, latin("three", 95)};
  EXPECT_EQ(scene.read(page(3)), (Lines{"one", "three"}));
}

TEST(PageReader, AsksTheOtherOnlyWhenTheFirstIsUnsure) {
  Scene scene;
  scene.english.answers = {latin("sure", 95)};
  scene.hebrewScript.answers = {hebrew("אחר", 95)};
  EXPECT_EQ(scene.read(page(2)), (Lines{"sure", "sure"}));
  EXPECT_TRUE(scene.hebrewScript.widths.empty());
}

TEST(PageReader, BeginsWithWhoReadTheLastLine) {
  Scene scene;
  scene.english.answers = {latin("nnn", 30)};
  scene.hebrewScript.answers = {hebrew("שורה", 95)};
  EXPECT_EQ(scene.read(page(4)), (Lines{"שורה", "שורה", "שורה", "שורה"}));
  EXPECT_EQ(scene.english.widths.size(), 1U);
  EXPECT_EQ(scene.hebrewScript.widths.size(), 4U);
}

TEST(PageReader, TakesTheBetterOfTwoWhoAreUnsure) {
  Scene scene;
  scene.english.answers = {latin("likely", 80)};
  scene.hebrewScript.answers = {hebrew("פחות", 60)};
  EXPECT_EQ(scene.read(page(1)), Lines{"likely"});
}

TEST(PageReader, CellsOfAHebrewTableFollowEachOtherFromTheRight) {
  ColourPicture picture = plain(600, 60, white);
  drawWord(picture, 20, 20, 10, 5, black);
  drawWord(picture, 400, 20, 10, 5, black);
  Scene scene;
  scene.english.answers = {latin("nnn", 30)};
  scene.hebrewScript.answers = {hebrew("שמאל", 95), hebrew("ימין", 95)};
  EXPECT_EQ(scene.read(picture), (Lines{"ימין", "שמאל"}));
}

TEST(PageReader, ALineThatCrossesTwoBandsIsReadOnceAndWhole) {
  // So wide that a band ends every 300 rows; some lines lie across each end.
  constexpr int lines = 60;
  Scene scene;
  scene.english.answers = {latin("line", 95)};
  DrawnRows rows(page(lines, 10'000));
  EXPECT_EQ(scene.read(rows).size(), static_cast<std::size_t>(lines));
  EXPECT_LE(rows.mostAtOnce(), 300);
  const auto& widths = scene.english.widths;
  EXPECT_EQ(std::count(widths.begin(), widths.end(), widths.front()), lines);
}

TEST(PageReader, StopsWhenThereIsMoreThanAHistoryKeeps) {
  Scene scene;
  scene.english.answers = {latin(std::string(1000, 'x'), 95)};
  DrawnRows rows(page(200));
  const Lines read = scene.read(rows);
  std::size_t letters = 0;
  for (const auto& line : read) letters += line.size() + 1;
  EXPECT_GE(letters, 8000U);
  EXPECT_LE(scene.english.widths.size(), 10U);
}

TEST(PageReader, WhenTimeIsUpWhatWasReadIsTheResult) {
  Scene scene;
  int asked = 0;
  scene.english.answers = {latin("line", 95)};
  std::vector<std::unique_ptr<LineReader>> readers;
  readers.push_back(std::make_unique<ScriptedReader>(scene.english));
  PageReader reader(std::move(readers), [&] { return ++asked > 4; });
  DrawnRows rows(page(20));
  const auto read = reader.read(rows);
  ASSERT_TRUE(read);
  EXPECT_GE(read->size(), 1U);
  EXPECT_LT(read->size(), 5U);
}

TEST(PageReader, CountsCharactersAsAReaderDoes) {
  Scene scene;
  std::string pointed;
  for (int i = 0; i < 1000; ++i) pointed += "שָּׁ";  // one letter, three marks
  scene.english.answers = {latin(pointed, 95)};
  DrawnRows rows(page(200));
  const Lines read = scene.read(rows);
  EXPECT_GE(read.size(), 8U);
  EXPECT_LE(read.size(), 9U);
}

TEST(PageReader, WithoutTimeForASingleLineNothingIsSaid) {
  Scene scene;
  scene.english.answers = {latin("line", 95)};
  scene.timeUp = true;
  DrawnRows rows(page(20));
  EXPECT_EQ(scene.tryToRead(rows), std::nullopt);
}

TEST(PageReader, NothingIsSaidOfAPictureThatAReaderFailedOn) {
  Scene scene;
  scene.english.answers = {latin("sure", 95), latin("w'71D", 20)};
  scene.hebrewScript.answers = {std::nullopt};
  DrawnRows rows(page(4));
  EXPECT_EQ(scene.tryToRead(rows), std::nullopt);
  EXPECT_EQ(scene.english.widths.size(), 2U) << "it went on";
}

TEST(PageReader, NothingIsSaidOfAPictureWithoutASingleSoundRow) {
  class NoRows : public DrawnRows {
   public:
    NoRows() : DrawnRows(page(2)) {}
    int read(int /*count*/, std::vector<std::uint32_t>& /*pixels*/) override { return 0; }
  };
  Scene scene;
  scene.english.answers = {latin("line", 95)};
  NoRows rows;
  EXPECT_EQ(scene.tryToRead(rows), std::nullopt);
}

TEST(PageReader, ADamagedEndDoesNotLoseTheBeginning) {
  class BrokenRows : public DrawnRows {
   public:
    BrokenRows() : DrawnRows(page(2)) {}
    int height() const override { return 5000; }  // as the head says; the rows end early
  };
  Scene scene;
  scene.english.answers = {latin("one", 95), latin("two", 95)};
  BrokenRows rows;
  EXPECT_EQ(scene.read(rows), (Lines{"one", "two"}));
}

}  // namespace
}  // namespace vantorel
