// SPDX-License-Identifier: MIT
#include "platform/linux/textinpictures/reading/LineReading.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

ReadWord word(std::string text, double confidence, int left, int right) {
  return {std::move(text), confidence, left, right};
}

/// Words of equal width beside each other, from the left.
std::vector<ReadWord> words(const std::vector<std::string>& texts) {
  std::vector<ReadWord> result;
  for (const auto& text : texts) {
    const int left = static_cast<int>(result.size()) * 100;
    result.push_back(word(text, 95, left, left + 80));
  }
  return result;
}

LineReading latin(std::vector<ReadWord> words) { return {Script::latin, std::move(words)}; }
LineReading hebrew(std::vector<ReadWord> words) { return {Script::hebrew, std::move(words)}; }

std::string best(const LineReading& a, const LineReading& b) { return lineText(bestWords({a, b})); }

TEST(LineText, LatinWordsGoFromTheLeft) {
  EXPECT_EQ(lineText(words({"Invoice", "2024", "paid"})), "Invoice 2024 paid");
  EXPECT_EQ(lineText({}), "");
}

TEST(LineText, HebrewWordsGoFromTheRight) {
  EXPECT_EQ(lineText(words({"חמישי", "ביום", "שולמה"})), "שולמה ביום חמישי");
}

TEST(LineText, LatinWordsInAHebrewLineKeepTheirOwnOrder) {
  EXPECT_EQ(lineText(words({"הסתיימה", "Firefox", "128.3", "התקנת"})),
            "התקנת Firefox 128.3 הסתיימה");
  EXPECT_EQ(lineText(words({"Dana", "Cohen", "אל", "נשלח", "88174", "הזמנה"})),
            "הזמנה 88174 נשלח אל Dana Cohen");
}

TEST(LineText, HebrewWordsInALatinLineKeepTheirOwnOrder) {
  EXPECT_EQ(lineText(words({"Subject:", "חדשה", "הודעה", "from", "northwind@example.com"})),
            "Subject: הודעה חדשה from northwind@example.com");
}

TEST(LineText, LeavesOutWhatIsLikelyNoWord) {
  EXPECT_EQ(lineText({word("=|", 12, 0, 10), word("Total", 95, 20, 60)}), "Total");
}

TEST(LineReading, IsAsConfidentAsItsLettersOnAverage) {
  EXPECT_EQ(latin({}).confidence(), 0);
  EXPECT_DOUBLE_EQ(latin({word("abc", 90, 0, 9), word("d", 50, 10, 12)}).confidence(), 80);
}

TEST(LineReading, IsSureWhenEveryWordIsLikely) {
  EXPECT_TRUE(isSure(latin({word("Invoice", 96, 0, 9), word("2024", 95, 10, 20)})));
  EXPECT_TRUE(isSure(hebrew({word("שלום", 91, 0, 9)})));
  EXPECT_FALSE(isSure(latin({})));
  EXPECT_FALSE(isSure(latin({word("TIN", 70, 0, 9)})));
  EXPECT_FALSE(isSure(latin({word("something-long", 98, 0, 9), word("x", 40, 10, 20)})));
}

TEST(LineReading, OfHebrewIsNotSureOfDigitsAndForeignWords) {
  EXPECT_FALSE(isSure(hebrew({word("שלום", 95, 0, 9), word("2", 95, 10, 20)})));
  EXPECT_FALSE(isSure(hebrew({word("שלום", 95, 0, 9), word("'/", 95, 10, 20)})));
}

TEST(BestWords, TakesEachWordFromWhoIsSurerOfIt) {
  // What the two really made of one line.
  const auto english =
      latin({word("n7ayNnn", 40, 0, 80), word("support@northwind.example", 96, 90, 260),
             word("nxn", 55, 270, 300), word("aytin", 30, 310, 360)});
  const auto hebrewReading =
      hebrew({word("התקבלה", 91, 0, 80), word("6!קההַ3א6.", 20, 90, 200),
              word("סקקט5", 30, 205, 260), word("מאת", 91, 270, 300), word("הודעה", 92, 310, 360)});
  EXPECT_EQ(best(english, hebrewReading), "הודעה מאת support@northwind.example התקבלה");
}

TEST(BestWords, BelievesTheNumberOfWhoKnowsDigits) {
  const auto english = latin({word("Nn", 36, 0, 40), word("12", 90, 50, 70)});
  const auto hebrewReading = hebrew({word("פריטים", 92, 0, 40), word("2", 92, 60, 70)});
  EXPECT_EQ(best(english, hebrewReading), "12 פריטים");
  const auto unsure = latin({word("Nn", 36, 0, 40), word("17", 40, 50, 70)});
  EXPECT_EQ(best(unsure, hebrewReading), "2 פריטים");
}

TEST(BestWords, KeepsWordsThatOnlyOneFound) {
  const auto english = latin({word("left", 90, 0, 40)});
  const auto hebrewReading = hebrew({word("ימין", 90, 60, 90)});
  EXPECT_EQ(bestWords({english, hebrewReading}).size(), 2U);
  EXPECT_EQ(bestWords({latin({}), hebrewReading}).size(), 1U);
  EXPECT_TRUE(bestWords({latin({}), hebrew({})}).empty());
  EXPECT_TRUE(bestWords({}).empty());
}

TEST(BestWords, WordsWithoutWidthDoNoHarm) {
  const auto odd = latin({word("a", 90, 5, 5), word("b", 90, 5, 4), word("c", 90, -1, -3)});
  EXPECT_EQ(bestWords({odd}).size(), 3U);
}

}  // namespace
}  // namespace vantorel
