// SPDX-License-Identifier: MIT
#include "text/Unicode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(Trimming, TakesWhiteSpaceAndLineBreaksFromBothEnds) {
  EXPECT_EQ(trimmed(" \t\r\n\v\f a b \n"), "a b");
  EXPECT_EQ(trimmed("a"), "a");
  EXPECT_EQ(trimmed("a\n\nb"), "a\n\nb");
}

TEST(Trimming, KnowsTheSeparatorsOfUnicode) {
  EXPECT_EQ(trimmed("\u00A0\u2003\u3000x\u2028\u2029\u0085\u1680"), "x");
  EXPECT_EQ(trimmed("\u202F\u205F\u05E9\u200A"), "\u05E9");
}

TEST(Trimming, LeavesInvisibleCharactersThatAreNoSeparators) {
  EXPECT_EQ(trimmed("\u200Bx\u2060"), "\u200Bx\u2060");
  EXPECT_EQ(trimmed("\0x\x1F"sv), "\0x\x1F"sv);
}

TEST(Trimming, OfNothingButWhiteSpaceIsEmpty) {
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed(" \u2003\n"), "");
}

TEST(Trimming, StopsAtBrokenBytes) {
  EXPECT_EQ(trimmed(" \xE2\x80 "), "\xE2\x80");
  EXPECT_EQ(trimmed(" \x80\x80\x80\x80\x80 "), "\x80\x80\x80\x80\x80");
}

TEST(CharacterPrefix, CountsAsciiByBytes) {
  EXPECT_EQ(prefixOfCharacters("hello", 3), "hel");
  EXPECT_EQ(prefixOfCharacters("hello", 5), "hello");
  EXPECT_EQ(prefixOfCharacters("hello", 6), "hello");
  EXPECT_EQ(prefixOfCharacters("hello", 0), "");
  EXPECT_EQ(prefixOfCharacters("", 4), "");
}

TEST(CharacterPrefix, TakesALineBreakOfTwoBytesAsOneCharacter) {
  EXPECT_EQ(prefixOfCharacters("a\r\nb", 2), "a\r\n");
  EXPECT_EQ(prefixOfCharacters("a\n\rb", 2), "a\n");
  EXPECT_EQ(prefixOfCharacters("\r\n\u05D0", 1), "\r\n");
}

TEST(CharacterPrefix, KeepsCombiningMarksWithTheirLetter) {
  EXPECT_EQ(prefixOfCharacters("abe\u0301f", 3), "abe\u0301");
  EXPECT_EQ(prefixOfCharacters("e\u0301", 1), "e\u0301");
  EXPECT_EQ(prefixOfCharacters("\u05E9\u05C1\u05B8\u05DC\u05D5\u05B9\u05DD", 2),
            "\u05E9\u05C1\u05B8\u05DC");
}

TEST(CharacterPrefix, KeepsEmojiSequencesAndFlagsWhole) {
  const auto family = "\U0001F468\u200D\U0001F469\u200D\U0001F467"s;
  const auto flags = "\U0001F1EE\U0001F1F1\U0001F1EB\U0001F1F7"s;
  EXPECT_EQ(prefixOfCharacters(family + "x", 1), family);
  EXPECT_EQ(prefixOfCharacters(flags, 1), flags.substr(0, 8));
  EXPECT_EQ(prefixOfCharacters("\U0001F44D\U0001F3FD!", 1), "\U0001F44D\U0001F3FD");
}

TEST(CharacterPrefix, NeedsTheTextOnlyAsFarAsItGoes) {
  const auto hebrew = repeated("\u05E9\u05B8", 5'000'000);
  EXPECT_EQ(prefixOfCharacters(hebrew, 500).size(), 2000U);
  const auto ascii = repeated("a", 10'000'000);
  EXPECT_EQ(prefixOfCharacters(ascii, 500).size(), 500U);
}

