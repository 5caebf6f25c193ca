// SPDX-License-Identifier: MIT
#include "chrome/TextPresentation.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

using TextPresentation::isPrimarilyRTL;
using TextPresentation::singleLine;

TEST(TextDirection, TheFirstLetterDecides) {
  EXPECT_FALSE(isPrimarilyRTL("Hello שלום"));
  EXPECT_TRUE(isPrimarilyRTL("שלום Hello"));
  EXPECT_TRUE(isPrimarilyRTL("مرحبا"));
  EXPECT_FALSE(isPrimarilyRTL("Привет שלום"));
  EXPECT_FALSE(isPrimarilyRTL("日本 שלום"));
}

TEST(TextDirection, DigitsAndSignsDoNotDecide) {
  EXPECT_TRUE(isPrimarilyRTL("123 مرحبا"));
  EXPECT_TRUE(isPrimarilyRTL("  \n— (שלום) abc"));
  EXPECT_FALSE(isPrimarilyRTL("123 abc שלום"));
  EXPECT_TRUE(isPrimarilyRTL("😀 שלום"));
}

TEST(TextDirection, TextWithoutLettersIsNot) {
  EXPECT_FALSE(isPrimarilyRTL(""));
  EXPECT_FALSE(isPrimarilyRTL("2024-05-01 12:30"));
  EXPECT_FALSE(isPrimarilyRTL("\n\t "));
}

TEST(TextDirection, TheWholeRangeCountsAndNothingBeside) {
  EXPECT_TRUE(isPrimarilyRTL("\u0590"));
  EXPECT_TRUE(isPrimarilyRTL("\u0661"));  // an Arabic digit lies in the range
  EXPECT_TRUE(isPrimarilyRTL("\u08FF"));
  EXPECT_FALSE(isPrimarilyRTL("\u0904"));
  EXPECT_FALSE(isPrimarilyRTL("\u058A\u0587"));
}

TEST(TextDirection, BrokenBytesDoNotDecide) {
  EXPECT_TRUE(isPrimarilyRTL("\xFF\xC3שלום"));
  EXPECT_FALSE(isPrimarilyRTL("\xD7"));
}

TEST(SingleLine, ShortTextComesBackAsItIs) {
  EXPECT_EQ(singleLine("Hello, world", 100), "Hello, world");
  EXPECT_EQ(singleLine("", 100), "");
  EXPECT_EQ(singleLine("שלום 👩‍👩‍👧", 100), "שלום 👩‍👩‍👧");
}

TEST(SingleLine, LinesAndTabsBecomeSingleSpaces) {
  EXPECT_EQ(singleLine("one\r\n\ttwo\n\nthree", 100), "one two three");
  EXPECT_EQ(singleLine("\n\n  indented", 100), "indented");
  EXPECT_EQ(singleLine("end\n", 100), "end");
}

TEST(SingleLine, ControlCharactersAreNotDrawn) {
  EXPECT_EQ(singleLine(std::string_view("a\0b\x1B[31mc\x7F", 9), 100), "a b [31mc");
  EXPECT_EQ(singleLine("\u0085a\u009Fb", 100), "a b");
}

TEST(SingleLine, MarksThatTurnTheDirectionAreTaken) {
  EXPECT_EQ(singleLine("a\u202Egpj.exe\u202C b\u2066c\u2069\u200F", 100), "agpj.exe bc");
}

TEST(SingleLine, LongTextIsCutBetweenCharactersAndSaysSo) {
  EXPECT_EQ(singleLine("abcdef", 3), "abc…");
  EXPECT_EQ(singleLine("שלום", 2), "של…");
  EXPECT_EQ(singleLine("abc", 3), "abc");
}

TEST(SingleLine, MegabytesOfNothingAreNotReadThrough) {
  const std::string blanks(50'000'000, ' ');
  EXPECT_EQ(singleLine(blanks, 160), "…");
}

TEST(SingleLine, BrokenBytesBecomeReplacementCharacters) {
  EXPECT_EQ(singleLine("a\xFFz", 100), "a\uFFFDz");
}

}  // namespace
}  // namespace vantorel
