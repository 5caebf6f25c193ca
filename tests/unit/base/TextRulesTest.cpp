// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/Ascii.h"
#include "base/PercentCoding.h"
#include "base/SplitText.h"

namespace vantorel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Ascii, LowersLettersAndNothingElse) {
  EXPECT_EQ(asciiLowerCased("AZaz09@[`{"), "azaz09@[`{");
  EXPECT_EQ(asciiLowerCased("\xC3\x84"), "\xC3\x84");
  EXPECT_EQ(asciiLowerCased(""), "");
}

TEST(Ascii, KnowsItsLettersAndDigits) {
  for (const char c : std::string_view("09azAZ")) EXPECT_TRUE(isAsciiLetterOrDigit(c)) << c;
  for (const char c : std::string_view("/:@[`{ \xE4")) EXPECT_FALSE(isAsciiLetterOrDigit(c)) << c;
}

TEST(Ascii, ReadsHexadecimalDigits) {
  const std::string_view digits = "0123456789abcdef";
  for (std::size_t i = 0; i < digits.size(); ++i) {
    EXPECT_EQ(hexValue(digits[i]), static_cast<int>(i));
  }
  EXPECT_EQ(hexValue('A'), 10);
  EXPECT_EQ(hexValue('F'), 15);
  for (const char c : std::string_view("/:@G`g \xE1")) EXPECT_EQ(hexValue(c), -1) << c;
}

TEST(Ascii, ComparesTheStartWhateverTheCase) {
  EXPECT_TRUE(startsWithIgnoringCase("FILE:///a", "file:"));
  EXPECT_TRUE(startsWithIgnoringCase("a", ""));
  EXPECT_FALSE(startsWithIgnoringCase("fil", "file"));
  EXPECT_FALSE(startsWithIgnoringCase("filo:", "file:"));
}

TEST(PercentCoding, WritesWhatIsNotPlainAsTwoDigits) {
  EXPECT_EQ(percentEncoded("aZ0/~ %\xC3\xA4\n", "/~"), "aZ0/~%20%25%C3%A4%0A");
  EXPECT_EQ(percentEncoded("", "/"), "");
  EXPECT_EQ(percentEncoded(std::string_view("\0", 1), ""), "%00");
}

TEST(PercentCoding, ReadsWhatItWroteAndLeavesWhatIsNoEscape) {
  EXPECT_EQ(percentDecoded("a%20b%c3%A4"), "a b\xC3\xA4");
  EXPECT_EQ(percentDecoded("100%"), "100%");
  EXPECT_EQ(percentDecoded("%4"), "%4");
  EXPECT_EQ(percentDecoded("%g0%0g%%41"), "%g0%0g%A");
  EXPECT_EQ(percentDecoded("%00"), std::string(1, '\0'));
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(percentDecoded(percentEncoded(all, "")), all);
}

TEST(SplitText, TakesOnePartAfterTheOther) {
  std::string_view rest = "a::b";
  EXPECT_EQ(takePart(rest, ':'), "a");
  EXPECT_EQ(takePart(rest, ':'), "");
  EXPECT_EQ(takePart(rest, ':'), "b");
  EXPECT_EQ(rest, "");
  EXPECT_EQ(takePart(rest, ':'), "");
}

TEST(SplitText, AListHasNoEmptyParts) {
  EXPECT_THAT(splitList(":/a::/b c:", ':'), ElementsAre("/a", "/b c"));
  EXPECT_THAT(splitList("", ':'), IsEmpty());
  EXPECT_THAT(splitList(":", ':'), IsEmpty());
}

TEST(SplitText, LinesMayBeEmpty) {
  EXPECT_THAT(linesOf("a\n\nb"), ElementsAre("a", "", "b"));
  EXPECT_THAT(linesOf("a\n"), ElementsAre("a"));
  EXPECT_THAT(linesOf("\n"), ElementsAre(""));
  EXPECT_THAT(linesOf(""), IsEmpty());
}

TEST(SplitText, BlanksGoAtBothEnds) {
  EXPECT_EQ(withoutBlanksAround(" \ta b\r "), "a b");
  EXPECT_EQ(withoutBlanksAround("a"), "a");
  EXPECT_EQ(withoutBlanksAround(" \t\r"), "");
  EXPECT_EQ(withoutBlanksAround("\n"), "\n");
}

}  // namespace
}  // namespace vantorel