TEST(CharacterPrefix, IsBoundedForACharacterThatNeverEnds) {
  const auto endless = "e" + repeated("\u0301", 5'000'000);
  const auto prefix = prefixOfCharacters(endless, 500);
  EXPECT_LT(prefix.size(), 64'000U);
  EXPECT_TRUE(isValidUtf8(prefix));
  EXPECT_TRUE(isValidUtf8(prefixOfCharacters("x\U0001F468" + endless, 80)));
}

TEST(CharacterPrefix, SurvivesAnyCountAndBrokenBytes) {
  EXPECT_EQ(prefixOfCharacters("\u05D0\u05D1", SIZE_MAX), "\u05D0\u05D1");
  EXPECT_LE(prefixOfCharacters("\xFF\xFE\x80\x80", 2).size(), 4U);
}

TEST(Validity, AcceptsWhatIsWellFormed) {
  for (const auto text : {""sv, "plain"sv, "\0\x7F"sv, "\u0080\u07FF\u0800\uD7FF\uE000\uFFFF"sv,
                          "\U00010000\U0010FFFF"sv}) {
    EXPECT_TRUE(isValidUtf8(text)) << text;
  }
}

TEST(Validity, RefusesWhatIsNot) {
  for (const auto text :
       {"\x80"sv, "\xC0\xAF"sv, "\xC1\xBF"sv, "\xE0\x9F\xBF"sv, "\xED\xA0\x80"sv,
        "\xF0\x8F\xBF\xBF"sv, "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv, "\xFF"sv, "\xC3"sv,
        "\xE2\x82"sv, "\xF0\x9F\x98"sv, "\xC3("sv, "\xE2\x82("sv}) {
    EXPECT_FALSE(isValidUtf8(text));
  }
}

TEST(Validity, IsTheSameAtEveryPositionOfALongText) {
  for (std::size_t before = 0; before < 140; ++before) {
    for (const std::size_t after : {0U, 200U}) {
      const auto within = [&](std::string_view middle) {
        std::string text(before, 'a');
        text += middle;
        text.append(after, 'z');
        return text;
      };
      EXPECT_TRUE(isValidUtf8(within("\U0001F600"))) << before;
      EXPECT_FALSE(isValidUtf8(within("\xF0\x9F\x98"))) << before;
      EXPECT_EQ(validUtf8(within("\xF0\x9F\x98")), within("\uFFFD")) << before;
      EXPECT_EQ(validUtf8(within("\u05D0\xFF\u05D1")), within("\u05D0\uFFFD\u05D1")) << before;
    }
  }
}

TEST(MakingValid, LeavesValidTextInItsOwnMemory) {
  auto text = std::string(1000, 'a') + "\u05D0";
  const auto address = [](const std::string& held) {
    return reinterpret_cast<std::uintptr_t>(held.data());
  };
  const auto before = address(text);
  text = validUtf8(std::move(text));
  EXPECT_EQ(address(text), before);
}

TEST(MakingValid, ReplacesEachBrokenSequenceOnce) {
  EXPECT_EQ(validUtf8("a\xE2\x82z"), "a\uFFFDz");
  EXPECT_EQ(validUtf8("\xF0\x9F\x98"), "\uFFFD");
  EXPECT_EQ(validUtf8("\xC0\xAF"), "\uFFFD\uFFFD");
  EXPECT_EQ(validUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(validUtf8("\xFF\xFE"), "\uFFFD\uFFFD");
  EXPECT_EQ(validUtf8("caf\xE9"), "caf\uFFFD");
  EXPECT_EQ(validUtf8(std::string("a\0b\xFF"sv)), "a\0b\uFFFD"sv) << "a zero is not broken";
}

TEST(MakingValid, TakesMegabytesOfRubbish) {
  const auto repaired = validUtf8(repeated("\xFF", 3'000'000));
  EXPECT_EQ(repaired.size(), 9'000'000U);
  EXPECT_TRUE(isValidUtf8(repaired));
}

TEST(CodePoints, AreReadAndWrittenOneByOne) {
  const std::string text = "a\u00E9\u05D0\U0001F600";
  std::string copy;
  std::vector<std::int32_t> found;
  for (std::size_t offset = 0; offset < text.size();) {
    found.push_back(nextCodePoint(text, offset));
    appendCodePoint(copy, found.back());
  }
  EXPECT_EQ(found, (std::vector<std::int32_t>{'a', 0xE9, 0x5D0, 0x1F600}));
  EXPECT_EQ(copy, text);
}

TEST(CodePoints, BytesThatAreNoTextAreReplaced) {
  const std::string_view text = "\xE9x\xF0\x9F";
  std::size_t offset = 0;
  EXPECT_EQ(nextCodePoint(text, offset), 0xFFFD);
  EXPECT_EQ(offset, 1U);
  EXPECT_EQ(nextCodePoint(text, offset), 'x');
  EXPECT_EQ(nextCodePoint(text, offset), 0xFFFD);
  EXPECT_EQ(offset, text.size());
}

TEST(CaseMapping, DoesNotDependOnTheLocale) {
  EXPECT_EQ(lowerCased("COM.Acme.ISTANBUL"), "com.acme.istanbul");
  EXPECT_EQ(upperCased("i\u00E9\u05D0\u00DF"), "I\u00C9\u05D0SS");
}

}  // namespace
}  // namespace vantorel
